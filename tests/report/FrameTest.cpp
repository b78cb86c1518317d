#include "report/picture/Frame.h"

#include <gtest/gtest.h>

#include "tests/report/Samples.h"

namespace holdfast::report {

namespace {

/// One drawing unit is ten picture units; (0, 0) of the picture is (0, 10) of the drawing.
const Frame kTenfold{{{0, 0}, {20, 10}}, 10.0, 200.0, 100.0};

std::string path(const Shape& shape) {
    return pathData(outlineOf(shape, kTenfold.window, 0.01), kTenfold, 2);
}

TEST(PathOf, TurnsTheYAxisDown) {
    EXPECT_EQ(path(LineShape{{1, 2}, {3, 9.5}}), "M10 80L30 5");
}

TEST(PathOf, DrawsAnArcAsAnArcCounterClockwise) {
    EXPECT_EQ(path(ArcShape{{5, 5}, 2, 0, kPi / 2}), "M70 50A20 20 0 0 0 50 30");
}

TEST(PathOf, SplitsACircleIntoThreeArcs) {
    EXPECT_EQ(path(CircleShape{{5, 5}, 2}), "M70 50A20 20 0 0 0 40 32.68A20 20 0 0 0 40 67.32A20 20 0 0 0 70 50Z");
}

TEST(PathOf, TurnsAnEllipseAgainstTheDrawing) {
    EXPECT_EQ(path(EllipticalArcShape{{5, 5}, {0, 4}, 0.5, 0, kPi / 2}), "M50 10A40 20-90 0 0 30 50");
}

TEST(PathOf, DrawsAClockwiseSegmentTheOtherWay) {
    EXPECT_EQ(path(PolylineShape{{{0, 0}, {2, 0}, {2, 1}}, {-1, 0, 0}, {0, 0, 0}, true}),
              "M0 100A10 10 0 0 1 10 90A10 10 0 0 1 20 100L20 90L0 100Z");
}

TEST(PathOf, DrawsAVeryLargeArcAsCurvesWithoutACentre) {
    const double radius = 1e6;
    const std::string text = path(ArcShape{{10, -radius}, radius, kPi / 2 - 1e-5, kPi / 2 + 1e-5});
    EXPECT_EQ(text, "M200 100C133.33 100 66.67 100 0 100");
}

TEST(WindowOf, LeavesOutReferencesThatAreFarAway) {
    Document drawing;
    drawing.entities = {test::line("a", {1000, 0}, {1010, 10})};
    drawing.entities.push_back({.id = "origin", .shape = PointShape{{0, 0}}, .construction = false, .fixed = true});
    EXPECT_EQ(windowOf(drawing).low, (Vec2{1000, 0}));
    drawing.entities[0] = test::line("a", {5, 5}, {20, 20});
    EXPECT_EQ(windowOf(drawing).low, (Vec2{0, 0}));
}

TEST(FrameAround, LeavesAMarginOnAllSidesAndCentresTheDrawing) {
    const Frame frame = frameAround({{0, 0}, {100, 50}}, 500.0, 0.2, 2.0);
    const Vec2 low = frame.toPicture({0, 0}), high = frame.toPicture({100, 50});
    EXPECT_NEAR(low.x, frame.width - high.x, 1e-9);
    EXPECT_NEAR(high.y, frame.height - low.y, 1e-9);
    EXPECT_GE(low.x, 40.0);
    EXPECT_GE(high.y, 40.0);
}

TEST(FrameAround, GivesADrawingWithoutExtentRoomToStandIn) {
    Document drawing;
    drawing.entities.push_back({.id = "p", .shape = PointShape{{3, 4}}, .construction = false, .fixed = false});
    for (const Document& each : {drawing, Document{}}) {
        const Frame frame = frameAround(windowOf(each), 400.0, 0.3, 1.0);
        EXPECT_TRUE(std::isfinite(frame.scale) && frame.scale > 0.0);
    }
}

}  // namespace
}  // namespace holdfast::report
