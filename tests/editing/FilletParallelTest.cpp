// Fillets of parallel lines: half circles between them.

#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

Document parallels(const Shape& a, const Shape& b) {
    Document document;
    document.name = "parallels";
    document.entities = {shapeEntity("a", a), shapeEntity("b", b)};
    document.constraints = {constraintOf("c0", ConstraintType::parallel, {{"a"}, {"b"}})};
    return document;
}

/// The shape of an entity when it is a line: "2,4 10,4".
std::string lineText(const Session& session, const std::string& name) {
    const auto& line = std::get<LineShape>(entityNamed(session.document(), name).shape);
    char text[100];
    std::snprintf(text, sizeof text, "%g,%g %g,%g", line.start.x, line.start.y, line.end.x, line.end.y);
    return text;
}

void expectHalfCircle(const Session& session, Vec2 centre, Vec2 top) {
    const auto& arc = std::get<ArcShape>(session.document().entities.back().shape);
    EXPECT_NEAR(geometry::distance(arc.centre, centre), 0.0, 1e-12);
    EXPECT_NEAR(geometry::distance(pointAt(arc, 0.5 * (arc.startAngle + arc.endAngle)), top), 0.0, 1e-12);
    EXPECT_NEAR(arc.endAngle - arc.startAngle, 3.141592653589793, 1e-12);
}

TEST(FilletParallelLines, BringsTheSecondLineBesideTheEndOfTheFirst) {
    BareSession session(parallels(LineShape{{0, 0}, {10, 0}}, LineShape{{2, 4}, {12, 4}}));
    EXPECT_EQ(session.apply("fillet a b radius 2").outcome.error, "");
    EXPECT_EQ(lineText(session, "a") + " / " + lineText(session, "b"), "0,0 10,0 / 2,4 10,4");
    expectHalfCircle(session, {10, 2}, {12, 2});
    EXPECT_EQ(constraintIds(session.document()), "c0");
}

TEST(FilletParallelLines, TakesTheEndThatIsNearerToThePicks) {
    BareSession session(parallels(LineShape{{0, 0}, {10, 0}}, LineShape{{12, 4}, {2, 4}}));
    EXPECT_EQ(session.apply("fillet a b radius 2 at 1,0 3,4").outcome.error, "");
    EXPECT_EQ(lineText(session, "b"), "12,4 0,4");
    expectHalfCircle(session, {0, 2}, {-2, 2});
}

TEST(FilletParallelLines, MakesARayOfAConstructionLineNamedFirstOrSecond) {
    for (const char* edit : {"fillet a b radius 2 at 9,0 9,-4", "fillet b a radius 2 at 9,-4 9,0"}) {
        BareSession session(parallels(LineShape{{0, 0}, {10, 0}}, XlineShape{{3, -4}, {1, 0}}));
        EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
        const auto& ray = std::get<RayShape>(entityNamed(session.document(), "b_2").shape);
        EXPECT_EQ(ray.point, (Vec2{10, -4})) << edit;
        EXPECT_LT(ray.direction.x, 0.0) << edit;
        expectHalfCircle(session, {10, -2}, {12, -2});
    }
}

TEST(FilletParallelSegments, RoundsTheSideBetweenThem) {
    BareSession session(rectangle());
    EXPECT_EQ(session.apply("fillet p segments 0 2 radius 5").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0^1 10,10 0,10 closed");
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletParallelSegments, OfTwoPolylinesJoinsThem) {
    Document document = parallels(PolylineShape{{{-5, -5}, {0, 0}, {10, 0}}, {0, 0, 0}, {0, 0, 0}, false},
                                  PolylineShape{{{-5, 9}, {0, 4}, {12, 4}}, {0, 0, 0}, {0, 0, 0}, false});
    document.constraints.clear();
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 2").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "a"), "-5,-5 0,0 10,0^1 10,4 0,4 -5,9");
}

TEST(FilletParallelLines, AreRefusedWhereTheyMeetFarOutOfTheDrawing) {
    const RefusedEdit rows[] = {
        {"fillet a b radius 1", "a and b are as good as parallel: they would meet 2e+06 away"},
        {"fillet a b radius 0", "a and b are as good as parallel: they would meet 4e+06 away"},
    };
    Document document = parallels(LineShape{{0, 0}, {10, 0}}, LineShape{{2, 4}, {12, 4 + 1e-5}});
    document.constraints.clear();
    expectRefused(document, rows);
}

TEST(FilletParallelLines, AreRefusedWithTheRadiusThatTheyTake) {
    const RefusedEdit rows[] = {
        {"fillet a b radius 1", "a and b are parallel; only a half circle joins them, with radius 2"},
        {"fillet a b radius 0", "a and b are parallel; only a half circle joins them, with radius 2"},
    };
    expectRefused(parallels(LineShape{{0, 0}, {10, 0}}, LineShape{{2, 4}, {12, 4}}), rows);
    for (const double off : {1e-11, 4e-9})
        expectRefused(parallels(LineShape{{0, 0}, {10, 0}}, LineShape{{2, 4}, {12, 4 + off}}), rows);
    const RefusedEdit endless[] = {
        {"fillet a b radius 2",
         "no arc of radius 2 touches both a and b; choose another radius or curves that are not parallel"}};
    expectRefused(parallels(XlineShape{{0, 0}, {1, 0}}, XlineShape{{0, 4}, {1, 0}}), endless);
}

}  // namespace
}  // namespace holdfast::editing
