// Prints what scripted drags of mechanisms come to: benchmark_drag. Answers 1 where one jumps, turns something over, or
// does not find back.

#include <cstdio>

#include "tests/solver/DragPaths.h"

int main() {
    using namespace holdfast::solver::detail;
    bool isGood = true;
    std::printf("%-40s %6s %6s %7s %6s %11s %9s %8s\n", "200 steps", "failed", "held", "jump", "flips", "hysteresis",
                "residual", "ms/step");
    for (DragPath& path : scriptedDrags()) {
        const std::string name = path.name;
        const DragFigures figures = followed(std::move(path));
        std::printf("%-40s %6d %6d %7.2f %6d %11.1e %9.1e %8.3f\n", name.c_str(), figures.unsolved, figures.held,
                    figures.jump, figures.flips, figures.hysteresis, figures.residual, figures.milliseconds / 200.0);
        constexpr double mostJump = 5.0, back = 1e-9;
        isGood = isGood && figures.unsolved == 0 && figures.jump <= mostJump && figures.flips == 0 &&
                 figures.hysteresis <= back;
    }
    std::printf("jump: longest movement of a value in a step, in steps of the pointer; hysteresis: of the size\n");
    return isGood ? 0 : 1;
}
