#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tests/module/commands/fillet/OpenScene.h"
#include "tests/module/commands/fillet/RandomFillet.h"
#include "tests/module/commands/fillet/SelfFilletCommand.h"
#include "tests/module/core/PlainSteps.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

constexpr int kArc = -1;

/// Which segment of the polyline as it was stands where after the fillet.
std::vector<int> segmentsAfter(int segments, const SelfFilletEdit& edit) {
    const int f = static_cast<int>(edit.first);
    const int g = static_cast<int>(edit.second);
    std::vector<int> after;
    const auto append = [&](int from, int to) {
        for (int k = from; k <= to; ++k)
            after.push_back(k);
    };
    const bool closes =
        edit.mode == Centre::kClosingCorner || edit.mode == Centre::kBehind || edit.mode == Centre::kClosing;
    append(0, closes ? g : f);
    if (!edit.sharp)
        after.push_back(kArc);
    if (!closes)
        append(g, segments - 1);
    return after;
}

std::string constrainedOnEverySegment(const RandomPolylineShape& shape) {
    std::string text = "polyline p";
    for (int k = 0; k < shape.count; ++k) {
        // On a circle, so that a closed one has no segment of length 0 either.
        const double angle = 2 * std::numbers::pi * k / shape.count;
        text += " " + std::to_string(50 * std::cos(angle)) + "," + std::to_string(50 * std::sin(angle)) + "#" +
                std::to_string(100 + (37 * k) % 101);
    }
    text += shape.closed ? " closed" : "";
    for (int k = 1; k <= shape.segments(); ++k)
        text += "; fixed p[" + std::to_string(k) + "]";
    return text;
}

/// A corner, a gap, the closing corner, what lies behind, or closing, with an arc or without where that changes the
/// polyline.
SelfFilletEdit randomEdit(const RandomPolylineShape& shape) {
    return *rc::gen::suchThat(
        rc::gen::exec([shape] { return randomSelfFillet(shape); }), [](const SelfFilletEdit& edit) {
            const bool isCorner = edit.mode == Centre::kCorner || edit.mode == Centre::kClosingCorner;
            return edit.mode != Centre::kNothing && !(isCorner && edit.sharp);
        });
}

RC_GTEST_PROP(SelfFilletSegments, AreNamedByTheirDependenciesAsTheUserSeesThem, (bool closed)) {
    const RandomPolylineShape shape{.count = *rc::gen::inRange(4, 12), .closed = closed};
    const SelfFilletEdit edit = randomEdit(shape);
    // The corner before the last segment of a closed polyline has a test of its own, below.
    RC_PRE(!(closed && edit.mode == Centre::kCorner && static_cast<int>(edit.second) == shape.count - 1));
    OpenScene scene(constrainedOnEverySegment(shape));
    Centre centre;
    selfFillet(scene, "p", centre, edit);
    const auto& polyline = *scene.entity<YxDbPolyline>("p");
    const std::vector<int> after = segmentsAfter(shape.segments(), edit);
    RC_ASSERT(static_cast<std::size_t>(EntityAccess::segmentCount(polyline)) == after.size());
    for (int k = 0; k < shape.segments(); ++k) {
        const auto* dependency = scene.dependency("p[" + std::to_string(k + 1) + "]");
        const auto place = std::find(after.begin(), after.end(), k);
        const bool isRemoved = dependency->status() == kSegmentRemovedAssocStatus;
        RC_ASSERT(isRemoved == (place == after.end()));
        plain::Ends ends;
        if (!isRemoved) {
            RC_ASSERT(plain::segmentOf(*dependency, polyline, ends));
            RC_ASSERT(ends.start == static_cast<int>(place - after.begin()));
        }
    }
}

TEST(SelfFilletSegments, AtVertexZeroOfAClosedPolylineGoOnNamingTheFirst) {
    // The record of the last segment is moved up with its end: from vertex 0 to 1.
    OpenScene scene("polyline p 0,0#31 10,0#7 10,10#22 0,10#5 closed; fixed p[1]; fixed p[3]; fixed p[4]");
    Centre centre;
    selfFillet(scene, "p", centre,
               {.first = 2, .second = 3, .mode = Centre::kCorner, .onFirst = {2, 10}, .onSecond = {0, 8}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 10,0#32 10,10#22 2,10#5^0.4 0,8 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[?] 31-7; p[3]: p[3] 22-5; p[4]: p[1] 31-32");
}

}  // namespace
}  // namespace holdfast::module
