#include <gtest/gtest.h>

#include "drag/CYxRotateReleaseConstraint.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kDrawing =
    "line b 0,0 0,3; circle f centre 70,0 radius 5; line a 0,0 4,0; dependency a; dependency b";

struct Outcome {
    std::string constrained;
    bool ignored;
    bool result;
};

Outcome analyse(const FeedingScene& scene, std::initializer_list<const char*> names, bool ignored = true) {
    YxArray<YxDbObjectId> constrained;
    bool result = true;
    CYxRotateReleaseConstraint::analysisRotateBox(scene.ids(names), {1, 2, 0}, ignored, constrained, result);
    return {scene.text(constrained), ignored, result};
}

TEST(RotateAnalysis, FillsTheHeaderAndEvaluatesAtOnce) {
    FeedingScene scene(kDrawing);
    scene.prefill();
    scene.header().dragActive = scene.header().rotateEvaluated = false;
    bool evaluatedBefore = true;
    int statusWhenEvaluated = 0;
    scene.process().setEvaluator([&](YxDbDatabase&) {
        evaluatedBefore = scene.header().rotateEvaluated;
        statusWhenEvaluated = scene.status();
        EXPECT_TRUE(HostAccess::isWritable(scene.group("near")));
        return true;
    });
    EXPECT_EQ(analyse(scene, {"b", "f", "a"}).constrained, "b a");
    EXPECT_EQ(scene.header().editKind, 4);
    EXPECT_TRUE(scene.header().dragActive);
    EXPECT_FALSE(evaluatedBefore);
    EXPECT_EQ(statusWhenEvaluated, 1);
    EXPECT_TRUE(scene.header().rotateEvaluated);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 1);
}

TEST(RotateAnalysis, SetsTheStatusWhateverItIs) {
    FeedingScene scene(kDrawing);
    scene.setStatus(kChangedAssocStatus);
    analyse(scene, {"a"});
    EXPECT_EQ(scene.process().journal().text({"setStatus"}), "status of near: 1, true, false");
    EXPECT_EQ(scene.calls("YxDbAssocAction::status"), 0);
}

TEST(RotateAnalysis, SetsTheResultFlagFalseInEveryCase) {
    FeedingScene scene(kDrawing);
    EXPECT_FALSE(analyse(scene, {"a"}).result);
    EXPECT_FALSE(analyse(scene, {}).result);
    EXPECT_FALSE(analyse(scene, {"f"}).result);
    scene.host().refuse("evaluateTopLevelNetwork");
    EXPECT_FALSE(analyse(scene, {"a"}).result);
}

TEST(RotateAnalysis, LeavesTheIgnoredFlagAlone) {
    FeedingScene scene(kDrawing);
    EXPECT_TRUE(analyse(scene, {"a"}, true).ignored);
    EXPECT_FALSE(analyse(scene, {"a"}, false).ignored);
}

TEST(RotateAnalysis, EvaluatesTheGroupOfTheFirstGivenObject) {
    FeedingScene scene(kDrawing);
    YxArray<YxDbObjectId> constrained = scene.ids({"a"});
    bool ignored = false;
    bool result = true;
    CYxRotateReleaseConstraint::analysisRotateBox(scene.ids({"outsider"}), {}, ignored, constrained, result);
    EXPECT_EQ(scene.header("near").editKind, 4);
    EXPECT_EQ(scene.header("far").editKind, 0);
    EXPECT_TRUE(scene.header("far").dragActive);
    EXPECT_TRUE(scene.header("far").rotateEvaluated);
    EXPECT_FALSE(scene.header("near").rotateEvaluated);
    EXPECT_EQ(scene.process().journal().text({"setStatus"}), "status of far: 1, true, false");
}

TEST(RotateAnalysis, StopsBehindTheFilledHeaderWhenTheFirstGivenObjectIsFree) {
    FeedingScene scene(kDrawing);
    EXPECT_EQ(analyse(scene, {"f", "a"}).constrained, "a");
    EXPECT_EQ(scene.header().editKind, 4);
    EXPECT_FALSE(scene.header().dragActive);
    EXPECT_EQ(scene.calls("setStatus") + scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(RotateAnalysis, DoesNothingForAnEmptySelection) {
    FeedingScene scene(kDrawing);
    analyse(scene, {});
    EXPECT_TRUE(scene.process().journal().entries().empty());
}

TEST(RotateAnalysis, DoesNothingWithoutAConstrainedObject) {
    FeedingScene scene(kDrawing);
    scene.prefill();
    analyse(scene, {"f", "stranger"});
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(RotateAnalysis, MakesNoDragActiveWhileTheServiceIsDown) {
    FeedingScene scene(kDrawing);
    scene.serviceDown();
    analyse(scene, {"a"});
    EXPECT_FALSE(scene.header().dragActive);
    EXPECT_TRUE(scene.header().rotateEvaluated);
}

TEST(RotateAnalysis, StopsWhenTheGroupDoesNotOpen) {
    FeedingScene scene(kDrawing);
    scene.refuseOpen("near");
    analyse(scene, {"a"});
    EXPECT_TRUE(scene.header().dragActive);
    EXPECT_FALSE(scene.header().rotateEvaluated);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
}

TEST(RotateAnalysis, CountsAsEvaluatedWhateverTheHostAnswers) {
    FeedingScene scene(kDrawing);
    scene.process().setEvaluator([](YxDbDatabase&) { return false; });
    analyse(scene, {"a"});
    EXPECT_TRUE(scene.header().rotateEvaluated);
}

TEST(RotateAnalysis, OwnsNothing) {
    FeedingScene scene(kDrawing);
    analyse(scene, {"a", "b"});
    EXPECT_EQ(scene.copies(), 0);
    EXPECT_TRUE(HostAccess::adopted(scene.header()).empty());
}

TEST(RotateFailures, LeaveNothingOpen) {
    const int calls = failEachCall(kDrawing, [](const FeedingScene& scene) { analyse(scene, {"b", "f", "a"}); });
    EXPECT_GT(calls, 15);
}

}  // namespace
}  // namespace holdfast::module
