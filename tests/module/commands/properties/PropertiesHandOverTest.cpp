#include <gtest/gtest.h>

#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kHandOverDrawing =
    "line b 0,0 0,3; circle c centre 9,0 radius 2; line a 0,0 4,0; line free 50,0 51,0; dependency a; dependency c;"
    "dependency b";

TEST(PropertiesHeader, GetsKindIdsConverterAndCopiesAndKeepsTheRest) {
    Palette palette(kHandOverDrawing);
    palette.scene.prefill();
    palette.point("a", 2, 6, 1);
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.changes(), "editKind editedObjectIds converter preEditEntities");
    EXPECT_EQ(palette.scene.changes("far"), "");
    EXPECT_EQ(palette.scene.header().editKind, 12);
    EXPECT_EQ(HostAccess::records(*palette.scene.header().converter).editorType, 31);
}

TEST(PropertiesHeader, GetsEveryRecordInTheOrderOfTheIds) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    palette.value("c", 3, 7.0);
    palette.point("b", 1, 1, 0);
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.text(palette.scene.header().editedObjectIds), "b c a");
    EXPECT_EQ(palette.scene.text(palette.scene.header().preEditEntities),
              "b(line 0,0,0 0,3,0) c(circle 9,0,0 2) a(line 0,0,0 4,0,0)");
    EXPECT_EQ(palette.scene.fed(),
              "b type 1 kind 0 1,0,0 0 0 identity; c type 5 kind 1 0,0,0 3.5 0 identity; "
              "a type 1 kind 1 2,1,0 0 0 identity");
}

TEST(PropertiesHeader, IsThatOfTheFirstRecordsGroup) {
    Palette palette(kHandOverDrawing);
    palette.scene.prefill();
    palette.point("outsider", 1, 1, 0);
    palette.point("a", 2, 6, 1);
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.changes("near"), "");
    EXPECT_EQ(palette.scene.text(palette.scene.header("far").editedObjectIds), "outsider a");
    EXPECT_EQ(palette.scene.status("far"), 1);
    EXPECT_EQ(palette.scene.status("near"), 0);
}

TEST(PropertiesHeader, StaysUntouchedWithoutARecord) {
    Palette palette(kHandOverDrawing);
    palette.scene.prefill();
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.changes("near") + palette.scene.changes("far"), "");
    EXPECT_EQ(palette.scene.calls("getAssocConstraintHeader"), 0);
}

TEST(PropertiesHeader, StaysUntouchedWhenTheFirstIdIsNull) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    LvTestAccess::records(palette.centre)[YxDbObjectId()] = {};
    palette.scene.prefill();
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.changes(), "");
}

TEST(PropertiesHeader, StaysUntouchedWithoutAProviderAGroupAHeaderOrAConverter) {
    for (const char* missing :
         {"getConstraintDataProviderLvInstance", "getAssocCons2DGroup", "getAssocConstraintHeader", "createInstance"}) {
        SCOPED_TRACE(missing);
        Palette palette(kHandOverDrawing);
        palette.scene.prefill();
        palette.point("a", 2, 6, 1);
        palette.scene.host().refuse(missing);
        palette.centre.addDataToWork();
        EXPECT_EQ(palette.scene.changes("near") + palette.scene.changes("far"), "");
        EXPECT_EQ(palette.scene.status(), 0);
    }
}

TEST(PropertiesHeader, SkipsARecordWithoutACopyOrConstraints) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    palette.point("b", 1, 1, 0);
    palette.value("c", 2, 7.0);
    LvTestAccess::records(palette.centre).at(palette.scene.id("b")).preEditCopy = nullptr;
    palette.scene.refuse("hasAssocConstraint", "c");
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.text(palette.scene.header().editedObjectIds), "a");
    EXPECT_EQ(palette.scene.fed(), "a type 1 kind 1 2,1,0 0 0 identity");
}

TEST(PropertiesHeader, KeepsAConverterOfAnotherTypeAndOnlyMissesTheRecords) {
    Palette palette(kHandOverDrawing);
    LvEvaDataConverter* earlier = LvEvaDataConverterFactory::createInstance(kLengthenEditor);
    palette.scene.header().converter = earlier;
    palette.point("a", 2, 6, 1);
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.header().converter, earlier);
    EXPECT_EQ(palette.scene.fed(), "");
    EXPECT_EQ(palette.scene.text(palette.scene.header().preEditEntities), "a(line 0,0,0 4,0,0)");
    EXPECT_EQ(palette.scene.status(), 1);
}

TEST(PropertiesHeader, GetsTheSameRecordsAgainByASecondCallAndFreesTheCopiesOnce) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    palette.centre.addDataToWork();
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.text(palette.scene.header().editedObjectIds), "a");
    EXPECT_EQ(palette.scene.fed(), "a type 1 kind 1 2,1,0 0 0 identity; a type 1 kind 1 2,1,0 0 0 identity");
    EXPECT_EQ(palette.scene.calls("createInstance"), 1);
    EXPECT_EQ(HostAccess::adopted(palette.scene.header()).size(), 1U);
    palette.scene.header().uninit();
    EXPECT_EQ(palette.scene.copies(), 0);
}

TEST(PropertiesHeader, OwnsTheCopyOfARecordThatIsReplacedLater) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    palette.centre.addDataToWork();
    palette.point("a", 2, 7, 1);
    palette.centre.addDataToWork();
    EXPECT_EQ(HostAccess::adopted(palette.scene.header()).size(), 2U);
    EXPECT_EQ(palette.scene.header().preEditEntities.at(palette.scene.id("a")), palette.record("a").preEditCopy);
}

TEST(PropertiesStatus, BecomesChangedUnlessItIsAndNothingIsEvaluated) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.process().journal().text({"setStatus"}), "status of near: 1, true, false");
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.calls("setStatus"), 1);
    EXPECT_EQ(palette.scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(PropertiesStatus, IsLeftAloneWhenTheGroupDoesNotOpenAsAGroup) {
    Palette palette(kHandOverDrawing);
    palette.point("a", 2, 6, 1);
    palette.scene.host().answerOther("openObject", palette.scene.pointer("stranger"), &palette.scene.group("near"));
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.calls("setStatus"), 0);
}

TEST(PropertiesFailures, LeaveNothingOpenAndNoCopyBehind) {
    const int calls = failEachCall(
        "spline s degree 3 at 0,0 1,1 2,0 3,1; polyline p 0,9 4,9 4,12; line a 0,0 4,0; fixed a; dependency s;"
        "text t 0,0 rotation 0; horizontal t; dependency p[1]",
        [](const FeedingScene& scene) {
            ConstraintPropertiesCmdCenter centre;
            centre.addOriInfo(scene.id("a"), 2, std::vector<double>{6.0, 0.0, 0.0});
            centre.addOriInfo(scene.id("t"), 7, 0, 1.0);
            centre.addExpanderOriInfo(scene.id("p"), 0, 1, 0, 1.0);
            centre.addExpanderOriInfo(scene.id("p"), 0, 1, 1, 1.0);
            for (const int row : {4, 5, 6})
                centre.addExpanderOriInfo(scene.id("s"), 0, 2, row, 0.0);
            centre.addOriInfo(scene.id("t"), 11, 2, 5.0);
            centre.addDataToWork();
        });
    EXPECT_GT(calls, 50);
}

}  // namespace
}  // namespace holdfast::module
