// A plate as it comes from a plain file, without constraints: what it fulfils as drawn becomes constraints, and then it
// can be edited. Prints:
//
//     the plate: 9 added, 0 implied
//       coincident: 4
//       equal: 1
//       horizontal: 2
//       vertical: 2
//     as polylines: 3 entities, 2 added
//     lengthen base end by 10: done
//       base edited
//       right followed
//       top followed
//     refused: the tolerance of lengths is no length; give one above 0, or 0 for a millionth of the drawing
#include <holdfast/sketch/Sketch.h>

#include <cstdio>
#include <map>
#include <string>

using namespace holdfast::sketch;

int main() {
    Document plate;
    plate.entities = {{"base", LineShape{{0, 0}, {80, 0}}},  {"right", LineShape{{80, 0}, {80, 30}}},
                      {"top", LineShape{{80, 30}, {0, 30}}}, {"left", LineShape{{0, 30}, {0, 0}}},
                      {"hole", CircleShape{{20, 15}, 5}},    {"slot", CircleShape{{60, 15}, 5}}};

    const Inferred inferred = infer(plate);
    std::printf("the plate: %zu added, %zu implied\n", inferred.added, inferred.implied);
    std::map<std::string, int> counts;
    for (const Constraint& constraint : inferred.document.constraints)
        ++counts[std::string(traitsOf(constraint.type).name)];
    for (const auto& [kind, count] : counts)
        std::printf("  %s: %d\n", kind.c_str(), count);

    const Inferred joined = infer(plate, {.kinds = {ConstraintType::horizontal}, .polylines = true});
    std::printf("as polylines: %zu entities, %zu added\n", joined.document.entities.size(), joined.added);

    Session session(inferred.document);
    const EditResult result = session.apply(Lengthen{.entity = "base", .end = CurveEnd::end, .length = 10});
    std::printf("%s: %s\n", result.text.c_str(), result.done() ? "done" : result.error.c_str());
    for (const EntityOutcome& each : result.entities)
        std::printf("  %s %s\n", each.entity.c_str(), fateName(each.fate).data());

    std::printf("refused: %s\n", infer(plate, {.length = -1}).error.c_str());
}
