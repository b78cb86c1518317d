#include <gtest/gtest.h>

#include "tests/module/commands/stretch/Stretch.h"

namespace holdfast::module {
namespace {

constexpr const char* kStepDrawing =
    "polyline p 0,0 10,0 10,10; circle f centre 70,0 radius 5; line b 0,0 0,3; line a 0,0 4,0; polyline g 40,0 50,0;"
    "arc k centre 20,0 radius 5 from 0 to 90; dependency a; dependency b; dependency k; dependency p[1]";

TEST(StretchStep, WritesAllThatTheFirstStepHandsOver) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).object("p", {2, 1}, 5, 0).object("f", {0}, 5, 0).begin({5, 2, 0}, {1, 2, 3});
    scene.prefill();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.changes(),
              "editKind editedObjectIds converter dropObjectIds points dragTransform polylineEntities "
              "polylineIndexLists unconstrainedEntities");
    EXPECT_EQ(scene.changes("far"), "");
    EXPECT_EQ(scene.header().editKind, 8);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a p");
    ASSERT_EQ(scene.header().points.length(), 1);
    EXPECT_EQ(textOf(scene.header().points[0]), "1,2,3");
    EXPECT_EQ(textOf(scene.header().dragTransform), "translation 5,2,0");
}

TEST(StretchStep, SortsPolylinesAndFreeObjectsIntoTheirLists) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("f", {0}, 5, 0).object("p", {2, 1}, 5, 0).object("b", {1}, 5, 0).object("g", {0}, 5, 0).begin();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "p");
    EXPECT_EQ(scene.text(scene.header().polylineEntities), "(polyline 5,0 15,0 15,10)");
    ASSERT_EQ(scene.header().polylineIndexLists.length(), 1);
    EXPECT_EQ(scene.header().polylineIndexLists[0][0], 2);
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "(circle 75,0,0 5) (polyline 45,0 55,0)");
    EXPECT_TRUE(HostAccess::adopted(scene.header()).empty());
}

TEST(StretchStep, FeedsTheConverterInItsOrder) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("p", {2, 1}, 5, 0).object("f", {3}, 5, 0).object("k", {0}, 5, 0).begin({5, 2, 0});
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.fed(),
              "beginStep; setObjectIds p k; resetData [2,1] [3] [0]; setTransform 5,2,0; "
              "addSpecialInfo p identity 2 1; addSpecialInfo k translation 5,0,0 0 5; addObjectOffset");
    EXPECT_EQ(HostAccess::records(*scene.header().converter).editorType, 2);
}

TEST(StretchStep, LeavesOutAnObjectWithoutStretchedGrips) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).object("b", {}, 5, 0).object("f", {}, 5, 0).object("p", {}, 5, 0).begin();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a");
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "");
    EXPECT_EQ(scene.fed(), "beginStep; setObjectIds a; resetData [1]; setTransform 0,0,0; addObjectOffset");
}

TEST(StretchStep, TakesTheKindFromTheSourceAndGoesOnWithoutOne) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("p", {1}, nullptr).object("f", {0}, nullptr).begin();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "p");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "");
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "null");
}

TEST(StretchStep, RewritesOnlyTransformAndListsLater) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).object("p", {1}, 5, 0).object("f", {0}, 5, 0).begin({5, 0, 0}, {1, 2, 3});
    stretch.centre.addDataToWork();
    LvEvaDataConverter* made = scene.header().converter;
    scene.prefill();
    stretch.move({7, 0, 0}).centre.setStartPnt({9, 9, 9});
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.changes(), "dropObjectIds dragTransform polylineEntities polylineIndexLists unconstrainedEntities");
    EXPECT_EQ(textOf(scene.header().dragTransform), "translation 7,0,0");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "p");
    EXPECT_EQ(scene.header().converter, made);
    EXPECT_NE(scene.fed().find("setTransform 5,0,0"), std::string::npos);
    EXPECT_NE(scene.fed().find("setTransform 7,0,0"), std::string::npos);
}

TEST(StretchStep, EmptiesTheListsOfAnEarlierStep) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).object("p", {1}, 5, 0).object("f", {0}, 5, 0).begin();
    stretch.centre.addDataToWork();
    stretch.indexLists()[1].setLogicalLength(0);
    stretch.indexLists()[2].setLogicalLength(0);
    stretch.move({}).centre.addDataToWork();
    EXPECT_EQ(scene.header().dropObjectIds.length() + scene.header().polylineEntities.length() +
                  scene.header().polylineIndexLists.length() + scene.header().unconstrainedEntities.length(),
              0);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a p");
}

