// A rib between two edges is trimmed at the upper one, and the edit is taken back and done again. Prints:
//
//     trim rib at 40,50 by top: done
//       height deleted: it measures 40 now, not 55
//       k4 added: the new end of rib lies on top
//       rib edited
//         length 55 -> 40
//     the rib ends at (40, 40)
//     the rib ends at (40, 55)
//     the rib ends at (40, 40)
//     not possible: the drawing has no entity ribs; did you mean "rib"?
#include <holdfast/sketch/Sketch.h>

#include <cstdio>
#include <string>

using namespace holdfast::sketch;

void tell(const EditResult& result) {
    std::printf("%s: %s\n", result.text.c_str(), result.done() ? "done" : result.error.c_str());
    for (const ConstraintOutcome& each : result.constraints)
        std::printf("  %s %s: %s\n", each.constraint.c_str(), std::string(fateName(each.fate)).c_str(),
                    each.reason.c_str());
    for (const EntityOutcome& each : result.entities) {
        std::printf("  %s %s\n", each.entity.c_str(), std::string(fateName(each.fate)).c_str());
        for (const SizeChange& size : each.sizes)
            std::printf("    %s %g -> %g\n", std::string(sizeName(size.size)).c_str(), size.before, size.after);
    }
}

void tellEnd(const Session& session) {
    const Vec2 end = std::get<LineShape>(session.document().entities[1].shape).end;
    std::printf("the rib ends at (%g, %g)\n", end.x, end.y);
}

int main() {
    Document drawing;
    drawing.entities = {{"base", LineShape{{0, 0}, {80, 0}}},
                        {"rib", LineShape{{40, 0}, {40, 55}}},
                        {"top", LineShape{{70, 40}, {20, 40}}}};
    drawing.constraints = {
        {.id = "upright", .type = ConstraintType::vertical, .refs = {{"rib"}}},
        {.id = "foot", .type = ConstraintType::pointOnCurve, .refs = {{"rib", PlaceKind::start}, {"base"}}},
        {.id = "height", .type = ConstraintType::distance, .refs = {{"rib"}}, .value = 55}};

    Session session(drawing);
    tell(session.apply(Trim{.entity = "rib", .at = {40, 50}, .by = {"top"}}));
    tellEnd(session);
    session.undo();
    tellEnd(session);
    session.redo();
    tellEnd(session);
    if (const auto refusal = session.check(Trim{.entity = "ribs", .at = {40, 50}, .by = {"top"}}))
        std::printf("not possible: %s%s\n", refusal->message.c_str(), refusal->hint.c_str());
}
