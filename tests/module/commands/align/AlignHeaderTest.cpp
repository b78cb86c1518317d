#include <gtest/gtest.h>

#include "tests/module/commands/align/AlignScene.h"

namespace holdfast::module {
namespace {

TEST(AlignHeader, GetsKindIdsConverterAndCopiesAndKeepsTheRest) {
    FeedingScene scene(kAlignDrawing);
    scene.prefill();
    align(scene, {"f2", "a", "b"}, translation(5, 1));
    EXPECT_EQ(scene.changes(), "editKind editedObjectIds converter preEditEntities");
    EXPECT_EQ(scene.changes("far"), "");
    EXPECT_EQ(scene.header().editKind, 9);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a b");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "b(line 0,0,0 4,0,0) a(line 0,0,0 0,3,0)");
}

TEST(AlignHeader, FeedsItsConverterIdsTransformAndCollection) {
    FeedingScene scene(kAlignDrawing);
    align(scene, {"a", "f1", "b"}, translation(5, 1));
    EXPECT_EQ(scene.fed(), "resetData; setObjectIds a b; setTransform translation 5,1,0; collectInfo");
    EXPECT_EQ(HostAccess::records(*scene.header().converter).editorType, 19);
}

TEST(AlignHeader, KeepsAConverterOfAnotherType) {
    FeedingScene scene(kAlignDrawing);
    LvEvaDataConverter* earlier = LvEvaDataConverterFactory::createInstance(kStretchEditor);
    scene.header().converter = earlier;
    align(scene, {"a"}, translation(5, 1));
    EXPECT_EQ(scene.header().converter, earlier);
    EXPECT_EQ(scene.fed(), "resetData; setObjectIds a; setTransform translation 5,1,0; collectInfo");
}

TEST(AlignHeader, MakesNoSecondConverterForASecondAlign) {
    FeedingScene scene(kAlignDrawing);
    align(scene, {"a", "b"}, translation(5, 1));
    align(scene, {"b"}, translation(0, 2));
    EXPECT_EQ(scene.calls("createInstance"), 1);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "b(line 0,0,0 4,0,0)");
}

TEST(AlignHeader, HasKindAndIdsButNoCopiesWhenNoConverterCanBeMade) {
    FeedingScene scene(kAlignDrawing);
    scene.prefill();
    scene.host().refuse("createInstance");
    align(scene, {"a", "b"}, translation(5, 1));
    EXPECT_EQ(scene.changes(), "editKind editedObjectIds");
    EXPECT_EQ(scene.status(), 0);
    EXPECT_EQ(scene.calls("clone"), 0);
}

TEST(AlignHeader, IsThatOfTheFirstConstrainedObjectsGroup) {
    FeedingScene scene(kAlignDrawing);
    scene.prefill();
    align(scene, {"outsider", "a"}, translation(5, 1));
    EXPECT_EQ(scene.changes("near"), "");
    EXPECT_EQ(scene.text(scene.header("far").editedObjectIds), "outsider a");
    EXPECT_EQ(scene.status("far"), 1);
    EXPECT_EQ(scene.status("near"), 0);
}

TEST(AlignHeader, NamesAnEntityThatCannotBeCopiedButHasNoCopyOfIt) {
    FeedingScene scene(kAlignDrawing);
    scene.prefill();
    scene.refuse("clone", "a");
    align(scene, {"a", "b"}, translation(5, 1));
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a b");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "b(line 0,0,0 4,0,0)");
}

TEST(AlignHeader, HasNoCopyOfAnEntityThatDoesNotOpen) {
    FeedingScene scene(kAlignDrawing);
    scene.refuseOpen("b");
    align(scene, {"b", "a"}, translation(5, 1));
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b a");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "a(line 0,0,0 0,3,0)");
    EXPECT_EQ(scene.fed(), "resetData; setObjectIds b a; setTransform translation 5,1,0; collectInfo");
}

TEST(AlignHeader, LetsThePlatformsClassErrorOutAndKeepsTheCopiesMadeByThen) {
    FeedingScene scene(kAlignDrawing);
    scene.addNonEntity("plain");
    scene.host().answerOther("openObject", HostAccess::peek(scene.id("plain")), scene.pointer("b"));
    EXPECT_THROW(align(scene, {"a", "b"}, translation(5, 1)), YxError_NotThatKindOfClass);
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "a(line 0,0,0 0,3,0)");
    EXPECT_EQ(scene.fed(), "");
    EXPECT_EQ(scene.status(), 0);
}

TEST(AlignHeader, OwnsTheCopiesOfEveryCall) {
    FeedingScene scene(kAlignDrawing);
    ConstraintAlignCmdCenter centre;
    centre.seperateObjectes(scene.ids({"a", "b"}));
    centre.addDataToWork();
    centre.addDataToWork();
    EXPECT_EQ(HostAccess::adopted(scene.header()).size(), 4U);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a b");
    scene.header().uninit();
    EXPECT_EQ(scene.copies(), 0);
}

TEST(AlignStatus, BecomesChangedWithNoticeToTheNetworkOnly) {
    FeedingScene scene(kAlignDrawing);
    scene.setStatus(kSegmentRemovedAssocStatus);
    align(scene, {"a", "f1"}, translation(5, 1));
    EXPECT_EQ(scene.status(), 1);
    EXPECT_EQ(scene.process().journal().text({"setStatus"}), "status of near: 1, true, false");
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(AlignStatus, IsNotSetAgainWhenItIsChangedAlready) {
    FeedingScene scene(kAlignDrawing);
    scene.setStatus(kChangedAssocStatus);
    align(scene, {"a"}, translation(5, 1));
    EXPECT_EQ(scene.calls("setStatus"), 0);
}

TEST(AlignStatus, IsLeftAloneWhenTheGroupDoesNotOpenAsAGroup) {
    FeedingScene scene(kAlignDrawing);
    scene.host().answerOther("openObject", scene.pointer("stranger"), &scene.group("near"));
    align(scene, {"a"}, translation(5, 1));
    EXPECT_EQ(scene.calls("setStatus"), 0);
    EXPECT_NE(scene.fed(), "");
}

TEST(AlignFailures, LeaveNothingOpenAndNoCopyBehind) {
    const int calls = failEachCall(kAlignDrawing, [](const FeedingScene& scene) {
        align(scene, {"f1", "b", "f2", "a"}, translation(5, 1));
    });
    EXPECT_GT(calls, 20);
}

}  // namespace
}  // namespace holdfast::module
