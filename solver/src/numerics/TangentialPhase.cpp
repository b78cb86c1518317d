#include "solver/src/numerics/TangentialPhase.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "solver/src/numerics/Stepper.h"

namespace holdfast::solver::detail {

namespace {

constexpr double kNearEnough = 10.0;  // movement, in tolerances, below which sliding ends
constexpr double kContracts = 0.3;    // what remains of a whole movement, at most, while sliding by tangents alone
constexpr double kExceeds = 1.2;      // the same for a shortened one, as a multiple of what was left out

double pullOf(const Pull& pull, std::span<const double> x) {
    double sum = 0.0;
    for (std::size_t j = 0; j < x.size(); ++j)
        sum += pull.weights[j] * (x[j] - pull.targets[j]) * (x[j] - pull.targets[j]);
    return 0.5 * sum;
}

}  // namespace

bool hasCarriedTo(Subproblem& subproblem, const Pull& pull, std::span<const double> x) {
    const Subproblem::Carried& carried = subproblem.carried();
    if (carried.weights != pull.weights ||
        !(carried.isCurved ? subproblem.curvature().hasFactors() : subproblem.linearSolver().hasFactors()))
        return false;
    for (std::size_t j = 0; j < x.size(); ++j)
        if (!(std::abs(x[j] - carried.x[j]) * subproblem.metric()[j] <= subproblem.system().aim))
            return false;
    return true;
}

namespace {

/// Of collapses on the way: one that ended at a border can be taken up again.
constexpr double kMargin = 2.0;

/// The way along the equations from one point to the next.
class Slider {
public:
    /// x is written, and the residual there is known.
    Slider(Subproblem& subproblem, const Pull& pull, std::vector<double>& x, const IterationLimits& limits,
           double residual)
        : m_subproblem(subproblem),
          m_system(subproblem.system()),
          m_pull(pull),
          m_x(x),
          m_limits(limits),
          m_stepper(subproblem, pull.weights),
          m_factorWorkBefore(subproblem.factorWork()),
          m_pullNow(pullOf(pull, x)),
          m_residual(std::max(residual, kSharp * m_system.aim)),
          m_residualNow(residual) {
        m_isGuarded = m_limits.isSound && m_limits.isSound(1.0);
        m_hasCarried = hasCarriedTo(subproblem, pull, x);
    }

    /// Writes the point that was reached; the residual there.
    double finish() {
        m_subproblem.write(m_x);
        return m_residualNow;
    }

    /// Factors have cost what the nearest point is worth: any other point of the way holds as well.
    bool isSpent() const {
        const long most = std::max(kMostSliding, kLeastSliding * m_subproblem.workOfIteration());
        return m_subproblem.factorWork() - m_factorWorkBefore >= most;
    }

    /// Every point that was taken is sound, the first one included.
    bool isGuarded() const { return m_isGuarded; }

    /// The last step that would have come nearer was not sound.
    bool isBarred() const { return m_isBarred; }

    /// The factors at hand are those that found the nearest point: a search that begins near it begins with them. With
    /// the way from where they were made, searches take more and more solves; when these have cost what new factors
    /// do, new ones are made.
    void carryOver() {
        Subproblem::Carried& carried = m_subproblem.carried();
        carried.weights.clear();
        if (m_isStale || m_multiplier.empty())
            return;
        int first = 0, excess = 0;
        if (m_isCarried) {
            first = carried.solves > 0 ? carried.solves : m_stepper.solves();
            excess = carried.excess + std::max(0, m_stepper.solves() - first);
        }
        if (excess >= kWorthFactors) {
            m_stepper.linearise(m_x);
            if (m_stepper.isCurved())
                m_stepper.useHessian(m_multiplier);
            if (!m_stepper.factorise(kLeastDamping))
                return;
            first = excess = 0;
            correct();
        }
        carried = {.weights = m_pull.weights,
                   .targets = m_pull.targets,
                   .x = m_x,
                   .multiplier = m_multiplier,
                   .residual = m_residualNow,
                   .isCurved = m_stepper.isCurved(),
                   .solves = first,
                   .excess = excess,
                   .change = {},
                   .bend = {},
                   .multiplierBend = {}};
        if (m_isCarried && !m_change.empty()) {
            carried.change = std::move(m_change);
            carried.bend = moved(m_x, m_foretold, -1.0);
            carried.multiplierBend = moved(m_multiplier, m_foretoldMultiplier, -1.0);
        }
    }

