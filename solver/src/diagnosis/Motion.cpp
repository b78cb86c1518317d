#include "solver/src/diagnosis/Motion.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numeric>
#include <random>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/numerics/Iteration.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// A shake is this part of the smallest entity's size, but never so small that it drowns in what an iteration leaves:
/// the root of the tolerance (1e-5 of the sketch) where a solution is a double one.
constexpr double kShake = 1e-2, kLeastShake = 1e-4;

/// What has moved by less than this part of the shake has come back.
constexpr double kMoved = 0.1;

/// One in ten shakes misses a single free direction so much that it seems to come back; five do so once in 1e5.
constexpr int kTries = 5;

class Shaker {
public:
    Shaker(const SketchData& sketch, EquationSystem& system, std::span<const int> unknowns)
        : m_sketch(sketch), m_system(system), m_subproblem(system, unknowns) {
        for (const int u : unknowns) {
            m_weights.push_back(system.weightOf(u));
            // Contacts are no geometry: they follow.
            m_isGeometry.push_back(system.valuesOfUnknown[u].front() < system.figureValueCount);
        }
    }

    Shaking run() {
        const std::vector<double> before = m_subproblem.read();
        std::vector<double> start = before;
        if (!restoreAt(start))
            return giveUp(before, Shaking::unknown);
        const double shake = wayOfShake(m_sketch, m_system, m_subproblem.entities());
        Shaking outcome = Shaking::unknown;
        for (int i = 0; i < kTries; ++i) {
            std::vector<double> x = shaken(start, shake);
            if (!restoreAt(x) || findFlaw(m_sketch, m_system, m_subproblem.entities()))
                continue;
            if (wayBetween(start, x) > kMoved * shake)
                return Shaking::moved;
            outcome = Shaking::cameBack;
        }
        return giveUp(before, outcome);
    }

private:
    Shaking giveUp(const std::vector<double>& before, Shaking outcome) {
        m_subproblem.write(before);
        return outcome;
    }

    bool restoreAt(std::vector<double>& x) {
        IterationLimits limits;
        limits.mayDouble = false;
        const bool holds = restore(m_subproblem, m_weights, x, limits).isSatisfied;
        m_subproblem.write(x);
        return holds;
    }

    std::vector<double> shaken(std::vector<double> x, double shake) {
        for (std::size_t j = 0; j < x.size(); ++j) {
            const double part = 2.0 * static_cast<double>(m_random()) / static_cast<double>(std::mt19937::max()) - 1.0;
            x[j] += m_isGeometry[j] ? shake * part / std::sqrt(m_weights[j]) : 0.0;
        }
        return x;
    }

    double wayBetween(const std::vector<double>& a, const std::vector<double>& b) const {
        double square = 0.0;
        for (std::size_t j = 0; j < a.size(); ++j)
            square += m_isGeometry[j] ? m_weights[j] * (a[j] - b[j]) * (a[j] - b[j]) : 0.0;
        return std::sqrt(square);
    }

    const SketchData& m_sketch;
    EquationSystem& m_system;
    Subproblem m_subproblem;
    std::vector<double> m_weights;
    std::vector<char> m_isGeometry;
    std::mt19937 m_random{1};
};

}  // namespace

double wayOfShake(const SketchData& sketch, const EquationSystem& system, std::span<const int> entities) {
    double smallest = system.size;
    for (const int entity : entities)
        smallest = std::min(smallest, sizeOf(sketch, {entity, -1}, system.size));
    return std::max(kShake * smallest, kLeastShake * system.size);
}

Shaking shake(const SketchData& sketch, EquationSystem& system, std::span<const int> unknowns) {
    assert(!unknowns.empty());
    return Shaker(sketch, system, unknowns).run();
}

bool canMove(const SketchData& sketch, std::span<const int> constraints) {
    const Extract extract(sketch, constraints);
    EquationSystem system = buildSystem(extract.sketch());
    for (int u = 0; u < system.unknownCount; ++u)
        system.assign(u, system.meanOf(u));
    std::vector<int> unknowns(at(system.unknownCount));
    std::iota(unknowns.begin(), unknowns.end(), 0);
    return !unknowns.empty() && shake(extract.sketch(), system, unknowns) == Shaking::moved;
}

}  // namespace holdfast::solver::detail
