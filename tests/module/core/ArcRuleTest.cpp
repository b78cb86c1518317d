#include <gtest/gtest.h>

#include "core/CurveEnds.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

using Points = YxArray<YxGePoint3d>;

constexpr const char* kArc = "arc k centre 0,0 radius 5 from 0 to 90; line b 0,0 0,5; circle c centre 0,0 radius 2; ";
const Points kUncutArc = endPair({5, 0, 0}, {0, 5, 0});
const Points kArcEndCut = endPair({5, 0, 0}, {3, 4, 0});
const Points kArcStartCut = endPair({3, 4, 0}, {0, 5, 0});

bool goesFromArc(const char* text, const Points& before, const Points& after) {
    CheckedScene scene(std::string(kArc) + text);
    return LvTestAccess::arcRule(&scene.group(), scene.dependency("k"), before, after, scene.constraint("c1"));
}

TEST(ArcRule, DropsWhatHoldsAtTheEndThatMoved) {
    EXPECT_FALSE(goesFromArc("coincident k.start b.start", kUncutArc, kArcEndCut));
    EXPECT_TRUE(goesFromArc("coincident k.end b.start", kUncutArc, kArcEndCut));
    EXPECT_TRUE(goesFromArc("coincident k.start b.start", kUncutArc, kArcStartCut));
    EXPECT_FALSE(goesFromArc("coincident k.end b.start", kUncutArc, kArcStartCut));
}

TEST(ArcRule, DropsWhatHoldsAtTheMiddle) {
    EXPECT_TRUE(goesFromArc("coincident k.mid b.start", kUncutArc, kUncutArc));
}

TEST(ArcRule, KeepsWhatHoldsAtTheCentreOrOnTheWholeArc) {
    for (const char* text :
         {"coincident k.centre b.start", "concentric k.centre c.centre", "equalradius k c", "tangent k b", "fixed k"})
        EXPECT_FALSE(goesFromArc(text, kUncutArc, endPair({1, 1, 0}, {2, 2, 0}))) << text;
}

TEST(ArcRule, LetsTheOtherPointDecideBesideTheCentre) {
    EXPECT_FALSE(goesFromArc("horizontal k.centre k.start", kUncutArc, kArcEndCut));
    EXPECT_TRUE(goesFromArc("horizontal k.centre k.start", kUncutArc, kArcStartCut));
    EXPECT_TRUE(goesFromArc("vertical k.end k.centre", kUncutArc, kArcEndCut));
    EXPECT_FALSE(goesFromArc("vertical k.end k.centre", kUncutArc, kArcStartCut));
    EXPECT_FALSE(goesFromArc("distance k.centre k.mid = 1", kUncutArc, kArcEndCut));
}

TEST(ArcRule, DropsWhatTiesTwoPointsOfTheArcTogether) {
    EXPECT_TRUE(goesFromArc("horizontal k.start k.end", kUncutArc, kUncutArc));
    EXPECT_TRUE(goesFromArc("horizontal k.end k.mid", kUncutArc, kUncutArc));
}

TEST(ArcRule, KeepsWhatReachesThreePoints) {
    EXPECT_FALSE(goesFromArc("angle k.start k.end k.mid = 90", kUncutArc, endPair({1, 1, 0}, {2, 2, 0})));
}

TEST(ArcRule, KnowsNoEqualLengthNorDirection) {
    EXPECT_FALSE(goesFromArc("equal k b", kUncutArc, kArcEndCut));
    EXPECT_TRUE(goesFromArc("horizontal k.end b.start", kUncutArc, kArcEndCut));
}

TEST(ArcRule, KeepsEverythingForPairsOfAnotherLengthOrNullArguments) {
    CheckedScene scene(std::string(kArc) + "fixed k.end");
    const YxDbAssoc2dConstraintGroup* group = &scene.group();
    const YxDbAssocGeomDependency* arc = scene.dependency("k");
    YxGeomConstraint* fixed = scene.constraint("c1");
    EXPECT_TRUE(LvTestAccess::arcRule(group, arc, kUncutArc, kArcEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, arc, kUncutArc, Points(), fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, arc, Points(), kArcEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(nullptr, arc, kUncutArc, kArcEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, nullptr, kUncutArc, kArcEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, arc, kUncutArc, kArcEndCut, nullptr));
}

TEST(ArcRuleForOnePoint, AsksForItsKind) {
    CheckedScene scene(std::string(kArc) + "angle k.start k.end k.mid = 90; fixed k.centre");
    const auto goesAt = [&](const char* place) {
        const auto* point = static_cast<const YxConstrainedImplicitPoint*>(scene.geometry(place));
        return LvTestAccess::onePoint(point, kUncutArc, kArcEndCut);
    };
    EXPECT_FALSE(goesAt("k.start"));
    EXPECT_TRUE(goesAt("k.end"));
    EXPECT_TRUE(goesAt("k.mid"));
    EXPECT_FALSE(goesAt("k.centre"));
    EXPECT_FALSE(LvTestAccess::onePoint(nullptr, kUncutArc, kArcStartCut));
}

TEST(ArcRuleForTwoPoints, NeedsExactlyTwoImplicitPoints) {
    CheckedScene scene(std::string(kArc) + "angle k.start k.end k.centre = 90; fixed k");
    const auto goesAt = [&](const std::vector<const char*>& places, const Points& after) {
        YxArray<YxConstrainedGeometry*> points;
        for (const char* place : places)
            points.append(place != nullptr ? scene.geometry(place) : nullptr);
        return LvTestAccess::twoPoints(points, kUncutArc, after);
    };
    EXPECT_TRUE(goesAt({"k.start", "k.end"}, kUncutArc));
    EXPECT_TRUE(goesAt({"k.centre", "k.end"}, kArcEndCut));
    EXPECT_TRUE(goesAt({"k.start", "k.centre"}, kArcStartCut));
    EXPECT_FALSE(goesAt({"k.centre", "k.start"}, kArcEndCut));
    EXPECT_FALSE(goesAt({"k", "k.end"}, kArcEndCut));
    EXPECT_FALSE(goesAt({"k.end", "k"}, kArcEndCut));
    EXPECT_FALSE(goesAt({"k.end"}, kArcEndCut));
    EXPECT_FALSE(goesAt({"k.start", "k.end", "k.centre"}, kArcEndCut));
    EXPECT_FALSE(goesAt({"k.end", nullptr}, kArcEndCut));
}

}  // namespace
}  // namespace holdfast::module
