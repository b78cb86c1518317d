#include "solver/src/diagnosis/Motion.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <functional>
#include <numeric>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/numerics/Iteration.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

/// A shake is this part of the smallest entity's size, but never so small that it drowns in what an iteration leaves:
/// the root of the tolerance (1e-5 of the sketch) where a solution is a double one.
constexpr double kShake = 1e-2, kLeastShake = 1e-4;

/// What has moved by less than this part of the shake has come back.
constexpr double kMoved = 0.1;

/// One in ten shakes misses a single free direction so much that it seems to come back; five do so once in 1e5.
constexpr int kTries = 5;

/// Shakes that show a square: large enough that it stands out of what iterations leave.
constexpr double kSquareShake = 5.0;

/// What is off by the square of the way is off four times as much at the double of it, or so; twice as much would be
/// what first derivatives see, and any number what iterations leave.
constexpr double kLeastSquare = 2.8, kMostSquare = 8.0;

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

    /// What `missNow` says after a large shake in a direction of its own, and after its double; nothing where the
    /// equations do not hold again. The values are as before afterwards.
    std::optional<std::pair<double, double>> missesAfterShakes(const std::function<double()>& missNow) {
        const std::vector<double> before = m_subproblem.read();
        const double shake = kSquareShake * wayOfShake(m_sketch, m_system, m_subproblem.entities());
        const std::vector<double> first = shaken(before, shake);
        const auto missAt = [&](double times) {
            std::vector<double> x = before;
            for (std::size_t j = 0; j < x.size(); ++j)
                x[j] += times * (first[j] - before[j]);
            std::optional<double> miss;
            if (restoreAt(x) && !findFlaw(m_sketch, m_system, m_subproblem.entities()))
                miss = missNow();
            m_subproblem.write(before);
            return miss;
        };
        const std::optional<double> once = missAt(1.0), twice = once ? missAt(2.0) : once;
        if (!twice)
            return std::nullopt;
        return std::pair(*once, *twice);
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

/// All unknowns, put where merged values agree.
std::vector<int> onEquations(EquationSystem& system) {
    for (int u = 0; u < system.unknownCount; ++u)
        system.assign(u, system.meanOf(u));
    std::vector<int> unknowns(at(system.unknownCount));
    std::iota(unknowns.begin(), unknowns.end(), 0);
    return unknowns;
}

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

bool isLeftSquarely(const SketchData& sketch, std::span<const int> others, int constraint) {
    std::vector<int> all(others.begin(), others.end());
    const auto place = all.insert(std::lower_bound(all.begin(), all.end(), constraint), constraint);
    const std::size_t asked = static_cast<std::size_t>(place - all.begin());
    Extract extract(sketch, all);
    SketchData moved = extract.sketch();
    extract.sketch().constraints[asked].active = false;
    EquationSystem system = buildSystem(extract.sketch());
    const std::vector<int> unknowns = onEquations(system);
    if (unknowns.empty())
        return false;
    Shaker shaker(extract.sketch(), system, unknowns);
    const double least = moved.slack();
    const auto missNow = [&] {
        std::copy_n(system.values.begin(), moved.values.size(), moved.values.begin());
        return violationsOf(moved)[asked];
    };
    for (int i = 0; i < kTries; ++i) {
        const auto misses = shaker.missesAfterShakes(missNow);
        if (!misses || misses->first <= least || misses->second < kLeastSquare * misses->first ||
            misses->second > kMostSquare * misses->first)
            return false;
    }
    return true;
}

bool canMove(const SketchData& sketch, std::span<const int> constraints) {
    const Extract extract(sketch, constraints);
    EquationSystem system = buildSystem(extract.sketch());
    const std::vector<int> unknowns = onEquations(system);
    return !unknowns.empty() && shake(extract.sketch(), system, unknowns) == Shaking::moved;
}

}  // namespace holdfast::solver::detail
