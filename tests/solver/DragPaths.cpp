#include "tests/solver/DragPaths.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>

#include "solver/src/dragging/Drag.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"
#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {

namespace {

constexpr int kSteps = 200;
constexpr double kTurn = 2.0 * std::numbers::pi;

/// From 0 to 1 and back, or once round: the way at each of the steps.
DragPath pathOf(std::string name, const std::string& text, const char* handle,
                const std::function<Vec2(Vec2 start, double part)>& way, bool isRound = false) {
    SketchText drawn(text);
    DragPath path{std::move(name), std::move(drawn.sketch), 0, {}};
    solve(path.sketch, {.namesConflicts = false});
    path.sketch.takeReference();
    path.handle = SketchText(text).valueOf(handle);
    const Vec2 start{path.sketch.values[at(path.handle)], path.sketch.values[at(path.handle + 1)]};
    for (int step = 1; step <= kSteps; ++step) {
        const double part = static_cast<double>(step) / kSteps;
        path.goals.push_back(way(start, isRound ? part : 1.0 - std::abs(2.0 * part - 1.0)));
    }
    path.goals.back() = start;
    return path;
}

DragPath slider() {
    return pathOf(
        "slider beside its rail",
        "fixed! point o 0,0; line block 0,0 4,0; line rod 4,0 10,8; horizontal block; horizontal o block.start;"
        "distance block = 4; distance rod = 10; coincident block.end rod.start",
        "block.end", [](Vec2 start, double part) {
            return Vec2{start.x + 20.0 * part, start.y + 5.0 * std::sin(kTurn * part)};
        });
}

DragPath sliderCrank() {
    return pathOf(
        "slider-crank through its dead centres",
        "fixed! point o 0,0; line crank 0,0 3,0; line rod 3,0 13,0; coincident o crank.start; coincident crank.end "
        "rod.start; distance crank = 3; distance rod = 10; horizontal o rod.end",
        "crank.end",
        [](Vec2, double part) {
            const double radius = 3.0 + 0.3 * std::sin(3.0 * kTurn * part);
            return Vec2{radius * std::cos(kTurn * part), radius * std::sin(kTurn * part)};
        },
        true);
}

DragPath straightArm() {
    return pathOf("arm of two bars through straight",
                  "fixed! point o 0,0; line upper 0,0 8,6; line lower 8,6 16,0; coincident o upper.start; coincident "
                  "upper.end lower.start; distance upper = 10; distance lower = 10; horizontal o lower.end",
                  "upper.end", [](Vec2, double part) {
                      const double angle = std::atan2(6.0, 8.0) * (1.0 - 2.0 * part);
                      return Vec2{10.0 * std::cos(angle), 10.0 * std::sin(angle)};
                  });
}

/// A zigzag, its first end held.
std::string linksOf(int count) {
    std::string text = "fixed! point o 0,0;";
    for (int i = 0; i < count; ++i) {
        const std::string id = "l" + std::to_string(i), x = std::to_string(8 * i), next = std::to_string(8 * i + 8);
        text += "line " + id + " " + x + (i % 2 == 0 ? ",0 " : ",6 ") + next + (i % 2 == 0 ? ",6;" : ",0;");
        text += i == 0 ? "coincident o l0.start; distance l0 = 10;"
                       : "coincident l" + std::to_string(i - 1) + ".end " + id + ".start; equal l" +
                             std::to_string(i - 1) + " " + id + ";";
    }
    return text;
}

DragPath chain() {
    return pathOf("chain of equal links", linksOf(6), "l5.end", [](Vec2 start, double part) {
        return Vec2{start.x - 8.0 * part, start.y + 8.0 * std::sin(0.5 * kTurn * part)};
    });
}

DragPath tangentChain() {
    return pathOf("tangent chain",
                  "line a 0,0 20,0; arc k 20,5 5 270 360; line b 25,5 25,15; arc m 30,15 5 90 180; line c 30,20 45,20;"
                  "tangent a.end k.start; tangent k.end b.start; tangent b.end m.end; tangent m.start c.start;"
                  "fixed a.start; horizontal a; radius k = 5; equal k m; distance c = 15",
                  "c.end", [](Vec2 start, double part) {
                      return Vec2{start.x + 12.0 * part, start.y + 6.0 * std::sin(0.5 * kTurn * part)};
                  });
}

DragPath fourBar() {
    return pathOf(
        "four-bar linkage round 360 degrees",
        "fixed! point o 0,0; fixed! point q 10,0; line crank 0,0 0,3; line rod 0,3 8,7; line rocker 8,7 10,0;"
        "coincident o crank.start; coincident crank.end rod.start; coincident rod.end rocker.start; coincident "
        "rocker.end q; distance crank = 3; distance rod = 9; distance rocker = 7",
        "crank.end",
        [](Vec2 start, double part) {
            const double angle = std::atan2(start.y, start.x) + kTurn * part;
            return Vec2{3.0 * std::cos(angle), 3.0 * std::sin(angle)};
        },
        true);
}

DragPath onSpline() {
    return pathOf("point on a spline", "fixed! spline s 3 0,0 4,3 10,4 16,3 20,0; point p 3,1.8; point_on_curve p s",
                  "p", [](Vec2 start, double part) {
                      return Vec2{start.x + 14.0 * part, start.y + 0.5 * std::sin(3.0 * kTurn * part)};
                  });
}

/// Judged against where the drag began.
bool isTurned(const SketchData& sketch) {
    const EquationSystem system = buildSystem(sketch);
    std::vector<int> entities(sketch.entities.size()), equations(system.set.equations.size());
    std::iota(entities.begin(), entities.end(), 0);
    std::iota(equations.begin(), equations.end(), 0);
    return findFlaw(sketch, system, entities) || findTurnedTangency(sketch, system, sensesOf(system, equations));
}

double farthest(const std::vector<double>& a, const std::vector<double>& b) {
    double most = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

}  // namespace

std::vector<DragPath> scriptedDrags() {
    return {slider(), sliderCrank(), straightArm(), chain(), tangentChain(), fourBar(), onSpline()};
}

DragFigures figuresOf(DragPath& path, const std::function<bool(Vec2 goal)>& step, const std::function<void()>& land) {
    using Clock = std::chrono::steady_clock;
    SketchData& sketch = path.sketch;
    const std::vector<double> start = sketch.values;
    const double size = sketch.size();
    DragFigures figures;
    Vec2 last = path.goals.back();
    for (const Vec2 goal : path.goals) {
        const std::vector<double> before = sketch.values;
        const Clock::time_point begin = Clock::now();
        figures.unsolved += !step(goal);
        figures.milliseconds += std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
        const Vec2 handle{sketch.values[at(path.handle)], sketch.values[at(path.handle + 1)]};
        figures.held += std::max(std::abs(goal.x - handle.x), std::abs(goal.y - handle.y)) > 1e-9 * size;
        const double pointer = std::hypot(goal.x - last.x, goal.y - last.y);
        figures.jump = std::max(figures.jump, farthest(before, sketch.values) / pointer);
        figures.flips += isTurned(sketch);
        const std::vector<double> misses = violationsOf(sketch);
        figures.residual = std::max(figures.residual, *std::max_element(misses.begin(), misses.end()) / size);
        last = goal;
    }
    land();
    figures.hysteresis = farthest(start, sketch.values) / size;
    return figures;
}

DragFigures followed(DragPath path) {
    DragSession session(path.sketch, {path.handle, path.handle + 1});
    const auto step = [&](Vec2 goal) {
        const double goals[] = {goal.x, goal.y};
        return session.step(goals).isSolved();
    };
    return figuresOf(path, step, [&] { session.land(); });
}

}  // namespace holdfast::solver::detail
