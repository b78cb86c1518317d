#include "solver/src/solving/Drag.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"
#include "solver/src/solving/SolverState.h"

namespace holdfast::solver::detail {

namespace {

/// Weight of a handle against other values: compliance 1e-9 in the squares.
constexpr double kHandleEmphasis = 3e4;

/// A handle that is held back pulls no harder than others that have moved by this many times the sketch's size, and
/// by a little more for each unknown. Without a limit everything would be flung about for a millionth of the way.
constexpr double kForce = 1e3, kForceOfOne = 10.0;

/// Pulls that differ by less than this factor are not tried one after the other.
constexpr double kSamePull = 1.5;
constexpr int kMostPulls = 6;

/// Handles closer to their goals than this part of the sketch's size have reached them.
constexpr double kReached = 1e-7;

/// A miss below this part of the sketch's size may be due to the handles' compliance alone.
constexpr double kCompliance = 1e-3;

/// Wider rings are worth it when they bring the handles nearer by this much.
constexpr double kWorthwhile = 0.99;

/// Longest movement in one iteration, as a part of the sketch's size.
constexpr double kStride = 0.02;

/// Others that moved this much farther than the handles may be on another branch.
constexpr double kFarFetched = 2.0;

/// How much a hopeless miss has to grow, or its goal to move in parts of it, before wider rings are tried again.
constexpr double kPatience = 2.0, kPatienceSideways = 0.25;

/// Strides that one step is worth at most.
constexpr double kMostStrides = 2000.0;

constexpr int kFirstRings = 2;

/// Rounds of a landing, each of which takes away all but a ten-thousandth or less of the handles' compliance.
constexpr int kMostRounds = 5;

/// Handles within this part of the sketch's size are where they should be: rounding of some hundred coordinates.
constexpr double kArrived = 1e-12;

}  // namespace

struct DragSession::State {
    SketchData& sketch;
    std::vector<int> handles;
    Scope reach;
    SolverState workspace;
    std::vector<int> seeds;
    std::vector<double> goals;
    std::unique_ptr<Subproblem> subproblem;
    int rings = kFirstRings;
    bool isWidest = false;
    double emphasis = kHandleEmphasis;  ///< of the handles
    double hopelessMiss = 0.0;          ///< the miss at which not even the whole part could help
    std::vector<double> hopelessGoals;

    State(SketchData& f, std::vector<int> h, Scope r, const KeptSizes& sizes)
        : sketch(f),
          handles(std::move(h)),
          reach(r),
          workspace(sketch, buildSystem(sketch, bindingConstraints(sketch), sizes)) {
        for (const int v : handles) {
            if (const int unknown = workspace.system().links[at(v)].unknown; unknown >= 0)
                seeds.push_back(unknown);
        }
        std::sort(seeds.begin(), seeds.end());
        seeds.erase(std::unique(seeds.begin(), seeds.end()), seeds.end());
        makeRegion();
    }

    void makeRegion() {
        Neighbourhood& neighbourhood = workspace.neighbourhood();
        const Neighbourhood::Rings around = reach == Scope::part
                                                ? Neighbourhood::Rings{neighbourhood.partOf(seeds), true}
                                                : neighbourhood.around(seeds, rings);
        isWidest = around.isWhole;
        emphasis = kHandleEmphasis;
        wishGoals();
        subproblem = std::make_unique<Subproblem>(workspace.system(), around.unknowns);
    }

    double miss() {
        const EquationSystem& system = workspace.system();
        double worst = 0.0;
        for (std::size_t i = 0; i < goals.size(); ++i) {
            const std::size_t v = at(handles[i]);
            worst = std::max(worst, std::abs(system.values[v] - goals[i]) * system.metric[v]);
        }
        return worst;
    }

    void setGoals(std::span<const double> wanted) {
        goals.assign(wanted.begin(), wanted.end());
        wishGoals();
    }

    void wishGoals() {
        for (std::size_t i = 0; i < goals.size(); ++i)
            workspace.wish(handles[i], goals[i], emphasis);
    }

    Attempt approach() {
        const std::vector<double> before = subproblem->read();
        Attempt attempt = workspace.trySettling(*subproblem, before, careful());
        for (int i = 0; i < kMostPulls && attempt.isSolved; ++i) {
            const double wanted = wantedEmphasis(), ratio = wanted / emphasis;
            if (ratio < kSamePull && ratio > 1.0 / kSamePull)
                break;
            attempt = pullAgain(attempt, wanted, ratio < 1.0 ? before : subproblem->read());
            if (emphasis != wanted)
                break;
        }
        if (attempt.isSolved && !isMet() && miss() <= kCompliance * workspace.system().size)
            attempt.iterations += overcomeCompliance();
        return attempt;
    }

