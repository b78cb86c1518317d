#include <gtest/gtest.h>

#include "tests/module/drag/DragSession.h"

namespace holdfast::module {
namespace {

TEST(DragInit, EmptiesTheHeaderAndMakesTheDragActive) {
    DragScene scene(kDragDrawing);
    scene.prefill();
    scene.header().converter = LvEvaDataConverterFactory::createInstance(kAlignEditor);
    scene.drag({"a", "f", "p"});
    AssocConstraintHeader fresh;
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, &scene.header());
    EXPECT_EQ(LvConstraintDropData::mGroupId, scene.id("near"));
    EXPECT_EQ(scene.text(LvConstraintDropData::mObjIdArr), "a f p");
    EXPECT_TRUE(scene.header().dragActive);
    EXPECT_TRUE(scene.header().collectNeeded);
    EXPECT_EQ(scene.header().editKind, 0);
    EXPECT_EQ(scene.header().converter, nullptr);
    EXPECT_EQ(scene.copies(), 0);
    EXPECT_EQ(scene.status(), 0);
}

TEST(DragInit, TakesTheGroupOfTheFirstConstrainedObject) {
    DragScene scene(kDragDrawing);
    scene.drag({"f", "stranger", "outsider", "a"});
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, &scene.header("far"));
    EXPECT_FALSE(scene.header("near").dragActive);
}

TEST(DragInit, KeepsOnlyTheIdsWithoutAConstrainedObject) {
    DragScene scene(kDragDrawing);
    scene.prefill();
    scene.drag({"f", "g"});
    EXPECT_EQ(scene.text(LvConstraintDropData::mObjIdArr), "f g");
    EXPECT_TRUE(LvConstraintDropData::mGroupId.isNull());
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, nullptr);
    EXPECT_EQ(scene.calls("getConstraintDataProviderLvInstance"), 0);
    EXPECT_EQ(scene.changes(), "");
}

TEST(DragInit, StartsNoSessionWithoutAProvider) {
    DragScene scene(kDragDrawing);
    scene.host().refuse("getConstraintDataProviderLvInstance");
    scene.drag({"a"});
    EXPECT_TRUE(LvConstraintDropData::mGroupId.isNull());
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, nullptr);
}

TEST(DragInit, StartsNoSessionWithoutAHeaderButKnowsTheGroup) {
    DragScene scene(kDragDrawing);
    scene.host().refuse("getAssocConstraintHeader");
    scene.drag({"a"});
    EXPECT_EQ(LvConstraintDropData::mGroupId, scene.id("near"));
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, nullptr);
    EXPECT_FALSE(scene.step(1, 0));
}

TEST(DragInit, ForgetsAnEarlierSession) {
    DragScene scene(kDragDrawing);
    scene.drag({"a", "p"});
    LvConstraintDropData::setFlag(3);
    scene.drag({"f"});
    EXPECT_EQ(scene.text(LvConstraintDropData::mObjIdArr), "f");
    EXPECT_EQ(LvConstraintDropData::mpAssocHeader, nullptr);
    EXPECT_EQ(LvConstraintDropData::mFlag, 0);
    EXPECT_TRUE(scene.header().dragActive);
}

TEST(DragStep, HandsOverConstrainedIdsAndClones) {
    DragScene scene(kDragDrawing);
    scene.drag({"p", "a", "f", "q", "g"});
    scene.remember();
    EXPECT_TRUE(scene.step(3, 4));
    EXPECT_EQ(scene.changes(),
              "editKind editedObjectIds collectNeeded dropCollected dropChanged dropObjectIds dragTransform "
              "staticTransform polylineEntities unconstrainedEntities");
    EXPECT_EQ(scene.header().editKind, 18);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "p a q");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "p q");
    EXPECT_EQ(scene.text(scene.header().polylineEntities), "(polyline 0,0 10,0 10,10) (polyline 0,20 9,20)");
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "(circle 70,0,0 5) (polyline 40,0 50,0)");
    EXPECT_FALSE(scene.header().collectNeeded);
    EXPECT_TRUE(scene.header().dropCollected && scene.header().dropChanged);
}

TEST(DragStep, ReplacesWhateverTheListsHeld) {
    DragScene scene(kDragDrawing);
    scene.drag({"a", "f"});
    scene.prefill();
    scene.header().collectNeeded = true;
    scene.header().dragActive = scene.header().dropCollected = scene.header().dropChanged = false;
    EXPECT_TRUE(scene.step(3, 4));
    EXPECT_TRUE(scene.header().dragActive && scene.header().dropCollected && scene.header().dropChanged);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds) + scene.text(scene.header().polylineEntities), "");
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "(circle 70,0,0 5)");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "stranger(line 90,0,0 95,0,0)");
    EXPECT_EQ(scene.text(scene.header().entitiesToDraw), "stranger");
}

TEST(DragStep, OpensAndClonesOnlyOnce) {
    DragScene scene(kDragDrawing);
    scene.drag({"p", "a", "f"});
    scene.step(3, 4);
    scene.process().journal().clear();
    scene.remember();
    EXPECT_TRUE(scene.step(5, 6));
    EXPECT_EQ(scene.changes(), "dragTransform staticTransform");
    EXPECT_EQ(scene.calls("yxdbOpenObject") + scene.calls("clone"), 0);
    EXPECT_EQ(textOf(scene.header().dragTransform), "translation 5,6,0");
    EXPECT_EQ(textOf(scene.header().staticTransform), "translation 5,6,0");
}

