#include <gtest/gtest.h>

#include "tests/module/commands/lengthen/LengthenScene.h"
#include "tests/module/evaluation/LvTestAccess.h"

namespace holdfast::module {
namespace {

TEST(LengthenHeader, GetsKindIdsConverterAndCopiesAndKeepsTheRest) {
    FeedingScene scene(kLengthenDrawing);
    scene.prefill();
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "a");
    record(centre, scene, "b");
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.changes(), "editKind editedObjectIds converter preEditEntities");
    EXPECT_EQ(scene.header().editKind, 10);
    EXPECT_EQ(HostAccess::records(*scene.header().converter).editorType, 21);
    EXPECT_EQ(scene.changes("far"), "");
}

TEST(LengthenHeader, ListsTheCurvesInTheOrderOfTheirIds) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    for (const char* name : {"a", "e", "b", "p"})
        record(centre, scene, name);
    centre.addDataToWork();
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "p b e a");
    EXPECT_EQ(scene.text(scene.header().preEditEntities),
              "p(polyline 0,5 4,5 4,9) b(line 0,0,0 4,0,0) e(YxDbEllipse) a(line 0,0,0 0,3,0)");
}

TEST(LengthenHeader, HearsOfEachEndThatMoved) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "a");
    record(centre, scene, "b");
    setLine(scene, "b", {0, 0, 0}, {6, 0, 0});
    setLine(scene, "a", {0, -1, 0}, {0, 3.5, 0});
    centre.addDataToWork();
    EXPECT_EQ(scene.fed(), "b type 1 end 2,0,0; a type 1 start 0,-1,0; a type 1 end 0,0.5,0");
}

TEST(LengthenHeader, HearsOfNoEndThatMovedWithinTheTolerance) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    setLine(scene, "b", {0, 0, 0}, {4.0 + 9e-11, 0, 0});
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.fed(), "");
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b");
}

TEST(LengthenHeader, HearsOfTheEndsOfArcsAndPolylines) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "k");
    record(centre, scene, "p");
    {
        const auto opened = YxDbObjectIdImpl::openObject(scene.id("k"), YxDb::kForWrite, false);
        auto& arc = static_cast<YxDbArc&>(*opened);
        ArcData data = EntityAccess::arc(arc);
        data.endAngle = std::numbers::pi;
        EntityAccess::setArc(arc, data);
        const auto polyline = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
        EntityAccess::setVertexPoint(static_cast<YxDbPolyline&>(*polyline), 0, {-1, 5});
    }
    centre.addDataToWork();
    EXPECT_EQ(scene.fed(), "p type 2 start -1,0,0; k type 6 end -5,-5,0");
}

TEST(LengthenHeader, IsTheFirstCurvesForCurvesOfTwoGroups) {
    FeedingScene scene("line a 0,0 0,3; dependency a");
    scene.prefill();
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "a");
    record(centre, scene, "outsider");
    centre.addDataToWork();
    EXPECT_EQ(scene.changes("near"), "");
    EXPECT_EQ(scene.text(scene.header("far").editedObjectIds), "outsider a");
    EXPECT_EQ(scene.status("far"), 1);
    EXPECT_EQ(scene.status("near"), 0);
}

TEST(LengthenHeader, IsTheNullGroupsWithoutAnyCurve) {
    FeedingScene scene(kLengthenDrawing);
    AssocConstraintHeader ofNullGroup;
    ofNullGroup.editKind = 77;
    ofNullGroup.editedObjectIds = scene.ids({"stranger"});
    ofNullGroup.preEditEntities[scene.id("stranger")] = nullptr;
    hostState().headerOfNullGroup = &ofNullGroup;
    EXPECT_TRUE(ConstraintLengthenCmdCenter().addDataToWork());
    EXPECT_EQ(ofNullGroup.editKind, 10);
    EXPECT_TRUE(ofNullGroup.editedObjectIds.isEmpty());
    EXPECT_TRUE(ofNullGroup.preEditEntities.empty());
    EXPECT_NE(ofNullGroup.converter, nullptr);
}

TEST(LengthenHeader, IsMissingWithoutAnyCurveOnMostHosts) {
    FeedingScene scene(kLengthenDrawing);
    scene.prefill();
    EXPECT_FALSE(ConstraintLengthenCmdCenter().addDataToWork());
    EXPECT_EQ(scene.calls("getAssocCons2DGroup"), 0);
    EXPECT_EQ(scene.calls("getAssocConstraintHeader"), 1);
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
}

