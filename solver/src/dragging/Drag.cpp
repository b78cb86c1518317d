#include "solver/src/dragging/Drag.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/dragging/DragLanding.h"
#include "solver/src/dragging/DragPull.h"
#include "solver/src/dragging/DragRegion.h"
#include "solver/src/dragging/DragVicinity.h"
#include "solver/src/numerics/Shake.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Wider rings are worth it when they bring the handles nearer by this much.
constexpr double kWorthwhile = 0.99;

/// Others that moved this much farther than the handles may be on another branch.
constexpr double kFarFetched = 2.0;

/// How much a hopeless miss has to grow, or its goal to move in parts of it, before what was in vain is tried again.
constexpr double kPatience = 2.0, kPatienceSideways = 0.25;

/// The part of the sketch's size by which everything is moved where nothing leads to the goals from where it stands.
constexpr double kBeside = 1e-4;

}  // namespace

/// Steps within a sketch that says all there is to know of what they move.
struct Dragging {
    /// A miss against which something could not help, and the goals then.
    struct Hopeless {
        double miss = 0.0;
        std::vector<double> goals{};
    };

    DragRegion region;
    Hopeless inWholePart{}, beside{};

    /// About the same miss of about the same goal.
    bool isAgain(const Hopeless& hopeless, double missNow) const {
        if (missNow >= kPatience * hopeless.miss)
            return false;
        double way = 0.0;
        for (std::size_t i = 0; i < region.goals.size(); ++i)
            way = std::max(way, std::abs(region.goals[i] - hopeless.goals[i]) *
                                    region.workspace.system().metric[at(region.handles[i])]);
        return way < kPatienceSideways * hopeless.miss;
    }

    /// Tries wider and wider subproblems until the handles are there. When not even the whole part brings them nearer,
    /// the first subproblem's solution is taken, and wider ones are not tried again before the miss has grown.
    Attempt solve() {
        if (region.isWidest)
            return DragPull(region).approach();
        const std::vector<double> before = region.subproblem->read();
        Attempt first = DragPull(region).approach();
        const double missFirst = region.miss();
        if (first.isSolved && (region.isMet() || isAgain(inWholePart, missFirst)))
            return first;
        Attempt attempt = first;
        const std::vector<double> found = region.subproblem->read();
        const std::unique_ptr<Subproblem> narrow = std::move(region.subproblem);
        const int narrowRings = region.rings;
        int iterations = first.iterations;
        narrow->write(first.isSolved ? found : before);
        while (!region.isWidest && !(attempt.isSolved && region.isMet()) && !region.workspace.hasSpentBudget()) {
            region.rings *= 2;
            region.makeRegion();
            if (region.isBeyond())
                break;
            attempt = DragPull(region).approach();
            iterations += attempt.iterations;
            if (!attempt.isSolved)
                region.undo();
        }
        if (first.isSolved && (!attempt.isSolved || region.miss() > kWorthwhile * missFirst)) {
            region.undo();
            region.rings = narrowRings;
            inWholePart = {missFirst, region.goals};
            region.makeRegion();
            region.subproblem->write(found);
            attempt = first;
        }
        attempt.iterations = iterations;
        return attempt;
    }

    /// Where the way to the goals is barred, or has led far away, another one may be open from where the session
    /// began; the solution that moves less from there is taken.
    Attempt solveFromStart(Attempt attempt) {
        const Pull& pull = region.pull();
        if (attempt.isSolved && (attempt.isNearest || region.isMet()) && !isFarFetched(pull))
            return attempt;
        const std::vector<double> found = region.subproblem->read();
        const double missBefore = region.miss();
        std::vector<double> x;
        for (const int u : region.subproblem->unknowns())
            x.push_back(region.workspace.system().meanOf(u, region.workspace.startValues()));
        if (x == region.triedFrom && (attempt.isBarred || region.emphasis == region.triedEmphasis))
            return attempt;
        Attempt again = region.workspace.trySettling(*region.subproblem, x, region.careful(), pull);
        again.iterations += attempt.iterations;
        if (again.isSolved && (!attempt.isSolved || isBetter(pull, found, missBefore)))
            return again;
        region.subproblem->write(found);
        attempt.iterations = again.iterations;
        return attempt;
    }

