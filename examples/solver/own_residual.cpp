// A constraint of one's own: a triangle keeps its area while a corner is dragged. Prints:
//
//     residual 0.6
//     solved
//     b (6.0000, 0.0000)  c (2.0000, 4.0000)  area 12.000000
//     b (8.0000, 0.0000)  c (3.0000, 3.0000)  area 12.000000
//     b (12.0000, 0.0000)  c (4.0000, 2.0000)  area 12.000000
#include <holdfast/solver/Solver.h>

#include <cstdio>

using namespace holdfast::solver;

/// Written once for numbers and for dual numbers, which carry the exact derivatives along. Divided by a length, so that
/// the residual is one and is kept to the same tolerance as all others.
struct TriangleArea {
    double area, length;

    template <class T>
    void operator()(std::span<const T, 6> p, std::span<T, 1> residual) const {
        const T twice = (p[2] - p[0]) * (p[5] - p[1]) - (p[3] - p[1]) * (p[4] - p[0]);
        residual[0] = (twice * 0.5 - area) / length;
    }
};

int main() {
    Sketch sketch;
    const EntityId a = sketch.addPoint({0, 0}).value();
    const EntityId b = sketch.addPoint({6, 0}).value();
    const EntityId c = sketch.addPoint({1, 3}).value();
    (void)sketch.add(FixedPoint{pointOf(a)}).value();
    (void)sketch.add(HorizontalPoints{pointOf(a), pointOf(b)}).value();
    const ConstraintId area =
        sketch.add(makeResidual<6, 1>(TriangleArea{12, 5}, {pointOf(a), pointOf(b), pointOf(c)})).value();

    std::printf("residual %g\n", residual(sketch, area).value());
    std::printf("%s\n", std::string(toString(solve(sketch).ending)).c_str());
    DragSession drag = DragSession::begin(sketch, {pointOf(c)}).value();
    for (const Vec2 goal : {Vec2{2, 4}, Vec2{3, 3}, Vec2{4, 2}}) {
        (void)drag.step(goal);
        const Vec2 p = sketch.position(pointOf(b)), q = sketch.position(pointOf(c));
        std::printf("b (%.4f, %.4f)  c (%.4f, %.4f)  area %.6f\n", p.x, p.y, q.x, q.y, 0.5 * (p.x * q.y - p.y * q.x));
    }
}
