#include "solver/src/diagnosis/Diagnose.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <utility>

#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/diagnosis/GaussianElimination.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

/// Elements joined into parts: the root of an element is the smallest number of its part.
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

class Examination {
public:
    Examination(const SketchData& sketch, bool countsEntities)
        : m_sketch(sketch),
          m_system(buildSystem(sketch)),
          m_parts(sketch.entities.size()),
          m_countsEntities(countsEntities) {
        putOnEquations();
    }

    Diagnosis run() {
        joinParts();
        countFreedom();
        findSpares();
        listParts();
        return std::move(m_diagnosis);
    }

private:
    /// Slopes are taken where merged values agree.
    void putOnEquations() {
        for (int u = 0; u < m_system.unknownCount; ++u)
            m_system.assign(u, m_system.meanOf(u));
        for (std::size_t v = 0; v < m_system.values.size(); ++v) {
            if (m_system.links[v].unknown < 0)
                m_system.values[v] = m_system.links[v].offset;
        }
    }

    /// The element that an unknown belongs to; -1 for a contact, which its equation connects.
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

    /// Joins what the equation reads; returns an element of it, -1 when all of it is constant.
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

    void countFreedom() {
        m_freedom.assign(m_sketch.entities.size(), 0);
        for (int u = 0; u < m_system.unknownCount; ++u) {
            if (const int entity = entityOfUnknown(u); entity >= 0)
                ++m_freedom[at(m_parts.find(entity))];
        }
    }

    std::vector<std::pair<int, double>> rowOf(const Equation& equation, std::size_t row) const {
        std::vector<std::pair<int, double>> entries;
        const auto inputs = m_system.set.inputsOf(equation);
        for (std::size_t k = 0; k < inputs.size(); ++k) {
            const ValueLink& link = m_system.links[at(inputs[k])];
            const double slope = m_slopes[row * inputs.size() + k];
            if (link.unknown >= 0 && slope != 0.0)
                entries.emplace_back(link.unknown, link.sign * slope / std::sqrt(m_system.weightOf(link.unknown)));
        }
        return entries;
    }

    /// Contacts are unknowns of their own part: an equation that only fixes contacts takes no freedom away.
    void findSpares() {
        GaussianElimination elimination(m_system.unknownCount);
        std::map<int, int> spares;
        for (const SpareCount& spare : m_system.spares)
            spares[spare.constraint] += spare.equations;
        for (std::size_t e = 0; e < m_system.set.equations.size(); ++e) {
            const Equation& equation = m_system.set.equations[e];
            linearise(m_system.set, equation, m_system.values, m_slopes);
            for (std::size_t row = 0; row < equation.rows; ++row) {
                if (!elimination.add(rowOf(equation, row)))
                    ++spares[equation.constraint];
                else if (m_partOfEquation[e] >= 0)
                    --m_freedom[at(m_parts.find(m_partOfEquation[e]))];
            }
            countContacts(equation, m_partOfEquation[e]);
        }
        if (m_countsEntities)
            countFreedomOfEntities(elimination);
        spares.erase(-1);
        nameRedundant(spares);
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
        std::vector<std::vector<std::pair<int, double>>> rows;
        for (const SketchEntity& entity : m_sketch.entities) {
            rows.clear();
            for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v) {
                if (const int unknown = m_system.links[at(v)].unknown; unknown >= 0)
                    rows.push_back({{unknown, 1.0}});
            }
            m_diagnosis.freedomOfEntity.push_back(elimination.countIndependent(rows));
        }
    }

    void nameRedundant(const std::map<int, int>& spares) {
        std::vector<int> rows(m_sketch.constraints.size(), 0);
        const EquationSystem plain = buildPlainSystem(m_sketch, bindingConstraints(m_sketch));
        for (const Equation& equation : plain.set.equations) {
            if (equation.constraint >= 0 && !equation.isImplied)
                rows[at(equation.constraint)] += equation.rows;
        }
        for (const auto& [constraint, count] : spares)
            m_diagnosis.redundant.push_back({constraint, count, count >= rows[at(constraint)]});
    }

    void listParts() {
        std::map<int, SketchPart> parts;
        for (std::size_t i = 0; i < m_sketch.entities.size(); ++i) {
            if (!m_sketch.entities[i].fixed)
                parts[m_parts.find(static_cast<int>(i))].entities.push_back(static_cast<int>(i));
        }
        for (auto& [root, part] : parts) {
            part.freedom = m_freedom[at(root)];
            m_diagnosis.freedom += part.freedom;
            m_diagnosis.parts.push_back(std::move(part));
        }
    }

    const SketchData& m_sketch;
    EquationSystem m_system;
    Parts m_parts;
    std::vector<int> m_partOfEquation;
    std::vector<int> m_freedom;  ///< per element, meant at the root of its part
    std::vector<double> m_slopes;
    bool m_countsEntities;
    Diagnosis m_diagnosis;
};

/// What is said twice by those that can hold together: a contradiction implies everything.
std::vector<Redundancy> redundantBeside(const SketchData& sketch, const std::vector<std::vector<int>>& conflicts) {
    SketchData rest = sketch;
    for (const std::vector<int>& conflict : conflicts)
        rest.constraints[at(conflict.back())].active = false;
    std::vector<Redundancy> redundant = Examination(rest, false).run().redundant;
    std::erase_if(redundant, [&](const Redundancy& redundancy) {
        return std::any_of(conflicts.begin(), conflicts.end(), [&](const std::vector<int>& conflict) {
            return std::binary_search(conflict.begin(), conflict.end(), redundancy.constraint);
        });
    });
    return redundant;
}

}  // namespace

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
        diagnosis.conflicts = findConflicts(sketch, budget);
    if (!diagnosis.conflicts.empty())
        diagnosis.redundant = redundantBeside(sketch, diagnosis.conflicts);
    return diagnosis;
}

}  // namespace holdfast::solver::detail
