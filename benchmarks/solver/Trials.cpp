#include "benchmarks/solver/Trials.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "benchmarks/Timing.h"
#include "benchmarks/solver/OtherSolver.h"
#include "solver/src/dragging/Drag.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

constexpr double kDisturbance = 0.05;
constexpr int kSteps = 60;

double shortfallOf(const SketchData& sketch) {
    const std::vector<double> misses = violationsOf(sketch);
    return *std::max_element(misses.begin(), misses.end()) / sketch.size();
}

/// Where the handle goes in one step of a drag.
Vec2 goalOf(const Workload& work, int step) {
    const auto v = static_cast<std::size_t>(work.handle);
    return {work.sketch.values[v] + 0.02 * step, work.sketch.values[v + 1] + 0.01 * step};
}

SketchData disturbed(const Workload& work) {
    SketchData sketch = work.sketch;
    disturb(sketch, kDisturbance);
    return sketch;
}

/// Fixed points that make a sketch as large as another one: tolerances go by the size.
void stretchTo(SketchData& sketch, const SketchData& other) {
    Vec2 low{1e300, 1e300}, high{-1e300, -1e300};
    for (const SketchEntity& entity : other.entities) {
        const auto v = static_cast<std::size_t>(entity.firstValue);
        low = {std::min(low.x, other.values[v]), std::min(low.y, other.values[v + 1])};
        high = {std::max(high.x, other.values[v]), std::max(high.y, other.values[v + 1])};
    }
    for (const Vec2& corner : {low, high})
        sketch.entities[static_cast<std::size_t>(sketch.addPoint("corner", corner))].fixed = true;
}

/// Step after step until the time is up; the median.
template <class Step>
double timeSteps(Step step, double enough) {
    std::vector<double> times;
    double sum = 0.0;
    for (int i = 2; i <= kSteps && sum < enough; ++i) {
        times.push_back(timed([&] { step(i); }));
        sum += times.back();
    }
    return medianOf(times);
}

}  // namespace

Times timeOwn(const Workload& work, Scope reach, const TimeToMeasure& effort) {
    Times times;
    const auto check = [&](const SolveResult& result, const char* what) {
        if (!result.isSolved())
            times.trouble = what;
    };
    SketchData sketch;
    const SketchData start = disturbed(work);
    times.solve = medianTime([&] { sketch = start; },
                             [&] { check(solve(sketch, {.reach = reach, .namesConflicts = false}), "solve failed"); },
                             effort.solves);
    times.residual = shortfallOf(sketch);
    times.miss = times.residual * sketch.size();

    const std::vector<int> handles{work.handle, work.handle + 1};
    const auto stepTo = [&](DragSession& session, int step) {
        const Vec2 goal = goalOf(work, step);
        const double goals[] = {goal.x, goal.y};
        check(session.step(goals), "drag failed");
    };
    times.firstStep = medianTime([&] { sketch = work.sketch; },
                                 [&] {
                                     DragSession session(sketch, handles, reach);
                                     stepTo(session, 1);
                                 },
                                 effort.solves);
    sketch = work.sketch;
    DragSession session(sketch, handles, reach);
    stepTo(session, 1);
    times.laterStep = timeSteps([&](int step) { stepTo(session, step); }, effort.steps);
    const double shortfall = shortfallOf(sketch);
    times.residual = std::max(times.residual, shortfall);
    times.miss = std::max(times.miss, shortfall * sketch.size());
    return times;
}

Times timeOther(const Workload& work, const TimeToMeasure& effort) {
    Times times;
    const auto check = [&](std::optional<const char*> trouble) {
        if (trouble)
            times.trouble = *trouble;
    };
    SketchData answer = work.sketch;
    const SketchData start = disturbed(work);
    std::unique_ptr<OtherSolver> other;
    times.solve = medianTime([] {},
                             [&] {
                                 other = std::make_unique<OtherSolver>(start);
                                 check(other->solve());
                             },
                             effort.solves);
    other->read(answer);
    times.residual = shortfallOf(answer);
    if (!times.trouble.empty())
        return times;

    const auto stepTo = [&](int step) {
        const Vec2 goal = goalOf(work, step);
        other->drag(work.handle, goal.x);
        other->drag(work.handle + 1, goal.y);
        check(other->solve());
    };
    times.firstStep = medianTime([] {},
                                 [&] {
                                     other = std::make_unique<OtherSolver>(work.sketch);
                                     stepTo(1);
                                 },
                                 effort.solves);
    times.laterStep = timeSteps(stepTo, effort.steps);
    other->read(answer);
    times.residual = std::max(times.residual, shortfallOf(answer));
    return times;
}

Jump timeJump(const Workload& work, double way) {
    constexpr int directions = 8, runs = 2;
    Jump jump;
    for (int i = 0; i < directions; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / directions;
        const auto v = static_cast<std::size_t>(work.handle);
        const double goal[] = {work.sketch.values[v] + way * std::cos(angle),
                               work.sketch.values[v + 1] + way * std::sin(angle)};
        double least = 1e300;
        bool isSolved = true;
        for (int run = 0; run < runs && least > 0.0; ++run) {
            SketchData sketch = work.sketch;
            DragSession session(sketch, {work.handle, work.handle + 1}, Scope::part);
            least = std::min(least, timed([&] { isSolved = session.step(goal).isSolved() && isSolved; }));
        }
        jump.milliseconds = std::max(jump.milliseconds, least);
        jump.unsolved += isSolved ? 0 : 1;
    }
    return jump;
}

bool solvesShaken(const Workload& work, double amount) {
    SketchData sketch = work.sketch;
    disturb(sketch, amount);
    return solve(sketch, {.reach = Scope::part, .namesConflicts = false}).isSolved();
}

std::pair<double, double> timeBesideOthers(const Workload& work, int others) {
    SketchData alone = work.sketch, crowded = work.sketch;
    addIslands(crowded, others);
    stretchTo(alone, crowded);
    const std::vector<int> handles{work.handle, work.handle + 1};
    DragSession first(alone, handles, Scope::part), second(crowded, handles, Scope::part);
    std::vector<double> aloneTimes, crowdedTimes;
    for (int step = 1; step <= 400; ++step) {
        const Vec2 goal = goalOf(work, step % 100);
        const double goals[] = {goal.x, goal.y};
        aloneTimes.push_back(timed([&] { first.step(goals); }));
        crowdedTimes.push_back(timed([&] { second.step(goals); }));
    }
    return {medianOf(aloneTimes), medianOf(crowdedTimes)};
}

}  // namespace holdfast::solver::detail
