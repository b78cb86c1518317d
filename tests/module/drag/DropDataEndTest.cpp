#include <gtest/gtest.h>

#include "tests/module/drag/DragSession.h"

namespace holdfast::module {
namespace {

bool& forbidden() {
    return AssocConstraintHeader::m_isForbidEvaStatic;
}

void expectNoSession() {
    EXPECT_TRUE(LvConstraintDropData::mObjIdArr.isEmpty());
    EXPECT_TRUE(LvConstraintDropData::mGroupId.isNull());
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, nullptr);
    EXPECT_EQ(LvConstraintDropData::mFlag, 0);
}

TEST(DragState, IsEmptyBeforeTheFirstSession) {
    expectNoSession();
    EXPECT_EQ(LvConstraintDropData::mObjIdArr.growLength(), 8);
}

TEST(DragReset, DropsTheSessionWithoutAWordToTheHeader) {
    DragScene scene(kDragDrawing);
    scene.drag({"a", "f"});
    scene.step(1, 0);
    scene.remember();
    LvConstraintDropData::setFlag(9);
    const int storage = LvConstraintDropData::mObjIdArr.physicalLength();
    LvConstraintDropData::reset();
    expectNoSession();
    EXPECT_EQ(LvConstraintDropData::mObjIdArr.physicalLength(), storage);
    EXPECT_EQ(scene.changes(), "");
}

/// The edit kind after a drag that the host ended in this way.
int confirmedKind(int flag, bool dropChanged) {
    DragScene scene(kDragDrawing);
    forbidden() = false;
    scene.drag({"a", "f"});
    scene.step(1, 0);
    scene.header().dropChanged = dropChanged;
    LvConstraintDropData::setFlag(flag);
    LvConstraintDropData::confirm();
    EXPECT_FALSE(scene.header().dragActive);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
    expectNoSession();
    return scene.header().editKind;
}

TEST(DragConfirm, LeavesTheKindAfterADropThatWasEvaluated) {
    EXPECT_EQ(confirmedKind(1, false), 18);
    EXPECT_FALSE(forbidden());
}

TEST(DragConfirm, EndsTheDragWhenItIsNotEvaluatedYet) {
    EXPECT_EQ(confirmedKind(1, true), 7);
    EXPECT_FALSE(forbidden());
}

TEST(DragConfirm, EndsTheDragForAnyOtherFlag) {
    for (const int flag : {0, 2, -1, 4, -3, 100}) {
        EXPECT_EQ(confirmedKind(flag, false), 7) << flag;
        EXPECT_FALSE(forbidden()) << flag;
    }
}

TEST(DragConfirm, ForbidsTheStaticEvaluationForThreeAndMinusTwo) {
    for (const int flag : {3, -2}) {
        EXPECT_EQ(confirmedKind(flag, false), 7) << flag;
        EXPECT_TRUE(forbidden()) << flag;
    }
    forbidden() = false;
}

TEST(DragConfirm, ChangesOnlyKindAndActivity) {
    DragScene scene(kDragDrawing);
    scene.drag({"a", "f"});
    scene.prefill();
    LvConstraintDropData::confirm();
    EXPECT_EQ(scene.changes(), "editKind dragActive");
}

TEST(DragConfirm, ForgetsTheIdsOfASessionThatNeverStarted) {
    DragScene scene(kDragDrawing);
    scene.prefill();
    forbidden() = false;
    scene.drag({"f"});
    LvConstraintDropData::setFlag(3);
    LvConstraintDropData::confirm();
    expectNoSession();
    EXPECT_FALSE(forbidden());
    EXPECT_EQ(scene.changes(), "");
}

TEST(DragCancel, EvaluatesOnceAsTheEndOfTheDrag) {
    DragScene scene(kDragDrawing);
    int kindWhenEvaluated = 0;
    scene.process().setEvaluator([&](YxDbDatabase&) {
        kindWhenEvaluated = scene.header().editKind;
        return true;
    });
    scene.drag({"a", "f"});
    scene.step(1, 0);
    scene.remember();
    LvConstraintDropData::cancel();
    EXPECT_EQ(kindWhenEvaluated, 7);
    EXPECT_EQ(scene.changes(), "editKind");
    EXPECT_TRUE(scene.header().dragActive);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 1);
    expectNoSession();
}

TEST(DragCancel, EvaluatesNothingWithoutASession) {
    DragScene scene(kDragDrawing);
    scene.drag({"f"});
    LvConstraintDropData::cancel();
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
    expectNoSession();
}

TEST(DragEvaluate, IsAskedForWithOrWithoutASession) {
    DragScene scene(kDragDrawing);
    LvConstraintDropData::evaluate();
    scene.drag({"a"});
    LvConstraintDropData::evaluate();
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 2);
}

TEST(DragFlag, IsTakenUnchecked) {
    LvConstraintDropData::setFlag(-12345);
    EXPECT_EQ(LvConstraintDropData::mFlag, -12345);
    LvConstraintDropData::reset();
}

}  // namespace
}  // namespace holdfast::module
