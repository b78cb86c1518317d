#include <gtest/gtest.h>

#include "tests/module/commands/fillet/CurveFilletCommand.h"
#include "tests/module/commands/fillet/PolylineFilletCommand.h"
#include "tests/module/commands/fillet/SelfFilletCommand.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/FaultSweep.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

void sweepSelfFillet(const std::string& text, const SelfFilletEdit& edit) {
    sweepSoundly(text, [&](Scene& scene) {
        Centre centre;
        selfFillet(scene, "p", centre, edit);
    });
}

TEST(FilletUnderFaults, LeavesNothingOpenOnTwoLines) {
    sweepSoundly(
        "line a 0,0 10,0; line b 10,0 10,10; coincident a.end b.start; equal a b; horizontal a.start a.end; "
        "composite { coincident a.start b.end; perpendicular a b }",
        [](Scene& scene) {
            Centre centre;
            filletCurves(scene, centre,
                         {.first = EntityAccess::makeLine({0, 0, 0}, {8, 0, 0}),
                          .second = EntityAccess::makeLine({10, 2, 0}, {10, 10, 0})});
        });
}

TEST(FilletUnderFaults, LeavesNothingOpenOnASplineAndAnEllipse) {
    sweepSoundly(
        "spline a degree 3 at 0,0 1,1 2,0 3,1; ellipse b centre 9,9 major 4,0 ratio 0.5; line c 3,1 5,5; "
        "smooth { coincident a.control3 c.start }; fixed a.control0; concentric b.centre c.end; tangent a c",
        [](Scene& scene) {
            Centre centre;
            SplineData data = EntityAccess::spline(*scene.entity<YxDbSpline>("a"));
            data.control.back() = {2.5, 0.5, 0};
            filletCurves(
                scene, centre,
                {.first = EntityAccess::makeSpline(data),
                 .second = EntityAccess::makeEllipse(
                     {.centre = {9, 9, 0}, .majorAxis = {4, 0, 0}, .ratio = 0.5, .startAngle = 0, .endAngle = 2})});
        });
}

TEST(FilletUnderFaults, LeavesNothingOpenOnARayAndAConstructionLine) {
    sweepSoundly(
        "ray a 0,0 dir 1,0; xline b 5,0 dir 0,1; line c 0,0 0,5; coincident a.start c.start; perpendicular a b; "
        "fixed b",
        [](Scene& scene) {
            Centre centre;
            filletCurves(scene, centre,
                         {.first = EntityAccess::makeRay({2, 0, 0}, {1, 0, 0}),
                          .second = EntityAccess::makeXline({5, 0, 0}, {0, 1, 0})});
        });
}

TEST(SelfFilletUnderFaults, LeavesNothingOpenAtACorner) {
    sweepSelfFillet(kOpen, {.first = 0, .second = 1, .mode = Centre::kCorner, .onFirst = {8, 0}, .onSecond = {10, 2}});
}

TEST(SelfFilletUnderFaults, LeavesNothingOpenAcrossAGap) {
    sweepSelfFillet(kOpen, {.first = 0, .second = 2, .mode = Centre::kBetween, .sharp = true, .corner = {5, 10}});
}

TEST(SelfFilletUnderFaults, LeavesNothingOpenAtTheClosingCorner) {
    sweepSelfFillet(kClosed,
                    {.first = 0, .second = 4, .mode = Centre::kClosingCorner, .onFirst = {2, 0}, .onSecond = {-2, 2}});
}

TEST(SelfFilletUnderFaults, LeavesNothingOpenWhenAllBehindTheSecondVanishes) {
    sweepSelfFillet(kClosed, {.first = 0, .second = 2, .mode = Centre::kBehind, .sharp = true, .corner = {1, 5}});
}

TEST(SelfFilletUnderFaults, LeavesNothingOpenWhenItCloses) {
    sweepSelfFillet(kOpen, {.first = 0, .second = 3, .mode = Centre::kClosing, .sharp = true, .corner = {20, 0}});
}

const std::string kWithCurve =
    "polyline p 0,0#31 10,0#7 10,10#22^0.3 20,10#5; line b 0,0 0,5; fixed p[1]; fixed p[2].end; "
    "coincident p[1].start b.start; vertical p[2]; fixed p[3]; corners p";

TEST(FilletPolylineWithCurveUnderFaults, LeavesNothingOpenWhenTheEndIsCut) {
    sweepSoundly(kWithCurve, [](Scene& scene) {
        Centre centre;
        filletWithCurve(scene, "p", centre, {.segment = 1, .dropBefore = false, .point = {10, 8}}, true);
    });
}

TEST(FilletPolylineWithCurveUnderFaults, LeavesNothingOpenWhenTheStartIsCut) {
    sweepSoundly(kWithCurve, [](Scene& scene) {
        Centre centre;
        filletWithCurve(scene, "p", centre, {.segment = 1, .dropBefore = true, .point = {10, 2}}, false);
    });
}

const std::string kTwo =
    "polyline q 0,0#11 10,0#12 20,0#13; polyline r 30,10#21 30,20#22^0.4 40,20#23; fixed q[1]; fixed q[2].end; "
    "horizontal q[2]; fixed r[1]; fixed r[2]; coincident q[2].end r[1].start";

TEST(FilletTwoPolylinesUnderFaults, LeavesNothingOpenAcrossAGap) {
    sweepSoundly(kTwo, [](Scene& scene) {
        Centre centre;
        filletTwoPolylines(scene, centre, {.segment = 1, .dropBefore = false, .point = {28, 0}},
                           {.segment = 0, .dropBefore = true, .point = {30, 2}});
    });
}

TEST(FilletTwoPolylinesUnderFaults, LeavesNothingOpenWhenBothAreTurnedAndTouch) {
    sweepSoundly(kTwo, [](Scene& scene) {
        Centre centre;
        filletTwoPolylines(scene, centre, {.segment = 0, .dropBefore = true, .point = {40, 30}},
                           {.segment = 1, .dropBefore = false, .point = {40, 30}});
    });
}

}  // namespace
}  // namespace holdfast::module
