#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// The frame with two walls to its right, at 14 and at 20.
Document frameBesideWalls() {
    Document document = frameDrawing();
    document.entities.push_back(lineEntity("far", {20, -5}, {20, 5}));
    document.entities.push_back(lineEntity("near", {14, -5}, {14, 5}));
    return document;
}

TEST(ExtendEdit, LosesOnlyWhatHeldAtTheEndThatMoved) {
    BareSession session(frameBesideWalls());
    EXPECT_EQ(session.apply("extend base end to far").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {20, 0}}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3");
}

TEST(ExtendEdit, StopsAtTheBoundaryThatItMeetsFirst) {
    BareSession session(frameBesideWalls());
    EXPECT_EQ(session.apply("extend base end to far near").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {14, 0}}));
}

TEST(ExtendEdit, OfAnArcStopsAtTheBoundaryNextAlongTheArc) {
    Document document;
    document.name = "bow";
    document.entities = {shapeEntity("bow", ArcShape{{0, 0}, 5, 0.0, 1.0}), lineEntity("left", {-10, 0}, {-1, 0}),
                         lineEntity("top", {0, 1}, {0, 10})};
    BareSession session(document);
    EXPECT_EQ(session.apply("extend bow end to left top").outcome.error, "");
    const auto& bow = std::get<ArcShape>(entityNamed(session.document(), "bow").shape);
    EXPECT_DOUBLE_EQ(bow.startAngle, 0.0);
    EXPECT_NEAR(bow.endAngle, 1.5707963267948966, 1e-12);
}

TEST(ExtendEdit, OfAPolylineJudgesItsOutermostSegmentOnly) {
    Document document;
    document.name = "step";
    const PolylineShape step{{{0, 0}, {10, 0}, {10, 10}}, {0, 0, 0}, {11, 12, 13}, false};
    document.entities = {shapeEntity("p", step), lineEntity("roof", {0, 15}, {20, 15}),
                         lineEntity("post", {10, 10}, {20, 10})};
    using enum PlaceKind;
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"p", segment, 0}}),
                            constraintOf("c1", ConstraintType::vertical, {{"p", segment, 1}}),
                            constraintOf("c2", ConstraintType::coincident, {{"p", segmentEnd, 1}, {"post", start}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("extend p end to roof").outcome.error, "");
    const auto& longer = std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
    EXPECT_EQ(longer.vertices, (std::vector<Vec2>{{0, 0}, {10, 0}, {10, 15}}));
    EXPECT_EQ(longer.ids, (std::vector<int>{11, 12, 13}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c1");
    EXPECT_EQ(session.document().constraints[1].refs[0], (Place{"p", segment, 1}));
}

TEST(ExtendEdit, TakesLinesThatDifferByRoundingForParallel) {
    for (const double off : {1e-11, 4e-9, 1e-6}) {
        Document document;
        document.entities = {lineEntity("a", {0, 5}, {10, 5 + off}), lineEntity("axis", {-10, 0}, {20, 0})};
        Session session(document);
        const std::string error = session.apply("extend a start to axis").outcome.error;
        EXPECT_TRUE(error.starts_with("a and axis are as good as parallel: they would meet ") ||
                    error.starts_with("the start of a does not meet axis however far it is extended"))
            << off << ": " << error;
        EXPECT_EQ(session.document().entities[0].shape, document.entities[0].shape);
    }
}

TEST(ExtendEdit, RefusesWithAReasonAndChangesNothing) {
    Document document = frameBesideWalls();
    document.entities.push_back(shapeEntity("disc", CircleShape{{50, 0}, 1}));
    document.entities.push_back(shapeEntity("beam", RayShape{{0, 50}, {0, 1}}));
    document.entities.push_back(shapeEntity("dot", PointShape{{20, 0}}));
    document.entities.push_back(lineEntity("beside", {4, -3}, {4, 3}));
    const RefusedEdit rows[] = {
        {"extend left end to far",
         "the end of left does not meet far however far it is extended; choose another boundary"},
        {"extend base start to far near",
         "the start of base does not meet any of the boundaries however far it is extended; its end would, if that is "
         "extended"},
        {"extend beside start to base",
         "the start of beside does not meet base however far it is extended; base crosses it: trim it there instead"},
        {"extend disc end to far", "disc is closed and has no end to extend; break it first"},
        {"extend beam end to far", "the end of beam is at infinity already; extend another end"},
        {"extend base end to right", "the end of base lies on right already; choose a boundary ahead of it"},
        {"extend base end to base", "base cannot be its own boundary"},
        {"extend base end to dot", "dot is no curve; only curves can be boundaries"},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
