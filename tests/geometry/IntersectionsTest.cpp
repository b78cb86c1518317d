#include "geometry/crossings/Intersections.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "geometry/GeometryError.h"
#include "tests/geometry/Shapes.h"

namespace holdfast::geometry {
namespace {

/// A value to six places, without a sign on zero.
double rounded(double value) {
    return std::round(value * 1e6) / 1e6 + 0.0;
}

/// Crossings as text: "x,y at a b", with what kind they are where it is not a plain crossing.
std::string meetings(const Shape& a, const Shape& b, Extent extentA = Extent::bounded,
                     Extent extentB = Extent::bounded) {
    static constexpr const char* kKinds[] = {"", " touching", " overlap"};
    std::ostringstream text;
    text.precision(12);
    for (const Crossing& crossing : intersect(a, b, extentA, extentB)) {
        text << (text.tellp() > 0 ? "; " : "") << rounded(crossing.point.x) << "," << rounded(crossing.point.y)
             << " at " << rounded(crossing.paramA) << " " << rounded(crossing.paramB)
             << kKinds[static_cast<int>(crossing.kind)];
    }
    return text.str();
}

TEST(IntersectLines, GivesPointAndBothParameters) {
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(4, -3, 4, 7)), "4,0 at 4 3");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(4, 1, 4, 7)), "");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(0, 1, 10, 1)), "");
}

TEST(IntersectLines, MeetsAnEndThatOnlyJustReachesTheLine) {
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(4, 0, 4, 7)), "4,0 at 4 0");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(4, 1e-9, 4, 7)), "4,0 at 4 0");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(10, 0, 12, 7)), "10,0 at 10 0");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(4, 1e-4, 4, 7)), "");
}

TEST(IntersectLines, ReachesBeyondTheEndsOnCarriers) {
    EXPECT_EQ(meetings(line(0, 0, 1, 0), line(5, 2, 5, 3), Extent::carrier, Extent::carrier), "5,0 at 5 -2");
    EXPECT_EQ(meetings(line(0, 0, 1, 0), line(5, 2, 5, 3), Extent::carrier), "");
}

TEST(IntersectLines, GivesTheEndsOfACommonStretch) {
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(15, 0, 5, 0)), "5,0 at 5 10 overlap; 10,0 at 10 5 overlap");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(0, 0, 10, 0)), "0,0 at 0 0 overlap; 10,0 at 10 10 overlap");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(10, 0, 12, 0)), "10,0 at 10 0 touching");
    EXPECT_EQ(meetings(line(0, 0, 10, 0), line(11, 0, 12, 0)), "");
}

TEST(IntersectRays, StopAtTheirBasePoints) {
    const RayShape up{{0, 0}, {0, 2}};
    EXPECT_EQ(meetings(up, XlineShape{{5, 3}, {-1, 0}}), "0,3 at 3 5");
    EXPECT_EQ(meetings(up, XlineShape{{5, -3}, {-1, 0}}), "");
    EXPECT_EQ(meetings(up, XlineShape{{5, -3}, {-1, 0}}, Extent::carrier), "0,-3 at -3 5");
    EXPECT_EQ(meetings(RayShape{{0, 0}, {1, 1}}, RayShape{{4, 0}, {-1, 1}}), "2,2 at 2.828427 2.828427");
}

TEST(IntersectRays, OnOneLineShareWhatBothCover) {
    const RayShape right{{0, 0}, {1, 0}};
    EXPECT_EQ(meetings(right, RayShape{{5, 0}, {-1, 0}}), "0,0 at 0 5 overlap; 5,0 at 5 0 overlap");
    EXPECT_EQ(meetings(right, RayShape{{5, 0}, {1, 0}}), "5,0 at 5 0 overlap");
    EXPECT_EQ(meetings(right, RayShape{{0, 0}, {-1, 0}}), "0,0 at 0 0 touching");
    EXPECT_EQ(meetings(right, RayShape{{-5, 0}, {-1, 0}}), "");
    EXPECT_EQ(meetings(XlineShape{{0, 0}, {1, 0}}, XlineShape{{3, 0}, {-1, 0}}), "");
}

TEST(IntersectCircles, GivesAnglesAsParameters) {
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{{6, 0}, 5}),
              "3,4 at 0.927295 2.214297; 3,-4 at 5.35589 4.068888");
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{{0, 0}, 3}), "");
}

TEST(IntersectCircles, TouchInOnePoint) {
    const Vec2 beside = 8.0 * polar(1.0);
    const Vec2 inside = 2.0 * polar(1.0);
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{beside, 3}), "2.701512,4.207355 at 1 4.141593 touching");
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{inside, 3}), "2.701512,4.207355 at 1 1 touching");
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{{8 + 2e-9, 0}, 3}), "5,0 at 0 3.141593 touching");
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{{8.001, 0}, 3}), "");
}

