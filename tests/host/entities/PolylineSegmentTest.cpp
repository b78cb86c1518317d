#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>

#include "host/src/yxdb/curves/BulgeSegment.h"
#include "tests/host/entities/Polylines.h"

using namespace curves;

namespace {

YxGeCircArc3d arcOf(const YxDbPolyline& line, unsigned int index) {
    YxGeCircArc3d arc;
    line.getArcSegAt(index, arc);
    return arc;
}

}  // namespace

TEST(PolylineSegmentType, TellsArcLineAndNone) {
    const auto open = slot();
    EXPECT_EQ(open->segType(0), YxDbPolyline::kLine);
    EXPECT_EQ(open->segType(1), YxDbPolyline::kArc);
    EXPECT_EQ(open->segType(3), YxDbPolyline::kNone);
    EXPECT_EQ(open->segType(4), YxDbPolyline::kNone);
    EXPECT_EQ(slot(true)->segType(3), YxDbPolyline::kLine);
    EXPECT_EQ(slot(true)->segType(4), YxDbPolyline::kNone);
}

TEST(PolylineSegmentType, HasTheHostsNumbers) {
    EXPECT_EQ(static_cast<int>(YxDbPolyline::kArc), 0);
    EXPECT_EQ(static_cast<int>(YxDbPolyline::kLine), 1);
    EXPECT_EQ(static_cast<int>(YxDbPolyline::kDegenerate), 2);
    EXPECT_EQ(static_cast<int>(YxDbPolyline::kNone), 3);
}

TEST(PolylineSegmentType, IsDegenerateBetweenEqualPointsWhateverTheBulge) {
    const auto line = polyline({{{1, 1}, 1, 0}, {{1, 1}, 0, 0}, {{1, 1 + 1e-10}, 0, 0}, {{1, 2}, 1e-11, 0}, {{1, 3}}});
    EXPECT_EQ(line->segType(0), YxDbPolyline::kDegenerate);
    EXPECT_EQ(line->segType(2), YxDbPolyline::kLine);
    EXPECT_EQ(line->segType(3), YxDbPolyline::kLine);
    EXPECT_EQ(polyline({{{1, 1}}}, true)->segType(0), YxDbPolyline::kDegenerate);
}

TEST(PolylineArcSegment, OfBulgeOneIsAHalfCircleToTheRightOfItsChord) {
    const YxGeCircArc3d arc = arcOf(*slot(), 1);
    EXPECT_POINT(arc.center(), {10, 5, 0});
    EXPECT_EQ(arc.radius(), 5.0);
    EXPECT_TRUE(arc.normal().isEqualTo({0, 0, 1}));
    EXPECT_POINT(arc.startPoint(), {10, 0, 0});
    EXPECT_POINT(arc.endPoint(), {10, 10, 0});
    EXPECT_POINT(pointAt(*slot(), 1.5), {15, 5, 0});
}

TEST(PolylineArcSegment, OfNegativeBulgeTurnsAboutANormalThatPointsDown) {
    const YxGeCircArc3d arc = arcOf(*polyline({{{0, 0}, -1, 0}, {{2, 0}}}), 0);
    EXPECT_TRUE(arc.normal().isEqualTo({0, 0, -1}));
    EXPECT_TRUE(arc.refVec().isEqualTo({-1, 0, 0}));
    EXPECT_POINT(arc.startPoint(), {0, 0, 0});
    EXPECT_POINT(arc.endPoint(), {2, 0, 0});
    EXPECT_POINT(pointAt(*polyline({{{0, 0}, -1, 0}, {{2, 0}}}), 0.5), {1, 1, 0});
}

TEST(PolylineArcSegment, HasTheIncludedAngleOfItsBulge) {
    const double quarter = std::tan(kPi / 8);
    const YxGeCircArc3d arc = arcOf(*polyline({{{1, 0}, quarter, 0}, {{0, 1}}}), 0);
    EXPECT_POINT(arc.center(), {0, 0, 0});
    EXPECT_NEAR(arc.endAng() - arc.startAng(), kPi / 2, 1e-15);
    const YxGeCircArc3d rest = arcOf(*polyline({{{0, 1}, std::tan(3 * kPi / 8), 0}, {{1, 0}}}), 0);
    EXPECT_POINT(rest.center(), {0, 0, 0});
}

