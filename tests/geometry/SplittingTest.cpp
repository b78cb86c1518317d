#include "geometry/construction/Splitting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geometry/GeometryError.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(PartOfALine, KeepsTheEndThatStaysToTheLastBit) {
    const LineShape shape = line(0.1, 0.2, 1.0 / 3.0, 0.7);
    const auto part = std::get<LineShape>(partOf(shape, 0.0, 0.3));
    EXPECT_EQ(part.start, shape.start);
    EXPECT_EQ(std::get<LineShape>(partOf(shape, 0.3, paramRange(shape).last)).end, shape.end);
}

TEST(PartOfARay, IsALineOrARay) {
    const RayShape ray{{1, 1}, {2, 0}};
    EXPECT_EQ(partOf(ray, 0, 4), Shape(line(1, 1, 5, 1)));
    EXPECT_EQ(partOf(ray, 4, kInfinity), Shape(RayShape{{5, 1}, {2, 0}}));
}

TEST(PartOfAnXline, IsALineOrARayThatPointsAway) {
    const XlineShape xline{{1, 1}, {2, 0}};
    EXPECT_EQ(partOf(xline, -2, 4), Shape(line(-1, 1, 5, 1)));
    EXPECT_EQ(partOf(xline, -kInfinity, 4), Shape(RayShape{{5, 1}, {-2, 0}}));
    EXPECT_EQ(partOf(xline, 4, kInfinity), Shape(RayShape{{5, 1}, {2, 0}}));
    EXPECT_EQ(partOf(xline, -kInfinity, kInfinity), Shape(xline));
}

TEST(PartOfACircle, IsAnArcThatMayLeadOverTheSeam) {
    const CircleShape circle{{1, 2}, 3};
    EXPECT_EQ(partOf(circle, 1, 2), Shape(ArcShape{{1, 2}, 3, 1, 2}));
    const auto over = std::get<ArcShape>(partOf(circle, 6, 1));
    EXPECT_DOUBLE_EQ(over.startAngle, 6.0);
    EXPECT_DOUBLE_EQ(over.endAngle, 1.0 + 2 * kPi);
    EXPECT_EQ(partOf(circle, 1, 1), Shape(ArcShape{{1, 2}, 3, 1, 1 + 2 * kPi}));
}

TEST(PartOfAnEllipse, IsAnEllipticalArc) {
    const EllipseShape ellipse{{1, 2}, {0, 3}, 0.5};
    EXPECT_EQ(partOf(ellipse, 1, 2), Shape(EllipticalArcShape{{1, 2}, {0, 3}, 0.5, 1, 2}));
}

TEST(PartOfASpline, KeepsParametersAndUntouchedControlPoints) {
    SplineShape spline;
    spline.degree = 2;
    spline.control = {{0, 0}, {2, 4}, {5, 5}, {8, 1}, {9, 3}};
    spline.knots = {0, 0, 0, 1, 2, 3, 3, 3};
    const auto part = std::get<SplineShape>(partOf(spline, 0.0, 1.5));
    EXPECT_EQ(part.knots, (std::vector<double>{0, 0, 0, 1, 1.5, 1.5, 1.5}));
    EXPECT_EQ(part.control[0], spline.control[0]);
    EXPECT_EQ(part.control[1], spline.control[1]);
    EXPECT_THAT(part.control.back(), IsAt(pointAt(spline, 1.5)));
}

TEST(PartOfASpline, KeepsWeights) {
    const auto quarter = std::get<SplineShape>(partOf(circleAsSpline(), 1, 2));
    EXPECT_EQ(quarter.knots, (std::vector<double>{1, 1, 1, 2, 2, 2}));
    EXPECT_THAT(quarter.control[1], IsAt(Vec2{-1, 1}));
    EXPECT_NEAR(quarter.weights[1] / quarter.weights[0], std::sqrt(0.5), 1e-15);
    SplineShape even = bezier({{0, 0}, {1, 1}, {2, 0}}, {2, 2, 2});
    EXPECT_EQ(std::get<SplineShape>(partOf(even, 0, 0.5)).weights.size(), 3U);
}

