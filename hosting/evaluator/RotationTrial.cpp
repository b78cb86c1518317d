#include "hosting/evaluator/RotationTrial.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "geometry/Tolerances.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::hosting {

namespace {

void setActive(SketchData& sketch, std::span<const int> constraints, bool active) {
    for (const int c : constraints)
        sketch.constraints[at(c)].active = active;
}

/// For each element whether the targets say where all of it is, and nothing about it is to be found out by solving: a
/// contact along an ellipse or a spline is.
std::vector<char> placedElements(const SketchData& sketch, const EditRequest& request) {
    std::vector<char> isGiven(sketch.values.size(), 0), isPlaced(sketch.entities.size(), 0);
    for (const Target& target : request.targets)
        isGiven[at(target.value)] = 1;
    for (const int number : request.edited) {
        const SketchEntity& element = sketch.entities[at(number)];
        const auto first = isGiven.begin() + element.firstValue;
        const bool hasContacts = element.kind == EntityKind::spline || element.kind == EntityKind::ellipse ||
                                 element.kind == EntityKind::ellipticalArc;
        isPlaced[at(number)] =
            !hasContacts && std::all_of(first, first + element.valueCount, [](char given) { return given != 0; });
    }
    return isPlaced;
}

/// Unknowns and rows that trying a rotation out may cost, once for every iteration: a second in most drawings.
constexpr long kMostWork = 1'000'000;

/// Constraints that did not hold when the edited elements were still where the reference has them.
std::vector<int> brokenBefore(SketchData sketch, const EditRequest& request) {
    for (const int number : request.edited) {
        const SketchEntity& element = sketch.entities[at(number)];
        std::copy_n(sketch.reference.begin() + element.firstValue, element.valueCount,
                    sketch.values.begin() + element.firstValue);
    }
    const std::vector<double> misses = violationsOf(sketch);
    std::vector<int> broken;
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c)
        if (!(misses[c] <= kHolds * sketch.size()))
            broken.push_back(static_cast<int>(c));
    return broken;
}

/// Of some constraints, those that lie on placed elements alone and do not hold there. The sketch is at the targets.
std::vector<int> brokenByTargets(const SketchData& sketch, const EditRequest& request,
                                 const std::vector<int>& constraints) {
    const std::vector<char> isPlaced = placedElements(sketch, request);
    std::vector<int> decided, broken;
    for (const int c : constraints) {
        const auto& refs = sketch.constraints[at(c)].refs;
        if (std::all_of(refs.begin(), refs.end(),
                        [&](const SketchPlace& place) { return isPlaced[at(place.entity)] != 0; }))
            decided.push_back(c);
    }
    if (decided.empty())
        return broken;
    Extract extract(sketch, decided);
    for (SketchConstraint& constraint : extract.sketch().constraints)
        constraint.active = true;
    const std::vector<double> misses = violationsOf(extract.sketch());
    const double limit = kHolds * sketch.size();
    for (std::size_t i = 0; i < decided.size(); ++i)
        if (!(misses[i] <= limit))
            broken.push_back(decided[i]);
    return broken;
}

/// Whether the sketch has a solution at the targets: near the one that was found last, or on the way from where the
/// sketch was.
class Feasible {
public:
    Feasible(const SketchData& sketch, const EditRequest& request)
        : m_start(sketch),
          m_request{.targets = request.targets,
                    .edited = request.edited,
                    .patience = Patience::once,
                    .asksWhether = true,
                    .namesConflicts = false} {}

    void bind(std::span<const int> constraints, bool isBinding) {
        setActive(m_start, constraints, isBinding);
        if (m_last)
            setActive(*m_last, constraints, isBinding);
    }

    /// False as well when the effort is spent.
    bool holds() {
        if (m_last && isSolved(*m_last))
            return true;
        SketchData sketch = m_start;
        if (!isSolved(sketch))
            return false;
        m_last = std::move(sketch);
        return true;
    }

    /// What trying may cost has been spent: nothing is known of what was not tried.
    bool isSpent() const { return m_work > kMostWork; }

    /// The solution that was found last.
    const SketchData& last() const { return *m_last; }

private:
    bool isSolved(SketchData& sketch) {
        if (isSpent())
            return false;
        const SolveResult result = solve(sketch, m_request);
        m_work += result.work;
        return result.isSolved();
    }

    SketchData m_start;
    std::optional<SketchData> m_last;
    SolveRequest m_request;
    long m_work = 0;
};

/// Has candidates bind, the earlier the sooner, as many as can hold beside those that bind already; the others join
/// those against it.
void admit(Feasible& held, std::span<const int> candidates, std::vector<int>& against) {
    held.bind(candidates, true);
    if (candidates.empty() || held.holds())
        return;
    held.bind(candidates, false);
    if (held.isSpent())
        return;
    if (candidates.size() == 1)
        return against.push_back(candidates.front());
    const std::size_t half = candidates.size() / 2;
    admit(held, candidates.first(half), against);
    admit(held, candidates.subspan(half), against);
}

}  // namespace

std::vector<int> constraintsTouching(const SketchData& sketch, const std::vector<int>& edited) {
    std::vector<char> isEdited(sketch.entities.size(), 0);
    for (const int number : edited)
        isEdited[at(number)] = 1;
    std::vector<int> touching;
    for (const int c : bindingConstraints(sketch)) {
        const auto& refs = sketch.constraints[at(c)].refs;
        if (std::any_of(refs.begin(), refs.end(),
                        [&](const SketchPlace& place) { return isEdited[at(place.entity)] != 0; }))
            touching.push_back(c);
    }
    return touching;
}

std::optional<std::vector<int>> constraintsAgainst(const SketchData& sketch, const EditRequest& request,
                                                   const std::vector<int>& mayGo) {
    Feasible held(sketch, request);
    held.bind(mayGo, false);
    if (!held.holds()) {
        held.bind(brokenBefore(sketch, request), false);
        if (!held.holds())
            return std::nullopt;
    }
    std::vector<int> against = brokenByTargets(held.last(), request, mayGo), doubtful;
    std::set_difference(mayGo.begin(), mayGo.end(), against.begin(), against.end(), std::back_inserter(doubtful));
    admit(held, doubtful, against);
    if (held.isSpent())
        return std::nullopt;
    std::sort(against.begin(), against.end());
    return against;
}

}  // namespace holdfast::hosting
