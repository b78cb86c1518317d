#include <gtest/gtest.h>

#include "core/CurveEnds.h"
#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

const auto kUncut = endPair({0, 0, 0}, {10, 0, 0});
const auto kEndCut = endPair({0, 0, 0}, {4, 0, 0});

struct Judged {
    bool nothingStays;
    std::string collected;
};

Judged judged(CheckedScene& scene, const char* place) {
    ConstraintBreakCmdCenter centre;
    const bool nothingStays =
        LvTestAccess::judgeSegment(centre, &scene.group(), scene.dependency(place), kUncut, kEndCut);
    return {nothingStays, scene.names(LvTestAccess::collected(centre))};
}

Judged judged(const std::string& text) {
    CheckedScene scene("line b 0,0 0,5; polyline p 0,0#1 10,0#2^0.5 20,0#3; " + text);
    return judged(scene, "p[1]");
}

TEST(SegmentRule, SaysThatNothingStaysWhereNothingWas) {
    EXPECT_TRUE(judged("bare dependency p[1]").nothingStays);
    EXPECT_TRUE(judged("dependency p[1]").nothingStays);
    EXPECT_TRUE(judged("internal fixed p[1]").nothingStays);
}

TEST(SegmentRule, CollectsWhatGoesThoughSomethingStays) {
    const Judged some = judged("fixed p[1].end; fixed p[1].start; equal p[1] b");
    EXPECT_FALSE(some.nothingStays);
    EXPECT_EQ(some.collected, "c3 c1");
}

TEST(SegmentRule, SaysThatNothingStaysWhenAllGoes) {
    const Judged all = judged("fixed p[1].end; equal p[1] b");
    EXPECT_TRUE(all.nothingStays);
    EXPECT_EQ(all.collected, "c2 c1");
}

TEST(SegmentRule, JudgesAnArcSegmentByTheArcsRule) {
    CheckedScene scene(
        "line b 0,0 0,5; polyline p 0,0#1 10,0#2^0.5 20,0#3; equal p[2] b; distance p[2].start p[2].end = 1");
    const Judged arc = judged(scene, "p[2]");
    EXPECT_FALSE(arc.nothingStays);
    EXPECT_EQ(arc.collected, "c2");
}

TEST(SegmentRule, SkipsConstraintsOnAnyOtherGeometry) {
    CheckedScene scene("circle k centre 0,0 radius 5; fixed k.centre; fixed k");
    const Judged circle = judged(scene, "k");
    EXPECT_TRUE(circle.nothingStays);
    EXPECT_EQ(circle.collected, "");
}

TEST(SegmentRule, CollectsOnceBesideWhatWasCollected) {
    CheckedScene scene("line b 0,0 0,5; polyline p 0,0#1 10,0#2; fixed p[1].end; equal p[1] b");
    ConstraintBreakCmdCenter centre;
    LvTestAccess::collected(centre).append(scene.constraint("c1"));
    LvTestAccess::judgeSegment(centre, &scene.group(), scene.dependency("p[1]"), kUncut, kEndCut);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c2");
}

TEST(SegmentRule, NeedsAGroupAndADependency) {
    CheckedScene scene("polyline p 0,0#1 10,0#2; fixed p[1]");
    ConstraintBreakCmdCenter centre;
    EXPECT_TRUE(LvTestAccess::judgeSegment(centre, nullptr, scene.dependency("p[1]"), kUncut, kEndCut));
    EXPECT_TRUE(LvTestAccess::judgeSegment(centre, &scene.group(), nullptr, kUncut, kEndCut));
    EXPECT_FALSE(LvTestAccess::judgeSegment(centre, &scene.group(), scene.dependency("p[1]"), kUncut, kEndCut));
}

}  // namespace
}  // namespace holdfast::module