    /// Full while the handles arrive, else so that the pull is limited.
    double wantedEmphasis() {
        const double force = (kForce + kForceOfOne * subproblem->columnCount()) * workspace.system().size;
        const double full = force / (kHandleEmphasis * kHandleEmphasis);
        const double missNow = miss();
        constexpr double almost = 100.0;
        return missNow < almost * full ? kHandleEmphasis : std::sqrt(force / missNow);
    }

    Attempt pullAgain(const Attempt& attempt, double wanted, const std::vector<double>& from) {
        const std::vector<double> found = subproblem->read();
        const double old = std::exchange(emphasis, wanted);
        wishGoals();
        Attempt again = workspace.trySettling(*subproblem, from, careful());
        again.iterations += attempt.iterations;
        if (again.isSolved)
            return again;
        emphasis = old;
        wishGoals();
        subproblem->write(found);
        return attempt;
    }

    /// What is left of a miss when many others hold back a little each: the wishes are carried on by it, once.
    int overcomeCompliance() {
        const EquationSystem& system = workspace.system();
        const std::vector<double> found = subproblem->read();
        const double missBefore = miss();
        for (std::size_t i = 0; i < goals.size(); ++i)
            workspace.wish(handles[i], 2 * goals[i] - system.values[at(handles[i])], emphasis);
        const Attempt carried = workspace.trySettling(*subproblem, found, careful());
        if (!carried.isSolved || miss() > missBefore)
            subproblem->write(found);
        wishGoals();
        return carried.iterations;
    }

    /// Short strides, so that a long step of the drag does not lead over to another branch; as many as the way takes.
    IterationLimits careful() {
        IterationLimits limits;
        limits.stride = kStride;
        const double strides = miss() / (kStride * workspace.system().size);
        limits.sliding += static_cast<int>(std::min(2.0 * strides, kMostStrides));
        return limits;
    }

    /// The whole part could not help against about the same miss of about the same goal.
    bool isHopeless(double missNow) const {
        if (missNow >= kPatience * hopelessMiss)
            return false;
        double way = 0.0;
        for (std::size_t i = 0; i < goals.size(); ++i)
            way = std::max(way, std::abs(goals[i] - hopelessGoals[i]) * workspace.system().metric[at(handles[i])]);
        return way < kPatienceSideways * hopelessMiss;
    }

    bool isMet() { return miss() <= kReached * workspace.system().size; }

    /// Tries wider and wider subproblems until the handles are there. When not even the whole part brings them nearer,
    /// the first subproblem's solution is taken, and wider ones are not tried again before the miss has grown.
    Attempt solve() {
        const std::vector<double> before = subproblem->read();
        Attempt first = approach();
        const double missFirst = miss();
        if (isWidest || (first.isSolved && (isMet() || isHopeless(missFirst))))
            return first;
        Attempt attempt = first;
        const std::vector<double> found = subproblem->read();
        const std::unique_ptr<Subproblem> narrow = std::move(subproblem);
        const int narrowRings = rings;
        int iterations = first.iterations;
        narrow->write(first.isSolved ? found : before);
        while (!isWidest && !(attempt.isSolved && isMet()) && !workspace.hasSpentBudget()) {
            rings *= 2;
            makeRegion();
            attempt = approach();
            iterations += attempt.iterations;
            if (!attempt.isSolved)
                undo();
        }
        if (first.isSolved && (!attempt.isSolved || miss() > kWorthwhile * missFirst)) {
            undo();
            rings = narrowRings;
            hopelessMiss = missFirst;
            hopelessGoals = goals;
            makeRegion();
            subproblem->write(found);
            attempt = first;
        }
        attempt.iterations = iterations;
        return attempt;
    }

    /// Where the way to the goals is barred, or has led far away, another one may be open from where the session
    /// began; the solution that moves less from there is taken.
    Attempt solveFromStart(Attempt attempt) {
        const Pull pull = workspace.pullOf(*subproblem);
        if (attempt.isSolved && (attempt.isNearest || isMet()) && !isFarFetched(pull))
            return attempt;
        const std::vector<double> found = subproblem->read();
        const double missBefore = miss();
        std::vector<double> x;
        for (const int u : subproblem->unknowns())
            x.push_back(workspace.system().meanOf(u, workspace.startValues()));
        Attempt again = workspace.trySettling(*subproblem, x, careful());
        again.iterations += attempt.iterations;
        if (again.isSolved && (!attempt.isSolved || isBetter(pull, found, missBefore)))
            return again;
        subproblem->write(found);
        attempt.iterations = again.iterations;
        return attempt;
    }

