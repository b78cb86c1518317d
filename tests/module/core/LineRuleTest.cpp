#include <gtest/gtest.h>

#include "core/CurveEnds.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

using Points = YxArray<YxGePoint3d>;

const Points kUncut = endPair({0, 0, 0}, {10, 0, 0});
const Points kEndCut = endPair({0, 0, 0}, {4, 0, 0});
const Points kStartCut = endPair({6, 0, 0}, {10, 0, 0});

/// Whether the first constraint of the scene goes when line a changes from `before` to `after`.
bool goes(CheckedScene& scene, const Points& before, const Points& after, const char* constraint = "c1") {
    return LvTestAccess::lineRule(&scene.group(), scene.dependency("a"), before, after, scene.constraint(constraint));
}

bool goes(const char* text, const Points& before, const Points& after) {
    CheckedScene scene(std::string("line a 0,0 10,0; line b 0,0 0,5; line axis 0,0 1,1; ") + text);
    return goes(scene, before, after);
}

TEST(LineRule, KeepsAtTheStartAndDropsAtTheEndThatMoved) {
    EXPECT_FALSE(goes("coincident a.start b.start", kUncut, kEndCut));
    EXPECT_TRUE(goes("coincident a.end b.start", kUncut, kEndCut));
    EXPECT_TRUE(goes("coincident a.start b.start", kUncut, kStartCut));
    EXPECT_FALSE(goes("coincident a.end b.start", kUncut, kStartCut));
}

TEST(LineRule, DropsWhatHoldsAtAMidPointHoweverTheEndsMoved) {
    EXPECT_TRUE(goes("coincident a.mid b.start", kUncut, kUncut));
    EXPECT_TRUE(goes("midpoint a.mid b", kUncut, kEndCut));
}

TEST(LineRule, KeepsWhatHoldsAtAnyOtherPoint) {
    CheckedScene scene("line a 0,0 10,0; dependency a");
    auto& group = scene.group();
    auto& centre = HostAccess::addImplicitPoint(group, *scene.geometry("a"), YxDb::kCenterImplicit, -1);
    auto& fixed = scene.builder().constrain<YxFixedConstraint>(group, {&centre});
    EXPECT_FALSE(LvTestAccess::lineRule(&group, scene.dependency("a"), kUncut, endPair({1, 1, 0}, {2, 2, 0}), &fixed));
}

TEST(LineRule, KeepsWhatHoldsOnTheLineAsAWhole) {
    for (const char* text : {"parallel a b", "perpendicular a b", "collinear a b", "tangent a b", "fixed a"})
        EXPECT_FALSE(goes(text, kUncut, endPair({3, 0, 0}, {4, 0, 0}))) << text;
}

TEST(LineRule, DropsWhatReachesBothEndsWhenOneMoved) {
    EXPECT_TRUE(goes("distance a.start a.end = 1", kUncut, kEndCut));
    EXPECT_TRUE(goes("distance a.end a.start = 1", kUncut, kStartCut));
    EXPECT_FALSE(goes("distance a.start a.end = 1", kUncut, kUncut));
}

TEST(LineRule, DropsAnEqualLengthAsSoonAsEitherEndMoved) {
    EXPECT_TRUE(goes("equal a b", kUncut, kEndCut));
    EXPECT_TRUE(goes("equal a b", kUncut, kStartCut));
    EXPECT_FALSE(goes("equal a b", kUncut, kUncut));
}

TEST(LineRule, DropsAnEqualLengthEvenIfTheLengthIsTheSame) {
    EXPECT_TRUE(goes("equal a b", kUncut, endPair({5, 0, 0}, {15, 0, 0})));
}

TEST(LineRule, KeepsAHorizontalAlongTheUserAxisWithoutLookingAtPoints) {
    CheckedScene scene("line a 0,0 10,0; horizontal a.start a.end");
    EXPECT_FALSE(goes(scene, kUncut, kEndCut));
    EXPECT_EQ(scene.process().journal().count("getGroupNodePtr"), 0);
}