    /// Old factors leave what they hardly see. New ones show it.
    void correct() {
        lookedAt(m_x);
        const auto way = m_stepper.chordStep(m_wish, m_multiplier);
        if (hasArrived(way, m_stepper.reach(way)))
            return;
        addMultiplier();
        accepts(moved(m_x, way, 1.0), 0.0);
    }

    enum class Outcome { moved, nearest, stuck };

    /// Steps along the tangents first. Where they do not contract, the bends of the equations come in.
    Outcome advance() {
        const bool wasCurved = m_isCurved;
        const Outcome outcome = step();
        if (outcome == Outcome::stuck && !wasCurved && !m_hasComeBack) {
            m_isCurved = true;
            return step();
        }
        return outcome;
    }

    /// Near the nearest point the pull is so flat that no step can be seen to help: half the digits of the place are
    /// still open. Steps that know the bends are taken on trust then, as long as they shrink.
    void sharpen() {
        double last = kTrusted * m_system.size;
        for (int i = 0; i < kMostSharpening && last > m_system.aim && maySpend(m_limits.budget); ++i) {
            m_stepper.linearise(m_x);
            std::transform(m_pull.targets.begin(), m_pull.targets.end(), m_x.begin(), m_wish.begin(), std::minus<>());
            if (!m_multiplier.empty())
                m_stepper.useHessian(m_multiplier);
            if (!m_stepper.factorise(kLeastDamping))
                return;
            const auto found = m_stepper.tangentialStep(m_wish);
            const std::vector<double> way(found.begin(), found.end());
            m_multiplier.assign(m_stepper.multiplier().begin(), m_stepper.multiplier().end());
            const double reach = m_stepper.reach(way);
            if (!(reach < last) || !trusts(moved(m_x, way, 1.0)))
                return;
            last = kShrinks * reach;
        }
    }

private:
    bool trusts(std::vector<double> next) {
        m_isStale = false;
        if (!returnsByPolishing(next) || (m_isGuarded && !m_limits.isSound(1.0)))
            return false;
        m_residualNow = m_residualOfNext;
        m_x = std::move(next);
        return true;
    }

    Outcome step() {
        if (std::exchange(m_hasCarried, false)) {
            m_stepper.takeFactors(m_subproblem.carried().isCurved);
            m_isCarried = isNearestWithCarried();
            if (m_isCarried)
                return Outcome::nearest;
            m_stepper.takeFactors(false);
        }
        look();
        if (std::vector<double> way = chord(); !way.empty())
            return followed(way, m_stepper.reach(way));
        m_isStale = false;
        if (m_isCurved && !m_multiplier.empty())
            m_stepper.useHessian(m_multiplier);
        if (!m_stepper.factorise(kLeastDamping))
            return Outcome::stuck;
        const auto found = m_stepper.tangentialStep(m_wish);
        m_multiplier.assign(m_stepper.multiplier().begin(), m_stepper.multiplier().end());
        const std::vector<double> way(found.begin(), found.end());
        const double reach = m_stepper.reach(way);
        if (reach > m_expected && !m_isCurved && !hasArrived(way, reach)) {
            m_isCurved = true;
            return step();
        }
        return followed(way, reach);
    }

    /// What the step with factors at hand says that the multiplier changes by.
    void addMultiplier() {
        for (std::size_t k = 0; k < m_multiplier.size(); ++k)
            m_multiplier[k] += m_stepper.multiplier()[k];
    }

