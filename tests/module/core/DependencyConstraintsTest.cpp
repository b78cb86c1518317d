#include <gtest/gtest.h>

#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

std::string onDependency(CheckedScene& scene, const char* place) {
    return scene.names(LvTestAccess::onDependency(&scene.group(), scene.dependency(place)));
}

TEST(ConstraintsFromDependency, ComeFromTheCurveAndThenFromItsPointsInGroupOrder) {
    CheckedScene scene(
        "line a 0,0 10,0; line b 0,0 0,5; dependency a; fixed a.end; fixed a.start; horizontal a; parallel a b");
    EXPECT_EQ(onDependency(scene, "a"), "c3 c4 c1 c2");
}

TEST(ConstraintsFromDependency, LeaveOutThePointsOfOtherCurves) {
    CheckedScene scene("line a 0,0 10,0; line b 0,0 0,5; fixed a.start; fixed b.start; horizontal b");
    EXPECT_EQ(onDependency(scene, "a"), "c1");
}

TEST(ConstraintsFromDependency, AppearOnceHoweverTheyAreReached) {
    CheckedScene scene("line a 0,0 10,0; coincident a.start a.end; on a.start a; midpoint a.mid a");
    EXPECT_EQ(onDependency(scene, "a"), "c2 c3 c1");
}

TEST(ConstraintsFromDependency, NameTheCompositeInPlaceOfItsMembers) {
    CheckedScene scene("line a 0,0 10,0; line b 0,0 0,5; k: composite { coincident a.start b.start; parallel a b }");
    EXPECT_EQ(onDependency(scene, "a"), "k");
}

TEST(ConstraintsFromDependency, LeaveOutInternalOnesAndInternalComposites) {
    CheckedScene scene("line a 0,0 10,0; internal horizontal a; internal composite { fixed a.start }; fixed a.end");
    ASSERT_EQ(scene.constraints(), "internal horizontal a; internal composite { fixed a.start }; fixed a.end");
    EXPECT_EQ(onDependency(scene, "a"), "c4");
}

TEST(ConstraintsFromDependency, KeepAnInternalMemberOfAnOpenComposite) {
    CheckedScene scene("line a 0,0 10,0; k: composite { internal fixed a.start }");
    EXPECT_EQ(onDependency(scene, "a"), "k");
}

TEST(ConstraintsFromDependency, ReplaceWhatTheListHeld) {
    CheckedScene scene("line a 0,0 10,0; line b 0,0 1,1; fixed a; bare dependency b");
    YxArray<YxGeomConstraint*> former;
    former.append(scene.constraint("c1"));
    EXPECT_TRUE(LvTestAccess::onDependency(&scene.group(), scene.dependency("b"), former).isEmpty());
    EXPECT_TRUE(LvTestAccess::onDependency(nullptr, scene.dependency("a"), former).isEmpty());
    EXPECT_TRUE(LvTestAccess::onDependency(&scene.group(), nullptr, former).isEmpty());
}

TEST(ConstraintsFromDependency, AskTheGroupForTheGeometryItselfOnly) {
    CheckedScene scene("line a 0,0 10,0; fixed a.start");
    EXPECT_EQ(onDependency(scene, "a"), "c1");
    EXPECT_EQ(scene.process().journal().count("getConstrainedGeometry"), 1);
    EXPECT_EQ(scene.process().journal().count("YxDbAssoc2dConstraintGroup::getConstrainedGeometries"), 1);
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
}

TEST(ConstraintsFromDependency, AreThoseOfTheCurveAloneWhenTheGroupListsNothing) {
    CheckedScene scene("line a 0,0 10,0; fixed a.start; horizontal a");
    scene.host().refuse("YxDbAssoc2dConstraintGroup::getConstrainedGeometries");
    EXPECT_EQ(onDependency(scene, "a"), "c2");
}

TEST(ConstraintsFromDependency, SkipAPointThatListsNothing) {
    CheckedScene scene("line a 0,0 10,0; fixed a.start; fixed a.end");
    scene.host().refuse("getConnectedConstraints", scene.geometry("a.start"));
    EXPECT_EQ(onDependency(scene, "a"), "c2");
}

TEST(ConstraintsFromDependency, StayInOrderAndOnceWhenThereAreMany) {
    std::string text =
        "line a 0,0 10,0; line b 0,0 1,1; composite { coincident a.start b.start; coincident a.end b.end }";
    std::string expected;
    for (int k = 4; k <= 60; ++k) {
        text += "; coincident a.start a.end";
        expected += " c" + std::to_string(k);
    }
    CheckedScene scene(text);
    EXPECT_EQ(onDependency(scene, "a"), "c1" + expected);
}

}  // namespace
}  // namespace holdfast::module