TEST(PartOfAPeriodicSpline, IsClampedAndMayLeadOverTheSeam) {
    RandomCurves random(51);
    for (int i = 0; i < 30; ++i) {
        const Shape shape = random.make(CurveKind::periodicSpline);
        const ParamRange range = paramRange(shape);
        const double width = range.last - range.first;
        const double from = range.first + 0.7 * width;
        const auto part = std::get<SplineShape>(partOf(shape, from, from + 0.6 * width));
        EXPECT_FALSE(part.periodic);
        const ParamRange cut = paramRange(part);
        EXPECT_NEAR(cut.last - cut.first, 0.6 * width, 1e-12);
        for (const double f : {0.0, 0.2, 0.5, 0.9, 1.0}) {
            const double t = from + f * 0.6 * width;
            EXPECT_THAT(pointAt(part, cut.first + f * 0.6 * width), IsAt(pointAt(shape, t)));
        }
    }
}

TEST(Part, LiesOnTheCurveBetweenItsParameters) {
    RandomCurves random(52);
    for (const CurveKind kind : kAllCurveKinds) {
        for (int i = 0; i < 15; ++i) {
            const Shape shape = random.make(kind);
            const Chords ends = chordsOf(shape, 1);
            const double width = ends.params.back() - ends.params.front();
            const double first = ends.params.front() + width * random.number(0.0, 0.4);
            const double last = first + width * random.number(0.1, 0.5);
            const Shape part = partOf(shape, first, last);
            EXPECT_THAT(*startPoint(part), IsAt(pointAt(shape, first))) << static_cast<int>(kind);
            EXPECT_THAT(*endPoint(part), IsAt(pointAt(shape, last)));
            EXPECT_NEAR(lengthOf(part), lengthBetween(shape, first, last), 1e-8);
            for (const Vec2 p : chordsOf(part, 6).points) {
                ASSERT_LE(nearestOn(shape, p).distance, 1e-9);
            }
        }
    }
}

TEST(Part, OutsideTheCurveOrBackwardsIsRefused) {
    EXPECT_THROW(partOf(line(0, 0, 10, 0), -1, 5), GeometryError);
    EXPECT_THROW(partOf(line(0, 0, 10, 0), 5, 11), GeometryError);
    EXPECT_THROW(partOf(line(0, 0, 10, 0), 5, 5), GeometryError);
    EXPECT_THROW(partOf(ArcShape{{0, 0}, 1, 0, 3}, 2, 1), GeometryError);
    EXPECT_THROW(partOf(RayShape{{0, 0}, {1, 0}}, std::nan(""), 1), GeometryError);
    EXPECT_THROW(partOf(CircleShape{{0, 0}, 1}, 0, kInfinity), GeometryError);
    EXPECT_THROW(partOf(TextShape{}, 0, 1), GeometryError);
}

TEST(Split, LeavesTheTwoPartsBesideTheCut) {
    const Remainder remainder = split(line(0, 0, 10, 0), 4, 6);
    EXPECT_EQ(remainder.before, Shape(line(0, 0, 4, 0)));
    EXPECT_EQ(remainder.after, Shape(line(6, 0, 10, 0)));
}

TEST(Split, AtOneParameterCutsInTwo) {
    const Remainder remainder = split(bezier({{0, 0}, {5, 10}, {10, 0}}), 0.5, 0.5);
    EXPECT_THAT(*endPoint(*remainder.before), IsAt(Vec2{5, 5}));
    EXPECT_THAT(*startPoint(*remainder.after), IsAt(Vec2{5, 5}));
}

TEST(Split, LeavesNothingBesideACutAtAnEnd) {
    const ArcShape arc{{0, 0}, 1, 1, 3};
    EXPECT_EQ(split(arc, 1, 2).before, std::nullopt);
    EXPECT_EQ(split(arc, 1 + 1e-12, 2).before, std::nullopt);
    EXPECT_EQ(split(arc, 2, 3).after, std::nullopt);
    const Remainder all = split(arc, 1, 3);
    EXPECT_FALSE(all.before || all.after);
}

TEST(Split, LeavesNothingOfASplineWhoseKnotsWouldBeOne) {
    const SplineShape spline = bezier({{0, 0}, {5, 10}, {10, 0}});
    EXPECT_EQ(split(spline, 5e-9, 0.5).before, std::nullopt);
    EXPECT_EQ(split(spline, 0.5, 1.0 - 5e-9).after, std::nullopt);
    EXPECT_THROW(partOf(spline, 0.5, 0.5 + 5e-9), GeometryError);
}