    /// Slopes, residuals and wishes of where it is.
    void look() { lookFrom(m_x); }
    void lookFrom(std::span<const double> x) {
        m_stepper.linearise(x);
        lookedAt(x);
    }
    void lookedAt(std::span<const double> x) {
        m_wish.resize(x.size());
        std::transform(m_pull.targets.begin(), m_pull.targets.end(), x.begin(), m_wish.begin(), std::minus<>());
    }

    /// From the nearest point of an earlier search, with its factors: steps towards the targets and back to the
    /// equations at once, as long as they shrink. Only what they come to counts; it has to hold like any other point.
    /// False leaves everything as it was.
    bool isNearestWithCarried() {
        const Subproblem::Carried& carried = m_subproblem.carried();
        m_multiplier = carried.multiplier;
        m_wish.resize(m_x.size());
        std::transform(m_pull.targets.begin(), m_pull.targets.end(), carried.targets.begin(), m_wish.begin(),
                       std::minus<>());
        auto way = m_stepper.followingStep(m_wish);
        double reach = m_stepper.reach(way), last = 0.0;
        if (hasArrived(way, reach))
            return true;
        m_change = m_wish;
        m_foretold = moved(m_x, way, 1.0);
        m_foretoldMultiplier = moved(m_multiplier, m_stepper.multiplier(), 1.0);
        std::vector<double> next = m_x;
        double bent = 0.0;  // by how much a guess has made the next step shorter
        if (const double share = shareOfLastChange(); share > 0.0) {
            next = moved(m_x, carried.bend, share);
            m_multiplier = moved(m_multiplier, carried.multiplierBend, share);
            bent = share * m_stepper.reach(carried.bend);
        }
        while (reach <= (last > 0.0 ? kContracts * last : m_limits.stride * m_system.size)) {
            addMultiplier();
            for (std::size_t j = 0; j < next.size(); ++j)
                next[j] += way[j];
            if (last > 0.0 && std::max(reach, bent) / last * reach <= kNearEnough * m_system.tolerance)
                return accepts(std::move(next), 0.0);
            if (last > 0.0)
                bent = 0.0;
            if (++m_carriedSteps == kMostCarried)
                return false;
            lookFrom(next);
            way = m_stepper.chordStep(m_wish, m_multiplier);
            last = std::exchange(reach, m_stepper.reach(way));
        }
        return false;
    }

    /// How much of what the targets changed by in the search before they change by now, in its direction; where they
    /// go on as they went, the equations will bend the way as they did. 0: nothing is known of that.
    double shareOfLastChange() const {
        const Subproblem::Carried& carried = m_subproblem.carried();
        double along = 0.0, whole = 0.0;
        for (std::size_t j = 0; j < carried.change.size(); ++j) {
            along += m_pull.weights[j] * m_change[j] * carried.change[j];
            whole += m_pull.weights[j] * carried.change[j] * carried.change[j];
        }
        return along > 0.0 && along <= kMostAlike * whole ? along / whole : 0.0;
    }

    bool hasArrived(std::span<const double> way, double reach) const {
        return reach <= kNearEnough * m_system.tolerance || squared(way) <= kRounding * m_pullNow;
    }

    Outcome followed(std::span<const double> way, double reach) {
        return hasArrived(way, reach) ? Outcome::nearest : follow(way, reach);
    }

    /// A step with the factors at hand; none where the last step was not taken as a whole or this one is longer than
    /// new factors would be expected to make it.
    std::vector<double> chord() {
        if (m_isStale || m_isCurved || m_whole <= 0.0)
            return {};
        const auto found = m_stepper.chordStep(m_wish, m_multiplier);
        if (!(m_stepper.reach(found) <= kContracts * m_whole))
            return {};
        addMultiplier();
        return {found.begin(), found.end()};
    }

