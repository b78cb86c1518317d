#include <gtest/gtest.h>

#include "tests/svg/Pictures.h"

namespace holdfast::formats {
namespace {

TEST(SvgPath, StraightPiecesAreLines) {
    EXPECT_EQ(drawnByPath("M1 2 L 3,4 5 6"), "line 1,2 3,4; line 3,4 5,6");
    EXPECT_EQ(drawnByPath("m1 2 l 3,4 5 6"), "line 1,2 4,6; line 4,6 9,12");
    EXPECT_EQ(drawnByPath("M1 2 H5 V7 h-2 v-1"), "line 1,2 5,2; line 5,2 5,7; line 5,7 3,7; line 3,7 3,6");
}

TEST(SvgPath, NumbersBehindThoseOfAMoveAreLines) {
    EXPECT_EQ(drawnByPath("M1 2 3 4 5 6"), "line 1,2 3,4; line 3,4 5,6");
    EXPECT_EQ(drawnByPath("m1 2 3 4 5 6"), "line 1,2 4,6; line 4,6 9,12");
}

TEST(SvgPath, NumbersNeedNothingBetweenThem) {
    EXPECT_EQ(drawnByPath("M.5.5L1.5.5-2-3"), "line 0.5,0.5 1.5,0.5; line 1.5,0.5 -2,-3");
    EXPECT_EQ(drawnByPath("M1e1-2E-1L+3,+4"), "line 10,-0.2 3,4");
    EXPECT_EQ(drawnByPath("M0,0L5.,5"), "line 0,0 5,5");
}

TEST(SvgPath, FlagsOfArcsNeedNothingBetweenThem) {
    const std::string spaced = drawnByPath("M0 0 A 5 5 0 0 1 5 5");
    EXPECT_EQ(spaced, "arc 0,5 radius 5 from 270 to 360");
    EXPECT_EQ(drawnByPath("M0 0A5 5 0 015 5"), spaced);
    EXPECT_EQ(drawnByPath("M0 0a5,5,0,01,5,5"), spaced);
    EXPECT_EQ(drawnByPath("M0 0a5 5 0 015 5 5 5 0 005 5"),
              "arc 0,5 radius 5 from 270 to 360; arc 10,5 radius 5 from 90 to 180");
}

TEST(SvgPath, ASubpathIsClosedByALineUnlessItIsClosed) {
    EXPECT_EQ(drawnByPath("M0 0H5V5z"), "line 0,0 5,0; line 5,0 5,5; line 5,5 0,0");
    EXPECT_EQ(drawnByPath("M0 0H5V5L0 0z"), "line 0,0 5,0; line 5,0 5,5; line 5,5 0,0");
    EXPECT_EQ(drawnByPath("M0 0H5V5L1e-7 0z").find("; line 0,0 0,0"), std::string::npos);
}

TEST(SvgPath, BehindItsEndTheNextSubpathBeginsWhereItBegan) {
    EXPECT_EQ(drawnByPath("M1 1H5V5z h-1"), "line 1,1 5,1; line 5,1 5,5; line 5,5 1,1; line 1,1 0,1");
    EXPECT_EQ(drawnByPath("M1 1H5V5z m-1 0 h-1"), "line 1,1 5,1; line 5,1 5,5; line 5,5 1,1; line 0,1 -1,1");
}

TEST(SvgPath, ArcsTakeTheSideAndTheSenseThatTheirFlagsSay) {
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 0 1 5 5"), "arc 0,5 radius 5 from 270 to 360");
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 1 1 5 5"), "arc 5,0 radius 5 from 180 to 450");
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 0 0 5 5"), "arc 5,0 radius 5 from 90 to 180");
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 1 0 5 5"), "arc 0,5 radius 5 from 0 to 270");
}

TEST(SvgPath, RadiiThatAreTooShortGrow) {
    EXPECT_EQ(drawnByPath("M0 0 A 1 1 0 0 1 10 0"), "arc 5,0 radius 5 from 180 to 360");
    EXPECT_EQ(drawnByPath("M0 0 A 2 1 0 0 0 10 0"), "elliptical arc 5,0 axis 5,0 ratio 0.5 from 0 to 180");
}

TEST(SvgPath, ArcsWithoutRadiusAreLines) {
    EXPECT_EQ(drawnByPath("M0 0 A 0 5 0 0 1 5 5"), "line 0,0 5,5");
    EXPECT_EQ(drawnByPath("M0 0 A -5 5 0 0 1 5 5"), "arc 0,5 radius 5 from 270 to 360");
}

TEST(SvgPath, EllipticalArcsKeepTheirAxesAndTurn) {
    EXPECT_EQ(drawnByPath("M10 0 A 10 5 0 0 1 0 5"), "elliptical arc 0,0 axis 10,0 ratio 0.5 from 0 to 90");
    EXPECT_EQ(drawnByPath("M5 0 A 5 10 0 0 1 0 10"), "elliptical arc 0,0 axis 0,10 ratio 0.5 from 270 to 360");
    EXPECT_EQ(drawnByPath("M0 10 A 10 5 90 0 1 -5 0"), "elliptical arc 0,0 axis 0,10 ratio 0.5 from 0 to 90");
}

/// Where an arc says its ends with six digits they may miss a diameter by a little, and its centre by its root.
TEST(SvgPath, HalfCirclesOfFewDigitsAreHalves) {
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 0 1 9.999999 0"), "arc 5,0 radius 5 from 180 to 360");
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 1 1 9.999999 0"), "arc 5,0 radius 5 from 180 to 360");
    // One that misses it by more is what it says.
    EXPECT_EQ(drawnByPath("M0 0 A 5 5 0 1 1 8 0"), "arc 4,-3 radius 5 from 143.130102 to 396.869898");
}

TEST(SvgPath, ArcsAllTheWayRoundAreOneCircleOrEllipse) {
    EXPECT_EQ(drawnByPath("M10 5A5 5 0 0 1 0 5A5 5 0 0 1 10 5z"), "circle 5,5 radius 5");
    EXPECT_EQ(drawnByPath("M10 5a5 5 0 0 1-5 5 5 5 0 0 1-5-5 5 5 0 0 1 5-5 5 5 0 0 1 5 5z"), "circle 5,5 radius 5");
    EXPECT_EQ(drawnByPath("M10 5A5 5 0 1 0 5 10A5 5 0 0 0 10 5"), "circle 5,5 radius 5");
    EXPECT_EQ(drawnByPath("M9.99999 5A5 5 0 0 1 0 5A5 5 0 0 1 9.99999 5z").substr(0, 6), "circle");
    EXPECT_EQ(drawnByPath("M10 0A10 5 0 0 1-10 0A10 5 0 0 1 10 0z"), "ellipse 0,0 axis 10,0 ratio 0.5");
}

TEST(SvgPath, ArcsThatGoOnAlongOneCircleAreOne) {
    EXPECT_EQ(drawnByPath("M10 5a5 5 0 0 1-5 5 5 5 0 0 1-5-5"), "arc 5,5 radius 5 from 0 to 180");
    EXPECT_EQ(drawnByPath("M10 5a5 5 0 0 1-5 5 5 5 0 0 1-5-5 5 5 0 0 1 5-5"), "arc 5,5 radius 5 from 0 to 270");
    EXPECT_EQ(drawnByPath("M10 0A10 5 0 0 1 0 5 10 5 0 0 1-10 0"),
              "elliptical arc 0,0 axis 10,0 ratio 0.5 from 0 to 180");
    EXPECT_EQ(drawnByPath("M10 5a5 5 0 0 1-5 5m0 0a5 5 0 0 1-5-5"),
              "arc 5,5 radius 5 from 0 to 90; arc 5,5 radius 5 from 90 to 180");
    EXPECT_EQ(drawnByPath("M10 5a5 5 0 0 1-5 5a5 6 0 0 1-5-6"),
              "arc 5,5 radius 5 from 0 to 90; elliptical arc 5,4 axis 0,6 ratio 0.833333 from 0 to 90");
}

TEST(SvgPath, ArcsThatTurnBackAreNoCircle) {
    EXPECT_EQ(drawnByPath("M10 5A5 5 0 0 1 0 5A5 5 0 0 0 10 5"),
              "arc 5,5 radius 5 from 0 to 180; arc 5,5 radius 5 from 0 to 180");
    EXPECT_EQ(drawnByPath("M0 0A5 5 0 0 1 5 5A5 5 0 0 1 0 0"),
              "arc 0,5 radius 5 from 270 to 360; arc 5,0 radius 5 from 90 to 180");
}

TEST(SvgPath, CurvesAreSplinesWithTheSameControlPoints) {
    EXPECT_EQ(drawnByPath("M0 0C1 2 3 4 5 0"), "spline of degree 3 0,0 1,2 3,4 5,0");
    EXPECT_EQ(drawnByPath("M1 1c1 2 3 4 5 0"), "spline of degree 3 1,1 2,3 4,5 6,1");
    EXPECT_EQ(drawnByPath("M0 0Q1 2 5 0"), "spline of degree 2 0,0 1,2 5,0");
}

TEST(SvgPath, SmoothCurvesMirrorTheControlPointBeforeThem) {
    EXPECT_EQ(drawnByPath("M0 0C1 2 3 4 5 5S8 2 9 9"),
              "spline of degree 3 0,0 1,2 3,4 5,5; spline of degree 3 5,5 7,6 8,2 9,9");
    EXPECT_EQ(drawnByPath("M0 0s8 2 9 9"), "spline of degree 3 0,0 0,0 8,2 9,9");
    EXPECT_EQ(drawnByPath("M0 0Q1 2 5 0T9 1"), "spline of degree 2 0,0 1,2 5,0; spline of degree 2 5,0 9,-2 9,1");
    // Behind another piece there is nothing to mirror.
    EXPECT_EQ(drawnByPath("M0 0Q1 2 5 0L6 0T9 1"), "spline of degree 2 0,0 1,2 5,0; line 5,0 6,0; line 6,0 9,1");
    EXPECT_EQ(drawnByPath("M0 0C1 2 3 4 5 5T9 1"), "spline of degree 3 0,0 1,2 3,4 5,5; line 5,5 9,1");
}

TEST(SvgPath, CubicQuartersOfACircleAreArcs) {
    const std::string quarter = "arc 5,5 radius 5 from 0 to 90";
    EXPECT_EQ(drawnByPath("M10 5C10 7.7614237 7.7614237 10 5 10"), quarter);
    EXPECT_EQ(drawnByPath("M5 10C7.7614237 10 10 7.7614237 10 5"), quarter);
    EXPECT_EQ(drawnByPath("M10 5C10 7.76 7.76 10 5 10"), quarter) << "with two decimals";
    EXPECT_EQ(drawnByPath("M10 5C10 7.759575 7.759575 10 5 10"), quarter) << "with the error spread";
    EXPECT_EQ(drawnByPath("M0 0H8c1.1045695 0 2 .8954305 2 2v8"),
              "line 0,0 8,0; arc 8,2 radius 2 from 270 to 360; line 10,2 10,10");
    for (const char* other : {"M10 5C10 7.8 7.8 10 5 10", "M10 5C10 7.7614237 7.8 10 5 10", "M10 5C10 6 6 10 5 10",
                              "M10 5C10.5 7.7614237 7.7614237 10 5 10", "M10 5C10 7.7614237 2.2385763 10 5 10"})
        EXPECT_EQ(drawnByPath(other).substr(0, 6), "spline") << other;
}

TEST(SvgPath, CubicQuartersAllTheWayRoundAreOneCircleOrEllipse) {
    EXPECT_EQ(drawnByPath("M10 5C10 7.7614237 7.7614237 10 5 10S0 7.7614237 0 5 2.2385763 0 5 0 10 2.2385763 10 5z"),
              "circle 5,5 radius 5");
    EXPECT_EQ(drawnByPath("M10 5C10 2.239 7.761 0 5 0 2.239 0 0 2.239 0 5S2.239 10 5 10 10 7.761 10 5"),
              "circle 5,5 radius 5");
    EXPECT_EQ(drawnByPath("M10 0C10 2.7614237 5.5228475 5 0 5S-10 2.7614237-10 0-5.5228475-5 0-5 10-2.7614237 10 0Z"),
              "ellipse 0,0 axis 10,0 ratio 0.5");
    EXPECT_EQ(drawnByPath("M10 0C10 2.7614237 5.5228475 5 0 5S-10 2.7614237-10 0"),
              "elliptical arc 0,0 axis 10,0 ratio 0.5 from 0 to 180");
    // Two quarters of circles of one radius that bend to both sides.
    EXPECT_EQ(drawnByPath("M10 5C10 7.7614237 7.7614237 10 5 10 2.2385763 10 0 12.2385763 0 15"),
              "arc 5,5 radius 5 from 0 to 90; arc 5,15 radius 5 from 180 to 270");
}

TEST(SvgPath, CubicPiecesThatBecomeArcsAreCounted) {
    EXPECT_EQ(readPicture("<path d=\"M10 5C10 7.76 7.76 10 5 10S0 7.76 0 5\"/>").roundCubics, 2);
    EXPECT_EQ(readPicture("<path d=\"M10 5C10 7.8 7.8 10 5 10A5 5 0 0 1 0 5\"/>").roundCubics, 0);
}

TEST(SvgPath, CurvesThatAreStraightAreLines) {
    EXPECT_EQ(drawnByPath("M0 0C1 1 2 2 3 3"), "line 0,0 3,3");
    EXPECT_EQ(drawnByPath("M0 0Q1 1 3 3"), "line 0,0 3,3");
    // One that runs beyond its end and back is none.
    EXPECT_EQ(drawnByPath("M0 0C1 1 5 5 3 3"), "spline of degree 3 0,0 1,1 5,5 3,3");
}

}  // namespace
}  // namespace holdfast::formats