TEST(IntersectCircles, GiveTheEndsOfACommonArc) {
    const ArcShape arc{{0, 0}, 5, 5, 8};
    EXPECT_EQ(meetings(arc, CircleShape{{0, 0}, 5}),
              "1.418311,-4.794621 at 5 5 overlap; -0.7275,4.946791 at 8 1.716815 overlap");
    EXPECT_EQ(meetings(CircleShape{{0, 0}, 5}, CircleShape{{0, 0}, 5}), "");
    EXPECT_EQ(meetings(ArcShape{{0, 0}, 5, 0, 2}, ArcShape{{0, 0}, 5, 2, 3}), "-2.080734,4.546487 at 2 2 touching");
    EXPECT_EQ(meetings(ArcShape{{0, 0}, 5, 0, 2}, ArcShape{{0, 0}, 5, 3, 4}), "");
}

TEST(IntersectCircles, MayShareTwoArcs) {
    EXPECT_EQ(intersect(ArcShape{{0, 0}, 5, 0, 5}, ArcShape{{0, 0}, 5, 4, 7}).size(), 4U);
}

TEST(IntersectCircles, TouchALineAndTheArcThatRoundsACorner) {
    EXPECT_EQ(meetings(line(0, 5, 10, 5), CircleShape{{5, 0}, 5}), "5,5 at 5 1.570796 touching");
    EXPECT_EQ(meetings(line(0, 5 + 1e-9, 10, 5 + 1e-9), CircleShape{{5, 0}, 5}), "5,5 at 5 1.570796 touching");
    EXPECT_EQ(meetings(ArcShape{{5, 5}, 5, kPi, 1.5 * kPi}, line(5, 0, 10, 0)), "5,0 at 4.712389 0 touching");
}

TEST(IntersectCircles, ReachAroundOnTheCarrierOfAnArc) {
    const ArcShape arc{{0, 0}, 5, 1, 2};
    EXPECT_EQ(meetings(arc, line(-10, 0, 0, 0)), "");
    EXPECT_EQ(meetings(arc, line(-10, 0, 0, 0), Extent::carrier), "-5,0 at 3.141593 5");
    EXPECT_EQ(meetings(arc, line(0, 0, 10, 0), Extent::carrier), "5,0 at 6.283185 5");
}

TEST(IntersectEllipses, CrossAndTouch) {
    const EllipseShape ellipse{{0, 0}, {5, 0}, 0.6};
    EXPECT_EQ(meetings(ellipse, line(-10, 3, 10, 3)), "0,3 at 1.570796 10 touching");
    EXPECT_EQ(meetings(ellipse, CircleShape{{8, 0}, 3}), "5,0 at 0 3.141593 touching");
    EXPECT_EQ(meetings(ellipse, CircleShape{{0, 0}, 3}),
              "0,3 at 1.570796 1.570796 touching; 0,-3 at 4.712389 4.712389 touching");
    EXPECT_EQ(intersect(ellipse, EllipseShape{{0, 0}, {0, 5}, 0.6}).size(), 4U);
}

TEST(IntersectEllipses, ThatAreTheSameGiveNothing) {
    const EllipseShape ellipse{{0, 0}, {5, 0}, 0.6};
    EXPECT_EQ(meetings(ellipse, ellipse), "");
    EXPECT_EQ(meetings(ellipse, EllipseShape{{0, 0}, {-5, 0}, 0.6}), "");
    EXPECT_EQ(meetings(EllipseShape{{0, 0}, {0, 5}, 1.0}, CircleShape{{0, 0}, 5}), "");
}

TEST(IntersectSplines, CrossInEveryPoint) {
    const SplineShape wave = bezier({{0, 0}, {3, 10}, {7, -10}, {10, 0}});
    EXPECT_EQ(meetings(wave, line(-5, 0, 15, 0)), "0,0 at 0 5; 5,0 at 0.5 10; 10,0 at 1 15");
    EXPECT_EQ(intersect(wave, bezier({{0, 1}, {3, -9}, {7, 11}, {10, 1}})).size(), 2U);
}

TEST(IntersectSplines, Touch) {
    const SplineShape hill = bezier({{0, 0}, {5, 10}, {10, 0}});
    EXPECT_EQ(meetings(hill, line(0, 5, 10, 5)), "5,5 at 0.5 5 touching");
    EXPECT_EQ(meetings(hill, bezier({{0, 10}, {5, 0}, {10, 10}})), "5,5 at 0.5 0.5 touching");
    EXPECT_EQ(meetings(hill, CircleShape{{5, 7}, 2}), "5,5 at 0.5 4.712389 touching");
}

TEST(IntersectSplines, CrossOnceAtAJointOfSpans) {
    EXPECT_EQ(meetings(circleAsSpline(), line(0, 0, 0, 3)), "0,1 at 1 1");
    EXPECT_EQ(meetings(circleAsSpline(), line(-3, 0, 0, 0)), "-1,0 at 2 2");
}

TEST(IntersectSplines, ThatRunTogetherGiveTheEnds) {
    const SplineShape hill = bezier({{0, 0}, {5, 10}, {10, 0}});
    EXPECT_EQ(meetings(hill, hill), "0,0 at 0 0 overlap; 10,0 at 1 1 overlap");
    EXPECT_EQ(meetings(bezier({{0, 0}, {10, 0}}), line(3, 0, 15, 0)), "3,0 at 0.3 0 overlap; 10,0 at 1 7 overlap");
}

