#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Parameters.h"
#include "tests/geometry/RandomCurves.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

/// Chords per curve: fine enough for crossings to lie within kChordError of where chords cross.
constexpr int kChords = 500;
constexpr double kChordError = 0.05;

bool isFoundIn(const std::vector<Crossing>& found, const ChordCrossing& seen) {
    return std::any_of(found.begin(), found.end(),
                       [&](const Crossing& crossing) { return distance(crossing.point, seen.point) < kChordError; });
}

/// Two curves of the given kinds, the same for the same number.
std::pair<Shape, Shape> pairOf(CurveKind one, CurveKind other, int number) {
    RandomCurves random(
        static_cast<std::uint64_t>(number * 1000 + static_cast<int>(one) * 20 + static_cast<int>(other)));
    Shape first = random.make(one);
    return {first, random.make(other)};
}

class RandomPairs : public testing::TestWithParam<CurveKind> {};

TEST_P(RandomPairs, MissNoCrossingThatManyChordsShow) {
    int seen = 0;
    int missed = 0;
    for (const CurveKind other : kAllCurveKinds) {
        for (int number = 0; number < 10; ++number) {
            const auto [a, b] = pairOf(GetParam(), other, number);
            const std::vector<Crossing> found = intersect(a, b);
            for (const ChordCrossing& crossing : chordCrossings(chordsOf(a, kChords), chordsOf(b, kChords))) {
                ++seen;
                missed += isFoundIn(found, crossing) ? 0 : 1;
            }
        }
    }
    EXPECT_GT(seen, 40);
    EXPECT_EQ(missed, 0) << "of " << seen;
}

TEST_P(RandomPairs, GiveEachCrossingOnceAndOnBothCurves) {
    for (const CurveKind other : kAllCurveKinds) {
        for (int number = 0; number < 8; ++number) {
            const auto [a, b] = pairOf(GetParam(), other, 100 + number);
            const std::vector<Crossing> found = intersect(a, b);
            for (std::size_t i = 0; i < found.size(); ++i) {
                ASSERT_THAT(pointAt(a, found[i].paramA), IsNear(found[i].point, 1e-8));
                ASSERT_THAT(pointAt(b, found[i].paramB), IsNear(found[i].point, 1e-8));
                ASSERT_TRUE(i == 0 || found[i - 1].paramA < found[i].paramA - 1e-9);
            }
        }
    }
}

TEST_P(RandomPairs, GiveTheSameCrossingsWhicheverComesFirst) {
    for (const CurveKind other : kAllCurveKinds) {
        for (int number = 0; number < 3; ++number) {
            const auto [a, b] = pairOf(GetParam(), other, 200 + number);
            const std::vector<Crossing> forth = intersect(a, b);
            const std::vector<Crossing> back = intersect(b, a);
            ASSERT_EQ(forth.size(), back.size());
            for (const Crossing& crossing : forth) {
                EXPECT_TRUE(std::any_of(back.begin(), back.end(), [&](const Crossing& same) {
                    return distance(same.point, crossing.point) < 1e-8;
                }));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllKinds, RandomPairs, testing::ValuesIn(kAllCurveKinds));

/// A curve with a place on it away from its ends where it is neither straight nor sharply bent.
struct Place {
    Shape curve;
    Vec2 point, along;
    double curvature = 0.0;
};

Place placeOn(CurveKind kind, RandomCurves& random) {
    for (;;) {
        const Shape curve = random.make(kind);
        const ParamRange range = paramRange(curve);
        const double t = range.first + (range.last - range.first) * random.number(0.05, 0.95);
        const double curvature = curvatureAt(curve, t);
        if (std::abs(curvature) > 0.02 && std::abs(curvature) < 10.0) {
            return {curve, pointAt(curve, t), tangentAt(curve, t), curvature};
        }
    }
}

bool touchesAt(const Shape& curve, const Shape& other, Vec2 point) {
    const std::vector<Crossing> found = intersect(curve, other);
    return std::any_of(found.begin(), found.end(), [&](const Crossing& crossing) {
        return distance(crossing.point, point) < 1e-6 && crossing.kind == CrossingKind::touching;
    });
}

class TouchingPairs : public testing::TestWithParam<CurveKind> {};

TEST_P(TouchingPairs, TouchTheirTangentsAndCirclesOnEitherSide) {
    RandomCurves random(400 + static_cast<std::uint64_t>(GetParam()));
    int missed = 0;
    for (int i = 0; i < 40; ++i) {
        const Place place = placeOn(GetParam(), random);
        const Vec2 inwards = std::copysign(1.0, place.curvature) * leftOf(place.along);
        const double half = 0.5 / std::abs(place.curvature);
        missed += !touchesAt(place.curve, LineShape{place.point - 2.0 * place.along, place.point + 3.0 * place.along},
                             place.point);
        missed += !touchesAt(place.curve, CircleShape{place.point + half * inwards, half}, place.point);
        missed += !touchesAt(place.curve, CircleShape{place.point - 2.0 * inwards, 2.0}, place.point);
    }
    EXPECT_EQ(missed, 0);
}

TEST_P(TouchingPairs, MeetWhereTheEndOfOneGoesOnAsTheOther) {
    RandomCurves random(500 + static_cast<std::uint64_t>(GetParam()));
    int missed = 0;
    for (int i = 0; i < 40; ++i) {
        const Place place = placeOn(GetParam(), random);
        const Vec2 inwards = std::copysign(1.0, place.curvature) * leftOf(place.along);
        const double angle = std::atan2(inwards.y, inwards.x);
        missed += !touchesAt(place.curve, LineShape{place.point, place.point + 3.0 * place.along}, place.point);
        missed += !touchesAt(place.curve, ArcShape{place.point - 2.0 * inwards, 2.0, angle, angle + 1.0}, place.point);
        missed += !touchesAt(place.curve, ArcShape{place.point - 2.0 * inwards, 2.0, angle - 1.0, angle}, place.point);
    }
    EXPECT_EQ(missed, 0);
}

TEST(TouchingEnds, OfLinesAndArcsThatRoundACorner) {
    RandomCurves random(600);
    for (int i = 0; i < 300; ++i) {
        const double start = random.number(0.0, 2 * kPi);
        const ArcShape arc{random.point(100.0), random.number(0.5, 30.0), start, start + random.number(0.1, 6.0)};
        const Vec2 end = *endPoint(arc);
        const LineShape onwards{end, end + random.number(1.0, 50.0) * tangentAt(arc, arc.endAngle)};
        EXPECT_TRUE(touchesAt(arc, onwards, end)) << i;
        EXPECT_TRUE(touchesAt(onwards, arc, end)) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(CurvedKinds, TouchingPairs,
                         testing::Values(CurveKind::arc, CurveKind::circle, CurveKind::ellipse,
                                         CurveKind::ellipticalArc, CurveKind::spline, CurveKind::rationalSpline,
                                         CurveKind::periodicSpline, CurveKind::polyline));

}  // namespace
}  // namespace holdfast::geometry
