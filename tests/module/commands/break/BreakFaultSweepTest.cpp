#include <gtest/gtest.h>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/FaultSweep.h"

namespace holdfast::module {
namespace {

TEST(BreakUnderFaults, LeavesNothingOpenOnALine) {
    sweepFaults(
        "line b 0,0 0,5; line a 0,0 10,0; coincident a.end b.end; horizontal a.start a.end; "
        "composite { coincident a.start b.start; parallel a b }",
        [](Scene& scene) {
            ConstraintBreakCmdCenter centre;
            centre.setPtParam(scene.entity("a"), {4, 0, 0}, {6, 0, 0});
            finishCut(scene, "a", centre, EntityAccess::makeLine({0, 0, 0}, {4, 0, 0}),
                      EntityAccess::makeLine({6, 0, 0}, {10, 0, 0}));
        });
}

TEST(BreakUnderFaults, LeavesNothingOpenOnASpline) {
    sweepFaults(
        "spline b degree 3 at 3,1 4,2 5,1 6,0; spline a degree 3 at 0,0 1,1 2,0 3,1; smooth a.control3 b.control0; "
        "fixed a.control0; tangent a b",
        [](Scene& scene) {
            ConstraintBreakCmdCenter centre;
            SplineData data = EntityAccess::spline(*scene.entity<YxDbSpline>("a"));
            data.control.back() = {2.5, 0.5, 0};
            finishCut(scene, "a", centre, EntityAccess::makeSpline(data));
        });
}

// Only the calls of the module and of the host's own set-up for it; the points are set before.
TEST(BreakUnderFaults, LeavesNothingOpenOnAPolyline) {
    sweepFaults(
        "polyline p 0,0#11 10,0#12 20,0#13^0.5 30,0#14 40,0#15; fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]; "
        "implied coincident p[1].end p[2].start; implied coincident p[2].end p[3].start; "
        "implied coincident p[3].end p[4].start",
        [](Scene& scene) {
            ConstraintBreakCmdCenter centre;
            LvTestAccess::startParam(centre) = 1.5;
            LvTestAccess::endParam(centre) = 2.0;
            CutPieces pieces = cutPolyline(EntityAccess::polyline(*scene.entity<YxDbPolyline>("p")), 1.5, 2.0);
            finishCut(scene, "p", centre, EntityAccess::makePolyline(pieces.first),
                      EntityAccess::makePolyline(pieces.second));
        });
}

}  // namespace
}  // namespace holdfast::module