TEST(IntersectPolylines, CountSegmentsAndMeetAVertexOnce) {
    EXPECT_EQ(meetings(square(10), line(-5, -5, 15, 15)), "0,0 at 0 7.071068; 10,10 at 2 21.213203");
    EXPECT_EQ(meetings(square(10), line(-5, 4, 15, 4)), "10,4 at 1.4 15; 0,4 at 3.6 5");
}

TEST(IntersectPolylines, GoIntoArcSegments) {
    const PolylineShape slot = polyline({{0, 0}, {10, 0}, {10, 4}, {0, 4}}, {0, 1, 0, 1}, true);
    EXPECT_EQ(meetings(slot, line(5, 2, 20, 2)), "12,2 at 1.5 7");
    EXPECT_EQ(meetings(slot, line(5, 2, -20, 2)), "-2,2 at 3.5 7");
}

TEST(IntersectPolylines, JoinStretchesOfNeighbouringSegments) {
    const PolylineShape three = polyline({{0, 0}, {5, 0}, {10, 0}, {10, 10}});
    EXPECT_EQ(meetings(three, line(-5, 0, 15, 0)), "0,0 at 0 5 overlap; 10,0 at 2 15 overlap");
    EXPECT_EQ(meetings(square(10), square(10)), "");
    EXPECT_EQ(meetings(polyline({{0, 5}, {0, 0}, {10, 0}}), square(10)), "0,5 at 0 3.5 overlap; 10,0 at 2 1 overlap");
}

TEST(IntersectPolylines, GoOnAtTheirOpenEnds) {
    const PolylineShape corner = polyline({{0, 0}, {10, 0}, {10, 10}});
    EXPECT_EQ(meetings(corner, line(-5, 30, 15, 30), Extent::carrier), "10,30 at 4 15");
    EXPECT_EQ(meetings(corner, line(-5, -1, -5, 1), Extent::carrier), "-5,0 at -0.5 1");
    EXPECT_EQ(meetings(square(10), line(-5, -1, -5, 1), Extent::carrier), "");
}

TEST(IntersectPolylines, MeetRepeatedVerticesAtEachOfTheirParameters) {
    EXPECT_EQ(meetings(polyline({{0, 0}, {5, 0}, {5, 0}, {9, 0}}), line(5, -1, 5, 1)), "5,0 at 1 1; 5,0 at 2 1");
    const PolylineShape triangle = polyline({{0, 0}, {0, 0}, {9, 0}, {9, 9}}, {}, true);
    EXPECT_EQ(meetings(triangle, line(4, -1, 4, 5)), "4,0 at 1.444444 1; 4,4 at 3.555556 5");
}

TEST(Intersect, IsTheSameAtEverySizeAndPlace) {
    for (const double scale : {1e-3, 1.0, 1e6}) {
        const Vec2 away{3e3 * scale, -7e3 * scale};
        const CircleShape circle{away, 5 * scale};
        const LineShape chord{away + scale * Vec2{-9, 3}, away + scale * Vec2{9, 3}};
        const std::vector<Crossing> found = intersect(circle, chord);
        ASSERT_EQ(found.size(), 2U) << scale;
        EXPECT_THAT(found[0].point, IsNear(away + scale * Vec2{4, 3}, 1e-10 * scale));
        EXPECT_NEAR(found[1].paramB, 5 * scale, 1e-10 * scale);
    }
}

TEST(Intersect, FindsASmallHoleOnALongLine) {
    const std::vector<Crossing> found = intersect(line(-1e6, 0, 1e6, 0), CircleShape{{3, 0}, 1e-3});
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(found[0].point.x, 3 - 1e-3, 1e-9);
    EXPECT_NEAR(found[1].point.x, 3 + 1e-3, 1e-9);
}

/// Two combs of 20,000 teeth that share no teeth: pairs that lie apart must not be looked at.
TEST(Intersect, LooksOnlyAtSegmentsThatLieNearEachOther) {
    std::vector<Vec2> teeth;
    for (int i = 0; i < 20000; ++i) {
        teeth.push_back({0.5 * i, i % 2 == 0 ? 0.0 : 1.0});
    }
    EXPECT_EQ(intersect(polyline(teeth), line(0, 0.5, 100, 0.5)).size(), 200U);
    EXPECT_EQ(intersect(polyline(teeth), line(0, 5, 10000, 5)).size(), 0U);
}

TEST(Intersect, RefusesWhatIsNoSoundCurve) {
    EXPECT_THROW(intersect(PointShape{{1, 1}}, line(0, 0, 1, 0)), GeometryError);
    EXPECT_THROW(intersect(line(0, 0, 1, 0), CircleShape{{std::nan(""), 0}, 1}), GeometryError);
    EXPECT_THROW(intersect(line(0, 0, 0, 0), line(0, 0, 1, 0)), GeometryError);
}

}  // namespace
}  // namespace holdfast::geometry
