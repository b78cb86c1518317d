#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

Constraint dimensionOn(std::string id, ConstraintType type, std::vector<Place> refs, double value,
                       bool driving = true) {
    Constraint made = constraintOf(std::move(id), type, std::move(refs));
    made.value = value;
    made.driving = driving;
    return made;
}

TEST(DimensionAfterBreak, GoesWhenTheLineIsShorterThanItSays) {
    Document document = frameDrawing();
    document.constraints.push_back(dimensionOn("ten", ConstraintType::distance, {{"base"}}, 10.0));
    document.constraints.push_back(dimensionOn("five", ConstraintType::distance, {{"left"}}, 5.0));
    BareSession session(document);
    EXPECT_EQ(session.apply("break base at 4,0").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3 five");
}

TEST(DimensionAfterBreak, StaysWhereItStillHolds) {
    Document document = frameDrawing();
    document.constraints.push_back(
        dimensionOn("across", ConstraintType::distance, {{"base", PlaceKind::start}, {"left", PlaceKind::end}}, 5.0));
    BareSession session(document);
    EXPECT_EQ(session.apply("break base at 4,0").outcome.error, "");
    EXPECT_NE(constraintIds(session.document()).find("across"), std::string::npos);
}

TEST(DimensionAfterBreak, FollowsWhenItOnlyMeasures) {
    Document document = frameDrawing();
    document.constraints.push_back(dimensionOn("length", ConstraintType::distance, {{"base"}}, 10.0, false));
    BareSession session(document);
    EXPECT_EQ(session.apply("break base at 4,0").outcome.error, "");
    EXPECT_DOUBLE_EQ(*session.document().constraints.back().value, 4.0);
}

TEST(MidpointAfterBreak, GoesWithTheMiddleThatItMarked) {
    Document document = frameDrawing();
    document.entities.push_back(lineEntity("post", {5, 0}, {5, 9}));
    document.constraints.push_back(
        constraintOf("middle", ConstraintType::midpoint, {{"post", PlaceKind::start}, {"base"}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("break base at 8,0").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()).find("middle"), std::string::npos);
}

TEST(PointOnSplineAfterBreak, GoesWithThePartOfTheSplineThatItLayOn) {
    const SplineShape curve{2, false, {{0, 0}, {5, 8}, {10, 0}}, {0, 0, 0, 1, 1, 1}, {}};
    for (const auto& [point, left] : {std::pair{Vec2{7.5, 3}, ""}, std::pair{Vec2{2.5, 3}, "on"}}) {
        Document document;
        document.name = "bow";
        document.entities = {shapeEntity("bow", curve), shapeEntity("pin", PointShape{point})};
        document.constraints = {constraintOf("on", ConstraintType::pointOnCurve, {{"pin"}, {"bow"}})};
        BareSession session(document);
        EXPECT_EQ(session.apply("break bow at 5,4").outcome.error, "");
        EXPECT_EQ(constraintIds(session.document()), left);
    }
}

}  // namespace
}  // namespace holdfast::editing