    /// At a dead centre nothing leads nearer to the goals at first, and only what stands a little beside it shows the
    /// way: the slider of a crank that a hand pulls not quite along its line.
    Attempt solveBeside(Attempt attempt) {
        const EquationSystem& system = region.workspace.system();
        const double miss = distance(system.values);
        if (!attempt.isSolved || region.isMet() || miss <= kWorthwhile * distance(region.sketch.values) ||
            isAgain(beside, miss))
            return attempt;
        const std::vector<double> found = region.subproblem->read();
        std::vector<double> shaken = found;
        for (std::size_t j = 0; j < shaken.size(); ++j) {
            const int u = region.subproblem->unknowns()[j];
            const double metric = system.metric[at(system.valuesOfUnknown[u].front())];
            if (metric > 0.0)
                shaken[j] += kBeside * system.size / metric * shake(static_cast<int>(j));
        }
        region.subproblem->write(shaken);
        Attempt again = DragPull(region).approach();
        again.iterations += attempt.iterations;
        if (again.isSolved && distance(system.values) < kWorthwhile * miss)
            return again;
        region.subproblem->write(found);
        beside = {miss, region.goals};
        attempt.iterations = again.iterations;
        return attempt;
    }

    /// From all goals together, as a length.
    double distance(std::span<const double> values) const {
        double squares = 0.0;
        for (std::size_t i = 0; i < region.goals.size(); ++i) {
            const std::size_t v = at(region.handles[i]);
            const double miss = (values[v] - region.goals[i]) * region.workspace.system().metric[v];
            squares += miss * miss;
        }
        return std::sqrt(squares);
    }

    /// Others have moved much farther than the handles since the session began.
    bool isFarFetched(const Pull& pull) {
        const auto [ofHandles, ofOthers] = ways(pull, region.subproblem->read());
        return ofOthers > kFarFetched * std::max(ofHandles, DragRegion::kReached * region.workspace.system().size);
    }

    /// Longest movement since the session began, of the handles' wishes and of the other unknowns.
    std::pair<double, double> ways(const Pull& pull, std::span<const double> x) {
        const EquationSystem& system = region.workspace.system();
        std::pair<double, double> longest{0.0, 0.0};
        for (std::size_t j = 0; j < x.size(); ++j) {
            const int u = region.subproblem->unknowns()[j];
            const double metric = system.metric[at(system.valuesOfUnknown[u].front())];
            // The seeds are the first unknowns of the subproblem; others would like to be where they began.
            if (j >= region.seeds.size())
                longest.second = std::max(longest.second, std::abs(x[j] - pull.targets[j]) * metric);
            else
                longest.first =
                    std::max(longest.first,
                             std::abs(pull.targets[j] - system.meanOf(u, region.workspace.startValues())) * metric);
        }
        return longest;
    }

    /// The values of now against a solution found before: nearer to the goals, or as near with less movement.
    bool isBetter(const Pull& pull, std::span<const double> found, double missBefore) {
        const double missNow = region.miss(), same = DragRegion::kReached * region.workspace.system().size;
        if (std::abs(missNow - missBefore) > same)
            return missNow < missBefore;
        return ways(pull, region.subproblem->read()).second < kWorthwhile * ways(pull, found).second;
    }

    void takeOver(SolveResult& result) {
        const EquationSystem& system = region.workspace.system();
        for (const int number : region.subproblem->entities()) {
            const SketchEntity& entity = region.sketch.entities[at(number)];
            double way = 0.0;
            for (std::size_t v = at(entity.firstValue); v < at(entity.firstValue + entity.valueCount); ++v) {
                way = std::max(way, std::abs(system.values[v] - region.sketch.values[v]) * system.metric[v]);
                region.sketch.values[v] = system.values[v];
            }
            if (way > 0.0)
                result.movements.push_back({number, way});
        }
        result.status = result.movements.empty() ? SolveStatus::unchanged : SolveStatus::solved;
    }

