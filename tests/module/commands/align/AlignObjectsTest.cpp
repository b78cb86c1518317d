#include <gtest/gtest.h>

#include <numbers>

#include "tests/module/commands/align/AlignScene.h"
#include "tests/module/evaluation/LvTestAccess.h"

namespace holdfast::module {
namespace {

LineData lineOf(const FeedingScene& scene, const char* name) {
    return EntityAccess::line(*scene.entity<YxDbLine>(name));
}

TEST(AlignObjects, AreSortedIntoConstrainedAndFreeInTheOrderGiven) {
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"f2", "a", "f1", "outsider", "b"}));
    EXPECT_EQ(scene.text(centre.getAssocObjs()), "a outsider b");
    EXPECT_EQ(scene.text(LvTestAccess::freeObjects(centre)), "f2 f1");
}

TEST(AlignObjects, AreAddedToThoseOfAnEarlierCallEvenTwice) {
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"a", "f1"}));
    centre.seperateObjectes(scene.ids({"b", "a", "f1"}));
    EXPECT_EQ(scene.text(centre.getAssocObjs()), "a b a");
    EXPECT_EQ(scene.text(LvTestAccess::freeObjects(centre)), "f1 f1");
    EXPECT_EQ(centre.getAssocObjs().growLength(), 8);
}

TEST(AlignObjects, AreHandedOutAsACopyOfTheList) {
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"a", "b"}));
    centre.getAssocObjs().setLogicalLength(0);
    EXPECT_EQ(scene.text(centre.getAssocObjs()), "a b");
}

TEST(AlignObjects, AreCopiedWithTheCentreAndItsTransform) {
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"a", "f1"}));
    centre.updateCenterMat(translation(3, 4));
    ConstraintAlignCmdCenter copy(centre);
    copy.seperateObjectes(scene.ids({"b", "f2"}));
    EXPECT_EQ(scene.text(centre.getAssocObjs()), "a");
    EXPECT_EQ(scene.text(copy.getAssocObjs()), "a b");
    EXPECT_EQ(scene.text(LvTestAccess::freeObjects(copy)), "f1 f2");
    EXPECT_EQ(textOf(LvTestAccess::transform(copy)), "translation 3,4,0");
}

TEST(AlignTransform, IsTheIdentityAtFirst) {
    EXPECT_EQ(LvTestAccess::transform(ConstraintAlignCmdCenter()), YxGeMatrix3d::kIdentity);
}

TEST(AlignTransform, AppliesLaterPartsAfterEarlierOnes) {
    YxGeMatrix3d doubled;
    doubled(0, 0) = doubled(1, 1) = doubled(2, 2) = 2.0;
    ConstraintAlignCmdCenter centre;
    centre.updateCenterMat(translation(1, 0));
    centre.updateCenterMat(doubled);
    EXPECT_EQ(textOf(LvTestAccess::transform(centre)), "2,0,0,2,0,2,0,0,0,0,2,0");
}

/// Everything that an align may touch, before and after a transform that it refuses.
void expectRefused(const YxGeMatrix3d& transform) {
    FeedingScene scene(kAlignDrawing);
    scene.prefill();
    align(scene, {"a", "f1", "b"}, transform);
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    EXPECT_EQ(scene.calls("transformBy") + scene.calls("getAssocCons2DGroup"), 0);
    EXPECT_EQ(scene.status(), 0);
    EXPECT_EQ(textOf(lineOf(scene, "f1").start), "20,0,0");
}

TEST(AlignTransform, IsRefusedWhenItScalesUnevenly) {
    YxGeMatrix3d wide;
    wide(0, 0) = 2.0;
    expectRefused(wide);
}

TEST(AlignTransform, IsRefusedWhenItShears) {
    YxGeMatrix3d shear;
    shear(0, 1) = 0.5;
    expectRefused(shear);
}

TEST(AlignTransform, IsRefusedWhenItIsSingular) {
    YxGeMatrix3d flat;
    flat(0, 0) = flat(1, 1) = flat(2, 2) = 0.0;
    expectRefused(flat);
}

