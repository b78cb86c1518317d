#include <gtest/gtest.h>

#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

std::vector<YxConstrainedGeometry*> pointsOn(CheckedScene& scene, const char* place, const char* constraint) {
    const auto points =
        LvTestAccess::implicitPoints(&scene.group(), scene.dependency(place), scene.constraint(constraint));
    return {points.begin(), points.end()};
}

using Places = std::vector<const char*>;

std::vector<YxConstrainedGeometry*> at(const CheckedScene& scene, const Places& places) {
    std::vector<YxConstrainedGeometry*> geometries;
    for (const char* place : places)
        geometries.push_back(scene.geometry(place));
    return geometries;
}

constexpr const char* kTwoLines = "line a 0,0 10,0; line b 0,0 0,5; line axis 0,0 1,1; ";

TEST(ImplicitPoints, AreThoseOfTheGivenCurveInTheConstraintsOrder) {
    CheckedScene scene(std::string(kTwoLines) + "symmetric a.end a.start axis; coincident b.start a.end");
    EXPECT_EQ(pointsOn(scene, "a", "c1"), at(scene, {"a.end", "a.start"}));
    EXPECT_EQ(pointsOn(scene, "a", "c2"), at(scene, {"a.end"}));
    EXPECT_EQ(pointsOn(scene, "b", "c2"), at(scene, {"b.start"}));
}

TEST(ImplicitPoints, AreNoneOfAConstraintOnTheCurveAsAWhole) {
    CheckedScene scene(std::string(kTwoLines) + "parallel a b; coincident b.start axis.start");
    EXPECT_TRUE(pointsOn(scene, "a", "c1").empty());
    EXPECT_TRUE(pointsOn(scene, "a", "c2").empty());
}

TEST(ImplicitPoints, OfACompositeAreThoseOfItsFirstCoincidence) {
    CheckedScene scene(std::string(kTwoLines) +
                       "k: composite { fixed a.start; coincident a.end b.end; coincident a.start b.start }");
    EXPECT_EQ(pointsOn(scene, "a", "k"), at(scene, {"a.end"}));
}

TEST(ImplicitPoints, OfACompositeWithoutACoincidenceAreNone) {
    CheckedScene scene(std::string(kTwoLines) + "k: composite { fixed a.start; parallel a b }");
    EXPECT_TRUE(pointsOn(scene, "a", "k").empty());
}

TEST(ImplicitPoints, OfACompositeThatListsNoMembersAreNone) {
    CheckedScene scene(std::string(kTwoLines) + "k: composite { coincident a.end b.end }");
    scene.host().refuse("getOwnedConstraints");
    EXPECT_TRUE(pointsOn(scene, "a", "k").empty());
}

TEST(ImplicitPoints, LeaveTheListAloneForNullArguments) {
    CheckedScene scene(std::string(kTwoLines) + "fixed a.start");
    const YxDbAssocGeomDependency* dependency = scene.dependency("a");
    YxGeomConstraint* constraint = scene.constraint("c1");
    YxArray<YxConstrainedGeometry*> former;
    former.append(nullptr);
    EXPECT_EQ(LvTestAccess::implicitPoints(nullptr, dependency, constraint, former).length(), 1);
    EXPECT_EQ(LvTestAccess::implicitPoints(&scene.group(), nullptr, constraint, former).length(), 1);
    EXPECT_EQ(LvTestAccess::implicitPoints(&scene.group(), dependency, nullptr, former).length(), 1);
    EXPECT_EQ(LvTestAccess::implicitPoints(&scene.group(), dependency, constraint, former)[0],
              scene.geometry("a.start"));
}

TEST(ImplicitPoints, LeaveOutAPointWhoseCurveIsNotInTheGroup) {
    CheckedScene scene(std::string(kTwoLines) + "coincident a.start a.end");
    scene.host().refuse("getGroupNodePtr", nullptr, 1);
    EXPECT_EQ(pointsOn(scene, "a", "c1"), at(scene, {"a.end"}));
}

TEST(ImplicitPoints, LeaveOutAPointWhoseNodeIsNoCurve) {
    CheckedScene scene(std::string(kTwoLines) + "coincident a.start a.end");
    scene.host().answerOther("getGroupNodePtr", scene.constraint("c1"), nullptr, 2);
    EXPECT_EQ(pointsOn(scene, "a", "c1"), at(scene, {"a.start"}));
}

TEST(ImplicitPoints, LeaveOutAPointWhoseDependencyDoesNotOpen) {
    CheckedScene scene(std::string(kTwoLines) + "coincident a.start b.start");
    scene.host().refuse("openObject", scene.dependency("a"));
    EXPECT_TRUE(pointsOn(scene, "a", "c1").empty());
    EXPECT_EQ(pointsOn(scene, "b", "c1"), at(scene, {"b.start"}));
}

TEST(ImplicitPoints, BelongToTheObjectThatOpensWhateverItsClass) {
    CheckedScene scene(std::string(kTwoLines) + "coincident a.start b.start");
    scene.host().answerOther("openObject", scene.dependency("a"), scene.dependency("b"));
    EXPECT_EQ(pointsOn(scene, "a", "c1"), at(scene, {"a.start", "b.start"}));
}

TEST(ImplicitPoints, ReleaseWhatTheyOpenedWhenTheHostThrows) {
    CheckedScene scene(std::string(kTwoLines) + "coincident a.start a.end");
    scene.host().throwFrom("getGroupNodePtr", nullptr, 2);
    EXPECT_THROW(pointsOn(scene, "a", "c1"), HostFailure);
    EXPECT_EQ(HostAccess::openCount(*scene.dependency("a")), 0);
}

}  // namespace
}  // namespace holdfast::module
