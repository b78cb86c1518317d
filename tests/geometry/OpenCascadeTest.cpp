#include "geometry/occ/OpenCascade.h"

#include <gtest/gtest.h>

#include <string>

#include "geometry/GeometryError.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

using testing::HasSubstr;

TEST(GeometryLibrary, SpeaksItsFailuresAsOurErrors) {
    try {
        bezierDerivatives({{{0, 0}, {1, 0}}, {1.0, 0.0}}, 0.5);
        ADD_FAILURE() << "a weight of 0 was taken";
    } catch (const GeometryError& error) {
        EXPECT_THAT(error.what(), HasSubstr("evaluating a spline failed in the geometry library"));
    }
}

TEST(GeometryLibrary, RefusesInEveryOperation) {
    const Piece line{LineForm{{0, 0}, {0, 0}}, 0.0, 1.0};
    const Piece circle{ConicForm{{0, 0}, {1, 0}, {0, 1}}, 0.0, 1.0};
    const Piece flatEllipse{ConicForm{{0, 0}, {1, 0}, {0, 2}}, 0.0, 1.0};
    EXPECT_THROW(contactsOf(line, circle, 1e-7), GeometryError);
    EXPECT_THROW(perpendicularFeet(flatEllipse, {3, 3}), GeometryError);
    EXPECT_THROW(tangentCentres(circle, circle, -1.0, 1e-7), GeometryError);
    EXPECT_THROW(bezierPart({}, 0.0, 0.5), GeometryError);
    EXPECT_THROW(bezierSpans(bezier({{0, 0}})), GeometryError);
    EXPECT_THROW(splinePart(circleAsSpline(), 3.0, 1.0), GeometryError);
    EXPECT_THROW(splineReversed(SplineShape{}), GeometryError);
}

TEST(BezierSpans, CoverTheSplineBetweenItsKnots) {
    const std::vector<BezierSpan> spans = bezierSpans(circleAsSpline());
    ASSERT_EQ(spans.size(), 4U);
    EXPECT_DOUBLE_EQ(spans[2].firstKnot, 2.0);
    EXPECT_DOUBLE_EQ(spans[2].lastKnot, 3.0);
    EXPECT_THAT(spans[2].form.poles[1], IsAt(Vec2{-1, -1}));
}

TEST(BezierPart, ReachesBeyondTheCurve) {
    const BezierForm parabola{{{0, 0}, {1, 0}, {2, 2}}, {}};
    const BezierForm longer = bezierPart(parabola, 0.0, 2.0);
    EXPECT_THAT(longer.poles.back(), IsAt(Vec2{4, 8}));
    EXPECT_THAT(bezierDerivatives(longer, 0.25).point, IsAt(bezierDerivatives(parabola, 0.5).point));
}

}  // namespace
}  // namespace holdfast::geometry
