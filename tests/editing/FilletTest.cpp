#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

TEST(FilletEdit, OfTwoLinesLosesTheirCommonEndAndAddsTheArc) {
    BareSession session(frameDrawing());
    EXPECT_EQ(session.apply("fillet base left radius 2").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "base").shape, Shape(LineShape{{2, 0}, {10, 0}}));
    EXPECT_EQ(entityNamed(after, "left").shape, Shape(LineShape{{0, 2}, {0, 5}}));
    EXPECT_EQ(constraintIds(after), "c1 c2");  // left is no longer as long as right
    ASSERT_EQ(after.entities.size(), 4u);
    const auto* arc = std::get_if<ArcShape>(&after.entities.back().shape);
    ASSERT_NE(arc, nullptr);
    EXPECT_NEAR(arc->centre.x, 2.0, 1e-12);
    EXPECT_NEAR(arc->centre.y, 2.0, 1e-12);
    EXPECT_NEAR(arc->radius, 2.0, 1e-12);
}

TEST(FilletEdit, WithRadiusZeroLeadsLinesToTheirCorner) {
    Document document;
    document.name = "gap";
    document.entities = {lineEntity("a", {2, 0}, {10, 0}), lineEntity("b", {0, 3}, {0, 9})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 0").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a").shape, Shape(LineShape{{0, 0}, {10, 0}}));
    EXPECT_EQ(entityNamed(session.document(), "b").shape, Shape(LineShape{{0, 0}, {0, 9}}));
    EXPECT_EQ(session.document().entities.size(), 2u);
}

TEST(FilletEdit, OfCrossingLinesKeepsThePartsThatWerePicked) {
    Document document;
    document.name = "cross";
    document.entities = {lineEntity("a", {-10, 0}, {10, 0}), lineEntity("b", {0, -10}, {0, 10})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 2 at -6,0 0,6").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a").shape, Shape(LineShape{{-10, 0}, {-2, 0}}));
    EXPECT_EQ(entityNamed(session.document(), "b").shape, Shape(LineShape{{0, 2}, {0, 10}}));
}

TEST(FilletEdit, LeavesACircleWhole) {
    Document document;
    document.name = "disc";
    document.entities = {lineEntity("floor", {0, 0}, {20, 0}), shapeEntity("disc", CircleShape{{0, 5}, 5})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet floor disc radius 1 at 15,0 5,5").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "disc").shape, Shape(CircleShape{{0, 5}, 5}));
}

TEST(FilletEdit, MakesAHelperArcOnlyBetweenHelpers) {
    for (int helpers = 0; helpers < 4; ++helpers) {
        Document document = frameDrawing();
        document.entities[0].construction = (helpers & 1) != 0;
        document.entities[1].construction = (helpers & 2) != 0;
        BareSession session(document);
        session.apply("fillet base left radius 2");
        ASSERT_EQ(session.document().entities.size(), 4u);
        EXPECT_EQ(session.document().entities.back().construction, helpers == 3) << helpers;
    }
}

TEST(FilletEdit, RefusesWithAReasonAndChangesNothing) {
    const Document document = frameDrawing();
    const RefusedEdit rows[] = {
        {"fillet left right radius 2", "left and right are parallel; only a half circle joins them, with radius 5"},
        {"fillet left right radius 0", "left and right are parallel; only a half circle joins them, with radius 5"},
        {"fillet base left radius 50 at 9,0 0,4",
         "a fillet of radius 50 would leave nothing of base; choose a smaller radius"},
        {"fillet base base radius 1", "base cannot be filleted with itself; name two curves"},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
