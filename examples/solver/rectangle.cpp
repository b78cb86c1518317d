// A rectangle, 40 wide and 25 high, from four lines that were drawn by hand. Prints:
//
//     solved
//     (0, 1) to (40, 1)
//     (40, 1) to (40, 26)
//     (40, 26) to (0, 26)
//     (0, 26) to (0, 1)
//     2 degrees of freedom
#include <holdfast/solver/Solver.h>

#include <cstdio>

using namespace holdfast::solver;

int main() {
    Sketch sketch;
    const Vec2 corners[] = {{0, 1}, {38, 2}, {41, 24}, {1, 27}};
    std::vector<EntityId> sides;
    for (int i = 0; i < 4; ++i)
        sides.push_back(sketch.addLine(corners[i], corners[(i + 1) % 4]).value());
    for (int i = 0; i < 4; ++i)
        (void)sketch.add(Coincident{endOf(sides[i]), startOf(sides[(i + 1) % 4])}).value();
    for (int i = 0; i < 4; i += 2) {
        (void)sketch.add(Horizontal{sides[i]}).value();
        (void)sketch.add(Vertical{sides[i + 1]}).value();
    }
    (void)sketch.add(Length{sides[0], 40}).value();
    (void)sketch.add(Length{sides[1], 25}).value();

    std::puts(std::string(toString(solve(sketch).ending)).c_str());
    for (const EntityId side : sides) {
        const Vec2 from = sketch.position(startOf(side)), to = sketch.position(endOf(side));
        std::printf("(%g, %g) to (%g, %g)\n", from.x, from.y, to.x, to.y);
    }
    std::printf("%d degrees of freedom\n", diagnose(sketch).value().freedom);
}