    /// Others have moved much farther than the handles since the session began.
    bool isFarFetched(const Pull& pull) {
        const auto [ofHandles, ofOthers] = ways(pull, subproblem->read());
        return ofOthers > kFarFetched * std::max(ofHandles, kReached * workspace.system().size);
    }

    /// Longest movement since the session began, of the handles' wishes and of the other unknowns.
    std::pair<double, double> ways(const Pull& pull, std::span<const double> x) {
        const EquationSystem& system = workspace.system();
        std::pair<double, double> longest{0.0, 0.0};
        for (std::size_t j = 0; j < x.size(); ++j) {
            const int u = subproblem->unknowns()[j];
            const double start = system.meanOf(u, workspace.startValues());
            const double metric = system.metric[at(system.valuesOfUnknown[u].front())];
            // The seeds are the first unknowns of the subproblem.
            double& way = j < seeds.size() ? longest.first : longest.second;
            way = std::max(way, std::abs((j < seeds.size() ? pull.targets[j] : x[j]) - start) * metric);
        }
        return longest;
    }

    /// The values of now against a solution found before: nearer to the goals, or as near with less movement.
    bool isBetter(const Pull& pull, std::span<const double> found, double missBefore) {
        const double missNow = miss(), same = kReached * workspace.system().size;
        if (std::abs(missNow - missBefore) > same)
            return missNow < missBefore;
        return ways(pull, subproblem->read()).second < kWorthwhile * ways(pull, found).second;
    }

    /// Where the handles' unknowns, which are the first of the subproblem, are asked to be: handles that constraints
    /// have made one meet in the middle.
    std::vector<double> seedGoals(std::span<const double> wanted) {
        const EquationSystem& system = workspace.system();
        std::vector<double> sums(seeds.size(), 0.0), counts(seeds.size(), 0.0);
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const ValueLink& link = system.links[at(handles[i])];
            if (link.unknown < 0)
                continue;
            const auto seed = std::lower_bound(seeds.begin(), seeds.end(), link.unknown) - seeds.begin();
            sums[at(static_cast<int>(seed))] += link.sign * (wanted[i] - link.offset);
            counts[at(static_cast<int>(seed))] += 1.0;
        }
        for (std::size_t j = 0; j < sums.size(); ++j)
            sums[j] /= counts[j];
        return sums;
    }

    double farthestOfSeeds(std::span<const double> x, std::span<const double> wanted) const {
        double most = 0.0;
        for (std::size_t j = 0; j < wanted.size(); ++j)
            most = std::max(most, std::abs(x[j] - wanted[j]) * subproblem->metric()[j]);
        return most;
    }

    IterationLimits sharp() {
        IterationLimits limits = careful();
        limits.sharpens = true;
        return limits;
    }

    /// Only the handles pull, the rest follows them from where it is: so the compliance shrinks with every round.
    /// Where they come nearest.
    std::vector<double> nearestHandles(std::span<const double> wanted, int& iterations) {
        for (int round = 0; round < kMostRounds; ++round) {
            const std::vector<double> x = subproblem->read();
            Pull pull = workspace.pullOf(*subproblem);
            std::copy(x.begin(), x.end(), pull.targets.begin());
            std::copy(wanted.begin(), wanted.end(), pull.targets.begin());
            const Attempt attempt = workspace.trySettling(*subproblem, x, sharp(), pull);
            iterations += attempt.iterations;
            const std::vector<double> next = subproblem->read();
            if (!attempt.isSolved) {
                subproblem->write(x);
                break;
            }
            if (farthestOfSeeds(next, std::span(x).first(wanted.size())) <= workspace.system().aim)
                break;
        }
        std::vector<double> reached = subproblem->read();
        reached.resize(wanted.size());
        return reached;
    }

