#include <gtest/gtest.h>

#include "commands/mirror/ConstraintMirrorCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kDrawing =
    "line b 0,0 4,0; circle f centre 9,9 radius 1; line a 0,0 0,3; dependency a; "
    "dependency b";

TEST(MirrorIds, AreHandedOverUnfiltered) {
    FeedingScene scene(kDrawing);
    YxArray<YxDbObjectId> ids = scene.ids({"b", "f", "a", "outsider", "b"});
    ids.append(YxDbObjectId());
    scene.prefill();
    ConstraintMirrorCmdCenter().addDataToWork(ids);
    EXPECT_EQ(scene.header().editKind, 14);
    EXPECT_EQ(scene.text(scene.header().editedObjectIds), "b f a outsider b null");
}

TEST(MirrorHeader, GetsKindAndIdsAndKeepsTheRest) {
    FeedingScene scene(kDrawing);
    scene.prefill();
    scene.header().converter = LvEvaDataConverterFactory::createInstance(kStretchEditor);
    scene.remember();
    ConstraintMirrorCmdCenter().addDataToWork(scene.ids({"a", "b"}));
    EXPECT_EQ(scene.changes(), "editKind editedObjectIds");
    EXPECT_EQ(scene.changes("far"), "");
    EXPECT_EQ(scene.fed(), "");
}

TEST(MirrorHeader, IsThatOfTheFirstObjectsGroup) {
    FeedingScene scene(kDrawing);
    scene.prefill();
    ConstraintMirrorCmdCenter().addDataToWork(scene.ids({"outsider", "a"}));
    EXPECT_EQ(scene.changes("near"), "");
    EXPECT_EQ(scene.text(scene.header("far").editedObjectIds), "outsider a");
}

TEST(MirrorHeader, StaysUntouchedForAnEmptyList) {
    FeedingScene scene(kDrawing);
    scene.prefill();
    ConstraintMirrorCmdCenter().addDataToWork(YxArray<YxDbObjectId>());
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    EXPECT_TRUE(scene.process().journal().entries().empty());
}

TEST(MirrorHeader, StaysUntouchedWhenTheFirstObjectIsFree) {
    FeedingScene scene(kDrawing);
    scene.prefill();
    ConstraintMirrorCmdCenter().addDataToWork(scene.ids({"f", "a"}));
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    EXPECT_EQ(scene.calls("getAssocConstraintHeader"), 0);
}

TEST(MirrorHeader, StaysUntouchedWithoutAProviderAGroupOrAHeader) {
    for (const char* missing :
         {"getConstraintDataProviderLvInstance", "getAssocCons2DGroup", "getAssocConstraintHeader"}) {
        SCOPED_TRACE(missing);
        FeedingScene scene(kDrawing);
        scene.prefill();
        scene.host().refuse(missing);
        ConstraintMirrorCmdCenter().addDataToWork(scene.ids({"a", "b"}));
        EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    }
}

TEST(MirrorStatus, IsLeftToTheCommand) {
    FeedingScene scene(kDrawing);
    ConstraintMirrorCmdCenter().addDataToWork(scene.ids({"a", "b"}));
    EXPECT_EQ(scene.status(), 0);
    EXPECT_EQ(scene.calls("openObject") + scene.calls("setStatus") + scene.calls("createInstance") +
                  scene.calls("clone") + scene.calls("evaluateTopLevelNetwork"),
              0);
}

TEST(MirrorFailures, LeaveNothingBehind) {
    const int calls = failEachCall(kDrawing, [](const FeedingScene& scene) {
        ConstraintMirrorCmdCenter().addDataToWork(scene.ids({"a", "b"}));
    });
    EXPECT_EQ(calls, 4);
}

}  // namespace
}  // namespace holdfast::module
