#include "geometry/Transforms.h"

#include <gtest/gtest.h>

#include "geometry/GeometryError.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

/// A shift, a turn, a reflection and a turn with a scale.
std::vector<PlaneTransform> someTransforms() {
    return {translation({3, -4}), rotation({1, 2}, 0.7), reflection({1, 1}, {4, -1}),
            alignment({1, 0}, {2, 0}, {-3, 2}, {-3, 5}, true)};
}

/// Every kind of curve with a start and an end.
std::vector<Shape> someCurves() {
    return {line(1, 2, 7, -3), ArcShape{{1, 2}, 3, 5.5, 8.0}, EllipticalArcShape{{1, 2}, {3, 1}, 0.5, 5.0, 9.0},
            polyline({{0, 0}, {4, 1}, {5, 5}}, {0.5, 0.0}), bezier({{0, 0}, {1, 4}, {5, 4}, {6, 1}})};
}

TEST(Transform, MovesEveryPointOfACurveLikeAnyPoint) {
    for (const PlaneTransform& transform : someTransforms()) {
        for (const Shape& curve : someCurves()) {
            const Shape moved = transformed(curve, transform);
            const bool turnsRound = transform.mirrors && (std::holds_alternative<ArcShape>(curve) ||
                                                          std::holds_alternative<EllipticalArcShape>(curve));
            const ParamRange before = paramRange(curve), after = paramRange(moved);
            for (const double part : {0.0, 0.3, 0.8, 1.0}) {
                const double partAfter = turnsRound ? 1.0 - part : part;
                const Vec2 point = pointAt(curve, before.first + part * (before.last - before.first));
                const Vec2 image = pointAt(moved, after.first + partAfter * (after.last - after.first));
                EXPECT_THAT(image, IsAt(transform.pointAfter(point))) << curve.index() << " at " << part;
            }
        }
    }
}

TEST(Transform, KeepsTheDirectionsOfUnboundedLinesUnitVectors) {
    const PlaneTransform larger = alignment({0, 0}, {1, 0}, {5, 5}, {5, 9}, true);
    EXPECT_EQ(transformed(RayShape{{1, 0}, {1, 0}}, larger), Shape(RayShape{{5, 9}, {0, 1}}));
    EXPECT_EQ(transformed(XlineShape{{1, 0}, {0, 1}}, larger), Shape(XlineShape{{5, 9}, {-1, 0}}));
}

TEST(Transform, ScalesRadiiAndTextHeights) {
    const PlaneTransform twice = alignment({0, 0}, {1, 0}, {0, 0}, {2, 0}, true);
    EXPECT_EQ(transformed(CircleShape{{3, 1}, 5}, twice), Shape(CircleShape{{6, 2}, 10}));
    const auto text = std::get<TextShape>(transformed(TextShape{{1, 1}, 0.5, 2.5, "a", false}, twice));
    EXPECT_EQ(text.height, 5.0);
    EXPECT_EQ(text.rotation, 0.5);
}

TEST(Transform, OfAQuarterTurnIsExact) {
    const PlaneTransform quarter = rotation({0, 0}, kPi / 2.0);
    EXPECT_EQ(transformed(line(1, 0, 10, 3), quarter), Shape(line(0, 1, -3, 10)));
    EXPECT_EQ(transformed(line(1, 0, 10, 3), rotation({0, 0}, -kPi)), Shape(line(-1, 0, -10, -3)));
}

TEST(Translation, LeavesAnglesToTheLastBit) {
    const ArcShape arc{{1, 2}, 3, -7.25, -3.125};
    EXPECT_EQ(transformed(arc, translation({1, 1})), Shape(ArcShape{{2, 3}, 3, -7.25, -3.125}));
}

TEST(Reflection, TurnsBulgesRoundAndKeepsVertexIdentifiers) {
    const Shape mirrored = transformed(polyline({{1, 0}, {4, 0}, {4, 2}}, {0.5, 0.0}), reflection({0, 0}, {0, 1}));
    const auto& polylineShape = std::get<PolylineShape>(mirrored);
    EXPECT_EQ(polylineShape.vertices, (std::vector<Vec2>{{-1, 0}, {-4, 0}, {-4, 2}}));
    EXPECT_EQ(polylineShape.bulges, (std::vector<double>{-0.5, 0.0, 0.0}));
    EXPECT_EQ(polylineShape.ids, (std::vector<int>{11, 12, 13}));
}

TEST(Reflection, KeepsTextsReadable) {
    const PlaneTransform upright = reflection({0, 0}, {0, 1});
    const auto level = std::get<TextShape>(transformed(TextShape{{3, 1}, 0.0, 2.5, "a", false}, upright));
    EXPECT_THAT(level.position, IsAt(Vec2{-3, 1}));
    EXPECT_NEAR(level.rotation, 0.0, 1e-12);
    const auto rising = std::get<TextShape>(transformed(TextShape{{3, 1}, 0.4, 2.5, "a", false}, upright));
    EXPECT_NEAR(rising.rotation, -0.4, 1e-12);
}

TEST(Reflection, TwiceIsNothing) {
    const PlaneTransform mirror = reflection({1, 1}, {4, -1});
    for (const Shape& curve : someCurves()) {
        const Shape back = transformed(transformed(curve, mirror), mirror);
        EXPECT_THAT(startPoint(back).value(), IsAt(startPoint(curve).value()));
        EXPECT_THAT(endPoint(back).value(), IsAt(endPoint(curve).value()));
    }
}

TEST(Alignment, BringsPointsAndDirectionsTogether) {
    const PlaneTransform stiff = alignment({1, 1}, {3, 1}, {5, 5}, {5, 15}, false);
    EXPECT_THAT(stiff.pointAfter({1, 1}), IsAt(Vec2{5, 5}));
    EXPECT_THAT(stiff.pointAfter({3, 1}), IsAt(Vec2{5, 7}));
    const PlaneTransform scaled = alignment({1, 1}, {3, 1}, {5, 5}, {5, 15}, true);
    EXPECT_THAT(scaled.pointAfter({3, 1}), IsAt(Vec2{5, 15}));
}

TEST(Alignment, RefusesPointsThatAreOne) {
    EXPECT_THROW(alignment({1, 1}, {1, 1}, {0, 0}, {1, 0}, false), GeometryError);
    EXPECT_THROW(alignment({0, 0}, {1, 0}, {1, 1}, {1, 1}, false), GeometryError);
    EXPECT_THROW(reflection({2, 2}, {2, 2}), GeometryError);
}

}  // namespace
}  // namespace holdfast::geometry
