#include "geometry/Affine.h"

#include <gtest/gtest.h>

#include "geometry/Angles.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

/// Scales in x and y by themselves, turned, slanted and mirrored.
std::vector<Affine> distortions() {
    return {{{2, 0}, {0, 1}, {3, 4}},
            {{0, 3}, {-1, 0}, {0, 0}},
            {{1, 0.5}, {-0.25, 2}, {-1, 7}},
            {{-2, 0}, {0, 1}, {5, 0}},
            {{0.5, 1}, {2, 0.25}, {1, 1}}};
}

/// Every kind of curve that has an end or comes round.
std::vector<Shape> curvesToDistort() {
    return {line(1, 2, 7, -3),
            ArcShape{{1, 2}, 3, 5.5, 8.0},
            CircleShape{{2, -1}, 4},
            EllipseShape{{1, 2}, {3, 1}, 0.5},
            EllipticalArcShape{{1, 2}, {3, 1}, 0.5, 5.0, 9.0},
            polyline({{0, 0}, {4, 1}, {5, 5}}, {0.5, 0.0}),
            polyline({{0, 0}, {4, 1}, {5, 5}}, {-2.0, 1.0}),
            bezier({{0, 0}, {1, 4}, {5, 4}, {6, 1}})};
}

TEST(Affine, MovesEveryPointOfACurveLikeAnyPoint) {
    constexpr int steps = 24;
    for (const Affine& transform : distortions())
        for (const Shape& curve : curvesToDistort()) {
            const Shape moved = transformed(curve, transform);
            const ParamRange range = paramRange(curve);
            for (int i = 0; i <= steps; ++i) {
                const double param = range.first + (range.last - range.first) * i / steps;
                const Vec2 expected = transform.pointAfter(pointAt(curve, param));
                EXPECT_LT(nearestOn(moved, expected).distance, 1e-9) << curve.index() << " at " << param;
            }
        }
}

TEST(Affine, MakesACurveNoLongerThanItsImage) {
    constexpr int steps = 24;
    for (const Affine& transform : distortions())
        for (const Shape& curve : curvesToDistort()) {
            const Shape moved = transformed(curve, transform);
            const double determinant = transform.determinant();
            const Affine back{{transform.yAxis.y / determinant, -transform.xAxis.y / determinant},
                              {-transform.yAxis.x / determinant, transform.xAxis.x / determinant},
                              {}};
            const ParamRange range = paramRange(moved);
            for (int i = 0; i <= steps; ++i) {
                const Vec2 at = pointAt(moved, range.first + (range.last - range.first) * i / steps);
                EXPECT_LT(nearestOn(curve, back.vectorAfter(at - transform.offset)).distance, 1e-9) << curve.index();
            }
        }
}

TEST(Affine, KeepsKindsAndNumbersWhereItKeepsAngles) {
    const Affine quarter{{0, 1}, {-1, 0}, {10, 0}};
    EXPECT_EQ(std::get<CircleShape>(transformed(CircleShape{{1, 2}, 3}, quarter)), (CircleShape{{8, 1}, 3}));
    const Affine mirrored{{-1, 0}, {0, 1}, {}};
    EXPECT_EQ(std::get<ArcShape>(transformed(ArcShape{{1, 2}, 3, 0, kPi / 2}, mirrored)),
              (ArcShape{{-1, 2}, 3, kPi / 2, kPi}));
}

TEST(Affine, MakesAnEllipseOfACircleThatIsStretched) {
    const auto ellipse = std::get<EllipseShape>(transformed(CircleShape{{1, 1}, 2}, Affine{{1, 0}, {0, 3}, {}}));
    EXPECT_EQ(ellipse.centre, (Vec2{1, 3}));
    EXPECT_NEAR(norm(ellipse.majorAxis), 6, 1e-12);
    EXPECT_NEAR(ellipse.majorAxis.x, 0, 1e-12);
    EXPECT_NEAR(ellipse.ratio, 1.0 / 3.0, 1e-12);
}

TEST(Affine, LetsATextStandUpAndStayReadable) {
    const TextShape text{{1, 2}, 0.0, 3, "a", false};
    const auto tall = std::get<TextShape>(transformed(text, Affine{{1, 0}, {0, 2}, {}}));
    EXPECT_EQ(tall.height, 6);
    EXPECT_EQ(tall.rotation, 0);
    const auto mirrored = std::get<TextShape>(transformed(text, Affine{{-1, 0}, {0, 2}, {}}));
    EXPECT_EQ(mirrored.rotation, 0);
    EXPECT_EQ(mirrored.position, (Vec2{-1, 4}));
}

TEST(Affine, IsChainedAsOneAfterTheOther) {
    for (const Affine& outer : distortions())
        for (const Affine& inner : distortions()) {
            const Vec2 point{3, -2};
            EXPECT_LT(distance(chained(outer, inner).pointAfter(point), outer.pointAfter(inner.pointAfter(point))),
                      1e-12);
        }
}

}  // namespace
}  // namespace holdfast::geometry