TEST(DragStep, OpensForReadAndClosesBeforeItHandsOver) {
    DragScene scene(kDragDrawing);
    scene.drag({"a", "f"});
    scene.process().journal().clear();
    scene.step(1, 0);
    EXPECT_EQ(scene.process().journal().text({"yxdbOpenObject"}), "open a for read; open f for read");
    EXPECT_EQ(HostAccess::openCount(*scene.pointer("a")), 0);
}

TEST(DragStep, LeavesOutWhatIsNullDoesNotOpenOrIsNoEntity) {
    DragScene scene(kDragDrawing);
    scene.addNonEntity("plain");
    YxArray<YxDbObjectId> ids = scene.ids({"a", "plain", "b", "f"});
    ids.append(YxDbObjectId());
    LvConstraintDropData::init(ids);
    scene.refuse("yxdbOpenObject", "b");
    EXPECT_TRUE(scene.step(1, 0));
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "a");
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "(circle 70,0,0 5)");
    EXPECT_EQ(scene.calls("yxdbOpenObject"), 4);
}

TEST(DragStep, NamesAPolylineThatCannotBeClonedButHasNoCloneOfIt) {
    DragScene scene(kDragDrawing);
    scene.drag({"p", "q", "f"});
    scene.refuse("clone", "p");
    scene.refuse("clone", "f");
    EXPECT_TRUE(scene.step(1, 0));
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "p q");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "q");
    EXPECT_EQ(scene.text(scene.header().polylineEntities), "(polyline 0,20 9,20)");
    EXPECT_EQ(scene.text(scene.header().unconstrainedEntities), "");
}

TEST(DragStep, ListsAnObjectAsOftenAsItIsDragged) {
    DragScene scene(kDragDrawing);
    scene.drag({"p", "a", "p"});
    EXPECT_TRUE(scene.step(1, 0));
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "p a p");
    EXPECT_EQ(scene.text(scene.header().dropObjectIds), "p p");
}

TEST(DragStep, FreesItsClonesWhenNoConstrainedObjectOpens) {
    DragScene scene(kDragDrawing);
    scene.drag({"a", "f", "g"});
    scene.prefill();
    scene.header().collectNeeded = true;
    scene.remember();
    scene.refuse("yxdbOpenObject", "a");
    const int before = scene.copies();
    EXPECT_FALSE(scene.step(1, 0));
    EXPECT_EQ(scene.changes(), "");
    EXPECT_EQ(scene.copies(), before);
    EXPECT_EQ(scene.calls("clone"), 2);
    EXPECT_EQ(scene.status(), 0);
}

TEST(DragStep, IsRefusedWithoutASession) {
    DragScene scene(kDragDrawing);
    EXPECT_FALSE(scene.step(1, 0));
    scene.drag({"f"});
    EXPECT_FALSE(scene.step(1, 0));
    scene.drag({"a"});
    LvConstraintDropData::mObjIdArr.setLogicalLength(0);
    EXPECT_FALSE(scene.step(1, 0));
    scene.drag({"a"});
    LvConstraintDropData::mGroupId = YxDbObjectId();
    EXPECT_FALSE(scene.step(1, 0));
    EXPECT_EQ(scene.header().editKind, 0);
}

TEST(DragStep, MarksTheGroupChangedUnlessItIsAndNeverEvaluates) {
    DragScene scene(kDragDrawing);
    scene.drag({"a"});
    scene.step(1, 0);
    EXPECT_EQ(scene.process().journal().text({"setStatus"}), "status of near: 1, true, false");
    scene.step(2, 0);
    EXPECT_EQ(scene.calls("setStatus"), 1);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(DragStep, SucceedsWhenTheGroupDoesNotOpen) {
    DragScene scene(kDragDrawing);
    scene.drag({"a"});
    scene.refuseOpen("near");
    EXPECT_TRUE(scene.step(1, 0));
    EXPECT_EQ(scene.status(), 0);
}

TEST(DragHelpers, CloseAndReleaseWhatIsNotNullAndEmptyTheirList) {
    DragScene scene(kDragDrawing);
    YxArray<YxDbEntity*> opened;
    opened.append(nullptr);
    YxDbEntity* entity = nullptr;
    yxdbOpenObject(entity, scene.id("a"), YxDb::kForRead, false);
    opened.append(entity);
    LvTestAccess::closeOpenedEnts(opened);
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_EQ(HostAccess::openCount(*scene.pointer("a")), 0);
    YxArray<YxDbEntity*> clones;
    clones.append(nullptr);
    clones.append(EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release());  // the helper's from here on
    LvTestAccess::releaseCloneEnts(clones);
    EXPECT_TRUE(clones.isEmpty());
    EXPECT_EQ(scene.copies(), 0);
}

TEST(DragFailures, LeaveNothingOpenAndNoCloneBehind) {
    const int calls = failEachCall(kDragDrawing, [](const FeedingScene& scene) {
        LvConstraintDropData::reset();
        LvConstraintDropData::init(scene.ids({"f", "p", "a", "g"}));
        LvConstraintDropData::addDataToWork(translation(1, 0));
        LvConstraintDropData::addDataToWork(translation(2, 0));
        LvConstraintDropData::evaluate();
        LvConstraintDropData::setFlag(1);
        LvConstraintDropData::confirm();
    });
    LvConstraintDropData::reset();
    EXPECT_GT(calls, 25);
}

}  // namespace
}  // namespace holdfast::module