    /// The whole step, or a part of it. Where the last step could only be taken in a small part, this one is hardly
    /// taken in a much larger one.
    Outcome follow(std::span<const double> step, double reach) {
        const double whole = std::min(1.0, m_limits.stride * m_system.size / reach);
        double factor = std::min(1.0, kMorePart * m_part) * whole;
        for (int i = 0; factor >= kLeastPart * whole; ++i, factor *= 0.5) {
            if (!accepts(moved(m_x, step, factor), i % 2 == 0 ? factor * reach : 0.0)) {
                if (m_hasComeBack)
                    break;
                continue;
            }
            m_isCurved = m_isCurved || factor < whole;
            m_part = factor / whole;
            m_expected = std::max(kContracts, kExceeds * (1.0 - factor)) * reach;
            const double next = reach / std::exchange(m_whole, factor < 1.0 ? 0.0 : reach) * reach;
            return next <= kNearEnough * m_system.tolerance ? Outcome::nearest : Outcome::moved;
        }
        return Outcome::stuck;
    }

    /// Length in the measure of the pull.
    double squared(std::span<const double> way) const {
        double sum = 0.0;
        for (std::size_t j = 0; j < way.size(); ++j)
            sum += m_pull.weights[j] * way[j] * way[j];
        return sum;
    }

    /// Brings the point back to the equations and takes it if it is nearer to the targets. A reach says how far away it
    /// is and that new factors are worth it; 0: they are not.
    bool accepts(std::vector<double> next, double reach) {
        if (!returnsByPolishing(next)) {
            if (reach == 0.0 || isSpent() || !returnsByRestoring(next))
                return false;
            m_hasComeBack = reachTo(next) <= kComeBack * reach;
            if (m_hasComeBack)
                return false;
        }
        const double then = pullOf(m_pull, next);
        if (!(then < m_pullNow))
            return false;
        m_isBarred = m_isGuarded && !m_limits.isSound(kMargin);
        if (m_isBarred)
            return false;
        m_pullNow = then;
        m_residualNow = m_residualOfNext;
        m_x = std::move(next);
        return true;
    }

    double reachTo(std::span<const double> next) {
        std::vector<double> way(m_x.size());
        std::transform(next.begin(), next.end(), m_x.begin(), way.begin(), std::minus<>());
        return m_stepper.reach(way);
    }

    bool returnsByPolishing(std::vector<double>& next) {
        if (m_isStale) {
            m_stepper.linearise(m_x);
            m_stepper.factorise(kLeastDamping);
            m_isStale = false;
        }
        m_stepper.evaluate(next);
        const bool holds = m_stepper.polish(next, kPolishing, kSharper * m_residual);
        m_residualOfNext = largest(m_stepper.residual);
        return holds && m_residualOfNext <= m_residual;
    }

    /// A long step bends too far for the factors at hand: new ones bring it back.
    bool returnsByRestoring(std::vector<double>& next) {
        IterationLimits limits;
        limits.restoring = kMostRestoring;
        limits.lame = kMostLame;
        limits.budget = m_limits.budget;
        m_isStale = true;
        m_residualOfNext = restore(m_subproblem, m_pull.weights, next, limits).residual;
        return m_residualOfNext <= m_residual;
    }

    static constexpr double kLeastPart = 1.0 / 64;  // of a step: nothing is damped here
    static constexpr double kMorePart = 4.0;        // than of the last step is tried of this one
    static constexpr int kMostRestoring = 10;       // iterations of one point: beyond, a shorter step is cheaper
    static constexpr int kMostLame = 2;             // of them, in a row, that hardly help
    static constexpr int kMostSharpening = 8;
    /// Unknowns and rows gone through in factorisations: some tenths of a second; and factorisations that a search may
    /// make at least, however large it is.
    static constexpr long kMostSliding = 2'000'000, kLeastSliding = 40;
    static constexpr int kMostCarried = 6;      // steps with an earlier search's factors: beyond, new ones cost less
    static constexpr double kMostAlike = 2.0;   // changes that are longer have another bend
    static constexpr int kWorthFactors = 4;     // solves that take as long as new slopes and factors
    static constexpr int kPolishing = 6;        // steps with factors at hand
    static constexpr double kSharper = 0.3;     // of the residual that a point may have: there is room to grow again
    static constexpr double kTrusted = 1e-4;    // of the size: farther away the nearest point is not at hand
    static constexpr double kShrinks = 0.5;     // what a step may be of the one before; Newton's shrink far faster
    static constexpr double kComeBack = 1e-2;   // of a step: less is where it began, as at a double root
    static constexpr double kRounding = 1e-14;  // of the pull: no step that promises less can be seen to help

