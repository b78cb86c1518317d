#include "commands/fillet/VertexLookup.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>

#include "core/CurveEnds.h"
#include "host/model/entities/EntityAccess.h"
#include "tests/support/TestScene.h"

namespace holdfast::module {
namespace {

std::unique_ptr<YxDbPolyline> polylineThrough(const std::vector<YxGePoint2d>& points) {
    PolylineData data;
    for (const YxGePoint2d& point : points)
        data.vertices.push_back({.point = point, .bulge = 0.0, .identifier = 0});
    return EntityAccess::makePolyline(data);
}

/// A walk along the vertices.
std::vector<unsigned int> walked(const YxDbPolyline& polyline, unsigned int count, const YxGePoint3d& point) {
    std::vector<unsigned int> found;
    for (unsigned int index = 0; index < count; ++index) {
        if (vertexPoint(polyline, index).isEqualTo(point))
            found.push_back(index);
    }
    return found;
}

TEST(VertexLookup, FindsAllVerticesAtAPointInOrder) {
    const TestScene scene("");
    const auto polyline = polylineThrough({{5, 5}, {0, 0}, {5, 5}, {1, 0}, {5, 5}});
    const VertexLookup lookup(*polyline, 4);
    EXPECT_EQ(lookup.at({5, 5, 0}), (std::vector<unsigned int>{0, 2}));
    EXPECT_EQ(lookup.firstAt({5, 5, 0}), 0);
    EXPECT_EQ(lookup.firstAt({1, 0, 0}), 3);
    EXPECT_EQ(lookup.firstAt({2, 2, 0}), -1);
    EXPECT_EQ(lookup.firstAt({5, 5, 1}), -1);
}

TEST(VertexLookup, FindsNothingForWhatIsNoPlace) {
    const TestScene scene("");
    const auto polyline = polylineThrough({{0, 0}, {1, 0}});
    const VertexLookup lookup(*polyline, 2);
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const YxGePoint3d& point : {YxGePoint3d(inf, 0, 0), YxGePoint3d(0, nan, 0), YxGePoint3d(1e300, 0, 0)})
        EXPECT_TRUE(lookup.at(point).empty());
}

RC_GTEST_PROP(VertexLookup, FindsWhatAWalkFindsAtAnyToleranceAndScale, ()) {
    const TestScene scene("");
    const double scale = *rc::gen::element(1e-9, 1e-3, 1.0, 1e7, 1e15);
    const YxGeTol former = YxGeContext::gTol;
    YxGeContext::gTol.setEqualPoint(scale * *rc::gen::element(1e-16, 1e-10, 0.4, 1.0, 1.5, 50.0));
    const auto cells = *rc::gen::nonEmpty(rc::gen::container<std::vector<std::pair<int, int>>>(
        rc::gen::pair(rc::gen::inRange(-4, 5), rc::gen::inRange(-2, 3))));
    std::vector<YxGePoint2d> points;
    for (const auto& [x, y] : cells)
        points.push_back({x * scale, y * scale});
    const auto polyline = polylineThrough(points);
    const auto count = static_cast<unsigned int>(*rc::gen::inRange<std::size_t>(0, points.size() + 1));
    const VertexLookup lookup(*polyline, count);
    bool same = true;
    for (int x = -6; x < 7; ++x) {
        for (int y = -4; y < 5; ++y) {
            const YxGePoint3d point(x * scale * 0.9, y * scale, 0);
            const auto expected = walked(*polyline, count, point);
            same = same && lookup.at(point) == expected &&
                   lookup.firstAt(point) == (expected.empty() ? -1 : static_cast<int>(expected.front()));
        }
    }
    YxGeContext::gTol = former;
    RC_ASSERT(same);
}

}  // namespace
}  // namespace holdfast::module
