#include "solver/src/diagnosis/Diagnose.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <span>
#include <utility>

#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/diagnosis/GaussianElimination.h"
#include "solver/src/diagnosis/Motion.h"
#include "solver/src/diagnosis/OwnFreedom.h"
#include "solver/src/diagnosis/ValueSpace.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

/// Entities joined into parts: the root of an entity is the smallest number of its part.
class Parts {
public:
    explicit Parts(std::size_t count) : m_up(count) { std::iota(m_up.begin(), m_up.end(), 0); }

    int find(int i) {
        while (m_up[at(i)] != i)
            i = m_up[at(i)] = m_up[at(m_up[at(i)])];
        return i;
    }

    void join(int a, int b) {
        a = find(a);
        b = find(b);
        m_up[at(std::max(a, b))] = std::min(a, b);
    }

private:
    std::vector<int> m_up;
};

/// How many spare constraints are left out one by one to see whether they hold what seems free; each costs a few solves
/// of its part, and parts with so many of them are rare.
constexpr int kMostNeeded = 32;

/// Constraints that are tied together up to which a spare one among them is left out where they can move: beyond, the
/// solves that it takes would be most of a diagnosis.
constexpr std::size_t kMostShaken = 500;

class Examination {
public:
    Examination(const SketchData& sketch, bool countsEntities)
        : m_sketch(sketch),
          m_system(buildSystem(sketch)),
          m_parts(sketch.entities.size()),
          m_tied(sketch.entities.size()),
          m_countsEntities(countsEntities) {
        for (int u = 0; u < m_system.unknownCount; ++u)
            m_lengths.push_back(1.0 / std::sqrt(m_system.weightOf(u)));
        putOnEquations(m_system);
    }

    Diagnosis run() {
        joinParts();
        eliminate();
        if (leaveSingularPlaces())
            eliminate();
        for (const auto& [constraint, count] : m_spares)
            m_spareEquations += count;
        nameRedundant();
        listParts();
        return std::move(m_diagnosis);
    }

    int spareEquations() const { return m_spareEquations; }

private:
    /// The entity that an unknown belongs to; -1 for a contact, which its equation connects.
    int entityOfUnknown(int unknown) const {
        for (const int v : m_system.valuesOfUnknown[unknown]) {
            if (v < m_system.figureValueCount)
                return m_system.entityOfValue[at(v)];
        }
        return -1;
    }

    void joinParts() {
        for (int u = 0; u < m_system.unknownCount; ++u) {
            const int first = entityOfUnknown(u);
            for (const int v : m_system.valuesOfUnknown[u]) {
                if (v < m_system.figureValueCount)
                    m_parts.join(first, m_system.entityOfValue[at(v)]);
            }
        }
        for (const Equation& equation : m_system.set.equations)
            m_partOfEquation.push_back(joinThrough(equation));
    }

    /// Joins what the equation reads; returns an entity of it, -1 when all of it is constant.
    int joinThrough(const Equation& equation) {
        int first = -1;
        for (const int v : m_system.set.inputsOf(equation)) {
            const int unknown = m_system.links[at(v)].unknown;
            const int entity = unknown < 0 ? -1 : entityOfUnknown(unknown);
            if (entity < 0)
                continue;
            if (first >= 0)
                m_parts.join(first, entity);
            first = entity;
        }
        return first;
    }

    void countUnknowns() {
        m_freedom.assign(m_sketch.entities.size(), 0);
        for (int u = 0; u < m_system.unknownCount; ++u) {
            if (const int entity = entityOfUnknown(u); entity >= 0)
                ++m_freedom[at(m_parts.find(entity))];
        }
    }

    GaussianElimination::Entries rowOf(const Equation& equation, std::size_t row) const {
        GaussianElimination::Entries entries;
        const auto inputs = m_system.set.inputsOf(equation);
        for (std::size_t k = 0; k < inputs.size(); ++k) {
            const ValueLink& link = m_system.links[at(inputs[k])];
            const double slope = m_slopes[row * inputs.size() + k];
            if (link.unknown >= 0 && slope != 0.0)
                entries.emplace_back(link.unknown, link.sign * slope * m_lengths[at(link.unknown)]);
        }
        return entries;
    }

