#include <gtest/gtest.h>

#include "core/CurveEnds.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

using Points = YxArray<YxGePoint3d>;

constexpr const char* kArc = "arc k centre 0,0 radius 5 from 0 to 90; line b 0,0 0,5; circle c centre 0,0 radius 2; ";
const Points kUncut = endPair({5, 0, 0}, {0, 5, 0});
const Points kEndCut = endPair({5, 0, 0}, {3, 4, 0});
const Points kStartCut = endPair({3, 4, 0}, {0, 5, 0});

bool goes(const char* text, const Points& before, const Points& after) {
    CheckedScene scene(std::string(kArc) + text);
    return LvTestAccess::arcRule(&scene.group(), scene.dependency("k"), before, after, scene.constraint("c1"));
}

TEST(ArcRule, DropsWhatHoldsAtTheEndThatMoved) {
    EXPECT_FALSE(goes("coincident k.start b.start", kUncut, kEndCut));
    EXPECT_TRUE(goes("coincident k.end b.start", kUncut, kEndCut));
    EXPECT_TRUE(goes("coincident k.start b.start", kUncut, kStartCut));
    EXPECT_FALSE(goes("coincident k.end b.start", kUncut, kStartCut));
}

TEST(ArcRule, DropsWhatHoldsAtTheMiddle) {
    EXPECT_TRUE(goes("coincident k.mid b.start", kUncut, kUncut));
}

TEST(ArcRule, KeepsWhatHoldsAtTheCentreOrOnTheWholeArc) {
    for (const char* text :
         {"coincident k.centre b.start", "concentric k.centre c.centre", "equalradius k c", "tangent k b", "fixed k"})
        EXPECT_FALSE(goes(text, kUncut, endPair({1, 1, 0}, {2, 2, 0}))) << text;
}

TEST(ArcRule, LetsTheOtherPointDecideBesideTheCentre) {
    EXPECT_FALSE(goes("horizontal k.centre k.start", kUncut, kEndCut));
    EXPECT_TRUE(goes("horizontal k.centre k.start", kUncut, kStartCut));
    EXPECT_TRUE(goes("vertical k.end k.centre", kUncut, kEndCut));
    EXPECT_FALSE(goes("vertical k.end k.centre", kUncut, kStartCut));
    EXPECT_FALSE(goes("distance k.centre k.mid = 1", kUncut, kEndCut));
}

TEST(ArcRule, DropsWhatTiesTwoPointsOfTheArcTogether) {
    EXPECT_TRUE(goes("horizontal k.start k.end", kUncut, kUncut));
    EXPECT_TRUE(goes("horizontal k.end k.mid", kUncut, kUncut));
}

TEST(ArcRule, KeepsWhatReachesThreePoints) {
    EXPECT_FALSE(goes("angle k.start k.end k.mid = 90", kUncut, endPair({1, 1, 0}, {2, 2, 0})));
}

TEST(ArcRule, KnowsNoEqualLengthNorDirection) {
    EXPECT_FALSE(goes("equal k b", kUncut, kEndCut));
    EXPECT_TRUE(goes("horizontal k.end b.start", kUncut, kEndCut));
}

TEST(ArcRule, KeepsEverythingForPairsOfAnotherLengthOrNullArguments) {
    CheckedScene scene(std::string(kArc) + "fixed k.end");
    const YxDbAssoc2dConstraintGroup* group = &scene.group();
    const YxDbAssocGeomDependency* arc = scene.dependency("k");
    YxGeomConstraint* fixed = scene.constraint("c1");
    EXPECT_TRUE(LvTestAccess::arcRule(group, arc, kUncut, kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, arc, kUncut, Points(), fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, arc, Points(), kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(nullptr, arc, kUncut, kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, nullptr, kUncut, kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::arcRule(group, arc, kUncut, kEndCut, nullptr));
}

TEST(ArcRuleForOnePoint, AsksForItsKind) {
    CheckedScene scene(std::string(kArc) + "angle k.start k.end k.mid = 90; fixed k.centre");
    const auto goesAt = [&](const char* place) {
        const auto* point = static_cast<const YxConstrainedImplicitPoint*>(scene.geometry(place));
        return LvTestAccess::onePoint(point, kUncut, kEndCut);
    };
    EXPECT_FALSE(goesAt("k.start"));
    EXPECT_TRUE(goesAt("k.end"));
    EXPECT_TRUE(goesAt("k.mid"));
    EXPECT_FALSE(goesAt("k.centre"));
    EXPECT_FALSE(LvTestAccess::onePoint(nullptr, kUncut, kStartCut));
}

TEST(ArcRuleForTwoPoints, NeedsExactlyTwoImplicitPoints) {
    CheckedScene scene(std::string(kArc) + "angle k.start k.end k.centre = 90; fixed k");
    const auto goesAt = [&](const std::vector<const char*>& places, const Points& after) {
        YxArray<YxConstrainedGeometry*> points;
        for (const char* place : places)
            points.append(place != nullptr ? scene.geometry(place) : nullptr);
        return LvTestAccess::twoPoints(points, kUncut, after);
    };
    EXPECT_TRUE(goesAt({"k.start", "k.end"}, kUncut));
    EXPECT_TRUE(goesAt({"k.centre", "k.end"}, kEndCut));
    EXPECT_TRUE(goesAt({"k.start", "k.centre"}, kStartCut));
    EXPECT_FALSE(goesAt({"k.centre", "k.start"}, kEndCut));
    EXPECT_FALSE(goesAt({"k", "k.end"}, kEndCut));
    EXPECT_FALSE(goesAt({"k.end", "k"}, kEndCut));
    EXPECT_FALSE(goesAt({"k.end"}, kEndCut));
    EXPECT_FALSE(goesAt({"k.start", "k.end", "k.centre"}, kEndCut));
    EXPECT_FALSE(goesAt({"k.end", nullptr}, kEndCut));
}

}  // namespace
}  // namespace holdfast::module
