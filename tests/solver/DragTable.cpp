// Prints what scripted drags of mechanisms come to, beside another solver where there is one: benchmark_drag. Answers 1
// where one of ours jumps, turns something over, or does not find back.

#include <cstdio>
#include <optional>

#include "benchmarks/solver/OtherSolver.h"
#include "tests/solver/DragPaths.h"

namespace holdfast::solver::detail {
namespace {

/// Nothing where the other solver has no counterpart for what is in the sketch.
std::optional<DragFigures> followedByOther(DragPath path) {
    if (!OtherSolver::isThere())
        return std::nullopt;
    try {
        OtherSolver other(path.sketch);
        const auto step = [&](Vec2 goal) {
            other.drag(path.handle, goal.x);
            other.drag(path.handle + 1, goal.y);
            if (other.solve())
                return false;
            other.read(path.sketch);
            return true;
        };
        return figuresOf(path, step, [] {});
    } catch (const SketchError&) {
        return std::nullopt;
    }
}

void print(const std::string& name, const char* whose, const std::optional<DragFigures>& found) {
    if (!found)
        std::printf("%-40s %-8s %6s\n", name.c_str(), whose, "-");
    else
        std::printf("%-40s %-8s %6d %6d %7.2f %6d %11.1e %9.1e %8.3f\n", name.c_str(), whose, found->unsolved,
                    found->held, found->jump, found->flips, found->hysteresis, found->residual,
                    found->milliseconds / 200.0);
}

bool isGood(const DragFigures& figures) {
    constexpr double mostJump = 5.0, back = 1e-9;
    return figures.unsolved == 0 && figures.jump <= mostJump && figures.flips == 0 && figures.hysteresis <= back;
}

int run() {
    bool areGood = true;
    std::printf("%-40s %-8s %6s %6s %7s %6s %11s %9s %8s\n", "200 steps", "", "failed", "held", "jump", "flips",
                "hysteresis", "residual", "ms/step");
    for (const DragPath& path : scriptedDrags()) {
        const DragFigures figures = followed(path);
        print(path.name, "own", figures);
        print("", "libslvs", followedByOther(path));
        areGood = areGood && isGood(figures);
    }
    std::printf("jump: longest movement of a value in a step, in steps of the pointer; hysteresis: of the size\n");
    return areGood ? 0 : 1;
}

}  // namespace
}  // namespace holdfast::solver::detail

int main() {
    return holdfast::solver::detail::run();
}