TEST(PolylineArcSegment, LeavesTheArgumentAloneOnAnythingElse) {
    const auto line = slot();
    YxGeCircArc3d arc({7, 7, 7}, YxGeVector3d::kZAxis, YxGeVector3d::kXAxis, 3, 0, 1);
    EXPECT_EQ(line->getArcSegAt(0, arc), Yxrt::eNotApplicable);
    EXPECT_EQ(line->getArcSegAt(3, arc), Yxrt::eOutOfRange);
    EXPECT_EQ(line->getArcSegAt(99, arc), Yxrt::eOutOfRange);
    EXPECT_POINT(arc.center(), {7, 7, 7});
    EXPECT_EQ(arc.radius(), 3.0);
}

TEST(PolylineArcSegment, TooLargeForItsNumbersLeavesTheArgumentAlone) {
    YxGeCircArc3d arc({7, 7, 7}, YxGeVector3d::kZAxis, YxGeVector3d::kXAxis, 3, 0, 1);
    EXPECT_EQ(polyline({{{0, 0}, 1e308, 0}, {{100, 0}}})->getArcSegAt(0, arc), Yxrt::eInvalidInput);
    EXPECT_EQ(polyline({{{-1e308, 0}, 1, 0}, {{1e308, 0}}})->getArcSegAt(0, arc), Yxrt::eInvalidInput);
    EXPECT_POINT(arc.center(), {7, 7, 7});
}

TEST(PolylineArcSegment, KeepsItsDigitsWhenItsCentreIsFarAway) {
    const auto flat = polyline({{{0, 0}, 1e-9, 0}, {{10, 0}}});
    EXPECT_NEAR(pointAt(*flat, 0.5).y, -5e-9, 1e-20);
    EXPECT_NEAR(pointAt(*flat, 0.25).x, 2.5, 1e-12);
    EXPECT_NEAR(paramAt(*flat, {2.5, -3.75e-9, 0}), 0.25, 1e-12);
}

TEST(PolylineArcSegment, IsNearestToItsCentreInItsMiddle) {
    EXPECT_EQ(holdfast::BulgeSegment({0, 0}, {2, 0}, 1).nearestFraction({1, 0}), 0.5);
}

TEST(PolylineArcSegment, HasNoParameterForItsCentre) {
    const auto arc = polyline({{{0, 0}, 1, 0}, {{2, 0}}});
    EXPECT_EQ(paramAt(*arc, {1, 0, 0}), kUntouched);
}

RC_GTEST_PROP(PolylineArcSegment, AgreesWithItsGeometricArc, (int bulge, int x, int y, unsigned share)) {
    const double b = bulge % 5000 / 500.0;
    RC_PRE(std::abs(b) > 0.0);
    const auto line = polyline({{{3, 4}, b, 0}, {{3.5 + std::abs(x % 1000) / 10.0, y % 1000 / 10.0}}});
    const YxGeCircArc3d arc = arcOf(*line, 0);
    const double fraction = (share % 1001) / 1000.0;
    const YxGeCircArc3d part(arc.center(), arc.normal(), arc.refVec(), arc.radius(), arc.startAng(),
                             arc.startAng() + fraction * (arc.endAng() - arc.startAng()));
    RC_ASSERT(part.endPoint().isEqualTo(pointAt(*line, fraction)));
    RC_ASSERT(arc.startPoint().isEqualTo(startOf(*line)));
    RC_ASSERT(arc.endPoint().isEqualTo(endOf(*line)));
}

RC_GTEST_PROP(PolylineArcSegment, FindsTheParameterOfItsOwnPoints, (int bulge, unsigned share)) {
    const double b = bulge % 5000 / 500.0;
    const auto line = polyline({{{3, 4}, b, 0}, {{13, -7}}});
    const double param = (share % 1001) / 1000.0;
    RC_ASSERT(std::abs(paramAt(*line, pointAt(*line, param)) - param) <= 1e-11);
}

RC_GTEST_PROP(PolylineArcSegment, HasNoPointNearerThanTheOneItAnswers, (int bulge, int x, int y)) {
    const holdfast::BulgeSegment segment({-1, 0}, {1, 0}, bulge % 5000 / 500.0);
    const YxGePoint2d target(x % 10000 / 2000.0, y % 10000 / 2000.0);
    const auto away = [&](double fraction) {
        const YxGePoint2d at = segment.pointAt(fraction);
        return std::hypot(at.x - target.x, at.y - target.y);
    };
    const double nearest = away(segment.nearestFraction(target));
    for (int i = 0; i <= 200; ++i)
        RC_ASSERT(away(i / 200.0) >= nearest - 1e-12);
}
