#include <gtest/gtest.h>

#include <algorithm>

#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

constexpr const char* kPolyline =
    "polyline p 0,0#1 10,0#2 10,10#3; line b 0,0 0,5; parallel p[2] b; coincident p[1].end p[2].start; horizontal p[1]";

std::string onEntity(CheckedScene& scene, const char* name) {
    return scene.names(LvTestAccess::onEntity(&scene.group(), scene.id(name)));
}

TEST(ConstraintsOfEntity, AreThoseOfAllItsDependenciesEachOnce) {
    CheckedScene scene(kPolyline);
    EXPECT_EQ(onEntity(scene, "p"), "c1 c2 c3");
    EXPECT_EQ(onEntity(scene, "b"), "c1");
}

TEST(ConstraintsOfEntity, FollowTheDependenciesAndNotTheGroup) {
    CheckedScene scene("polyline p 0,0#1 1,0#2 2,1#3; dependency p[2]; fixed p[1]; fixed p[2]; fixed p[2].start");
    EXPECT_EQ(onEntity(scene, "p"), "c2 c3 c1");
}

TEST(ConstraintsOfEntity, AreAddedToWhatTheListHeld) {
    CheckedScene scene(kPolyline);
    YxArray<YxGeomConstraint*> former;
    former.append(scene.constraint("c3"));
    former.append(scene.constraint("c3"));
    EXPECT_EQ(scene.names(LvTestAccess::onEntity(&scene.group(), scene.id("p"), former)), "c3 c3 c1 c2");
    EXPECT_EQ(LvTestAccess::onEntity(nullptr, scene.id("p"), former).length(), 2);
}

TEST(ConstraintsOfEntity, AskForReadingAndWritingDependencies) {
    CheckedScene scene("line a 0,0 1,0; fixed a");
    EXPECT_EQ(onEntity(scene, "a"), "c1");
    const auto& entries = scene.process().journal().entries();
    const auto asked = std::find_if(entries.begin(), entries.end(), [](const JournalEntry& entry) {
        return namesOperation(entry.operation, "getDependenciesOnObject");
    });
    ASSERT_NE(asked, entries.end());
    EXPECT_EQ(asked->arguments, "true, true");
    EXPECT_EQ(scene.process().journal().count("getDependenciesOnObject"), 1);
}

TEST(ConstraintsOfEntity, WalkTheGroupOnceForAllDependencies) {
    CheckedScene scene(kPolyline);
    onEntity(scene, "p");
    EXPECT_EQ(scene.process().journal().count("YxDbAssoc2dConstraintGroup::getConstrainedGeometries"), 1);
}

TEST(ConstraintsOfEntity, SkipADependencyThatDoesNotOpenOrHasNoGeometry) {
    CheckedScene scene("polyline p 0,0#1 1,0#2 2,1#3 3,0#4; fixed p[1]; bare dependency p[2]; reactor p; fixed p[3]");
    scene.host().refuse("openObject", scene.dependency("p[1]"));
    EXPECT_EQ(onEntity(scene, "p"), "c2");
}

TEST(ConstraintsOfEntity, AreNoneWhenTheEntityDoesNotOpen) {
    CheckedScene scene(kPolyline);
    scene.refuseOpen("p");
    EXPECT_EQ(onEntity(scene, "p"), "");
    EXPECT_EQ(onEntity(scene, "group"), "");
    EXPECT_EQ(onEntity(scene, "nobody"), "");
}

TEST(ConstraintsOfEntity, AreThoseOfTheGroupThatIsAsked) {
    CheckedScene scene("line a 0,0 1,0; horizontal a; group other; fixed a");
    EXPECT_EQ(onEntity(scene, "a"), "c1");
    EXPECT_EQ(scene.names(LvTestAccess::onEntity(&scene.group("other"), scene.id("a"))), "c2");
}

TEST(ConstraintsOfEntity, NameTheCompositeAndLeaveOutInternalOnes) {
    CheckedScene scene(
        "line a 0,0 1,0; line b 0,0 1,1; k: composite { fixed a.start; parallel a b }; internal fixed a");
    EXPECT_EQ(onEntity(scene, "a"), "k");
}

}  // namespace
}  // namespace holdfast::module
