#include "benchmarks/solver/Trials.h"

#include <algorithm>

#include "benchmarks/Timing.h"
#include "benchmarks/solver/OtherSolver.h"
#include "workbench/evaluator/Drag.h"
#include "workbench/evaluator/Measure.h"

namespace holdfast {

namespace {

constexpr double kDisturbance = 0.05;
constexpr int kSteps = 60;
constexpr double kMostSeconds = 4.0;  // of drag steps

double missOf(const Figure& figure) {
    const std::vector<double> misses = missesOf(figure);
    return *std::max_element(misses.begin(), misses.end()) / figure.size();
}

/// Where the handle goes in one step of a drag.
Vec2 goalOf(const Workload& work, int step) {
    const auto v = static_cast<std::size_t>(work.handle);
    return {work.figure.values[v] + 0.02 * step, work.figure.values[v + 1] + 0.01 * step};
}

Figure disturbed(const Workload& work) {
    Figure figure = work.figure;
    disturb(figure, kDisturbance);
    return figure;
}

/// Fixed points that make a figure as large as another one: tolerances go by the size.
void stretchTo(Figure& figure, const Figure& other) {
    Vec2 low{1e300, 1e300}, high{-1e300, -1e300};
    for (const FigureEntity& entity : other.entities) {
        const auto v = static_cast<std::size_t>(entity.firstValue);
        low = {std::min(low.x, other.values[v]), std::min(low.y, other.values[v + 1])};
        high = {std::max(high.x, other.values[v]), std::max(high.y, other.values[v + 1])};
    }
    for (const Vec2& corner : {low, high})
        figure.entities[static_cast<std::size_t>(figure.addPoint("corner", corner))].fixed = true;
}

/// Step after step until the time is up; the median.
template <class Step>
double timeSteps(Step step) {
    std::vector<double> times;
    double sum = 0.0;
    for (int i = 2; i <= kSteps && sum < 1000.0 * kMostSeconds; ++i) {
        times.push_back(timed([&] { step(i); }));
        sum += times.back();
    }
    return medianOf(times);
}

}  // namespace

Times timeOwn(const Workload& work, Reach reach) {
    Times times;
    const auto check = [&](const SolveResult& result, const char* what) {
        if (!result.isSolved())
            times.trouble = what;
    };
    Figure figure;
    const Figure start = disturbed(work);
    times.solve = medianTime([&] { figure = start; },
                             [&] { check(solve(figure, {.reach = reach, .namesConflicts = false}), "solve failed"); });
    times.residual = missOf(figure);

    const std::vector<int> handles{work.handle, work.handle + 1};
    const auto stepTo = [&](DragSession& session, int step) {
        const Vec2 goal = goalOf(work, step);
        const double goals[] = {goal.x, goal.y};
        check(session.step(goals), "drag failed");
    };
    times.firstStep = medianTime([&] { figure = work.figure; },
                                 [&] {
                                     DragSession session(figure, handles, reach);
                                     stepTo(session, 1);
                                 });
    figure = work.figure;
    DragSession session(figure, handles, reach);
    stepTo(session, 1);
    times.laterStep = timeSteps([&](int step) { stepTo(session, step); });
    times.residual = std::max(times.residual, missOf(figure));
    return times;
}

Times timeOther(const Workload& work) {
    Times times;
    const auto check = [&](std::optional<const char*> trouble) {
        if (trouble)
            times.trouble = *trouble;
    };
    Figure answer = work.figure;
    const Figure start = disturbed(work);
    std::unique_ptr<OtherSolver> other;
    times.solve = medianTime([] {},
                             [&] {
                                 other = std::make_unique<OtherSolver>(start);
                                 check(other->solve());
                             });
    other->read(answer);
    times.residual = missOf(answer);
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
                                     other = std::make_unique<OtherSolver>(work.figure);
                                     stepTo(1);
                                 });
    times.laterStep = timeSteps(stepTo);
    other->read(answer);
    times.residual = std::max(times.residual, missOf(answer));
    return times;
}

std::pair<double, double> timeBesideOthers(const Workload& work, int others) {
    Figure alone = work.figure, crowded = work.figure;
    addIslands(crowded, others);
    stretchTo(alone, crowded);
    const std::vector<int> handles{work.handle, work.handle + 1};
    DragSession first(alone, handles, Reach::part), second(crowded, handles, Reach::part);
    std::vector<double> aloneTimes, crowdedTimes;
    for (int step = 1; step <= 400; ++step) {
        const Vec2 goal = goalOf(work, step % 100);
        const double goals[] = {goal.x, goal.y};
        aloneTimes.push_back(timed([&] { first.step(goals); }));
        crowdedTimes.push_back(timed([&] { second.step(goals); }));
    }
    return {medianOf(aloneTimes), medianOf(crowdedTimes)};
}

}  // namespace holdfast