    Subproblem& m_subproblem;
    const EquationSystem& m_system;
    const Pull& m_pull;
    std::vector<double>& m_x;
    const IterationLimits& m_limits;
    Stepper m_stepper;
    long m_factorWorkBefore;  ///< of the subproblem
    std::vector<double> m_wish, m_multiplier;
    std::vector<double> m_change;  ///< of the targets since the carried point was found
    /// The nearest point and its multiplier as carried factors foretell them.
    std::vector<double> m_foretold, m_foretoldMultiplier;
    double m_whole = 0.0;  ///< reach of the step before if it was taken as a whole; steps shrink by about one factor
    double m_part = 1.0;   ///< of the step before that was taken
    double m_expected = std::numeric_limits<double>::max();  ///< what the step before promised of the next one's reach
    double m_pullNow;
    double m_residual;  ///< that a point may have
    double m_residualNow, m_residualOfNext = 0.0;
    bool m_isGuarded = false;
    bool m_isBarred = false;  ///< the last step that came nearer was not sound
    bool m_hasCarried = false;
    bool m_isCarried = false;  ///< the nearest point was found with an earlier search's factors
    int m_carriedSteps = 0;
    bool m_isCurved = false;
    bool m_hasComeBack = false;  ///< the slopes show a freedom that the equations do not have
    bool m_isStale = false;      ///< the factors are no longer those of m_x
};

/// Unknowns that no equation reads are nearest to their targets at them, and are brought there in one step: unless it
/// is too long for one, or what they come to is not sound.
std::optional<IterationReport> goFreely(Subproblem& subproblem, const Pull& pull, std::vector<double>& x,
                                        const IterationLimits& limits) {
    if (subproblem.rowCount() > 0 || limits.sliding == 0)
        return std::nullopt;
    const double most = limits.stride * subproblem.system().size;
    for (std::size_t j = 0; j < x.size(); ++j)
        if (!(std::abs(pull.targets[j] - x[j]) * subproblem.metric()[j] <= most))
            return std::nullopt;
    const bool isGuarded = limits.isSound && limits.isSound(1.0);
    subproblem.write(pull.targets);
    if ((isGuarded && !limits.isSound(kMargin)) || !maySpend(limits.budget)) {
        subproblem.write(x);
        return std::nullopt;
    }
    x = pull.targets;
    return IterationReport{.isSatisfied = true, .isNearest = true, .isSound = isGuarded, .iterations = 1};
}

}  // namespace

IterationReport slide(Subproblem& subproblem, const Pull& pull, std::vector<double>& x, const IterationLimits& limits,
                      double residual) {
    if (const auto free = goFreely(subproblem, pull, x, limits))
        return *free;
    Slider slider(subproblem, pull, x, limits, residual);
    IterationReport report;
    report.isSatisfied = true;
    for (auto outcome = Slider::Outcome::moved; outcome == Slider::Outcome::moved && report.iterations < limits.sliding;
         ++report.iterations) {
        if (slider.isSpent() || !maySpend(limits.budget))
            break;
        outcome = slider.advance();
        report.isNearest = outcome == Slider::Outcome::nearest;
        report.isBarred = outcome == Slider::Outcome::stuck && slider.isBarred();
    }
    if (limits.sharpens && report.isNearest)
        slider.sharpen();
    else if (report.isNearest)
        slider.carryOver();
    report.residual = slider.finish();
    report.isSound = slider.isGuarded();
    return report;
}

}  // namespace holdfast::solver::detail
