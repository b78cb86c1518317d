#include <gtest/gtest.h>

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

TEST(AlignEdit, MovesFreeEntitiesByOnePairOfPoints) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), shapeEntity("c", CircleShape{{1, 2}, 3})};
    Session session(document);
    EXPECT_EQ(session.apply("align a c from 0,0 to 5,5").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a").shape, Shape(LineShape{{5, 5}, {15, 5}}));
    EXPECT_EQ(entityNamed(session.document(), "c").shape, Shape(CircleShape{{6, 7}, 3}));
}

TEST(AlignEdit, TurnsByTwoPairsAndScalesOnlyWhenTold) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("a", {0, 0}, {10, 0})};
    Session session(document);
    EXPECT_EQ(session.apply("align a from 0,0 10,0 to 5,5 5,25").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a").shape, Shape(LineShape{{5, 5}, {5, 15}}));
    EXPECT_EQ(session.apply("align a from 5,5 5,15 to 0,0 20,0 scale").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a").shape, Shape(LineShape{{0, 0}, {20, 0}}));
}

TEST(AlignEdit, OfAConstrainedEntityTakesItsNeighboursAlong) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("align left from 0,0 to 2,3").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "left").shape, Shape(LineShape{{2, 3}, {2, 8}}));
    const auto& base = std::get<LineShape>(entityNamed(after, "base").shape);
    EXPECT_NEAR(base.start.x, 2.0, 1e-9);
    EXPECT_NEAR(base.start.y, 3.0, 1e-9);
    EXPECT_NEAR(base.end.y, 3.0, 1e-9);
    EXPECT_EQ(constraintIds(after), "c0 c1 c2 c3");
}

TEST(AlignEdit, MovesFreeEntitiesAlongWithConstrainedOnes) {
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("mark", PointShape{{1, 1}}));
    Session session(document);
    EXPECT_EQ(session.apply("align mark base left right from 0,0 to 1,1").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "mark").shape, Shape(PointShape{{2, 2}}));
    EXPECT_EQ(entityNamed(session.document(), "right").shape, Shape(LineShape{{11, 1}, {11, 6}}));
}

TEST(AlignEdit, IsRefusedWhenTheConstraintsLetItComeOnlyNear) {
    Session session(frameDrawing());
    const std::string error = session.apply("align base from 0,0 10,0 to 0,0 0,10").outcome.error;
    EXPECT_NE(error.find("c2 (horizontal base)"), std::string::npos) << error;
    EXPECT_EQ(session.document(), frameDrawing());
}

TEST(AlignEdit, IsRefusedByAFixedConstraintOnWhatItMoves) {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"base"}}));
    const RefusedEdit rows[] = {{"align base right from 0,0 to 1,1",
                                 "the constraints do not allow it: f0 (fixed base) stands in the way; delete one of "
                                 "them or choose another value"}};
    expectRefused(document, rows);
    Session session(document);
    EXPECT_EQ(session.apply("align base from 0,0 to 1,0").outcome.error, "");
}

TEST(AlignEdit, RefusesWithAReasonAndChangesNothing) {
    Document document = frameDrawing();
    document.entities[1].fixed = true;
    const RefusedEdit rows[] = {
        {"align base base from 0,0 to 1,1", "base is named twice; name each entity once"},
        {"align left from 0,0 to 1,1",
         "left is reference geometry that the drawing may not change; edit another entity"},
        {"align right from 0,0 0,0 to 1,1 2,2",
         "\"align right from 0,0 0,0 to 1,1 2,2\" is not possible: the two source points are one point; give two "
         "different ones"},
        {"align right from 0,0 1,0 to 1,1",
         "edit \"align right from 0,0 1,0 to 1,1\": expected the second destination point, but the edit ends there"},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
