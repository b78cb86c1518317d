#include "solver/src/dragging/DragPull.h"

#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// A handle that is held back pulls no harder than others that have moved by this many times the sketch's size, and
/// by a little more for each unknown. Without a limit everything would be flung about for a millionth of the way.
constexpr double kForce = 1e3, kForceOfOne = 10.0;

/// Pulls that differ by less than this factor are not tried one after the other.
constexpr double kSamePull = 1.5;
constexpr int kMostPulls = 6;

/// A miss below this part of the sketch's size may be due to the handles' compliance alone.
constexpr double kCompliance = 1e-3;

}  // namespace

Attempt DragPull::approach() {
    m_region.triedFrom = m_region.subproblem->read();
    m_region.triedEmphasis = m_region.emphasis;
    const std::vector<double>& before = m_region.triedFrom;
    Attempt attempt = m_region.workspace.trySettling(*m_region.subproblem, before, m_region.careful(), m_region.pull());
    for (int i = 0; i < kMostPulls && attempt.isSolved; ++i) {
        const double wanted = wantedEmphasis(), ratio = wanted / m_region.emphasis;
        if (ratio < kSamePull && ratio > 1.0 / kSamePull)
            break;
        // What is barred has not flung others about: it need not begin anew.
        const bool beginsAnew = ratio < 1.0 && !attempt.isBarred;
        attempt = pullAgain(attempt, wanted, beginsAnew ? before : m_region.subproblem->read());
        if (m_region.emphasis != wanted)
            break;
        if (beginsAnew)
            m_region.triedEmphasis = wanted;
    }
    if (attempt.isSolved && !m_region.isMet() && m_region.miss() <= kCompliance * m_region.workspace.system().size)
        attempt.iterations += overcomeCompliance();
    return attempt;
}

/// Full while the handles arrive, else so that the pull is limited.
double DragPull::wantedEmphasis() {
    const double force = (kForce + kForceOfOne * m_region.subproblem->columnCount()) * m_region.workspace.system().size;
    const double full = force / (DragRegion::kHandleEmphasis * DragRegion::kHandleEmphasis);
    const double missNow = m_region.miss();
    constexpr double almost = 100.0;
    return missNow < almost * full ? DragRegion::kHandleEmphasis : std::sqrt(force / missNow);
}

Attempt DragPull::pullAgain(const Attempt& attempt, double wanted, const std::vector<double>& from) {
    const std::vector<double> found = m_region.subproblem->read();
    const double old = std::exchange(m_region.emphasis, wanted);
    m_region.wishGoals();
    Attempt again = m_region.workspace.trySettling(*m_region.subproblem, from, m_region.careful(), m_region.pull());
    again.iterations += attempt.iterations;
    if (again.isSolved)
        return again;
    m_region.emphasis = old;
    m_region.wishGoals();
    m_region.subproblem->write(found);
    return attempt;
}

/// What is left of a miss when many others hold back a little each: the wishes are carried on by it, once.
int DragPull::overcomeCompliance() {
    const EquationSystem& system = m_region.workspace.system();
    const std::vector<double> found = m_region.subproblem->read();
    const double missBefore = m_region.miss();
    for (std::size_t i = 0; i < m_region.goals.size(); ++i)
        m_region.workspace.wish(m_region.handles[i], 2 * m_region.goals[i] - system.values[at(m_region.handles[i])],
                                m_region.emphasis);
    const Attempt carried =
        m_region.workspace.trySettling(*m_region.subproblem, found, m_region.careful(), m_region.pull());
    if (!carried.isSolved || m_region.miss() > missBefore)
        m_region.subproblem->write(found);
    m_region.wishGoals();
    return carried.iterations;
}

}  // namespace holdfast::solver::detail
