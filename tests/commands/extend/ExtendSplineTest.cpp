#include <gtest/gtest.h>

#include "tests/commands/extend/ExtendScene.h"
#include "tests/commands/extend/TestAccess.h"

namespace holdfast {
namespace {

const std::string kSpline =
    "spline a degree 2 at 0,0 1,2 3,2 4,0; line b 0,0 0,5; line c 4,0 4,5; coincident a.start b.start; "
    "coincident a.end c.start; fixed a.control1; fixed a";

TEST(ExtendSpline, LosesWhatHeldAtTheControlPointThatMoves) {
    EXPECT_EQ(leftAfter(kSpline, {5, -1, 0}, kEndMoves), "coincident a.start b.start; fixed a.control1; fixed a");
    EXPECT_EQ(leftAfter(kSpline, {-1, -1, 0}, kStartMoves), "coincident a.end c.start; fixed a.control1; fixed a");
}

TEST(ExtendSpline, TakesEveryOtherCodeForTheStart) {
    EXPECT_EQ(leftAfter(kSpline, {-1, -1, 0}, 9), "coincident a.end c.start; fixed a.control1; fixed a");
}

TEST(ExtendSpline, KeepsAnEndThatAlreadyLiesAtTheNewPoint) {
    EXPECT_EQ(leftAfter(kSpline, {4, 0, 0}, kEndMoves),
              "coincident a.start b.start; coincident a.end c.start; fixed a.control1; fixed a");
}

TEST(ExtendSpline, LosesAllWhenItsControlPointsChangeInNumber) {
    TestScene scene(kSpline);
    const int deleted = extendTo(scene, {5, -1, 0}, kEndMoves, [&] {
        EntityAccess::setSpline(*scene.entity<YxDbSpline>("a"),
                                {.degree = 2,
                                 .periodic = false,
                                 .control = {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}, {5, -1, 0}},
                                 .knots = {0, 0, 0, 1, 2, 3, 3, 3},
                                 .weights = {}});
    });
    EXPECT_EQ(deleted, 4);
    EXPECT_EQ(scene.constraints(), "");
}

TEST(ExtendSpline, LosesAJointAtTheMovedEndWithItsCoincidence) {
    EXPECT_EQ(leftAfter("spline a degree 2 at 0,0 1,2 2,0; spline t degree 2 at 2,0 3,2 4,0; smooth a.end t.start",
                        {3, -1, 0}, kEndMoves),
              "");
}

TEST(ExtendCentre, SharesTheSnapshotWithItsCopy) {
    TestScene scene(kSpline);
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), {5, -1, 0}, kEndMoves);
    ConstraintExtendCmdCenter copy(centre);
    ASSERT_NE(LvTestAccess::snapshot(centre), nullptr);
    EXPECT_EQ(LvTestAccess::snapshot(copy), LvTestAccess::snapshot(centre));
    LvTestAccess::snapshot(copy) = nullptr;  // two owners must not both reach their end
}

TEST(ExtendCentre, ReplacesAnEarlierSnapshotAndFreesIt) {
    TestScene scene(kSpline);
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), {5, -1, 0}, kEndMoves);
    centre.setDeleteConstraint(scene.id("a"), {6, -2, 0}, kEndMoves);
    EXPECT_NE(LvTestAccess::snapshot(centre), nullptr);
    EXPECT_EQ(hostState().copies.size(), 1u);
}

}  // namespace
}  // namespace holdfast
