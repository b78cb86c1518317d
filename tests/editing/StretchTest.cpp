#include <gtest/gtest.h>

#include <algorithm>

#include "editing/commands/drag/Grips.h"
#include "hosting/Drawing.h"
#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

TEST(StretchEdit, MovesTheEndsInTheWindowOnly) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("across", {0, 0}, {10, 0}), lineEntity("inside", {9, 1}, {11, 2}),
                         lineEntity("outside", {0, 5}, {5, 5}), shapeEntity("c", CircleShape{{10, 1}, 4}),
                         shapeEntity("t", TextShape{{9, 3}, 0.0, 2.5, "note", false})};
    Session session(document);
    EXPECT_EQ(session.apply("stretch window 8,-1 12,4 by 3,1").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "across").shape, Shape(LineShape{{0, 0}, {13, 1}}));
    EXPECT_EQ(entityNamed(after, "inside").shape, Shape(LineShape{{12, 2}, {14, 3}}));
    EXPECT_EQ(entityNamed(after, "outside").shape, Shape(LineShape{{0, 5}, {5, 5}}));
    EXPECT_EQ(entityNamed(after, "c").shape, Shape(CircleShape{{13, 2}, 4}));
    EXPECT_EQ(std::get<TextShape>(entityNamed(after, "t").shape).position, (Vec2{12, 4}));
}

/// A window around one grip, of no extent, catches all entities that have a grip there and no others.
TEST(StretchEdit, FindsWhateverHasAGripInItsWindow) {
    const Document document = kindsDrawing();
    const Drawing drawing(document);
    for (const Entity& entity : document.entities)
        for (const Grip& grip : windowGrips(entity.shape)) {
            const std::vector<std::string> near = drawing.namesNear(boxAround(grip.point, 0.0, 0.0));
            EXPECT_NE(std::find(near.begin(), near.end(), entity.id), near.end()) << entity.id << " " << grip.number;
        }
    EXPECT_TRUE(drawing.namesNear(boxAround({100.0, 0.0}, 10.0, 10.0)).empty());
}

TEST(StretchEdit, MovesVerticesAndControlPoints) {
    Document document;
    document.name = "free";
    const PolylineShape step{{{0, 0}, {10, 0}, {10, 10}}, {0, 1, 0}, {4, 5, 6}, false};
    const SplineShape wave{3, false, {{0, 0}, {9, 3}, {12, -3}, {20, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    document.entities = {shapeEntity("p", step), shapeEntity("s", wave)};
    Session session(document);
    EXPECT_EQ(session.apply("stretch window 13,5 8,-5 by 1,1").outcome.error, "");
    const auto& p = std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
    EXPECT_EQ(p.vertices, (std::vector<Vec2>{{0, 0}, {11, 1}, {10, 10}}));
    EXPECT_EQ(p.bulges, step.bulges);
    EXPECT_EQ(p.ids, step.ids);
    const auto& s = std::get<SplineShape>(entityNamed(session.document(), "s").shape);
    EXPECT_EQ(s.control, (std::vector<Vec2>{{0, 0}, {10, 4}, {13, -2}, {20, 0}}));
}

TEST(StretchEdit, OfOneEndOfAnArcKeepsItsIncludedAngle) {
    Document document;
    document.name = "free";
    document.entities = {shapeEntity("a", ArcShape{{0, 0}, 5, 0.0, 3.141592653589793})};
    Session session(document);
    EXPECT_EQ(session.apply("stretch window 4,-1 6,1 by 2,0").outcome.error, "");
    const auto& arc = std::get<ArcShape>(entityNamed(session.document(), "a").shape);
    EXPECT_NEAR(arc.centre.x, 1.0, 1e-12);
    EXPECT_NEAR(arc.radius, 6.0, 1e-12);
    EXPECT_NEAR(arc.endAngle - arc.startAngle, 3.141592653589793, 1e-12);
}

TEST(StretchEdit, TakesConstrainedNeighboursOutsideTheWindowAlong) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("stretch window 9,-1 11,6 by 4,0").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "base").shape, Shape(LineShape{{0, 0}, {14, 0}}));
    EXPECT_EQ(entityNamed(after, "right").shape, Shape(LineShape{{14, 0}, {14, 5}}));
    EXPECT_EQ(session.apply("stretch window -1,4 1,6 by 0,2").outcome.error, "");
    const auto& right = std::get<LineShape>(entityNamed(session.document(), "right").shape);
    EXPECT_NEAR(right.end.y - right.start.y, 7.0, 1e-9);  // as long as the left one
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3");
}