    /// Contacts are unknowns of their own part: an equation that only fixes contacts takes no freedom away. Rows with a
    /// freedom of their own need no elimination, in which the chance ties of a large drawing would fill up, unless
    /// entities are to be counted beside all of them.
    void eliminate() {
        countUnknowns();
        m_hasSpare.assign(m_sketch.entities.size(), 0);
        m_hasSpareRule.assign(m_sketch.entities.size(), 0);
        m_spares.clear();
        for (const SpareCount& spare : m_system.spares)
            m_spares[spare.constraint] += spare.equations;
        const std::vector<char> isOwn = m_countsEntities ? std::vector<char>() : rowsWithOwnFreedom(m_system);
        GaussianElimination elimination(m_system.unknownCount);
        std::size_t number = 0;
        for (std::size_t e = 0; e < m_system.set.equations.size(); ++e) {
            const Equation& equation = m_system.set.equations[e];
            linearise(m_system.set, equation, m_system.values, m_slopes);
            for (std::size_t row = 0; row < equation.rows; ++row, ++number) {
                const bool isApart = !m_countsEntities && isOwn[number];
                if (!isApart && !elimination.add(rowOf(equation, row)))
                    noteSpare(equation, e);
                else if (m_partOfEquation[e] >= 0)
                    --m_freedom[at(m_parts.find(m_partOfEquation[e]))];
            }
            countContacts(equation, m_partOfEquation[e]);
        }
        if (m_countsEntities)
            countFreedomOfEntities(elimination);
    }

    /// A rule that is spare has been made so by constraints that were merged, which is found out by nameExactly.
    void noteSpare(const Equation& equation, std::size_t e) {
        ++m_spares[equation.constraint];
        const int entity = equation.constraint < 0 ? equation.entity : m_partOfEquation[e];
        if (entity < 0 || m_sketch.entities[at(entity)].fixed)
            return;
        m_hasSpare[at(m_parts.find(entity))] = 1;
        if (equation.constraint < 0)
            m_hasSpareRule[at(m_parts.find(entity))] = 1;
    }

    /// Each contact adds an unknown to the part of the first equation that reads it.
    void countContacts(const Equation& equation, int part) {
        for (const int v : m_system.set.inputsOf(equation)) {
            const int unknown = m_system.links[at(v)].unknown;
            if (unknown < 0 || entityOfUnknown(unknown) >= 0 || part < 0)
                continue;
            if (m_system.equationsOfUnknown[unknown].front() ==
                static_cast<int>(&equation - m_system.set.equations.data()))
                ++m_freedom[at(m_parts.find(part))];
        }
    }

