// A four-bar linkage whose crank is dragged round. The tip of its coupler draws a curve. Prints:
//
//     1 degree of freedom
//       0 degrees: (2.072, 3.945)
//      60 degrees: (2.812, 5.293)
//     120 degrees: (1.327, 5.045)
//     180 degrees: (-0.038, 3.540)
//     240 degrees: (-0.514, 2.260)
//     300 degrees: (0.160, 2.162)
//     360 degrees: (2.072, 3.945)
#include <holdfast/solver/Solver.h>

#include <cmath>
#include <cstdio>
#include <numbers>

using namespace holdfast::solver;

int main() {
    // Ground pivots at (0, 0) and (6, 0); crank 2, coupler 5, rocker 4; the coupler carries a point to its left.
    Sketch sketch;
    const EntityId crank = sketch.addLine({0, 0}, {2, 0}).value();
    const EntityId coupler = sketch.addLine({2, 0}, {5, 4}).value();
    const EntityId rocker = sketch.addLine({6, 0}, {5, 4}).value();
    const EntityId tip = sketch.addPoint({2, 4}).value();
    const Constraint constraints[] = {FixedPoint{startOf(crank)},
                                      FixedPoint{startOf(rocker)},
                                      Coincident{endOf(crank), startOf(coupler)},
                                      Coincident{endOf(coupler), endOf(rocker)},
                                      Length{crank, 2},
                                      Length{coupler, 5},
                                      Length{rocker, 4},
                                      Distance{startOf(coupler), pointOf(tip), 4},
                                      Distance{endOf(coupler), pointOf(tip), 3}};
    for (const Constraint& constraint : constraints)
        (void)sketch.add(constraint).value();
    if (const SolveResult result = solve(sketch); !result.isSolved()) {
        std::puts(result.briefReport().c_str());
        return 1;
    }
    const Diagnosis diagnosis = diagnose(sketch).value();
    std::printf("%d degree of freedom\n", diagnosis.freedom);

    DragSession drag = DragSession::begin(sketch, {endOf(crank)}).value();
    const Vec2 start = sketch.position(endOf(crank));
    const double first = std::atan2(start.y, start.x);
    for (int degrees = 0; degrees <= 360; degrees += 5) {
        const double angle = first + degrees * std::numbers::pi / 180;
        const SolveResult step = drag.step({2 * std::cos(angle), 2 * std::sin(angle)});
        if (!step.isSolved())
            std::puts(step.briefReport().c_str());
        if (degrees % 60 == 0)
            std::printf("%3d degrees: (%.3f, %.3f)\n", degrees, sketch.position(pointOf(tip)).x,
                        sketch.position(pointOf(tip)).y);
    }
}