TEST(LineRule, LetsThePointsOfASlantedHorizontalDecide) {
    const Points slanted = endPair({0, 0, 0}, {10, 1, 0});
    EXPECT_TRUE(goes("horizontal a.start a.end", slanted, endPair({0, 0, 0}, {5, 0.5, 0})));
    EXPECT_FALSE(goes("horizontal a.start a.end", slanted, slanted));
    EXPECT_FALSE(goes("horizontal a", slanted, endPair({0, 0, 0}, {5, 0.5, 0})));
}

TEST(LineRule, KeepsAVerticalAlongTheUserAxis) {
    const Points upright = endPair({0, 0, 0}, {0, 10, 0});
    EXPECT_FALSE(goes("vertical a.start a.end", upright, endPair({0, 0, 0}, {0, 4, 0})));
    EXPECT_TRUE(goes("vertical a.start a.end", kUncut, kEndCut));
    EXPECT_TRUE(goes("horizontal a.start a.end", upright, endPair({0, 0, 0}, {0, 4, 0})));
}

TEST(LineRule, TakesItsAxesFromTheUserCoordinateSystem) {
    EXPECT_TRUE(goes("horizontal a.start a.end; ucs 0,1 -1,0", kUncut, kEndCut));
    EXPECT_FALSE(goes("vertical a.start a.end; ucs 0,1 -1,0", kUncut, kEndCut));
}

TEST(LineRule, TakesTheDirectionFromBeforeTheEdit) {
    const Points level = endPair({0, 0, 0}, {4, 0, 0});
    const Points slanted = endPair({0, 0, 0}, {10, 1, 0});
    EXPECT_FALSE(goes("horizontal a.start a.end", level, slanted));
    EXPECT_TRUE(goes("horizontal a.start a.end", slanted, level));
}

TEST(LineRule, LetsThePointsDecideOnALineOfNoLength) {
    const Points nothing = endPair({1, 1, 0}, {1, 1, 0});
    EXPECT_TRUE(goes("horizontal a.start a.end", nothing, kEndCut));
}

TEST(LineRule, DropsASymmetryBetweenTheEndsOfTheLineEvenIfNeitherMoved) {
    EXPECT_TRUE(goes("symmetric a.start a.end axis", kUncut, kUncut));
    EXPECT_TRUE(goes("symmetric a.end a.start axis", kUncut, kUncut));
}

TEST(LineRule, LetsTheOnePointOfASymmetryDecide) {
    EXPECT_FALSE(goes("symmetric a.start b.end axis", kUncut, kEndCut));
    EXPECT_TRUE(goes("symmetric a.end b.end axis", kUncut, kEndCut));
    EXPECT_FALSE(goes("symmetric a b axis", kUncut, kEndCut));
}

TEST(LineRule, LooksIntoTheFirstCoincidenceOfAComposite) {
    CheckedScene scene(
        "line a 0,0 10,0; line b 0,0 0,5; k: composite { coincident a.start b.start; coincident a.end b.end }");
    EXPECT_FALSE(goes(scene, kUncut, kEndCut, "k"));
    EXPECT_TRUE(goes(scene, kUncut, kStartCut, "k"));
}

TEST(LineRule, KeepsEverythingForPairsOfAnotherLength) {
    Points three = kUncut;
    three.append(YxGePoint3d());
    for (const Points& wrong : {Points(), three}) {
        EXPECT_FALSE(goes("fixed a.end", kUncut, wrong));
        EXPECT_FALSE(goes("equal a b", wrong, kEndCut));
    }
}

TEST(LineRule, KeepsEverythingForNullArguments) {
    CheckedScene scene("line a 0,0 10,0; fixed a.end");
    YxGeomConstraint* fixed = scene.constraint("c1");
    EXPECT_TRUE(LvTestAccess::lineRule(&scene.group(), scene.dependency("a"), kUncut, kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::lineRule(nullptr, scene.dependency("a"), kUncut, kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::lineRule(&scene.group(), nullptr, kUncut, kEndCut, fixed));
    EXPECT_FALSE(LvTestAccess::lineRule(&scene.group(), scene.dependency("a"), kUncut, kEndCut, nullptr));
}

}  // namespace
}  // namespace holdfast::module
