#include "editing/ties/TieFilter.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "document/EntityIndex.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/constraints/HalfConstraints.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

/// How many constraints one looks around the ties first, how many times as many each further time, and beyond how many
/// at all that hangs together. Most edits leave a freedom beside them, which shows at once.
constexpr int kFirstSteps = 3, kFartherTimes = 4, kNearSteps = 48;

/// A tie that may be one half of what it was.
struct Candidate {
    Tie tie;
    std::optional<Constraint> whole{};
};
using Candidates = std::vector<Candidate>;
using Numbers = std::set<std::size_t>;

std::vector<std::string> entitiesOfAll(const Candidates& candidates) {
    std::vector<std::string> names;
    for (const Candidate& candidate : candidates)
        for (std::string& name : entitiesOf(candidate.tie.constraint))
            names.push_back(std::move(name));
    return names;
}

/// A part of the drawing, what leads out of it held, with candidates behind its own constraints. Which of those have a
/// constraint's id stand in its place.
class Judged {
public:
    Judged(const Drawing& drawing, const Candidates& candidates, int steps) : m_candidates(candidates) {
        Drawing::Part part = drawing.partAround(entitiesOfAll(candidates), steps);
        m_isAll = !part.isCut;
        m_document = std::move(part.document);
        for (std::size_t i = 0; i < m_document.entities.size(); ++i)
            if (part.reach[i] == Drawing::Part::Scope::border)
                m_document.entities[i].fixed = true;
        addCandidates();
    }

    bool isAll() const { return m_isAll; }

    /// Which candidates cannot stand by themselves.
    Numbers unsound(double near) const {
        const EntityIndex entities(m_document);
        Numbers found;
        for (std::size_t i = 0; i < m_candidates.size(); ++i)
            if (faultIn(m_candidates[i].tie.constraint, entities))
                found.insert(i);
        if (!found.empty())  // a sketch takes none of them
            return found;
        const DocumentSketch sketch(m_document);
        for (std::size_t i = 0; i < m_candidates.size(); ++i)
            if (!(sketch.shortfallOf(m_numbers[i]) <= near))
                found.insert(i);
        return found;
    }

    struct Implied {
        std::size_t candidate = 0;
        bool isWhole = false;
    };
    /// Ties come last, and of constraints that imply each other the last is named, but for a few kinds which are looked
    /// at first or last of all: there an older one may be named for a tie.
    std::vector<Implied> implied() const {
        const DocumentSketch::Redundancies all = DocumentSketch(m_document).redundancies();
        if (all.equations == 0 || all.equations == spareWith(0))
            return {};
        std::vector<Implied> found;
        for (const auto& [number, isWhole] : all.constraints)
            if (const std::optional<std::size_t> candidate = candidateOf(number))
                found.push_back({*candidate, isWhole});
        return found.empty() ? firstInTheWay() : found;
    }

private:
    void addCandidates() {
        std::unordered_map<std::string, std::size_t> numberOf;
        for (std::size_t i = 0; i < m_document.constraints.size(); ++i)
            numberOf.emplace(m_document.constraints[i].id, i);
        m_firstNew = m_document.constraints.size();
        for (const Candidate& candidate : m_candidates) {
            const Constraint& constraint = candidate.tie.constraint;
            const auto known = numberOf.find(constraint.id);
            m_numbers.push_back(known == numberOf.end() ? m_document.constraints.size() : known->second);
            if (known != numberOf.end())
                m_document.constraints[known->second] = constraint;
            else
                m_document.constraints.push_back(constraint);
            if (constraint.id.empty())
                m_document.constraints.back().id = "tie " + std::to_string(m_numbers.size());
        }
    }

    std::optional<std::size_t> candidateOf(std::size_t number) const {
        const auto found = std::find(m_numbers.begin(), m_numbers.end(), number);
        return number < m_firstNew ? std::nullopt : std::optional(static_cast<std::size_t>(found - m_numbers.begin()));
    }

    /// How many equations are spare with so many of the new constraints.
    int spareWith(std::size_t count) const {
        Document part = m_document;
        part.constraints.resize(m_firstNew + count);
        return DocumentSketch(part).redundancies().equations;
    }

