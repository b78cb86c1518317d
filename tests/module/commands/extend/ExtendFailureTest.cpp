#include <gtest/gtest.h>

#include <numbers>

#include "tests/module/commands/extend/ExtendCommand.h"
#include "tests/module/commands/extend/TestAccess.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/FaultSweep.h"

namespace holdfast::module {
namespace {

const std::string kTiedLine = "line b 0,0 0,5; line a 0,0 10,0; coincident a.end b.end; parallel a b";

std::string collected(CheckedScene& scene) {
    ConstraintExtendCmdCenter centre;
    centre.setDeleteConstraint(scene.id("a"), {15, 0, 0}, 2);
    return scene.names(LvTestAccess::collected(centre));
}

TEST(SetDeleteConstraint, CollectsNothingWhileTheServiceIsDown) {
    CheckedScene scene(kTiedLine);
    scene.serviceDown();
    EXPECT_EQ(collected(scene), "");
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
}

TEST(SetDeleteConstraint, CollectsNothingWithoutProviderOrGroup) {
    CheckedScene scene(kTiedLine);
    scene.host().refuse("getConstraintDataProviderLvInstance");
    EXPECT_EQ(collected(scene), "");
    scene.host().clear();
    scene.host().refuse("getAssocCons2DGroup");
    EXPECT_EQ(collected(scene), "");
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
    scene.host().clear();
    scene.refuseOpen("group");
    EXPECT_EQ(collected(scene), "");
    scene.host().clear();
    scene.host().answerOther("openObject", scene.entity("b"), &scene.group());
    EXPECT_EQ(collected(scene), "");
}

TEST(SetDeleteConstraint, CollectsNothingWhenTheEntityDoesNotOpen) {
    CheckedScene scene(kTiedLine);
    scene.refuseOpen("a");
    EXPECT_EQ(collected(scene), "");
    scene.host().clear();
    scene.host().answerOther("openObject", scene.dependency("a"), scene.entity("a"));
    EXPECT_EQ(collected(scene), "");
}

TEST(SetDeleteConstraint, StopsWithoutDependenciesOrConstraints) {
    CheckedScene scene("line a 0,0 10,0; dependency a");
    EXPECT_EQ(collected(scene), "");
    EXPECT_EQ(scene.process().journal().count("getDependenciesOnObject"), 1);
    CheckedScene unreached(kTiedLine);
    unreached.process().setServicesUp(false);
    EXPECT_EQ(collected(unreached), "");
    EXPECT_EQ(unreached.process().journal().count("getDependenciesOnObject"), 0);
}

TEST(SetDeleteConstraint, TakesNoSnapshotOfASplineWithoutConstraintsOfItsOwn) {
    for (const char* constraint : {"dependency a", "internal fixed a; internal fixed a.control3"}) {
        CheckedScene scene("spline a degree 3 at 0,0 1,1 2,0 3,1; " + std::string(constraint));
        ConstraintExtendCmdCenter centre;
        centre.setDeleteConstraint(scene.id("a"), {4, 2, 0}, 2);
        EXPECT_EQ(LvTestAccess::snapshot(centre), nullptr) << constraint;
    }
}

TEST(SetDeleteConstraint, SeesConstraintsOnTheCurveOnItsPointsAndInComposites) {
    for (const char* constraint : {"fixed a", "fixed a.control2", "composite { fixed a; fixed a.control1 }"}) {
        CheckedScene scene("spline a degree 3 at 0,0 1,1 2,0 3,1; " + std::string(constraint));
        ConstraintExtendCmdCenter centre;
        centre.setDeleteConstraint(scene.id("a"), {4, 2, 0}, 2);
        EXPECT_NE(LvTestAccess::snapshot(centre), nullptr) << constraint;
    }
}

TEST(ExtendUnderFaults, LeavesNothingOpenOnALine) {
    sweepSoundly(kTiedLine + "; horizontal a.start a.end; composite { coincident a.start b.start; fixed a.start }",
                 [](Scene& scene) {
                     ConstraintExtendCmdCenter centre;
                     extendLine(scene, "a", centre, {15, 0, 0}, 2);
                 });
}

TEST(ExtendUnderFaults, LeavesNothingOpenOnAPolyline) {
    sweepSoundly("polyline p 0,0#31 10,0#7 20,0#22^0.5 30,0#5; fixed p[3].end; fixed p[3].start; fixed p[1]; corners p",
                 [](Scene& scene) {
                     ConstraintExtendCmdCenter centre;
                     extendPolyline(scene, "p", centre, {35, 5, 0}, 2);
                 });
}

TEST(ExtendUnderFaults, LeavesNothingOpenOnAnArc) {
    sweepSoundly("arc a centre 0,0 radius 5 from 0 to 90; line b 0,5 9,9; coincident a.end b.start; concentric a b.end",
                 [](Scene& scene) {
                     ConstraintExtendCmdCenter centre;
                     centre.setDeleteConstraint(scene.id("a"), {-5, 0, 0}, 2);
                     finishExtend<YxDbArc>(scene, "a", centre, [](YxDbArc& arc) {
                         ArcData data = EntityAccess::arc(arc);
                         data.endAngle = std::numbers::pi;
                         EntityAccess::setArc(arc, data);
                     });
                 });
}

TEST(ExtendUnderFaults, LeavesNothingOpenOnARay) {
    sweepSoundly("ray a 0,0 dir 1,0; line b 0,0 0,5; coincident a.start b.start; perpendicular a b", [](Scene& scene) {
        ConstraintExtendCmdCenter centre;
        centre.setDeleteConstraint(scene.id("a"), {-5, 0, 0}, 1);
        finishExtend<YxDbRay>(scene, "a", centre, [](YxDbRay& ray) {
            EntityAccess::setRay(ray, {-5, 0, 0}, {1, 0, 0});
        });
    });
}

TEST(ExtendUnderFaults, LeavesNothingOpenOnAnEllipse) {
    for (const char* angles : {"", " from 0 to 90"}) {
        sweepSoundly("ellipse a centre 0,0 major 4,0 ratio 0.5" + std::string(angles) +
                         "; circle b centre 0,0 radius 1; concentric a.centre b.centre; fixed a.end",
                     [](Scene& scene) {
                         ConstraintExtendCmdCenter centre;
                         centre.setDeleteConstraint(scene.id("a"), {-4, 0, 0}, 2);
                         finishExtend<YxDbEllipse>(scene, "a", centre, [](YxDbEllipse& ellipse) {
                             EllipseData data = EntityAccess::ellipse(ellipse);
                             data.endAngle = std::numbers::pi;
                             EntityAccess::setEllipse(ellipse, data);
                         });
                     });
    }
}

TEST(ExtendUnderFaults, LeavesNothingOpenOnASpline) {
    sweepSoundly(
        "spline t degree 3 at 3,1 4,2 5,1 6,0; spline s degree 3 at 0,0 1,1 2,0 3,1; smooth s.control3 t.control0; "
        "fixed s.control0",
        [](Scene& scene) {
            ConstraintExtendCmdCenter centre;
            extendSpline(scene, "s", centre, {4, 2, 0}, 2, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}, {4, 2, 0}});
        });
}

}  // namespace
}  // namespace holdfast::module
