#include "geometry/curves/Soundness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "geometry/GeometryError.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

using testing::HasSubstr;

/// The error's text, or empty when there is none.
std::string refusal(const Shape& shape) {
    try {
        requireSound(shape);
    } catch (const GeometryError& error) {
        return error.what();
    }
    return "";
}

SplineShape changed(void (*change)(SplineShape&)) {
    SplineShape spline = circleAsSpline();
    change(spline);
    return spline;
}

TEST(Soundness, AcceptsEveryKindOfCurve) {
    RandomCurves random(3);
    for (const CurveKind kind : kAllCurveKinds) {
        EXPECT_EQ(refusal(random.make(kind)), "");
    }
}

TEST(Soundness, KnowsWhatIsNoCurve) {
    EXPECT_FALSE(isCurve(PointShape{}));
    EXPECT_FALSE(isCurve(TextShape{}));
    EXPECT_TRUE(isCurve(RayShape{}));
    EXPECT_THAT(refusal(PointShape{}), HasSubstr("point: is not a curve"));
    EXPECT_THAT(refusal(TextShape{}), HasSubstr("text: is not a curve"));
}

TEST(Soundness, RefusesNumbersThatAreNotFinite) {
    const double nan = std::nan("");
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_THAT(refusal(line(0, nan, 1, 1)), HasSubstr("line: a coordinate is not a finite number"));
    EXPECT_THAT(refusal(CircleShape{{inf, 0}, 1}), HasSubstr("not a finite number"));
    EXPECT_THAT(refusal(CircleShape{{0, 0}, nan}), HasSubstr("radius"));
    EXPECT_THAT(refusal(ArcShape{{0, 0}, 1, 0, inf}), HasSubstr("runs from"));
    EXPECT_THAT(refusal(EllipseShape{{0, 0}, {1, 0}, nan}), HasSubstr("ratio"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.knots[5] = std::nan(""); })), HasSubstr("knots"));
    EXPECT_THAT(refusal(polyline({{0, 0}, {1, 0}}, {nan})), HasSubstr("bulges"));
}

TEST(Soundness, RefusesWhatHasNoExtent) {
    EXPECT_THAT(refusal(line(1, 1, 1, 1)), HasSubstr("start and end are the same point"));
    EXPECT_THAT(refusal(RayShape{{0, 0}, {0, 0}}), HasSubstr("direction has no length"));
    EXPECT_THAT(refusal(CircleShape{{0, 0}, 0}), HasSubstr("must be finite and positive"));
    EXPECT_THAT(refusal(ArcShape{{0, 0}, 1, 2, 2}), HasSubstr("the end must be greater"));
    EXPECT_THAT(refusal(EllipseShape{{0, 0}, {0, 0}, 1}), HasSubstr("major axis has no length"));
    EXPECT_THAT(refusal(EllipseShape{{0, 0}, {1, 0}, 1.5}), HasSubstr("ratio is 1.5"));
    EXPECT_THAT(refusal(polyline({{1, 1}, {1, 1}})), HasSubstr("all vertices are the same point"));
}

TEST(Soundness, RefusesSplinesWhoseNumbersDoNotFit) {
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.degree = 0; })), HasSubstr("degree is 0"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.degree = 3; })), HasSubstr("take 13"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.knots.pop_back(); })), HasSubstr("has 11 knots"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.knots[4] = -1; })), HasSubstr("must not fall"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.knots[5] = s.knots[6] = 1; })), HasSubstr("too often"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.weights[2] = 0; })), HasSubstr("weights must be positive"));
    EXPECT_THAT(refusal(changed([](SplineShape& s) { s.weights.pop_back(); })), HasSubstr("8 weights for 9"));
}

TEST(Soundness, RefusesPeriodicSplinesWithoutAWholePeriod) {
    SplineShape spline;
    spline.degree = 2;
    spline.periodic = true;
    spline.control = {{0, 0}, {1, 0}, {1, 1}};
    spline.knots = {0, 1, 2, 3};
    EXPECT_EQ(refusal(spline), "");
    spline.knots.push_back(4);
    EXPECT_THAT(refusal(spline), HasSubstr("5 knots do not make a period of 3 control points"));
}

TEST(Soundness, RefusesPolylinesWithMissingBulgesOrIdentifiers) {
    PolylineShape shape = square(1);
    shape.bulges.pop_back();
    EXPECT_THAT(refusal(shape), HasSubstr("one bulge for each vertex"));
    shape = square(1);
    shape.ids.clear();
    EXPECT_THAT(refusal(shape), HasSubstr("one identifier for each vertex"));
    EXPECT_THAT(refusal(polyline({{1, 1}})), HasSubstr("two vertices or more"));
}

}  // namespace
}  // namespace holdfast::geometry
