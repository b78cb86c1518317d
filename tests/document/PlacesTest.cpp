#include "document/Places.h"
#include "geometry/Angles.h"

#include <gtest/gtest.h>

#include <cmath>

namespace holdfast::document {
namespace {

void expectPoint(const Shape& shape, const Place& place, Vec2 expected) {
    const std::optional<Vec2> point = pointAt(shape, place);
    ASSERT_TRUE(point) << static_cast<int>(place.kind);
    EXPECT_NEAR(point->x, expected.x, 1e-12);
    EXPECT_NEAR(point->y, expected.y, 1e-12);
}

Place at(PlaceKind kind, int index = 0) {
    return {"", kind, index};
}

const PolylineShape kBent{{{0, 0}, {4, 0}, {4, 2}, {0, 2}}, {0, 1, 0, -0.5}, {0, 0, 0, 0}, true};

TEST(Places, OfLinesAndArcsLieOnThem) {
    const LineShape line{{1, 2}, {3, 6}};
    expectPoint(line, at(PlaceKind::start), {1, 2});
    expectPoint(line, at(PlaceKind::end), {3, 6});
    expectPoint(line, at(PlaceKind::mid), {2, 4});
    const ArcShape arc{{1, 1}, 2, kPi / 2, 3 * kPi / 2};
    expectPoint(arc, at(PlaceKind::start), {1, 3});
    expectPoint(arc, at(PlaceKind::end), {1, -1});
    expectPoint(arc, at(PlaceKind::mid), {-1, 1});
    expectPoint(arc, at(PlaceKind::centre), {1, 1});
}

TEST(Places, OfEllipticalArcsFollowTheirEccentricAngles) {
    const EllipticalArcShape arc{{1, 1}, {0, 4}, 0.5, 0, kPi / 2};
    expectPoint(arc, at(PlaceKind::start), {1, 5});
    expectPoint(arc, at(PlaceKind::end), {-1, 1});
    expectPoint(arc, at(PlaceKind::centre), {1, 1});
}

TEST(Places, OfPolylinesBelongToSegments) {
    expectPoint(kBent, at(PlaceKind::segmentStart, 1), {4, 0});
    expectPoint(kBent, at(PlaceKind::segmentEnd, 1), {4, 2});
    expectPoint(kBent, at(PlaceKind::segmentMid, 0), {2, 0});
    expectPoint(kBent, at(PlaceKind::segmentMid, 1), {5, 1});
    expectPoint(kBent, at(PlaceKind::segmentCentre, 1), {4, 1});
    expectPoint(kBent, at(PlaceKind::segmentEnd, 3), {0, 0});
    EXPECT_FALSE(hasPlace(kBent, at(PlaceKind::segment, 4)));
    EXPECT_FALSE(hasPlace(kBent, at(PlaceKind::segmentCentre, 0)));
    EXPECT_FALSE(hasPlace(kBent, at(PlaceKind::segment, -1)));
}

TEST(Places, OfTheOthersAreTheirBasePointsAndControlPoints) {
    expectPoint(PointShape{{3, 4}}, at(PlaceKind::whole), {3, 4});
    expectPoint(RayShape{{3, 4}, {1, 0}}, at(PlaceKind::start), {3, 4});
    expectPoint(XlineShape{{3, 4}, {1, 0}}, at(PlaceKind::start), {3, 4});
    expectPoint(TextShape{.position = {3, 4}}, at(PlaceKind::start), {3, 4});
    expectPoint(CircleShape{{3, 4}, 1}, at(PlaceKind::centre), {3, 4});
    expectPoint(EllipseShape{{3, 4}, {2, 0}, 0.5}, at(PlaceKind::centre), {3, 4});
    const SplineShape spline{2, false, {{0, 0}, {1, 2}, {2, 0}}, {0, 0, 0, 1, 1, 1}, {}};
    expectPoint(spline, at(PlaceKind::control, 1), {1, 2});
    expectPoint(spline, at(PlaceKind::end), {2, 0});
}

TEST(Places, ThatAreNoPointsHaveNone) {
    EXPECT_FALSE(pointAt(LineShape{{0, 0}, {1, 0}}, at(PlaceKind::whole)));
    EXPECT_FALSE(pointAt(kBent, at(PlaceKind::segment, 0)));
    EXPECT_FALSE(pointAt(RayShape{{0, 0}, {1, 0}}, at(PlaceKind::end)));
    EXPECT_FALSE(pointAt(LineShape{{0, 0}, {1, 0}}, at(PlaceKind::centre)));
}

TEST(BulgeArc, TurnsCounterClockwiseThroughBothVertices) {
    for (const double bulge : {0.1, 0.5, 1.0, 3.0, -0.1, -0.5, -1.0, -3.0}) {
        const Vec2 from{1, 2}, to{4, 6};
        const ArcShape arc = arcOfBulge(from, to, bulge);
        const Vec2 first = bulge > 0 ? from : to, last = bulge > 0 ? to : from;
        expectPoint(arc, at(PlaceKind::start), first);
        expectPoint(arc, at(PlaceKind::end), last);
        EXPECT_NEAR(std::tan((arc.endAngle - arc.startAngle) / 4), std::abs(bulge), 1e-12);
    }
}

TEST(BulgeArc, OfBulgeOneIsTheHalfCircleToTheRight) {
    const ArcShape arc = arcOfBulge({0, 0}, {2, 0}, 1);
    EXPECT_NEAR(arc.centre.x, 1, 1e-15);
    EXPECT_NEAR(arc.centre.y, 0, 1e-15);
    EXPECT_NEAR(arc.radius, 1, 1e-15);
    expectPoint(arc, at(PlaceKind::mid), {1, -1});
}

}  // namespace
}  // namespace holdfast::document
