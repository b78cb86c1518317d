#include <gtest/gtest.h>

#include "drag/CYxRotateReleaseConstraint.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kBoxDrawing =
    "line b 0,0 0,3; circle f centre 70,0 radius 5; line a 0,0 4,0; dependency a; dependency b";

bool fill(const FeedingScene& scene, std::initializer_list<const char*> names, YxArray<YxDbObjectId>& constrained,
          const YxGePoint3d& basePoint = {1, 2, 0}) {
    return CYxRotateReleaseConstraint::addDataToBoxEvalute(scene.ids(names), basePoint, constrained);
}

TEST(RotateBox, FillsTheHeaderAndKeepsTheRest) {
    FeedingScene scene(kBoxDrawing);
    scene.prefill();
    YxArray<YxDbObjectId> constrained;
    EXPECT_TRUE(fill(scene, {"f", "a", "b"}, constrained));
    EXPECT_EQ(scene.text(constrained), "a b");
    EXPECT_EQ(scene.changes(), "editKind editedObjectIds points staticTransform entitiesToDraw boxFlag boxMode");
    EXPECT_EQ(scene.changes("far"), "");
    EXPECT_EQ(scene.header().editKind, 4);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a b");
    EXPECT_EQ(scene.text(scene.header().entitiesToDraw), "a b");
    EXPECT_FALSE(scene.header().boxFlag);
    EXPECT_EQ(scene.header().boxMode, 1);
}

TEST(RotateBox, TurnsByNinetyRadians) {
    FeedingScene scene(kBoxDrawing);
    YxArray<YxDbObjectId> constrained;
    EXPECT_TRUE(fill(scene, {"a"}, constrained));
    const YxGeMatrix3d& turn = scene.header().staticTransform;
    EXPECT_DOUBLE_EQ(turn(0, 0), -0.44807361612917013);
    EXPECT_DOUBLE_EQ(turn(1, 0), 0.89399666360055785);
    EXPECT_EQ(textOf(turn * YxGePoint3d(1, 2, 0)), "1,2,0");
}

TEST(RotateBox, AppendsItsBasePointToThoseOfEarlierRotations) {
    FeedingScene scene(kBoxDrawing);
    YxArray<YxDbObjectId> constrained;
    fill(scene, {"a"}, constrained, {1, 2, 0});
    YxArray<YxDbObjectId> again;
    fill(scene, {"b"}, again, {5, 6, 7});
    ASSERT_EQ(scene.header().points.length(), 2);
    EXPECT_EQ(textOf(scene.header().points[0]), "1,2,0");
    EXPECT_EQ(textOf(scene.header().points[1]), "5,6,7");
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b");
    EXPECT_EQ(scene.text(scene.header().entitiesToDraw), "b");
}

TEST(RotateBox, AddsToTheIdsItIsGivenAndServesTheFirstOnesGroup) {
    FeedingScene scene(kBoxDrawing);
    YxArray<YxDbObjectId> constrained = scene.ids({"outsider"});
    EXPECT_TRUE(fill(scene, {"a", "a"}, constrained));
    EXPECT_EQ(scene.text(constrained), "outsider a a");
    EXPECT_EQ(scene.text(scene.header("far").editedObjectIds), "outsider a a");
    EXPECT_EQ(scene.text(scene.header("far").entitiesToDraw), "a a");
    EXPECT_EQ(scene.header("near").editKind, 0);
}

TEST(RotateBox, LeavesTheHeaderUntouchedWithoutAConstrainedObject) {
    FeedingScene scene(kBoxDrawing);
    scene.prefill();
    YxArray<YxDbObjectId> constrained;
    EXPECT_FALSE(fill(scene, {"f", "stranger"}, constrained));
    EXPECT_TRUE(constrained.isEmpty());
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
}

TEST(RotateBox, LeavesTheHeaderUntouchedWithoutAProviderAGroupOrAHeader) {
    for (const char* missing :
         {"getConstraintDataProviderLvInstance", "getAssocCons2DGroup", "getAssocConstraintHeader"}) {
        FeedingScene scene(kBoxDrawing);
        scene.prefill();
        scene.host().refuse(missing);
        YxArray<YxDbObjectId> constrained;
        EXPECT_FALSE(fill(scene, {"a", "b"}, constrained)) << missing;
        EXPECT_EQ(scene.text(constrained), "a b");
        EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    }
}

