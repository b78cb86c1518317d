#include <gtest/gtest.h>

#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

constexpr const char* kSplines =
    "spline s degree 3 at 0,0 1,1 2,0 3,1; spline t degree 3 at 3,1 4,2 5,1 6,0; line b 0,0 1,0; ";

std::vector<int> controlPoints(CheckedScene& scene, const char* spline, const char* constraint) {
    const auto indices =
        LvTestAccess::controlPoints(&scene.group(), scene.dependency(spline), scene.constraint(constraint));
    return {indices.begin(), indices.end()};
}

TEST(SplineIndices, AreTheControlPointsOfTheGivenSpline) {
    CheckedScene scene(std::string(kSplines) +
                       "coincident t.control0 s.control3; distance s.control2 s.control1 = 1; tangent s t");
    EXPECT_EQ(controlPoints(scene, "s", "c1"), std::vector<int>{3});
    EXPECT_EQ(controlPoints(scene, "t", "c1"), std::vector<int>{0});
    EXPECT_EQ(controlPoints(scene, "s", "c2"), (std::vector<int>{2, 1}));
    EXPECT_TRUE(controlPoints(scene, "s", "c3").empty());
}

TEST(SplineIndices, RepeatAPointThatIsReachedTwice) {
    CheckedScene scene(std::string(kSplines) + "distance s.control1 s.control1 = 1");
    EXPECT_EQ(controlPoints(scene, "s", "c1"), (std::vector<int>{1, 1}));
}

TEST(SplineIndices, OfASmoothJointLeaveOutTheOtherSpline) {
    CheckedScene scene(std::string(kSplines) + "g: smooth s.control3 t.control0");
    EXPECT_EQ(controlPoints(scene, "s", "g"), std::vector<int>{3});
    EXPECT_EQ(controlPoints(scene, "t", "g"), std::vector<int>{0});
}

TEST(SplineIndices, OfASmoothJointComeFromEveryCoincidenceThatItOwns) {
    CheckedScene scene(std::string(kSplines) +
                       "g: smooth s.control3 t.control0; m: coincident t.control1 s.control2; f: fixed s.control1");
    auto& joint = static_cast<YxCompositeConstraint&>(*scene.constraint("g"));
    HostAccess::own(joint, *scene.constraint("f"));
    HostAccess::own(joint, *scene.constraint("m"));
    EXPECT_EQ(controlPoints(scene, "s", "g"), (std::vector<int>{3, 2}));
}

TEST(SplineIndices, OfAnotherCompositeComeFromItsFirstCoincidenceOnly) {
    CheckedScene scene(std::string(kSplines) +
                       "k: composite { coincident s.control3 t.control0; coincident s.control2 t.control1 }");
    EXPECT_EQ(controlPoints(scene, "s", "k"), std::vector<int>{3});
}

TEST(SplineIndices, ReplaceWhatTheListHeldUnlessAnArgumentIsNull) {
    CheckedScene scene(std::string(kSplines) + "tangent s b");
    YxArray<int> former;
    former.append(9);
    const YxDbAssocGeomDependency* spline = scene.dependency("s");
    const YxGeomConstraint* tangent = scene.constraint("c1");
    EXPECT_EQ(LvTestAccess::controlPoints(&scene.group(), spline, tangent, former).length(), 0);
    EXPECT_EQ(LvTestAccess::controlPoints(nullptr, spline, tangent, former).length(), 1);
    EXPECT_EQ(LvTestAccess::controlPoints(&scene.group(), nullptr, tangent, former).length(), 1);
    EXPECT_EQ(LvTestAccess::controlPoints(&scene.group(), spline, nullptr, former).length(), 1);
}

TEST(SplineIndices, OfASmoothJointLeaveOutWhatTheHostDoesNotAnswer) {
    CheckedScene scene(std::string(kSplines) + "g: smooth s.control3 t.control0");
    scene.host().refuse("openObject", scene.dependency("s"));
    EXPECT_TRUE(controlPoints(scene, "s", "g").empty());
    scene.host().clear();
    scene.host().refuse("getGroupNodePtr");
    EXPECT_TRUE(controlPoints(scene, "s", "g").empty());
    scene.host().clear();
    scene.host().refuse("getOwnedConstraints");
    EXPECT_TRUE(controlPoints(scene, "s", "g").empty());
}

}  // namespace
}  // namespace holdfast::module