    void countFreedomOfEntities(GaussianElimination& elimination) {
        m_diagnosis.freedomOfEntity.clear();
        std::vector<GaussianElimination::Entries> rows;
        for (const SketchEntity& entity : m_sketch.entities) {
            rows.clear();
            for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v) {
                if (const int unknown = m_system.links[at(v)].unknown; unknown >= 0)
                    rows.push_back({{unknown, 1.0}});
            }
            m_diagnosis.freedomOfEntity.push_back(elimination.countIndependent(rows));
        }
    }

    /// Where rows depend on each other, the first derivatives may count freedom that the drawing does not have: it is
    /// shaken and brought back. A part that moves is looked at where it has moved to; one that comes back to where it
    /// was has no freedom. True when something has moved. Where no row is spare, freedom is what it is counted as, by
    /// the implicit function theorem.
    bool leaveSingularPlaces() {
        m_isRigid.assign(m_sketch.entities.size(), 0);
        std::map<int, std::vector<int>> unknownsOf;
        for (int u = 0; u < m_system.unknownCount; ++u) {
            const int part = partOfUnknown(u);
            if (part >= 0 && m_hasSpare[at(part)] && m_freedom[at(part)] > 0)
                unknownsOf[part].push_back(u);
        }
        bool hasMoved = false;
        for (const auto& [part, unknowns] : unknownsOf) {
            const Shaking outcome = shake(m_sketch, m_system, unknowns);
            m_isRigid[at(part)] = outcome == Shaking::cameBack;
            hasMoved = hasMoved || outcome == Shaking::moved;
        }
        return hasMoved;
    }

    /// The root of its part; a contact belongs to the first equation that reads it.
    int partOfUnknown(int unknown) {
        int entity = entityOfUnknown(unknown);
        if (entity < 0 && !m_system.equationsOfUnknown[unknown].empty())
            entity = m_partOfEquation[at(m_system.equationsOfUnknown[unknown].front())];
        return entity < 0 ? -1 : m_parts.find(entity);
    }

    void nameRedundant() {
        const EquationSystem plain = buildPlainSystem(m_sketch, bindingConstraints(m_sketch));
        std::vector<int> rows(m_sketch.constraints.size(), 0);
        for (const Equation& equation : plain.set.equations) {
            if (equation.constraint >= 0 && !equation.isImplied)
                rows[at(equation.constraint)] += equation.rows;
        }
        m_spares.erase(-1);
        tieParts();
        nameExactly(plain);
        m_isTiedToRigid = tiesWith(m_isRigid);
        for (const auto& [constraint, count] : m_spares) {
            if (!isNeeded(constraint))
                m_diagnosis.redundant.push_back({constraint, count, count >= rows[at(constraint)]});
        }
    }

    /// Around parts in which merging has made a rule spare: one elimination of everything in the values themselves,
    /// rules first, then the constraints in their order, each as it was merged or, where it was an equation, as that.
    void nameExactly(const EquationSystem& plain) {
        if (std::count(m_hasSpareRule.begin(), m_hasSpareRule.end(), 1) == 0)
            return;
        const std::vector<char> isBeside = tiesWith(m_hasSpareRule);
        std::vector<char> isAsked;
        for (const SketchConstraint& constraint : m_sketch.constraints) {
            const int tie = tieOf(constraint);
            isAsked.push_back(tie >= 0 && isBeside[at(tie)]);
        }
        std::erase_if(m_spares, [&](const auto& spare) { return isAsked[at(spare.first)] != 0; });
        for (const auto& [constraint, count] : sparesInValues(m_sketch, m_system, plain, isAsked))
            m_spares[constraint] += count;
    }

    /// Joins all that constraints tie together: what other constraints have made constant no longer joins parts, but
    /// the equations rest on it.
    void tieParts() {
        for (const int c : bindingConstraints(m_sketch))
            for (const SketchPlace& place : m_sketch.constraints[at(c)].refs)
                if (!m_sketch.entities[at(place.entity)].fixed)
                    m_tied.join(firstFreeOf(m_sketch.constraints[at(c)]), place.entity);
    }

    /// -1: it has only fixed entities.
    int firstFreeOf(const SketchConstraint& constraint) const {
        for (const SketchPlace& place : constraint.refs)
            if (!m_sketch.entities[at(place.entity)].fixed)
                return place.entity;
        return -1;
    }

    int tieOf(const SketchConstraint& constraint) {
        const int first = firstFreeOf(constraint);
        return first < 0 ? -1 : m_tied.find(first);
    }

    /// By the root of what is tied together: one of its parts has the mark, which is meant at the root of the part.
    std::vector<char> tiesWith(const std::vector<char>& markOfPart) {
        std::vector<char> has(m_sketch.entities.size(), 0);
        for (int i = 0; i < static_cast<int>(has.size()); ++i)
            if (markOfPart[at(m_parts.find(i))])
                has[at(m_tied.find(i))] = 1;
        return has;
    }

    /// In a part that cannot move although its first derivatives say so, a spare equation may be what holds it; in
    /// others it may be left as soon as something moves, and takes a freedom away that they do not see.
    bool isNeeded(int constraint) {
        const int tie = tieOf(m_sketch.constraints[at(constraint)]);
        if (tie < 0 || m_askedIfNeeded++ >= kMostNeeded)
            return false;
        std::vector<int> others;
        for (const int c : bindingConstraints(m_sketch)) {
            if (c != constraint && tieOf(m_sketch.constraints[at(c)]) == tie)
                others.push_back(c);
        }
        if (m_isTiedToRigid[at(tie)])
            return canMove(m_sketch, others);
        if (others.size() > kMostShaken || !isLeftSquarely(m_sketch, others, constraint))
            return false;
        --m_freedom[at(m_parts.find(firstFreeOf(m_sketch.constraints[at(constraint)])))];
        return true;
    }

    void listParts() {
        std::map<int, SketchPart> parts;
        for (std::size_t i = 0; i < m_sketch.entities.size(); ++i) {
            if (!m_sketch.entities[i].fixed)
                parts[m_parts.find(static_cast<int>(i))].entities.push_back(static_cast<int>(i));
        }
        for (auto& [root, part] : parts) {
            part.freedom = m_isRigid[at(root)] ? 0 : m_freedom[at(root)];
            for (std::size_t i = 0; i < part.entities.size() && m_countsEntities; ++i) {
                int& freedom = m_diagnosis.freedomOfEntity[at(part.entities[i])];
                freedom = std::min(freedom, part.freedom);
            }
            m_diagnosis.freedom += part.freedom;
            m_diagnosis.parts.push_back(std::move(part));
        }
    }

    const SketchData& m_sketch;
    EquationSystem m_system;
    Parts m_parts;
    Parts m_tied;  ///< of larger parts: all that constraints tie together
    std::vector<int> m_partOfEquation;
    std::vector<double> m_lengths;  ///< per unknown: how much it changes when geometry moves by one
    std::map<int, int> m_spares;    ///< equations that others imply, by constraint
    int m_spareEquations = 0;       ///< how many these are
    // Per entity, meant at the root of its part:
    std::vector<int> m_freedom;
    std::vector<char> m_hasSpare, m_hasSpareRule;
    int m_askedIfNeeded = 0;
    std::vector<char> m_isTiedToRigid;  ///< by the root of what is tied together
    std::vector<char> m_isRigid;        ///< it cannot move, whatever the first derivatives say
    std::vector<double> m_slopes;
    bool m_countsEntities;
    Diagnosis m_diagnosis;
};