    SolveResult step(std::span<const double> goals, Budget* budget) {
        region.workspace.setBudget(budget);
        region.setGoals(goals);
        Attempt attempt = solve();
        SolveResult result;
        if (region.isBeyond())
            return result;
        attempt = solveBeside(solveFromStart(attempt));
        result.iterations = attempt.iterations;
        result.residual = attempt.residual;
        result.degeneracy = attempt.degeneracy;
        region.workspace.setBudget(nullptr);
        if (attempt.isSolved && !isSpent(budget)) {
            takeOver(result);
            return result;
        }
        result.status = attempt.degeneracy ? SolveStatus::degenerate : SolveStatus::unreached;
        region.undo();
        return result;
    }

    SolveResult land(Budget* budget) {
        region.workspace.setBudget(budget);
        const Attempt attempt = DragLanding(region).land();
        region.workspace.setBudget(nullptr);
        SolveResult result;
        result.iterations = attempt.iterations;
        takeOver(result);
        return result;
    }
};

struct DragSession::State {
    SketchData& sketch;
    std::vector<int> handles;
    Scope reach;
    std::unique_ptr<DragVicinity> vicinity;  ///< null: steps are made in the whole sketch
    std::unique_ptr<Dragging> dragging;

    State(SketchData& figure, std::vector<int> values, Scope scope, const KeptSizes& sizes)
        : sketch(figure), handles(std::move(values)), reach(scope) {
        if (reach == Scope::rings && sizes.shapes.empty())
            vicinity = DragVicinity::around(sketch, handles);
        if (vicinity) {
            const std::span<const int> near = vicinity->handles();
            dragging.reset(new Dragging{
                {vicinity->sketch(), std::vector<int>(near.begin(), near.end()), reach, sizes, vicinity->isRim()}});
        }
        if (!vicinity || dragging->region.isBeyond()) {
            vicinity.reset();
            dragging.reset(new Dragging{{sketch, handles, reach, sizes}});
        }
    }

    SolveResult step(std::span<const double> goals, Budget* budget) {
        SolveResult result = dragging->step(goals, budget);
        if (dragging->region.isBeyond()) {
            if (!takesWhole()) {
                dragging->region.undo();
                result.status = SolveStatus::unreached;
                return result;
            }
            result = dragging->step(goals, budget);
        }
        if (vicinity)
            vicinity->takeOver(result, sketch);
        return result;
    }

    /// Goes on in the whole sketch, as if the session had begun there: with what was, and from where the last step has
    /// ended. False where the sketch has a constraint, far away, that its entities cannot have.
    bool takesWhole() {
        vicinity->copyStart(sketch.values);
        std::unique_ptr<Dragging> whole;
        try {
            whole.reset(new Dragging{{sketch, handles, reach, {}}});
        } catch (const SketchError&) {
        }
        vicinity->copyNow(sketch.values);
        if (!whole)
            return false;
        whole->region.readSketch();
        dragging = std::move(whole);
        vicinity.reset();
        return true;
    }

    SolveResult land(Budget* budget) {
        SolveResult result = dragging->land(budget);
        if (vicinity)
            vicinity->takeOver(result, sketch);
        return result;
    }
};

DragSession::DragSession(SketchData& sketch, std::vector<int> handles, Scope reach, const KeptSizes& sizes)
    : m_state(std::make_unique<State>(sketch, std::move(handles), reach, sizes)) {}

DragSession::~DragSession() = default;
DragSession::DragSession(DragSession&&) noexcept = default;
DragSession& DragSession::operator=(DragSession&&) noexcept = default;

SolveResult DragSession::step(std::span<const double> goals, Budget* budget) {
    return m_state->step(goals, budget);
}

SolveResult DragSession::land(Budget* budget) {
    return m_state->land(budget);
}

double DragSession::miss() const {
    return m_state->dragging->region.miss();
}

int DragSession::freedom() const {
    return m_state->dragging->region.subproblem->columnCount();
}

}  // namespace holdfast::solver::detail
