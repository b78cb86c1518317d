#include <gtest/gtest.h>

#include "core/CurveEnds.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

using Points = YxArray<YxGePoint3d>;

const Points kWhole = endPair({0, 0, 0}, {10, 0, 0});
const Points kShortened = endPair({0, 0, 0}, {4, 0, 0});

constexpr const char* kJudgedCorner =
    "line a 0,0 10,0; line b 0,0 0,5; coincident a.end b.end; fixed a.start; equal a b; parallel a b";

TEST(JudgeLine, CollectsWhatGoesInTheOrderOfTheDependencies) {
    CheckedScene scene(kJudgedCorner);
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeLine(centre, &scene.group(), scene.dependenciesOn({"a"}), kWhole, kShortened);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c3 c1");
}

TEST(JudgeLine, SkipsNullDependenciesAndCollectsOnce) {
    CheckedScene scene(kJudgedCorner);
    LvEditDeleteConstraint centre;
    LvTestAccess::collected(centre).append(scene.constraint("c1"));
    LvTestAccess::judgeLine(centre, &scene.group(), scene.dependenciesOn({"", "a", "", "a", "b"}), kWhole, kShortened);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c3");
}

TEST(JudgeLine, CollectsNothingWithoutAGroup) {
    CheckedScene scene(kJudgedCorner);
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeLine(centre, nullptr, scene.dependenciesOn({"a"}), kWhole, kShortened);
    LvTestAccess::judgeArc(centre, nullptr, scene.dependenciesOn({"a"}), kWhole, kShortened);
    LvTestAccess::judgeRay(centre, nullptr, scene.dependenciesOn({"a"}), {0, 0, 0}, {1, 0, 0});
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    EXPECT_EQ(scene.process().journal().entries().size(), 0U);
}

TEST(JudgeLine, CollectsACompositeInPlaceOfItsMember) {
    CheckedScene scene("line a 0,0 10,0; line b 0,0 0,5; k: composite { coincident a.end b.end }");
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeLine(centre, &scene.group(), scene.dependenciesOn({"a"}), kWhole, kShortened);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "k");
}

TEST(JudgeLine, WalksTheGroupOnceForManyDependencies) {
    CheckedScene scene("polyline p 0,0#1 1,0#2 2,1#3 3,0#4; fixed p[1].end; fixed p[2].end; fixed p[3].start");
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeLine(centre, &scene.group(), scene.dependenciesOn({"p[3]", "p[1]", "p[2]"}), kWhole, kShortened);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c2");
    EXPECT_EQ(scene.process().journal().count("YxDbAssoc2dConstraintGroup::getConstrainedGeometries"), 1);
}

TEST(JudgeArc, CollectsWhatGoesByTheArcsRule) {
    CheckedScene scene(
        "arc k centre 0,0 radius 5 from 0 to 90; distance k.start k.end = 1; fixed k.centre; fixed k.end; fixed k");
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeArc(centre, &scene.group(), scene.dependenciesOn({"", "k", "k"}), kWhole, kShortened);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c3");
}

constexpr const char* kRay =
    "ray r 0,0 dir 1,0; line b 0,0 0,5; parallel r b; coincident r.start b.start; fixed r.mid; coincident b.end r.end";

TEST(JudgeRay, DropsEverythingAtAPointWhenTheBaseMovedWhateverThePoint) {
    CheckedScene scene(kRay);
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeRay(centre, &scene.group(), scene.dependenciesOn({"", "r", "r"}), {0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c2 c3 c4");
}

TEST(JudgeRay, KeepsEverythingWhenTheBaseStayed) {
    CheckedScene scene(kRay);
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeRay(centre, &scene.group(), scene.dependenciesOn({"r"}), {0, 0, 0}, {5e-11, 0, 0});
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
}

TEST(JudgeRay, LeavesConstraintsAtPointsOfOtherCurves) {
    CheckedScene scene("ray r 0,0 dir 1,0; line b 0,0 0,5; on b.start r");
    LvEditDeleteConstraint centre;
    LvTestAccess::judgeRay(centre, &scene.group(), scene.dependenciesOn({"r"}), {0, 0, 0}, {1, 0, 0});
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
}

}  // namespace
}  // namespace holdfast::module
