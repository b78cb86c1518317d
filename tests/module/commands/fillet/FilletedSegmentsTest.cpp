#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tests/module/commands/fillet/OpenScene.h"
#include "tests/module/commands/fillet/PolylineFilletCommand.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/PlainSteps.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

/// A polyline on an arc of a circle with a constraint on every segment; no two vertices fall together.
std::string constrainedArc(const std::string& name, int count, double radius) {
    std::string text = "polyline " + name;
    for (int k = 0; k < count; ++k) {
        const double angle = std::numbers::pi * k / count;
        text += " " + std::to_string(radius * std::cos(angle)) + "," + std::to_string(radius * std::sin(angle)) + "#" +
                std::to_string(100 + (37 * k) % 101);
    }
    for (int k = 1; k < count; ++k)
        text += "; fixed " + name + "[" + std::to_string(k) + "]";
    return text;
}

/// The segment that the dependency names on the polyline, counted from 0; -1: removed, -2: none, or on another object.
int segmentNamed(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& polyline) {
    plain::Ends ends;
    if (dependency.status() == kSegmentRemovedAssocStatus)
        return -1;
    const bool isThere = HostAccess::objectOf(dependency) == polyline.objectId();
    return isThere && plain::segmentOf(dependency, polyline, ends) ? ends.start : -2;
}

RC_GTEST_PROP(FilletedSegments, OfAPolylineWithACurveAreNamedAsTheUserSeesThem, (bool dropBefore, bool turnRound)) {
    const int count = *rc::gen::inRange(2, 9);
    const int cut = *rc::gen::inRange(0, count - 1);
    OpenScene scene(constrainedArc("p", count, 50));
    Centre centre;
    filletWithCurve(scene, "p", centre,
                    {.segment = static_cast<unsigned int>(cut), .dropBefore = dropBefore, .point = {1, 1}}, turnRound);
    const auto& polyline = *scene.entity<YxDbPolyline>("p");
    const int left = static_cast<int>(polyline.numVerts()) - 1;
    RC_ASSERT(left == (dropBefore ? count - 1 - cut : cut + 1));
    for (int k = 0; k < count - 1; ++k) {
        const int place = dropBefore ? k - cut : k;
        const bool isLeft = place >= 0 && place < left;
        RC_ASSERT(segmentNamed(*scene.dependency("p[" + std::to_string(k + 1) + "]"), polyline) ==
                  (!isLeft     ? -1
                   : turnRound ? left - 1 - place
                               : place));
    }
}

RC_GTEST_PROP(FilletedSegments, OfTwoPolylinesAreNamedAsTheUserSeesThem,
              (bool turnFirst, bool turnSecond, bool touch)) {
    const int firstCount = *rc::gen::inRange(2, 9);
    const int secondCount = *rc::gen::inRange(2, 9);
    OpenScene scene(constrainedArc("q", firstCount, 50) + "; " + constrainedArc("r", secondCount, 90));
    Centre centre;
    filletTwoPolylines(scene, centre,
                       {.segment = turnFirst ? 0U : static_cast<unsigned int>(firstCount - 2),
                        .dropBefore = turnFirst,
                        .point = {1, 1}},
                       {.segment = turnSecond ? static_cast<unsigned int>(secondCount - 2) : 0U,
                        .dropBefore = !turnSecond,
                        .point = {touch ? 1.0 : 3.0, 1}});
    const auto& joined = *scene.entity<YxDbPolyline>("q");
    for (int k = 0; k < firstCount - 1; ++k)
        RC_ASSERT(segmentNamed(*scene.dependency("q[" + std::to_string(k + 1) + "]"), joined) ==
                  (turnFirst ? firstCount - 2 - k : k));
    const int secondStart = firstCount - (touch ? 1 : 0);
    for (int k = 0; k < secondCount - 1; ++k)
        RC_ASSERT(segmentNamed(*scene.dependency("r[" + std::to_string(k + 1) + "]"), joined) ==
                  secondStart + (turnSecond ? secondCount - 2 - k : k));
}

}  // namespace
}  // namespace holdfast::module