TEST(RotateBox, SkipsWhatDoesNotOpen) {
    FeedingScene scene(kBoxDrawing);
    scene.refuseOpen("a");
    YxArray<YxDbObjectId> constrained;
    EXPECT_TRUE(fill(scene, {"a", "b"}, constrained));
    EXPECT_EQ(scene.text(constrained), "b");
    EXPECT_EQ(scene.process().journal().text({"openObject"}), "open a for read; open b for read");
}

TEST(RotateBox, ThrowsForAnObjectThatIsNoEntityAndKeepsTheIdsFoundByThen) {
    FeedingScene scene(kBoxDrawing);
    scene.addNonEntity("plain");
    scene.prefill();
    YxArray<YxDbObjectId> constrained;
    EXPECT_THROW(fill(scene, {"b", "plain", "a"}, constrained), YxError_NotThatKindOfClass);
    EXPECT_EQ(scene.text(constrained), "b");
    EXPECT_EQ(scene.changes(), "");
}

TEST(RotateBox, MayCollectIntoTheHeadersOwnList) {
    FeedingScene scene(kBoxDrawing);
    EXPECT_TRUE(fill(scene, {"b", "a"}, scene.header().editedObjectIds));
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b a");
}

/// The axis is the one direction that the turn leaves alone.
YxGeVector3d turned(const FeedingScene& scene, const YxGeVector3d& direction) {
    YxArray<YxDbObjectId> constrained;
    fill(scene, {"a"}, constrained);
    return scene.header().staticTransform * direction;
}

constexpr YxGeVector3d kX(1.0, 0.0, 0.0);
constexpr YxGeVector3d kY(0.0, 1.0, 0.0);
constexpr YxGeVector3d kZ(0.0, 0.0, 1.0);

TEST(RotateAxis, IsThatOfTheUserCoordinateSystemInModelSpace) {
    FeedingScene scene(kBoxDrawing);
    scene.process().setUcs(kY, kZ);
    scene.process().setPaperUcs(kZ, kX);
    EXPECT_TRUE(turned(scene, kX).isEqualTo(kX));
    EXPECT_FALSE(turned(scene, kZ).isEqualTo(kZ));
}

TEST(RotateAxis, PointsDownWhenTheAxesAreSwapped) {
    FeedingScene scene(kBoxDrawing);
    scene.process().setUcs(kY, kX);
    EXPECT_DOUBLE_EQ(turned(scene, kX).y, -0.89399666360055785);
}

TEST(RotateAxis, IsThatOfPaperSpaceThere) {
    FeedingScene scene(kBoxDrawing);
    scene.process().setUcs(kY, kZ);
    scene.process().setPaperUcs(kZ, kX);
    scene.process().setPaperSpace(true);
    EXPECT_TRUE(turned(scene, kY).isEqualTo(kY));
}

TEST(RotateAxis, IsThatOfModelSpaceSeenThroughALayout) {
    FeedingScene scene(kBoxDrawing);
    scene.process().setUcs(kY, kZ);
    scene.process().setPaperUcs(kZ, kX);
    scene.process().setTilemode(false);
    EXPECT_TRUE(turned(scene, kX).isEqualTo(kX));
}

TEST(RotateAxis, IsThatOfModelSpaceInTilesWhateverTheSpace) {
    FeedingScene scene(kBoxDrawing);
    scene.process().setUcs(kY, kZ);
    scene.process().setPaperUcs(kZ, kX);
    scene.process().setPaperSpace(true);
    scene.process().setTilemode(true);
    EXPECT_TRUE(turned(scene, kX).isEqualTo(kX));
}

TEST(RotateAxis, IsThatOfModelSpaceWhenTheHostCannotTellTheSpace) {
    for (const char* missing : {"layoutManager", "yxrxGetService"}) {
        FeedingScene scene(kBoxDrawing);
        scene.process().setUcs(kY, kZ);
        scene.process().setPaperUcs(kZ, kX);
        scene.process().setPaperSpace(true);
        scene.host().refuse(missing);
        EXPECT_TRUE(turned(scene, kX).isEqualTo(kX)) << missing;
    }
}

TEST(RotateAxis, IsTheWorldsWithoutADatabase) {
    FeedingScene scene(kBoxDrawing);
    scene.process().setUcs(kY, kZ);
    scene.process().setWorkingDatabase(nullptr);
    EXPECT_TRUE(turned(scene, kZ).isEqualTo(kZ));
    FeedingScene without(kBoxDrawing);
    without.process().setUcs(kY, kZ);
    without.host().refuse("yxdbHostApplicationServices");
    EXPECT_TRUE(turned(without, kZ).isEqualTo(kZ));
}

}  // namespace
}  // namespace holdfast::module
