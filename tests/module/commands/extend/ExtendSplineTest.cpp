#include <gtest/gtest.h>

#include "tests/module/commands/extend/ExtendScene.h"
#include "tests/module/commands/extend/TestAccess.h"

namespace holdfast::module {
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

TEST(ExtendSpline, LosesWhatItHasThenAndNothingElse) {
    // What was collected before the control points changed in number is dropped, also what is no longer on the spline.
    TestScene scene(kSpline + "; d: fixed b");
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), {5, -1, 0}, kEndMoves);
    LvTestAccess::collected(centre).append(scene.constraint("d"));
    const auto open = YxDbObjectIdImpl::openObject(scene.id("a"), YxDb::kForWrite, false);
    SplineData data = EntityAccess::spline(*scene.entity<YxDbSpline>("a"));
    data.control.push_back({5, -1, 0});
    data.knots = {0, 0, 0, 1, 2, 3, 3, 3};
    EntityAccess::setSpline(*scene.entity<YxDbSpline>("a"), data);
    EXPECT_EQ(centre.deleteConstraint(scene.entity("a")), 4);
    EXPECT_EQ(scene.constraints(), "fixed b");
}

TEST(ExtendSpline, KeepsTheDecisionForAnEntityOfAnotherClassOrNone) {
    for (const char* edited : {"b", ""}) {
        TestScene scene(kSpline);
        ConstraintExtendCmdCenter centre;
        centre.setDeleteConstraint(scene.id("a"), {5, -1, 0}, kEndMoves);
        EXPECT_EQ(centre.deleteConstraint(scene.entity(edited)), 1) << edited;
    }
}

TEST(ExtendSpline, NeedsGroupAndSpline) {
    TestScene scene(kSpline);
    ConstraintExtendCmdCenter centre;
    YxArray<YxDbAssocGeomDependency*> dependencies;
    dependencies.append(nullptr);
    dependencies.append(scene.dependency("a"));
    LvTestAccess::judgeSpline(centre, nullptr, dependencies, scene.entity("a"), {5, -1, 0}, kEndMoves);
    LvTestAccess::judgeSpline(centre, &scene.group(), dependencies, nullptr, {5, -1, 0}, kEndMoves);
    LvTestAccess::judgeSpline(centre, &scene.group(), dependencies, scene.entity("b"), {5, -1, 0}, kEndMoves);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    for (int k = 0; k < 2; ++k)  // each once
        LvTestAccess::judgeSpline(centre, &scene.group(), dependencies, scene.entity("a"), {5, -1, 0}, kEndMoves);
    EXPECT_EQ(LvTestAccess::collected(centre).length(), 1);
}

TEST(ExtendedEnds, AreAppendedForAKnownEndOnly) {
    const YxGePoint3d start(1, 0, 0);
    const YxGePoint3d end(2, 0, 0);
    const YxGePoint3d moved(3, 0, 0);
    YxArray<YxGePoint3d> former;
    former.append({9, 9, 9});
    const auto ends = [&](int code) {
        std::string text;
        for (const YxGePoint3d& point : LvTestAccess::afterPoints(start, end, moved, code, former))
            text += std::to_string(static_cast<int>(point.x));
        return text;
    };
    EXPECT_EQ(ends(kStartMoves), "932");
    EXPECT_EQ(ends(kEndMoves), "913");
    EXPECT_EQ(ends(0), "9");
    EXPECT_EQ(ends(3), "9");
}

TEST(ExtendCentre, KeepsTheCallOfItsBaseBesideItsOwn) {
    TestScene scene(kSpline);
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), {5, -1, 0}, kEndMoves);
    LvEditDeleteConstraint& base = centre;
    EXPECT_EQ(base.deleteConstraint(), 1);
    EXPECT_EQ(centre.deleteConstraint(), 0);
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
}  // namespace holdfast::module
