#include <gtest/gtest.h>

#include "tests/module/commands/extend/ExtendCommand.h"
#include "tests/module/commands/extend/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

const std::string kPolyline =
    "line b 0,0 0,5; polyline p 0,0#31 10,0#7 20,0#22^0.5 30,0#5; c1: fixed p[1].start; c2: fixed p[1].end; "
    "c3: fixed p[3].start; c4: fixed p[3].end; c5: equal p[1] b; c6: equal p[3] b; c7: fixed p[2].start";

std::string collected(const std::string& text, const YxGePoint3d& newEnd, int code) {
    CheckedScene scene(text);
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("p"), newEnd, code);
    return scene.names(LvTestAccess::collected(centre));
}

TEST(ExtendPolyline, JudgesTheFirstSegmentWhenTheStartMoves) {
    EXPECT_EQ(collected(kPolyline, {-5, 0, 0}, 1), "c5 c1");
    EXPECT_EQ(collected(kPolyline, {0, 0, 0}, 1), "");
}

TEST(ExtendPolyline, JudgesTheLastSegmentWhenTheEndMoves) {
    EXPECT_EQ(collected(kPolyline, {32, 2, 0}, 2), "c4");
}

TEST(ExtendPolyline, DoesNothingForAnUnknownEnd) {
    EXPECT_EQ(collected(kPolyline, {-5, 0, 0}, 0), "");
    EXPECT_EQ(collected(kPolyline, {-5, 0, 0}, 3), "");
}

TEST(ExtendPolyline, LosesNothingWhenTheSegmentAtTheEndCarriesNone) {
    const std::string inner = "polyline p 0,0#31 10,0#7 20,0#22 30,0#5; c1: fixed p[2].start; c2: fixed p[2].end";
    EXPECT_EQ(collected(inner, {-5, 0, 0}, 1), "");
    EXPECT_EQ(collected(inner, {35, 0, 0}, 2), "");
    EXPECT_EQ(collected(inner + "; bare dependency p[1]", {-5, 0, 0}, 1), "");
}

TEST(ExtendPolyline, TakesTheFirstDependencyAtTheEndThatHasGeometry) {
    // Two stand on the segment at the start; the first has no geometry.
    CheckedScene scene("polyline p 0,0#31 10,0#7 20,0#9; bare dependency p[1]; c1: fixed p[2].start");
    HostAccess::setPersistentId(*scene.dependency("p[2]"), HostAccess::makeEdgeId(31, 7));
    ConstraintExtendCmdCenter centre;
    LvTestAccess::judgePolyline(centre, &scene.group(), scene.dependenciesOn({"", "p[1]", "p[2]"}), scene.entity("p"),
                                {-5, 0, 0}, 1);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1");
    HostAccess::setPersistentId(*scene.dependency("p[2]"), HostAccess::makeEdgeId(7, 9));
}

TEST(ExtendPolyline, KeepsConstraintsOnGeometryThatIsNeitherLineNorArc) {
    CheckedScene scene("polyline p 0,0#31 10,0#7 20,0#9; c1: fixed p[1].start; circle k centre 0,0 radius 1; fixed k");
    ConstraintExtendCmdCenter centre;
    scene.host().answerOther("YxDbAssoc2dConstraintGroup::getConstrainedGeometry", scene.geometry("k"), &scene.group());
    LvTestAccess::judgePolyline(centre, &scene.group(), scene.dependenciesOn({"p[1]"}), scene.entity("p"), {-5, 0, 0},
                                1);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
}

TEST(ExtendPolyline, OfOneSegmentIsJudgedFromBothEnds) {
    const std::string one = "polyline p 0,0#31 10,0#7; c1: fixed p[1].start; c2: fixed p[1].end";
    EXPECT_EQ(collected(one, {-5, 0, 0}, 1), "c1");
    EXPECT_EQ(collected(one, {15, 0, 0}, 2), "c2");
}

TEST(ExtendPolyline, NeedsGroupPolylineAndDependencies) {
    CheckedScene scene(kPolyline);
    ConstraintExtendCmdCenter centre;
    const auto dependencies = scene.dependenciesOn({"p[1]"});
    LvTestAccess::judgePolyline(centre, nullptr, dependencies, scene.entity("p"), {-5, 0, 0}, 1);
    LvTestAccess::judgePolyline(centre, &scene.group(), dependencies, nullptr, {-5, 0, 0}, 1);
    LvTestAccess::judgePolyline(centre, &scene.group(), dependencies, scene.entity("b"), {-5, 0, 0}, 1);
    LvTestAccess::judgePolyline(centre, &scene.group(), scene.dependenciesOn({}), scene.entity("p"), {-5, 0, 0}, 1);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    LvTestAccess::judgePolyline(centre, &scene.group(), dependencies, scene.entity("p"), {-5, 0, 0}, 1);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c5 c1");
}

TEST(ExtendPolyline, CollectsOnceHoweverOftenItIsAsked) {
    CheckedScene scene(kPolyline);
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("p"), {-5, 0, 0}, 1);
    centre.setDeleteConstraint(scene.id("p"), {-6, 0, 0}, 1);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c5 c1");
}

TEST(ExtendPolyline, KeepsEveryDependencyOnItsSegment) {
    CheckedScene scene(kPolyline);
    const std::string before = scene.dependencies();
    ConstraintExtendCmdCenter centre;
    EXPECT_EQ(extendPolyline(scene, "p", centre, {-5, 0, 0}, 1), 2);
    EXPECT_EQ(scene.vertices("p"), "-5,0#31 10,0#7 20,0#22^0.5 30,0#5");
    EXPECT_EQ(scene.dependencies(), before);
    EXPECT_EQ(scene.constraints(), "fixed p[1].end; fixed p[3].start; fixed p[3].end; equal p[3] b; fixed p[2].start");
}

}  // namespace
}  // namespace holdfast::module