TEST(StretchStep, WithAForeignConverterCountsAsALaterOne) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).begin({5, 0, 0});
    scene.prefill();
    scene.header().converter = LvEvaDataConverterFactory::createInstance(kAlignEditor);
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.header().editKind, 77);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "stranger");
    EXPECT_EQ(scene.fed(), "beginStep; setObjectIds a; resetData [1]; setTransform 5,0,0; addObjectOffset");
}

TEST(StretchStep, HasWrittenKindIdsAndStartPointWhenNoConverterCanBeMade) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).begin({5, 0, 0});
    scene.prefill();
    scene.host().refuse("createInstance");
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.changes(), "editKind editedObjectIds points");
    EXPECT_EQ(scene.status(), 0);
}

TEST(StretchStep, LeavesTheHeaderUntouchedWithoutAConstrainedObject) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {}, 5, 0).object("f", {0}, 5, 0).begin({5, 0, 0});
    scene.prefill();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.changes(), "");
    EXPECT_EQ(scene.status(), 0);
}

TEST(StretchStep, DoesNothingWhenTheListsDiffer) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).begin();
    stretch.sources().append(nullptr);
    stretch.move({});
    scene.prefill();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.changes(), "");
}

TEST(StretchStep, DoesNothingWithoutAGroupOrAHeader) {
    FeedingScene scene(kStepDrawing);
    scene.prefill();
    Stretch free(scene);
    free.object("f", {0}, 5, 0).begin().centre.addDataToWork();
    scene.host().refuse("getAssocConstraintHeader");
    Stretch headless(scene);
    headless.object("a", {1}, 5, 0).begin().centre.addDataToWork();
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    EXPECT_EQ(scene.calls("uninit") + scene.calls("createInstance"), 0);
    ConstraintStretchCmdCenter().addDataToWork();
}

TEST(StretchStep, ServesTheGroupOfTheFirstConstrainedObject) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("f", {0}).object("outsider", {0}).object("a", {1}).begin();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.text(scene.header("far").editedObjectIds), "outsider a");
    EXPECT_EQ(scene.status("far"), 1);
    EXPECT_EQ(scene.header("near").editKind, 0);
}

TEST(StretchStatus, BecomesChangedInEachStepUnlessItIs) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}).begin();
    stretch.centre.addDataToWork();
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.process().journal().text({"setStatus"}), "status of near: 1, true, false");
    scene.setStatus(kUpToDateAssocStatus);
    stretch.centre.addDataToWork();
    EXPECT_EQ(scene.calls("setStatus"), 2);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(StretchInit, SetsTheHeaderBackToItsBeginning) {
    FeedingScene scene(kStepDrawing);
    scene.remember();
    scene.prefill();
    scene.header().converter = LvEvaDataConverterFactory::createInstance(kAlignEditor);
    ConstraintStretchCmdCenter centre;
    centre.init(scene.ids({"a", "b"}));
    EXPECT_EQ(scene.header().editKind, 0);
    EXPECT_TRUE(scene.header().points.isEmpty());
    EXPECT_EQ(scene.header().converter, nullptr);
    EXPECT_EQ(scene.calls("uninit"), 1);
    EXPECT_EQ(scene.copies(), 0);
}

TEST(StretchCopy, HasListsOfItsOwn) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("k", {0}, 5, 0).begin({5, 0, 0}, {1, 2, 3});
    ConstraintStretchCmdCenter copy(stretch.centre);
    stretch.object("p", {1}, 5, 0).begin({9, 0, 0});
    copy.addDataToWork();
    EXPECT_EQ(scene.fed(),
              "beginStep; setObjectIds k; resetData [0]; setTransform 5,0,0; "
              "addSpecialInfo k translation 5,0,0 0 5; addObjectOffset");
    EXPECT_EQ(textOf(scene.header().points[0]), "1,2,3");
}

TEST(StretchCopy, OfItselfChangesNothing) {
    FeedingScene scene(kStepDrawing);
    Stretch stretch(scene);
    stretch.object("k", {0}, 5, 0).begin({5, 0, 0});
    const ConstraintStretchCmdCenter& itself = stretch.centre;
    stretch.centre = itself;
    stretch.centre.addDataToWork();
    EXPECT_NE(scene.fed().find("addSpecialInfo k"), std::string::npos);
}

TEST(StretchFailures, LeaveNothingOpen) {
    const int calls = failEachCall(kStepDrawing, [](const FeedingScene& scene) {
        Stretch stretch(scene);
        stretch.object("p", {1, 2}, 5, 0).object("f", {0}, 5, 0).object("k", {0}, 5, 0).begin({5, 0, 0});
        stretch.centre.addDataToWork();
        stretch.centre.addDataToWork();
    });
    EXPECT_GT(calls, 40);
}

}  // namespace
}  // namespace holdfast::module