TEST(AlignTransform, MayReflectTurnAndScaleEvenly) {
    YxGeMatrix3d reflection;
    reflection(0, 0) = -3.0;
    reflection(1, 1) = reflection(2, 2) = 3.0;
    YxGeMatrix3d quarter;
    quarter.setToRotation(std::numbers::pi / 2.0, YxGeVector3d::kZAxis);
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"f1", "a"}));
    centre.updateCenterMat(reflection);
    centre.updateCenterMat(quarter);
    centre.addDataToWork();
    EXPECT_EQ(scene.header().editKind, 9);
    EXPECT_NEAR(lineOf(scene, "f1").start.y, -60.0, 1e-9);
}

TEST(AlignFreeObjects, MoveFromTheLastToTheFirst) {
    FeedingScene scene(kAlignDrawing);
    align(scene, {"f1", "a", "f2", "stranger"}, translation(1, 2));
    EXPECT_EQ(scene.process().journal().text({"transformBy"}), "transform stranger; transform f2; transform f1");
    EXPECT_EQ(textOf(lineOf(scene, "f2").end), "24,2,0");
}

TEST(AlignFreeObjects, StayWithoutAConstrainedObject) {
    FeedingScene scene(kAlignDrawing);
    scene.prefill();
    align(scene, {"f1", "f2"}, translation(1, 2));
    EXPECT_EQ(scene.calls("transformBy") + scene.calls("openObject"), 0);
    EXPECT_EQ(scene.changes(), "");
}

TEST(AlignFreeObjects, LeaveTheConstrainedOnesWhereTheyAre) {
    FeedingScene scene(kAlignDrawing);
    align(scene, {"b", "a", "f1"}, translation(1, 2));
    EXPECT_EQ(textOf(lineOf(scene, "a").end), "0,3,0");
    EXPECT_EQ(textOf(lineOf(scene, "b").end), "4,0,0");
}

TEST(AlignFreeObjects, AreSkippedWhenTheyDoNotOpen) {
    FeedingScene scene(kAlignDrawing);
    scene.refuseOpen("f2");
    align(scene, {"f1", "f2", "a"}, translation(1, 2));
    EXPECT_EQ(textOf(lineOf(scene, "f2").start), "22,0,0");
    EXPECT_EQ(textOf(lineOf(scene, "f1").start), "21,2,0");
    EXPECT_EQ(scene.header().editKind, 9);
}

TEST(AlignFreeObjects, AreSkippedInTheListWhenTheyCannotBeTransformed) {
    FeedingScene scene(kAlignDrawing);
    scene.refuse("transformBy", "f2");
    align(scene, {"f1", "f2", "a"}, translation(1, 2));
    EXPECT_EQ(textOf(lineOf(scene, "f1").start), "21,2,0");
    EXPECT_EQ(scene.status(), 1);
}

TEST(AlignFreeObjects, ThrowForAnObjectThatIsNoEntityAndKeepWhatWasMoved) {
    FeedingScene scene(kAlignDrawing);
    scene.addNonEntity("plain");
    scene.prefill();
    EXPECT_THROW(align(scene, {"f1", "plain", "f2", "a"}, translation(1, 2)), YxError_NotThatKindOfClass);
    EXPECT_EQ(textOf(lineOf(scene, "f2").start), "23,2,0");
    EXPECT_EQ(textOf(lineOf(scene, "f1").start), "20,0,0");
    EXPECT_EQ(scene.changes(), "");
}

TEST(AlignFreeObjects, StayMovedWithoutAProviderAGroupOrAHeader) {
    for (const char* missing :
         {"getConstraintDataProviderLvInstance", "getAssocCons2DGroup", "getAssocConstraintHeader"}) {
        SCOPED_TRACE(missing);
        FeedingScene scene(kAlignDrawing);
        scene.prefill();
        scene.host().refuse(missing);
        align(scene, {"f1", "a"}, translation(1, 2));
        EXPECT_EQ(textOf(lineOf(scene, "f1").start), "21,2,0");
        EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
        EXPECT_EQ(scene.status(), 0);
    }
}

TEST(AlignFreeObjects, MoveAgainAtEachCall) {
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"f1", "a"}));
    centre.updateCenterMat(translation(1, 2));
    centre.addDataToWork();
    centre.addDataToWork();
    EXPECT_EQ(textOf(lineOf(scene, "f1").start), "22,4,0");
}

TEST(AlignFreeObjects, DoNotNeedTheConstraintServiceToRun) {
    FeedingScene scene(kAlignDrawing);
    scene.serviceDown();
    align(scene, {"f1", "a"}, translation(1, 2));
    EXPECT_EQ(scene.header().editKind, 9);
}

}  // namespace
}  // namespace holdfast::module
