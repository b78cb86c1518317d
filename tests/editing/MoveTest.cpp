#include <gtest/gtest.h>

#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

/// The frame with its left side held in place.
Document heldFrame() {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f", ConstraintType::fixed, {{"left", PlaceKind::start}}));
    return document;
}

TEST(MoveEdit, ShiftsWhatIsTiedToTheEntityBeforeItChangesASize) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("move right by 2,0").outcome.error, "");
    EXPECT_NEAR(lineOf(session, "base").start.x, 2.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "base").end.x, 12.0, 1e-9);
}

TEST(MoveEdit, StretchesWhatIsHeldAtItsOtherEnd) {
    Session session(heldFrame());
    EXPECT_EQ(session.apply("move right by 2,0").outcome.error, "");
    EXPECT_EQ(lineOf(session, "right"), (LineShape{{12, 0}, {12, 5}}));
    EXPECT_EQ(lineOf(session, "base"), (LineShape{{0, 0}, {12, 0}}));
    EXPECT_EQ(lineOf(session, "left"), (LineShape{{0, 0}, {0, 5}}));
}

TEST(MoveEdit, KeepsEverythingAmongTheMovedEntities) {
    Session session(frameDrawing());
    const EditResult& result = session.apply("move base left right by 3,-4");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_TRUE(result.fates.constraints.empty());
    EXPECT_EQ(lineOf(session, "base"), (LineShape{{3, -4}, {13, -4}}));
    EXPECT_EQ(lineOf(session, "left"), (LineShape{{3, -4}, {3, 1}}));
    EXPECT_EQ(lineOf(session, "right"), (LineShape{{13, -4}, {13, 1}}));
}

TEST(MoveEdit, TellsTheMovedAsEditedAndTheOthersAsFollowed) {
    Session session(heldFrame());
    const EditResult& result = session.apply("move right by 2,0");
    ASSERT_EQ(result.fates.entities.size(), 2u);
    EXPECT_EQ(result.fates.entities[0].entity, "base");
    EXPECT_EQ(result.fates.entities[0].fate, EntityFate::followed);
    EXPECT_EQ(result.fates.entities[1].fate, EntityFate::edited);
}

TEST(MoveEdit, IsTakenBackByUndoAndDoneAgainByRedo) {
    Session session(frameDrawing());
    session.apply("move right by 2,0");
    const Document moved = session.document();
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), frameDrawing());
    EXPECT_EQ(session.apply("redo").outcome.error, "");
    EXPECT_EQ(session.document(), moved);
}

TEST(MoveEdit, SaysWhatKeepsItFromMoving) {
    const RefusedEdit rows[] = {
        {"move right by 0,0", "a displacement of 0,0 moves nothing; give another one"},
        {"move rihgt by 1,0",
         "edit \"move rihgt by 1,0\", column 6: the drawing has no entity rihgt, found \"rihgt\"; did you mean "
         "\"right\"?"},
        {"move right right by 1,0", "right is named twice; name each entity once"},
        {"move by 1,0", "edit \"move by 1,0\", column 6: expected an entity, found \"by\""},
        {"move right by 1",
         "edit \"move right by 1\", column 15: expected the displacement, a point such as 4,0.5 "
         "without spaces, found \"1\""},
        {"move left by 1,0",
         "the constraints do not allow it: f (fixed left.start) stands in the way; delete one of them or choose "
         "another "
         "value"},
    };
    expectRefused(heldFrame(), rows);
}

}  // namespace
}  // namespace holdfast::editing
