#include "tests/module/evaluation/FeedingScene.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace holdfast::module {
namespace {

TEST(FeedingScene, HasTwoGroupsAndAFreeLineBesidesItsText) {
    FeedingScene scene("line a 0,0 1,0; circle c centre 5,0 radius 2; dependency a");
    EXPECT_TRUE(LvEvaDataConverter::hasAssocConstraint(scene.id("a")));
    EXPECT_TRUE(LvEvaDataConverter::hasAssocConstraint(scene.id("outsider")));
    EXPECT_FALSE(LvEvaDataConverter::hasAssocConstraint(scene.id("c")));
    EXPECT_FALSE(LvEvaDataConverter::hasAssocConstraint(scene.id("stranger")));
    EXPECT_NE(&scene.header("near"), &scene.header("far"));
}

TEST(FeedingScene, TellsEachFieldThatChanged) {
    FeedingScene scene("line a 0,0 1,0; dependency a");
    scene.prefill();
    EXPECT_EQ(scene.changes(), "");
    scene.header().uninit();
    EXPECT_EQ(scene.changes(),
              "editKind editedObjectIds dragActive rotateEvaluated collectNeeded dropCollected dropChanged "
              "dropObjectIds preEditEntities points dragTransform staticTransform polylineEntities polylineIndexLists "
              "unconstrainedEntities entitiesToDraw boxFlag boxMode");
    EXPECT_EQ(scene.changes("far"), "");
}

TEST(FeedingScene, NamesResidentsAndDescribesCopies) {
    FeedingScene scene("circle c centre 5,0 radius 2; polyline p 0,0 4,0 4,3; dependency c");
    YxArray<YxDbEntity*> listed;
    listed.append(scene.pointer("c"));
    listed.append(nullptr);
    for (const char* name : {"c", "p"}) {
        listed.append(static_cast<YxDbEntity*>(scene.pointer(name)->clone()));
        scene.header().adopt(listed.last());
    }
    EXPECT_EQ(scene.text(listed), "c null (circle 5,0,0 2) (polyline 0,0 4,0 4,3)");
}

void leaveObjectOpen() {
    FeedingScene scene("line a 0,0 1,0; dependency a");
    YxDbEntity* opened = nullptr;
    yxdbOpenObject(opened, scene.id("a"), YxDb::kForRead, false);
    EXPECT_NE(opened, nullptr);
}

TEST(FeedingScene, ComplainsAboutAnObjectThatStaysOpen) {
    EXPECT_NONFATAL_FAILURE(leaveObjectOpen(), "is left open");
}

TEST(FeedingScene, FailsEveryCallTwiceInADrawingOfItsOwn) {
    int runs = 0;
    int thrown = 0;
    const int calls = failEachCall("line a 0,0 1,0; dependency a", [&](FeedingScene& scene) {
        ++runs;
        try {
            LvEvaDataConverter::hasAssocConstraint(scene.id("a"));
            YxDbObjectIdImpl::openObject(scene.id("a"), YxDb::kForRead, false);
        } catch (const HostFailure&) {
            ++thrown;
            throw;
        }
    });
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(runs, 5);
    EXPECT_EQ(thrown, 2);
}

}  // namespace
}  // namespace holdfast::module