TEST(LengthenHeader, StaysUntouchedWithoutAProviderAGroupAHeaderOrAConverter) {
    for (const char* missing :
         {"getConstraintDataProviderLvInstance", "getAssocCons2DGroup", "getAssocConstraintHeader", "createInstance"}) {
        SCOPED_TRACE(missing);
        FeedingScene scene(kLengthenDrawing);
        scene.prefill();
        ConstraintLengthenCmdCenter centre;
        record(centre, scene, "b");
        scene.host().refuse(missing);
        EXPECT_FALSE(centre.addDataToWork());
        EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
        EXPECT_EQ(scene.status(), 0);
    }
}

TEST(LengthenHeader, IsMissingWhenTheFirstIdIsNull) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    LvTestAccess::originals(centre)[YxDbObjectId()] = {};
    EXPECT_FALSE(centre.addDataToWork());
    EXPECT_EQ(scene.header().editKind, 0);
}

TEST(LengthenHeader, KeepsAConverterOfAnotherTypeAndOnlyMissesTheReports) {
    FeedingScene scene(kLengthenDrawing);
    LvEvaDataConverter* earlier = LvEvaDataConverterFactory::createInstance(kPropertiesEditor);
    scene.header().converter = earlier;
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    setLine(scene, "b", {0, 0, 0}, {6, 0, 0});
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.header().converter, earlier);
    EXPECT_EQ(scene.fed(), "");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "b(line 0,0,0 4,0,0)");
    EXPECT_EQ(scene.status(), 1);
}

TEST(LengthenHeader, SkipsACurveThatDoesNotOpenOrLostItsConstraints) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    for (const char* name : {"a", "b", "e"})
        record(centre, scene, name);
    scene.refuseOpen("e");
    scene.refuse("hasAssocConstraint", "a");
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b");
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "b(line 0,0,0 4,0,0)");
}

TEST(LengthenHeader, SkipsAnObjectThatIsNoCurve) {
    FeedingScene scene("text t 0,0 rotation 0; line b 0,0 4,0; dependency t; dependency b");
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    scene.host().answerOther("openObject", scene.pointer("t"), scene.pointer("b"));
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "");
    EXPECT_EQ(scene.header().editKind, 10);
}

TEST(LengthenHeader, NamesACurveWithoutACopyAndReportsNothingOfIt) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    LvTestAccess::originals(centre)[scene.id("b")] = {};
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b");
    EXPECT_TRUE(scene.header().preEditEntities.empty());
    EXPECT_EQ(scene.fed(), "");
}

TEST(LengthenHeader, IsFilledAgainByASecondCallAndFreesTheCopiesOnce) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    setLine(scene, "b", {0, 0, 0}, {6, 0, 0});
    centre.addDataToWork();
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b");
    EXPECT_EQ(scene.fed(), "b type 1 end 2,0,0; b type 1 end 2,0,0");
    EXPECT_EQ(scene.calls("createInstance"), 1);
    scene.header().uninit();
    EXPECT_EQ(scene.copies(), 0);
}

TEST(LengthenHeader, ThatTookACopyFirstIsTheOneThatFreesIt) {
    FeedingScene scene("line a 0,0 0,3; dependency a");
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "a");
    centre.addDataToWork();
    record(centre, scene, "outsider");
    centre.addDataToWork();
    EXPECT_EQ(scene.text(scene.header("far").preEditEntities), "outsider(line 80,0,0 85,0,0) a(line 0,0,0 0,3,0)");
    scene.header("far").uninit();
    EXPECT_EQ(scene.copies(), 1);
    scene.header("near").uninit();
    EXPECT_EQ(scene.copies(), 0);
}

TEST(LengthenStatus, BecomesChangedUnlessItIs) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    centre.addDataToWork();
    EXPECT_EQ(scene.process().journal().text({"setStatus"}), "status of near: 1, true, false");
    centre.addDataToWork();
    EXPECT_EQ(scene.calls("setStatus"), 1);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(LengthenStatus, IsNoConditionOfSuccess) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    scene.refuseOpen("near");
    EXPECT_TRUE(centre.addDataToWork());
    EXPECT_EQ(scene.status(), 0);
}

TEST(LengthenFailures, LeaveNothingOpenAndNoCopyBehind) {
    const int calls = failEachCall(kLengthenDrawing, [](const FeedingScene& scene) {
        ConstraintLengthenCmdCenter centre;
        record(centre, scene, "b");
        record(centre, scene, "p");
        setLine(scene, "b", {1, 0, 0}, {6, 0, 0});
        centre.addDataToWork();
        centre.addDataToWork();
    });
    EXPECT_GT(calls, 30);
}

}  // namespace
}  // namespace holdfast::module