    /// The least movement with the handles at goals that they can reach: what they still yield is carried over to the
    /// wishes, as a method of multipliers does.
    bool arrive(std::span<const double> reachable, int& iterations) {
        Pull pull = workspace.pullOf(*subproblem);
        std::copy(reachable.begin(), reachable.end(), pull.targets.begin());
        std::fill_n(pull.weights.begin(), reachable.size(), kHandleEmphasis * kHandleEmphasis);
        for (std::size_t j = 0; j < reachable.size(); ++j)
            pull.weights[j] *= subproblem->metric()[j] * subproblem->metric()[j];
        const double same = kArrived * workspace.system().size;
        for (int round = 0; round < kMostRounds; ++round) {
            const Attempt attempt = workspace.trySettling(*subproblem, subproblem->read(), sharp(), pull);
            iterations += attempt.iterations;
            const std::vector<double> x = subproblem->read();
            if (!attempt.isSolved)
                return false;
            if (farthestOfSeeds(x, reachable) <= workspace.system().aim)
                break;
            for (std::size_t j = 0; j < reachable.size(); ++j)
                pull.targets[j] += reachable[j] - x[j];
        }
        return farthestOfSeeds(subproblem->read(), reachable) <= same && putHandlesOn(reachable);
    }

    /// To the last bit, as the equations hold there as well as anywhere near.
    bool putHandlesOn(std::span<const double> reachable) {
        const std::vector<double> near = subproblem->read();
        std::vector<double> x = near, residual;
        std::copy(reachable.begin(), reachable.end(), x.begin());
        subproblem->evaluate(x, residual);
        if (largest(residual) > workspace.system().tolerance)
            subproblem->write(near);
        return true;
    }

    Attempt land() {
        Attempt attempt;
        attempt.isSolved = true;
        if (goals.empty() || seeds.empty())
            return attempt;
        const std::vector<double> found = subproblem->read();
        const double missBefore = miss();
        std::vector<double> wanted = seedGoals(goals);
        if (!isMet())
            wanted = nearestHandles(wanted, attempt.iterations);
        const std::vector<double> nearest = subproblem->read();
        if (!arrive(wanted, attempt.iterations))
            subproblem->write(nearest);
        if (miss() > missBefore + kArrived * workspace.system().size)
            subproblem->write(found);
        return attempt;
    }

    /// The system's values of the subproblem as the sketch has them.
    void undo() {
        EquationSystem& system = workspace.system();
        for (const int u : subproblem->unknowns()) {
            for (const int v : system.valuesOfUnknown[u]) {
                if (v < system.figureValueCount)
                    system.values[at(v)] = sketch.values[at(v)];
            }
        }
    }

    void takeOver(SolveResult& result) {
        const EquationSystem& system = workspace.system();
        for (const int number : subproblem->entities()) {
            const SketchEntity& entity = sketch.entities[at(number)];
            double way = 0.0;
            for (std::size_t v = at(entity.firstValue); v < at(entity.firstValue + entity.valueCount); ++v) {
                way = std::max(way, std::abs(system.values[v] - sketch.values[v]) * system.metric[v]);
                sketch.values[v] = system.values[v];
            }
            if (way > 0.0)
                result.movements.push_back({number, way});
        }
        result.status = result.movements.empty() ? SolveStatus::unchanged : SolveStatus::solved;
    }
};

DragSession::DragSession(SketchData& sketch, std::vector<int> handles, Scope reach, const KeptSizes& sizes)
    : m_state(std::make_unique<State>(sketch, std::move(handles), reach, sizes)) {}

DragSession::~DragSession() = default;
DragSession::DragSession(DragSession&&) noexcept = default;
DragSession& DragSession::operator=(DragSession&&) noexcept = default;

SolveResult DragSession::step(std::span<const double> goals, Budget* budget) {
    State& state = *m_state;
    state.workspace.setBudget(budget);
    state.setGoals(goals);
    const Attempt attempt = state.solveFromStart(state.solve());
    SolveResult result;
    result.iterations = attempt.iterations;
    result.residual = attempt.residual;
    result.degeneracy = attempt.degeneracy;
    state.workspace.setBudget(nullptr);
    if (attempt.isSolved && !isSpent(budget)) {
        state.takeOver(result);
        return result;
    }
    result.status = attempt.degeneracy ? SolveStatus::degenerate : SolveStatus::unreached;
    state.undo();
    return result;
}

SolveResult DragSession::land(Budget* budget) {
    State& state = *m_state;
    state.workspace.setBudget(budget);
    const Attempt attempt = state.land();
    state.workspace.setBudget(nullptr);
    SolveResult result;
    result.iterations = attempt.iterations;
    state.takeOver(result);
    return result;
}

double DragSession::miss() const {
    return m_state->miss();
}

int DragSession::freedom() const {
    return m_state->subproblem->columnCount();
}

}  // namespace holdfast::solver::detail
