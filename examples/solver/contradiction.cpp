// A bracket that cannot be: the solver says which dimensions contradict each other, the sketch stays as it was, and
// with one of them only measuring it can be solved. Prints:
//
//     radius of e0: radius cannot hold on line e0
//     it takes a circle, an arc or an arc segment, and a length above 0
//     conflicting:
//       base meets wall
//       wall meets brace
//       brace meets base
//       right angle
//       base 30
//       wall 40
//       brace 55
//     the wall still ends at (30, 40)
//     unchanged; the brace measures 50
#include <holdfast/solver/Solver.h>

#include <cstdio>
#include <map>
#include <string>

using namespace holdfast::solver;

int main() {
    Sketch sketch;
    const EntityId base = sketch.addLine({0, 0}, {30, 0}).value();
    const EntityId wall = sketch.addLine({30, 0}, {30, 40}).value();
    const EntityId brace = sketch.addLine({0, 0}, {30, 40}).value();
    std::map<ConstraintId, std::string> names;
    const auto add = [&](const char* name, const Constraint& constraint) {
        const ConstraintId id = sketch.add(constraint).value();
        names[id] = name;
        return id;
    };
    add("base meets wall", Coincident{endOf(base), startOf(wall)});
    add("wall meets brace", Coincident{endOf(wall), endOf(brace)});
    add("brace meets base", Coincident{startOf(brace), startOf(base)});
    add("base is level", Horizontal{base});
    add("right angle", Perpendicular{base, wall});
    add("base 30", Length{base, 30});
    add("wall 40", Length{wall, 40});
    const ConstraintId length = add("brace 55", Length{brace, 55});

    // A constraint that makes no sense is refused at once, and says what would.
    const Result<ConstraintId> refused = sketch.add(Radius{base, 3});
    std::printf("%s: %s\n", refused.error().where.c_str(), refused.error().what.c_str());
    std::printf("%s\n", refused.error().remedy.c_str());

    const SolveResult result = solve(sketch);
    std::printf("%s:\n", std::string(toString(result.ending)).c_str());
    for (const ConstraintId id : result.conflicting)
        std::printf("  %s\n", names[id].c_str());
    std::printf("the wall still ends at (%g, %g)\n", sketch.position(endOf(wall)).x, sketch.position(endOf(wall)).y);

    (void)sketch.setDriving(length, false).value();
    std::printf("%s; the brace measures %g\n", std::string(toString(solve(sketch).ending)).c_str(),
                measure(sketch, length).value());
}