TEST(StretchEdit, TellsFreeAndConstrainedEntitiesApart) {
    Document document = frameDrawing();
    // Between the constrained ones, with other grips in the window than those.
    document.entities.insert(document.entities.begin() + 1, lineEntity("loose", {10, 1}, {30, 1}));
    document.entities.push_back(shapeEntity("dot", PointShape{{10, 2}}));
    Session session(document);
    EXPECT_EQ(session.apply("stretch window 9,-1 11,3 by 4,-1").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "loose").shape, Shape(LineShape{{14, 0}, {30, 1}}));
    EXPECT_EQ(entityNamed(after, "dot").shape, Shape(PointShape{{14, 1}}));
    EXPECT_EQ(std::get<LineShape>(entityNamed(after, "base").shape).end, (Vec2{14, -1}));
    EXPECT_EQ(std::get<LineShape>(entityNamed(after, "right").shape).start, (Vec2{14, -1}));
    EXPECT_EQ(constraintIds(after), "c0 c1 c2 c3");
}

TEST(StretchEdit, PutsAConstrainedPolylineVertexWhereItIsToldAndKeepsTheRest) {
    Document document;
    document.name = "step";
    const PolylineShape step{{{0, 0}, {10, 0}, {10, 10}, {20, 10}}, {0, 0, 0, 0}, {11, 12, 13, 14}, false};
    document.entities = {shapeEntity("p", step)};
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"p", PlaceKind::segment, 0}}),
                            constraintOf("c1", ConstraintType::vertical, {{"p", PlaceKind::segment, 1}})};
    Session session(document);
    EXPECT_EQ(session.apply("stretch window 9,9 11,11 by 5,5").outcome.error, "");
    const auto& p = std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
    EXPECT_NEAR(p.vertices[2].x, 15.0, 1e-9);
    EXPECT_NEAR(p.vertices[2].y, 15.0, 1e-9);
    EXPECT_NEAR(p.vertices[1].x, 15.0, 1e-9);
    EXPECT_NEAR(p.vertices[1].y, p.vertices[0].y, 1e-9);
    EXPECT_EQ(p.vertices[3], (Vec2{20, 10}));
    EXPECT_EQ(p.ids, step.ids);
}

TEST(StretchEdit, LeavesReferenceGeometryInTheWindowAlone) {
    Document document = frameDrawing();
    document.entities.push_back(lineEntity("axis", {0, 0}, {0, 50}));
    document.entities.back().fixed = true;
    Session session(document);
    EXPECT_EQ(session.apply("stretch window -1,-1 1,1 by 1,0").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "axis").shape, Shape(LineShape{{0, 0}, {0, 50}}));
    EXPECT_EQ(std::get<LineShape>(entityNamed(session.document(), "left").shape).start, (Vec2{1, 0}));
}

TEST(StretchEdit, IsRefusedByTheConstraintsInItsWay) {
    Document document = frameDrawing();
    Constraint width = constraintOf("d0", ConstraintType::distance, {{"base"}});
    width.value = 10.0;
    document.constraints.push_back(width);
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"left", PlaceKind::start}}));
    Session session(document);
    const std::string error = session.apply("stretch window 9,-1 11,6 by 4,0").outcome.error;
    EXPECT_NE(error.find("d0"), std::string::npos) << error;
    EXPECT_EQ(session.document(), document);
}

TEST(StretchEdit, RefusesAnEmptyWindow) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("stretch window 2,2 3,3 by 1,1").outcome.error,
              "no end, vertex, control point or centre lies in the window from (2, 2) to (3, 3); draw a window around "
              "the points to move");
}

}  // namespace
}  // namespace holdfast::editing
