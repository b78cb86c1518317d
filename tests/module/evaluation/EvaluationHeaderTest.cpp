#include "evaluation/EvaluationHeader.h"

#include <gtest/gtest.h>

#include "evaluation/EntityOpening.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kDrawing = "line b 0,0 4,0; line a 0,0 0,3; dependency a; dependency b";

TEST(EvaluationGroup, IsTheEntitysOwn) {
    FeedingScene scene(kDrawing);
    EXPECT_EQ(findGroup(scene.id("a")), scene.id("near"));
    EXPECT_EQ(findGroup(scene.id("outsider")), scene.id("far"));
}

TEST(EvaluationGroup, IsNullForAFreeEntityAndWithoutAProvider) {
    FeedingScene scene(kDrawing);
    EXPECT_TRUE(findGroup(scene.id("stranger")).isNull());
    EXPECT_TRUE(findGroup(YxDbObjectId()).isNull());
    scene.host().refuse("getConstraintDataProviderLvInstance");
    EXPECT_TRUE(findGroup(scene.id("a")).isNull());
    EXPECT_EQ(findHeader(scene.id("near")), nullptr);
}

TEST(EvaluationHeader, IsTheGroupsOwn) {
    FeedingScene scene(kDrawing);
    EXPECT_EQ(findHeader(scene.id("near")), &scene.header("near"));
    const auto [group, header] = findHeaderOf(scene.id("outsider"));
    EXPECT_EQ(group, scene.id("far"));
    EXPECT_EQ(header, &scene.header("far"));
}

TEST(EvaluationHeader, IsNotAskedForWithoutAGroupWhenTheEntityIsGiven) {
    FeedingScene scene(kDrawing);
    AssocConstraintHeader ofNullGroup;
    hostState().headerOfNullGroup = &ofNullGroup;
    EXPECT_EQ(findHeaderOf(scene.id("stranger")).header, nullptr);
    EXPECT_EQ(findHeader(YxDbObjectId()), &ofNullGroup);
}

TEST(EvaluationConverter, IsMadeOnceAndThenKept) {
    FeedingScene scene(kDrawing);
    EXPECT_TRUE(ensureConverter(scene.header(), kLengthenEditor));
    LvEvaDataConverter* made = scene.header().converter;
    EXPECT_NE(dynamic_cast<LvEvaDataConverterLengthenEdit*>(made), nullptr);
    EXPECT_TRUE(ensureConverter(scene.header(), kAlignEditor));
    EXPECT_EQ(scene.header().converter, made);
    EXPECT_EQ(scene.calls("createInstance"), 1);
}

TEST(EvaluationConverter, IsMissingWhenTheHostMakesNone) {
    FeedingScene scene(kDrawing);
    scene.host().refuse("createInstance");
    EXPECT_FALSE(ensureConverter(scene.header(), kAlignEditor));
    EXPECT_EQ(scene.header().converter, nullptr);
}

TEST(EvaluationStatus, BecomesChangedFromAnyOther) {
    for (const int before : {0, 2, 5}) {
        FeedingScene scene(kDrawing);
        scene.setStatus(static_cast<YxDbAssocStatus>(before));
        markChanged(scene.id("near"));
        EXPECT_EQ(scene.process().journal().text({"openObject", "setStatus"}),
                  "open near for write; status of near: 1, true, false");
        EXPECT_EQ(scene.status(), 1);
    }
}

TEST(EvaluationStatus, IsNotSetWhenChangedAlready) {
    FeedingScene scene(kDrawing);
    scene.setStatus(kChangedAssocStatus);
    markChanged(scene.id("near"));
    EXPECT_EQ(scene.process().journal().text({"openObject", "setStatus"}), "open near for write");
}

TEST(EvaluationStatus, IsOnlySetOnAGroup) {
    FeedingScene scene(kDrawing);
    markChanged(scene.id("stranger"));
    markChanged(YxDbObjectId());
    scene.refuseOpen("near");
    markChanged(scene.id("near"));
    EXPECT_EQ(scene.calls("setStatus"), 0);
    EXPECT_EQ(scene.status(), 0);
}

TEST(EvaluationStatus, IsWrittenEvenIfTheHostAnswersAnError) {
    FeedingScene scene(kDrawing);
    scene.host().answerStatus("YxDbAssocAction::setStatus", Yxrt::eNotApplicable);
    markChanged(scene.id("near"));
    EXPECT_EQ(scene.calls("setStatus"), 1);
}

TEST(EvaluationNetwork, IsThatOfTheWorkingDatabase) {
    FeedingScene scene(kDrawing);
    YxDbDatabase* evaluated = nullptr;
    scene.process().setEvaluator([&](YxDbDatabase& database) {
        evaluated = &database;
        return true;
    });
    evaluateNetwork();
    EXPECT_EQ(evaluated, &scene.process().database());
}

TEST(EvaluationNetwork, IsAskedForOnceWithModeZeroEvenWithoutAHostApplication) {
    FeedingScene scene(kDrawing);
    scene.process().setServicesUp(false);
    evaluateNetwork();
    ASSERT_EQ(scene.calls("evaluateTopLevelNetwork"), 1);
    EXPECT_EQ(scene.process().journal().entries().back().arguments, "0");
}

TEST(OpenedEntity, ThrowsForAnotherClassAndIsNullWhenItDoesNotOpen) {
    FeedingScene scene(kDrawing);
    scene.addNonEntity("plain");
    EXPECT_EQ(openEntity(scene.id("a"), YxDb::kForRead).get(), scene.pointer("a"));
    EXPECT_TRUE(openEntity(YxDbObjectId(), YxDb::kForRead).isNull());
    try {
        openEntity(scene.id("plain"), YxDb::kForWrite);
        ADD_FAILURE() << "opened";
    } catch (const YxError_NotThatKindOfClass& error) {
        EXPECT_EQ(error.wantedClass(), YxDbEntity::desc());
        EXPECT_EQ(error.actualClass(), HostAccess::peek(scene.id("plain"))->isA());
    }
}

TEST(OpenedEntity, IsCopiedByItself) {
    FeedingScene scene(kDrawing);
    YxDbEntity* copy = copyOf(*scene.pointer("b"));
    scene.header().adopt(copy);
    EXPECT_EQ(EntityAccess::line(static_cast<YxDbLine&>(*copy)).end.x, 4.0);
    scene.refuse("clone", "b");
    EXPECT_EQ(copyOf(*scene.pointer("b")), nullptr);
}

}  // namespace
}  // namespace holdfast::module