    /// The first tie with which more is said twice than without.
    std::vector<Implied> firstInTheWay() const {
        const int alone = spareWith(0);
        for (std::size_t count = 1; m_firstNew + count <= m_document.constraints.size(); ++count)
            if (const int spare = spareWith(count) - alone; spare > 0) {
                const Constraint& last = m_document.constraints[m_firstNew + count - 1];
                return {{*candidateOf(m_firstNew + count - 1), spare > 1 || !halfOf(last, true)}};
            }
        return {};
    }

    const Candidates& m_candidates;
    Document m_document;
    std::size_t m_firstNew = 0;
    std::vector<std::size_t> m_numbers;  ///< of the candidates' constraints in the document
    bool m_isAll = false;
};

void eraseAt(Candidates& candidates, const Numbers& numbers) {
    Candidates rest;
    for (std::size_t i = 0; i < candidates.size(); ++i)
        if (!numbers.contains(i))
            rest.push_back(std::move(candidates[i]));
    candidates = std::move(rest);
}

void eraseUnsound(const Drawing& drawing, Candidates& candidates, double near) {
    while (!candidates.empty()) {
        const Numbers unsound = Judged(drawing, candidates, 0).unsound(near);
        if (unsound.empty())
            return;
        eraseAt(candidates, unsound);
    }
}

/// A constraint that can be carried on in more than one way is so in the first that holds.
void eraseSecondWays(Candidates& candidates) {
    std::unordered_set<std::string> seen;
    std::erase_if(candidates, [&](const Candidate& candidate) {
        const std::string& id = candidate.tie.constraint.id;
        return !id.empty() && !seen.insert(id).second;
    });
}

/// A candidate that is said in part becomes its first half, and that half, if it is said, the second one: a constraint
/// of its own. False when there is no other half.
bool halve(Candidate& candidate, bool isWhole) {
    Constraint& constraint = candidate.tie.constraint;
    const bool isFirst = !candidate.whole;
    if (isFirst == isWhole)
        return false;
    const Constraint whole = isFirst ? constraint : *candidate.whole;
    std::optional<Constraint> half = halfOf(whole, isFirst);
    if (!half || *half == constraint)
        return false;
    if (candidate.tie.reason.empty())
        candidate.tie.reason = "it is what " + whole.id + " still had to say";
    candidate.whole = whole;
    constraint = std::move(*half);
    constraint.id.clear();
    return true;
}

/// What is said already goes, or becomes the half that is not.
void thin(Candidates& candidates, const std::vector<Judged::Implied>& implied) {
    Numbers gone;
    for (const auto& [number, isWhole] : implied)
        if (!halve(candidates[number], isWhole))
            gone.insert(number);
    eraseAt(candidates, gone);
}

void eraseImplied(const Drawing& drawing, Candidates& candidates) {
    for (int steps = kFirstSteps; !candidates.empty();) {
        const Judged judged(drawing, candidates, steps);
        const std::vector<Judged::Implied> implied = judged.implied();
        if (implied.empty())
            return;
        if (judged.isAll())
            thin(candidates, implied);
        else
            steps = steps * kFartherTimes > kNearSteps ? kAllSteps : steps * kFartherTimes;
    }
}

/// A point on the curve that an end of the curve has come to meet: the common point says both.
void mergePointOnCurve(const Drawing& drawing, Candidate& candidate) {
    if (!candidate.whole || candidate.whole->type != ConstraintType::coincident || !candidate.tie.constraint.id.empty())
        return;
    const std::vector<Place>& ends = candidate.whole->refs;
    for (const Constraint& known : drawing.around({ends[0].entity}).constraints)
        for (const std::size_t i : {0u, 1u})
            if (known.type == ConstraintType::pointOnCurve && known.active && known.refs[0] == ends[i] &&
                known.refs[1] == Place{ends[1 - i].entity}) {
                candidate.tie.constraint = known;
                candidate.tie.constraint.type = ConstraintType::coincident;
                candidate.tie.constraint.refs[1] = ends[1 - i];
                return;
            }
}

}  // namespace

std::vector<Tie> withoutImplied(Drawing& drawing, std::vector<Tie> ties) {
    Candidates candidates;
    for (Tie& tie : ties)
        candidates.push_back({std::move(tie)});
    eraseUnsound(drawing, candidates, kSamePoint * drawing.extent());
    eraseSecondWays(candidates);
    eraseImplied(drawing, candidates);
    std::vector<Tie> lasting;
    for (Candidate& candidate : candidates) {
        mergePointOnCurve(drawing, candidate);
        lasting.push_back(std::move(candidate.tie));
    }
    return lasting;
}

}  // namespace holdfast::editing