/// What is said twice by those that can hold together: a contradiction implies everything.
std::vector<Redundancy> redundantBeside(const SketchData& sketch, const std::vector<ConflictSet>& conflicts) {
    SketchData rest = sketch;
    for (const ConflictSet& conflict : conflicts)
        rest.constraints[at(conflict.constraints.back())].active = false;
    std::vector<Redundancy> redundant = Examination(rest, false).run().redundant;
    std::erase_if(redundant, [&](const Redundancy& redundancy) {
        return std::any_of(conflicts.begin(), conflicts.end(), [&](const ConflictSet& conflict) {
            return std::binary_search(conflict.constraints.begin(), conflict.constraints.end(), redundancy.constraint);
        });
    });
    return redundant;
}

/// What nearly holds and has a freedom of its own is in the way of no others, unless one of these is off by more than a
/// small part of the shapes that it ties: two lines that are as long as they are to be, next to a third one that is to
/// be longer than both.
std::vector<ConflictSet> conflictsIn(const SketchData& sketch, std::span<const double> violations, Budget* budget) {
    const double worst = *std::max_element(violations.begin(), violations.end()), size = sketch.size();
    bool allHold = true, isFarForAll = true;
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c) {
        allHold = allHold && nearlyHolds(sketch, sketch.constraints[c], violations[c], size);
        isFarForAll = isFarForAll && !nearlyHolds(sketch, sketch.constraints[c], worst, size);
    }
    if (isFarForAll && !allHold)
        return findConflicts(sketch, budget);
    SketchData rest = sketch;
    for (const int c : constraintsWithOwnFreedom(sketch))
        if (allHold || nearlyHolds(sketch, sketch.constraints[at(c)], worst, size))
            rest.constraints[at(c)].active = false;
    return findConflicts(rest, budget);
}

}  // namespace

Redundancies redundanciesOf(const SketchData& sketch) {
    Examination examination(sketch, false);
    Redundancies found{examination.run().redundant, 0};
    found.equations = examination.spareEquations();
    return found;
}

Diagnosis diagnose(const SketchData& sketch, bool countsEntities, Budget* budget) {
    Diagnosis diagnosis = Examination(sketch, countsEntities).run();
    const std::vector<double> misses = violationsOf(sketch);
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c) {
        if (misses[c] > diagnosis.worstViolation) {
            diagnosis.worstViolation = misses[c];
            diagnosis.worstConstraint = static_cast<int>(c);
        }
    }
    if (diagnosis.worstViolation > sketch.tolerance * sketch.size())
        diagnosis.conflicts = conflictsIn(sketch, misses, budget);
    if (!diagnosis.conflicts.empty())
        diagnosis.redundant = redundantBeside(sketch, diagnosis.conflicts);
    return diagnosis;
}

}  // namespace holdfast::solver::detail
