#include "geometry/curves/Polylines.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/GeometryError.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

using testing::ElementsAre;

TEST(Bulge, IsTheTangentOfAQuarterOfTheAngle) {
    EXPECT_DOUBLE_EQ(bulgeOfAngle(kPi), 1.0);
    EXPECT_DOUBLE_EQ(angleOfBulge(-1.0), -kPi);
    EXPECT_DOUBLE_EQ(angleOfBulge(bulgeOfAngle(5.5)), 5.5);
}

TEST(Segments, CountTheClosingOneOnlyWhereThePolylineIsClosed) {
    EXPECT_EQ(segmentCount(square(1)), 4U);
    EXPECT_EQ(segmentCount(polyline({{0, 0}, {1, 0}, {1, 1}})), 2U);
}

TEST(SegmentCurve, IsALineOrTheArcCounterClockwise) {
    EXPECT_EQ(std::get<LineShape>(segmentCurve(square(2), 3)), line(0, 2, 0, 0));
    const auto arc = std::get<ArcShape>(segmentCurve(polyline({{0, 0}, {2, 0}}, {1}), 0));
    EXPECT_THAT(arc.centre, IsAt(Vec2{1, 0}));
    EXPECT_DOUBLE_EQ(arc.radius, 1.0);
    EXPECT_THAT(pointAt(arc, arc.startAngle), IsAt(Vec2{0, 0}));
    EXPECT_DOUBLE_EQ(arc.endAngle - arc.startAngle, kPi);
}

TEST(SegmentCurve, StartsAtTheSegmentsEndWhereTheBulgeIsNegative) {
    const auto arc = std::get<ArcShape>(segmentCurve(polyline({{0, 0}, {2, 0}}, {-0.5}), 0));
    EXPECT_THAT(pointAt(arc, arc.startAngle), IsAt(Vec2{2, 0}));
    EXPECT_THAT(pointAt(arc, arc.endAngle), IsAt(Vec2{0, 0}));
    EXPECT_THAT(pointAt(arc, 0.5 * (arc.startAngle + arc.endAngle)), IsAt(Vec2{1, 0.5}));
}

TEST(SegmentCurve, RefusesSegmentsThatAreNoneOrHaveNoLength) {
    EXPECT_THROW(segmentCurve(polyline({{0, 0}, {1, 0}}), 1), GeometryError);
    EXPECT_THROW(segmentCurve(polyline({{0, 0}, {1, 0}, {1, 0}}), 1), GeometryError);
}

TEST(SegmentCurve, OfAHairsBreadthOfBulgeIsStraight) {
    EXPECT_TRUE(std::holds_alternative<LineShape>(segmentCurve(polyline({{0, 0}, {1, 0}}, {1e-9}), 0)));
    EXPECT_TRUE(std::holds_alternative<ArcShape>(segmentCurve(polyline({{0, 0}, {1, 0}}, {1e-6}), 0)));
}

TEST(ReversedPolyline, KeepsIdentifiersAndTurnsBulges) {
    const PolylineShape turned = reversedPolyline(polyline({{0, 0}, {1, 0}, {1, 1}}, {0.5, -0.25}));
    EXPECT_EQ(turned.vertices, (std::vector<Vec2>{{1, 1}, {1, 0}, {0, 0}}));
    EXPECT_THAT(turned.bulges, ElementsAre(0.25, -0.5, 0.0));
    EXPECT_THAT(turned.ids, ElementsAre(13, 12, 11));
}

TEST(ReversedPolyline, OfAClosedOneStartsAtTheSameVertex) {
    const PolylineShape turned = reversedPolyline(polyline({{0, 0}, {1, 0}, {1, 1}}, {0.1, 0.2, 0.3}, true));
    EXPECT_EQ(turned.vertices, (std::vector<Vec2>{{0, 0}, {1, 1}, {1, 0}}));
    EXPECT_THAT(turned.bulges, ElementsAre(-0.3, -0.2, -0.1));
    EXPECT_THAT(turned.ids, ElementsAre(11, 13, 12));
}

TEST(ReversedPolyline, IsTheSameCurveBackwards) {
    RandomCurves random(41);
    for (int i = 0; i < 30; ++i) {
        const auto shape = std::get<PolylineShape>(random.make(CurveKind::polyline));
        const PolylineShape turned = reversedPolyline(shape);
        const double last = paramRange(shape).last;
        for (const double t : {0.0, 0.3 * last, 0.77 * last}) {
            EXPECT_THAT(pointAt(turned, last - t), IsAt(pointAt(shape, t)));
        }
        EXPECT_EQ(reversedPolyline(turned), shape);
    }
}

TEST(OpenedPolyline, RepeatsVertexZeroWithoutItsIdentifier) {
    const PolylineShape open = openedPolyline(polyline({{0, 0}, {1, 0}, {1, 1}}, {0.1, 0.2, 0.3}, true));
    EXPECT_FALSE(open.closed);
    EXPECT_EQ(open.vertices.back(), (Vec2{0, 0}));
    EXPECT_THAT(open.ids, ElementsAre(11, 12, 13, 0));
    EXPECT_THAT(open.bulges, ElementsAre(0.1, 0.2, 0.3, 0.0));
    EXPECT_EQ(openedPolyline(open), open);
}

TEST(PolylinePart, KeepsTheIdentifiersOfEverySegmentThatItKeeps) {
    const PolylineShape stairs = polyline({{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 20}});
    const PolylineShape first = polylinePart(stairs, 0.0, 0.5);
    const PolylineShape second = polylinePart(stairs, 2.5, 4.0);
    EXPECT_EQ(first.vertices, (std::vector<Vec2>{{0, 0}, {5, 0}}));
    EXPECT_THAT(first.ids, ElementsAre(11, 12));
    EXPECT_EQ(second.vertices, (std::vector<Vec2>{{15, 10}, {20, 10}, {20, 20}}));
    EXPECT_THAT(second.ids, ElementsAre(13, 14, 15));
}

TEST(PolylinePart, AtVerticesTakesThemAsTheyAre) {
    const PolylineShape part = polylinePart(polyline({{0, 0}, {0.1, 0.7}, {1, 1}, {2, 0}}, {0, 0.3}), 1.0, 2.0);
    EXPECT_EQ(part.vertices, (std::vector<Vec2>{{0.1, 0.7}, {1, 1}}));
    EXPECT_THAT(part.bulges, ElementsAre(0.3, 0.0));
    EXPECT_THAT(part.ids, ElementsAre(12, 13));
}

TEST(PolylinePart, CutsBulgesInProportionToTheAngle) {
    const PolylineShape part = polylinePart(polyline({{0, 0}, {2, 0}}, {1}), 0.25, 0.75);
    EXPECT_THAT(part.vertices[0], IsAt(Vec2{1 - std::sqrt(0.5), -std::sqrt(0.5)}));
    EXPECT_DOUBLE_EQ(part.bulges[0], std::tan(kPi / 8));
}

TEST(PolylinePart, OfAClosedOneLeadsOverTheSeam) {
    const PolylineShape part = polylinePart(square(10), 3.5, 5.5);
    EXPECT_EQ(part.vertices, (std::vector<Vec2>{{0, 5}, {0, 0}, {10, 0}, {10, 5}}));
    EXPECT_THAT(part.ids, ElementsAre(14, 11, 12, 13));
    EXPECT_FALSE(part.closed);
}

}  // namespace
}  // namespace holdfast::geometry