TEST(Split, OfAClosedCurveLeavesOnePartRoundTheSeam) {
    const Remainder circle = split(CircleShape{{0, 0}, 1}, 1, 2);
    EXPECT_EQ(circle.before, std::nullopt);
    EXPECT_EQ(circle.after, Shape(ArcShape{{0, 0}, 1, 2, 1 + 2 * kPi}));
    const auto rest = std::get<PolylineShape>(*split(square(10), 0.5, 1.5).after);
    EXPECT_EQ(rest.vertices, (std::vector<Vec2>{{10, 5}, {10, 10}, {0, 10}, {0, 0}, {5, 0}}));
    EXPECT_EQ(rest.ids, (std::vector<int>{12, 13, 14, 11, 12}));
}

TEST(Split, OfUnboundedLinesLeavesRays) {
    const Remainder xline = split(XlineShape{{0, 0}, {1, 0}}, -2, 3);
    EXPECT_EQ(xline.before, Shape(RayShape{{-2, 0}, {-1, 0}}));
    EXPECT_EQ(xline.after, Shape(RayShape{{3, 0}, {1, 0}}));
    const Remainder ray = split(RayShape{{0, 0}, {1, 0}}, 2, 3);
    EXPECT_EQ(ray.before, Shape(line(0, 0, 2, 0)));
    EXPECT_EQ(ray.after, Shape(RayShape{{3, 0}, {1, 0}}));
}

TEST(Split, LosesAndAddsNoLength) {
    RandomCurves random(53);
    for (const CurveKind kind : kAllCurveKinds) {
        const Shape shape = random.make(kind);
        if (!std::isfinite(lengthOf(shape))) {
            continue;
        }
        const ParamRange range = paramRange(shape);
        const double first = range.first + 0.31 * (range.last - range.first);
        const double last = range.first + 0.64 * (range.last - range.first);
        const Remainder rest = split(shape, first, last);
        double sum = lengthBetween(shape, first, last) + lengthOf(*rest.after);
        sum += rest.before ? lengthOf(*rest.before) : 0.0;
        EXPECT_NEAR(sum, lengthOf(shape), 1e-8) << static_cast<int>(kind);
    }
}

TEST(SplitAt, GivesThePartsInOrder) {
    const double cuts[] = {7, 3, 3 + 1e-12, 0, 10};
    const std::vector<Shape> parts = splitAt(line(0, 0, 10, 0), cuts);
    EXPECT_EQ(parts, (std::vector<Shape>{line(0, 0, 3, 0), line(3, 0, 7, 0), line(7, 0, 10, 0)}));
}

TEST(SplitAt, OfAClosedCurveEndsOverTheSeam) {
    const double cuts[] = {2, 1, 4};
    const std::vector<Shape> parts = splitAt(CircleShape{{0, 0}, 1}, cuts);
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_EQ(parts[2], Shape(ArcShape{{0, 0}, 1, 4, 1 + 2 * kPi}));
    const double seam[] = {4, 2};
    EXPECT_EQ(splitAt(square(10), seam).size(), 2U);
}

TEST(SplitAt, WithoutCutsLeavesTheCurveWhole) {
    const double ends[] = {0, 10};
    EXPECT_EQ(splitAt(line(0, 0, 10, 0), ends), (std::vector<Shape>{line(0, 0, 10, 0)}));
    EXPECT_EQ(splitAt(CircleShape{{0, 0}, 1}, {}), (std::vector<Shape>{CircleShape{{0, 0}, 1}}));
    const double outside[] = {11};
    EXPECT_THROW(splitAt(line(0, 0, 10, 0), outside), GeometryError);
}

TEST(Reversed, RunsTheSameCurveBackwards) {
    EXPECT_EQ(reversed(line(0, 0, 3, 4)), Shape(line(3, 4, 0, 0)));
    const SplineShape spline = bezier({{0, 0}, {1, 5}, {4, 2}}, {1, 2, 3});
    EXPECT_THAT(pointAt(reversed(spline), 0.2), IsAt(pointAt(spline, 0.8)));
    EXPECT_THAT(pointAt(reversed(square(10)), 0.5), IsAt(Vec2{0, 5}));
    EXPECT_EQ(reversed(ArcShape{{0, 0}, 1, 0, 1}), Shape(ArcShape{{0, 0}, 1, 0, 1}));
}

}  // namespace
}  // namespace holdfast::geometry
