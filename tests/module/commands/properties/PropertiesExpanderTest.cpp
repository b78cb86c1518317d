#include <gtest/gtest.h>

#include <limits>

#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

/// Of p only the second segment is constrained: vertices 1 and 2.
constexpr const char* kExpanderDrawing =
    "spline s degree 3 at 0,0 1,1 2,0 3,1 4,4; line a 0,0 1,0; polyline p 0,9 4,9 4,12 0,12; polyline free 0,20 4,20;"
    "horizontal p[2]; dependency a; fixed s; dependency s";

TEST(PropertiesExpander, CompletesAPolylinesVertexWithItsSecondCoordinate) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("p", 1, 8, 6.0), 1);
    EXPECT_EQ(palette.recorded("p"), "nothing");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 1);
    EXPECT_EQ(palette.row("p", 1, 9, 13.0), 1);
    EXPECT_EQ(palette.recorded("p"), "kind 2 delta 2,1,0 values 0 0 identity type 2");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
    EXPECT_EQ(textOf(LvTestAccess::expanderPoint(palette.centre)), "0,0,0");
}

TEST(PropertiesExpander, TakesTheCoordinatesInEitherOrder) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("p", 1, 5, 10.0), 1);
    EXPECT_EQ(palette.row("p", 1, 4, 3.0), 1);
    EXPECT_EQ(palette.recorded("p"), "kind 1 delta -1,1,0 values 0 0 identity type 2");
}

TEST(PropertiesExpander, CountsCoordinatesWithoutLookingWhichTheyAre) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("p", 1, 4, 3.0), 1);
    EXPECT_EQ(palette.row("p", 1, 8, 6.0), 1);
    EXPECT_EQ(palette.recorded("p"), "kind 2 delta 2,-12,0 values 0 0 identity type 2");
}

TEST(PropertiesExpander, ReadsVertexAndCoordinateFromTheRow) {
    Palette palette("polyline p 0,0 1,0 2,0 3,0 4,0; dependency p[4]");
    EXPECT_EQ(palette.row("p", 1, 12, 3.0), 1);
    EXPECT_EQ(palette.row("p", 1, 13, 7.0), 1);
    EXPECT_EQ(palette.recorded("p"), "kind 3 delta 0,7,0 values 0 0 identity type 2");
}

TEST(PropertiesExpander, RefusesAVertexThatIsNotConstrained) {
    Palette palette(kExpanderDrawing);
    for (const int vertex : {0, 3, 4})
        EXPECT_EQ(palette.row("p", 1, vertex * 4, 6.0), -1) << vertex;
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
    EXPECT_EQ(textOf(LvTestAccess::expanderPoint(palette.centre)), "0,0,0");
}

TEST(PropertiesExpander, RefusesAThirdCoordinateOfAPolyline) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("p", 1, 10, 6.0), -1);
    EXPECT_EQ(palette.row("p", 1, 11, 6.0), -1);
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
}

TEST(PropertiesExpander, RefusesWithoutConstraintsAnotherPropertyOrAnotherEntity) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("free", 1, 4, 6.0), -1);
    EXPECT_EQ(palette.row("p", 0, 4, 6.0), -1);
    EXPECT_EQ(palette.row("p", 3, 4, 6.0), -1);
    EXPECT_EQ(palette.row("a", 1, 0, 6.0), -1);
    palette.scene.refuseOpen("p");
    EXPECT_EQ(palette.row("p", 1, 4, 6.0), -1);
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
}

TEST(PropertiesExpander, RefusesWhatTheHostSaysNothingAbout) {
    Palette palette(kExpanderDrawing);
    palette.scene.host().refuse("polyLineHasAssocConstraintIndex");
    EXPECT_EQ(palette.row("p", 1, 4, 6.0), -1);
}

TEST(PropertiesExpander, RefusesAPolylineByItsSecondPropertyWhenTheVertexIsComplete) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("p", 2, 4, 6.0), 1);
    EXPECT_EQ(palette.row("p", 2, 5, 6.0), -1);
    EXPECT_EQ(palette.recorded("p"), "nothing");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
}

TEST(PropertiesExpander, CompletesAControlPointWithItsThirdCoordinate) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("s", 2, 8, 5.0), 1);
    EXPECT_EQ(palette.row("s", 2, 9, 6.0), 1);
    EXPECT_EQ(palette.recorded("s"), "nothing");
    EXPECT_EQ(palette.row("s", 2, 10, 0.0), 1);
    EXPECT_EQ(palette.recorded("s"), "kind 2 delta 3,6,0 values 1 0 identity type 11");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
}

TEST(PropertiesExpander, TakesTheControlPointsNumberOfTheLastRow) {
    Palette palette(kExpanderDrawing);
    palette.row("s", 2, 8, 5.0);
    palette.row("s", 2, 9, 6.0);
    EXPECT_EQ(palette.row("s", 2, 14, 1e-10), 1);
    EXPECT_EQ(palette.record("s").changeKind, 3);
    EXPECT_EQ(palette.record("s").delta.z, 1e-10);
}

TEST(PropertiesExpander, RefusesAFourthRowOfASpline) {
    Palette palette(kExpanderDrawing);
    EXPECT_EQ(palette.row("s", 2, 11, 5.0), -1);
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
}

TEST(PropertiesExpander, RefusesASplineByItsFirstPropertyWhenThePointIsComplete) {
    Palette palette(kExpanderDrawing);
    palette.row("s", 1, 8, 5.0);
    palette.row("s", 1, 9, 6.0);
    EXPECT_EQ(palette.row("s", 1, 10, 0.0), -1);
    EXPECT_EQ(palette.recorded("s"), "nothing");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 0);
}

TEST(PropertiesExpander, KeepsThePendingPointAfterADeletion) {
    Palette palette(kExpanderDrawing);
    palette.row("s", 2, 8, 5.0);
    palette.row("s", 2, 9, 6.0);
    EXPECT_EQ(palette.row("s", 2, 10, 1.0000001e-10), -1);
    EXPECT_EQ(palette.centre.getWithResetDelConsCounts(), 1);
    EXPECT_EQ(palette.scene.constraints("near"), "horizontal p[2]");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 2);
    EXPECT_EQ(textOf(LvTestAccess::expanderPoint(palette.centre)), "5,6,1.0000001e-10");
    EXPECT_EQ(palette.row("s", 2, 10, 0.0), 1);
    EXPECT_EQ(palette.recorded("s"), "kind 2 delta 3,6,0 values 1 0 identity type 11");
}

TEST(PropertiesExpander, TakesWhatIsPendingOverToTheNextEntity) {
    Palette palette(kExpanderDrawing);
    palette.row("s", 2, 8, 5.0);
    palette.row("s", 2, 9, 6.0);
    palette.row("s", 2, 10, 2.0);
    EXPECT_EQ(palette.row("p", 1, 4, 4.0), 1);
    EXPECT_EQ(palette.recorded("p"), "kind 1 delta 0,-3,2 values 0 0 identity type 2");
}

TEST(PropertiesExpander, DeletesTheConstraintsForAHeightThatIsNotANumber) {
    Palette palette(kExpanderDrawing);
    palette.row("s", 2, 8, 5.0);
    palette.row("s", 2, 9, 6.0);
    EXPECT_EQ(palette.row("s", 2, 10, std::numeric_limits<double>::quiet_NaN()), -1);
    EXPECT_EQ(palette.scene.calls("deleteConstraints"), 1);
}

}  // namespace
}  // namespace holdfast::module
