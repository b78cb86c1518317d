#include <gtest/gtest.h>

#include <limits>
#include <optional>

#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kDriverDrawing =
    "circle c centre 9,0 radius 2; line a 0,0 4,0; line b 0,0 0,3; line free 50,0 51,0; polyline p 0,9 4,9;"
    "spline s degree 3 at 0,0 1,1 2,0 3,1; horizontal a; coincident a.start b.start; vertical b; dependency c;"
    "dependency p[1]; dependency s";

/// What a host's own centre, derived from ours, can call.
struct DerivedCentre : ConstraintPropertiesCmdCenter {
    using ConstraintPropertiesCmdCenter::addOriLineInfo;
    using ConstraintPropertiesCmdCenter::addOriRayInfo;
    using ConstraintPropertiesCmdCenter::addOriXlineInfo;
};

TEST(PropertiesRecorders, RecordNothingWithoutAnEntity) {
    FeedingScene scene("line a 0,0 4,0; dependency a");
    DerivedCentre centre;
    const std::vector<double> point{1.0, 2.0, 0.0};
    EXPECT_FALSE(centre.addOriLineInfo(nullptr, scene.id("a"), 1, -1, 0.0, point));
    EXPECT_FALSE(centre.addOriRayInfo(nullptr, scene.id("a"), 1, -1, 0.0, point));
    EXPECT_FALSE(centre.addOriXlineInfo(nullptr, scene.id("a"), 1, -1, 0.0, point));
    EXPECT_TRUE(LvTestAccess::records(centre).empty());
}

TEST(PropertiesPoint, IsRecordedWithACopyOfTheEntity) {
    Palette palette(kDriverDrawing);
    EXPECT_TRUE(palette.point("a", 2, 6, 1));
    EXPECT_EQ(palette.recorded("a"), "kind 1 delta 2,1,0 values 0 0 identity type 1");
    const auto& copy = static_cast<const YxDbLine&>(*palette.record("a").preEditCopy);
    EXPECT_EQ(textOf(EntityAccess::line(copy).end), "4,0,0");
    EXPECT_EQ(textOf(EntityAccess::line(*palette.scene.entity<YxDbLine>("a")).end), "4,0,0");
}

TEST(PropertiesPoint, ReplacesTheEntitysEarlierRecord) {
    Palette palette(kDriverDrawing);
    palette.point("a", 2, 6, 1);
    palette.point("b", 1, 1, 1);
    EXPECT_TRUE(palette.point("a", 1, -1, 0));
    EXPECT_EQ(palette.recorded("a"), "kind 0 delta -1,0,0 values 0 0 identity type 1");
    EXPECT_EQ(palette.recorded("b"), "kind 0 delta 1,1,0 values 0 0 identity type 1");
}

TEST(PropertiesPoint, IsRecordedUpToTheToleranceOffThePlane) {
    for (const double z : {0.0, 1e-10, -1e-10}) {
        Palette palette(kDriverDrawing);
        EXPECT_TRUE(palette.point("a", 1, 1, 2, z)) << z;
        EXPECT_EQ(palette.record("a").delta.z, z);
        EXPECT_EQ(palette.scene.calls("deleteConstraints"), 0);
    }
}

TEST(PropertiesPoint, DeletesTheConstraintsWhenItLiesOffThePlane) {
    for (const double z : {1.0000001e-10, -1.0000001e-10, 5.0, std::numeric_limits<double>::quiet_NaN()}) {
        Palette palette(kDriverDrawing);
        EXPECT_FALSE(palette.point("a", 1, 1, 2, z)) << z;
        EXPECT_EQ(palette.scene.constraints("near"), "vertical b");
        EXPECT_EQ(palette.recorded("a"), "nothing");
        EXPECT_EQ(palette.centre.getWithResetDelConsCounts(), 2);
        EXPECT_EQ(palette.centre.getWithResetDelConsCounts(), 0);
    }
}

TEST(PropertiesPoint, OffThePlaneDeletesWhateverTheProperty) {
    Palette palette(kDriverDrawing);
    EXPECT_FALSE(palette.point("p", 99, 1, 2, 3));
    EXPECT_FALSE(palette.point("a", 99, 1, 2, 3));
    EXPECT_EQ(palette.scene.calls("deleteConstraints"), 2);
}

TEST(PropertiesPoint, LeavesAnEarlierRecordWhenItIsRefused) {
    Palette palette(kDriverDrawing);
    palette.point("a", 2, 6, 1);
    EXPECT_FALSE(palette.point("a", 2, 1, 2, 3));
    EXPECT_FALSE(palette.point("a", 3, 1, 2));
    EXPECT_EQ(palette.recorded("a"), "kind 1 delta 2,1,0 values 0 0 identity type 1");
}

TEST(PropertiesPoint, NeedsThreeNumbersAndDeletesNothingWithout) {
    Palette palette(kDriverDrawing);
    EXPECT_FALSE(palette.centre.addOriInfo(palette.scene.id("a"), 1, std::vector<double>{}));
    EXPECT_FALSE(palette.centre.addOriInfo(palette.scene.id("a"), 1, std::vector<double>{1, 2}));
    EXPECT_TRUE(palette.centre.addOriInfo(palette.scene.id("a"), 1, std::vector<double>{1, 2, 0, 7}));
    EXPECT_EQ(palette.scene.calls("deleteConstraints"), 0);
}

TEST(PropertiesPoint, OfAnEntityWithoutConstraintsIsRefusedAndDeletesNothing) {
    Palette palette(kDriverDrawing);
    EXPECT_FALSE(palette.point("free", 1, 1, 2));
    EXPECT_FALSE(palette.point("free", 1, 1, 2, 3));
    EXPECT_FALSE(palette.value("free", 1, 3.0, 2));
    EXPECT_EQ(palette.scene.calls("deleteConstraints"), 0);
    EXPECT_TRUE(LvTestAccess::records(palette.centre).empty());
}

TEST(PropertiesPoint, OfAnObjectThatDoesNotOpenOrIsNoEntityIsRefused) {
    Palette palette(kDriverDrawing);
    palette.scene.addNonEntity("plain");
    EXPECT_FALSE(palette.point("plain", 1, 1, 2));
    EXPECT_FALSE(palette.value("plain", 1, 1.0));
    palette.scene.refuseOpen("a");
    EXPECT_FALSE(palette.point("a", 1, 1, 2, 3));
    EXPECT_FALSE(palette.value("a", 1, 3.0, 2));
    EXPECT_EQ(palette.scene.calls("deleteConstraints"), 0);
}

TEST(PropertiesPoint, OfAPolylineOrASplineIsNotForThisOperation) {
    Palette palette(kDriverDrawing);
    EXPECT_FALSE(palette.point("p", 1, 1, 2));
    EXPECT_FALSE(palette.point("s", 2, 1, 2));
    EXPECT_FALSE(palette.value("p", 1, 1.0));
    EXPECT_FALSE(palette.value("s", 2, 1.0));
}

TEST(PropertiesPoint, OfAnEntityThatCannotBeCopiedIsRefused) {
    Palette palette(kDriverDrawing);
    palette.scene.refuse("clone", "a");
    EXPECT_FALSE(palette.point("a", 1, 1, 2));
    EXPECT_EQ(palette.recorded("a"), "nothing");
}

TEST(PropertiesPoint, IsTheOriginForACoordinateBeyondZ) {
    Palette palette(kDriverDrawing);
    EXPECT_TRUE(palette.value("a", 2, 7.0, 5));
    EXPECT_EQ(palette.recorded("a"), "kind 1 delta -4,0,0 values 0 0 identity type 1");
    EXPECT_EQ(textOf(palette.centre.oriVarConConvertPoint(7.0, -1, {1, 2, 3})), "0,0,0");
    EXPECT_EQ(textOf(palette.centre.oriVarConConvertPoint(7.0, 3, {1, 2, 3})), "0,0,0");
}

TEST(PropertiesPoint, IsConvertedFromItsCoordinates) {
    const ConstraintPropertiesCmdCenter centre;
    EXPECT_EQ(textOf(centre.oriVarConConvertPoint(7.0, 0, {1, 2, 3})), "7,2,3");
    EXPECT_EQ(textOf(centre.oriVarConConvertPoint(7.0, 1, {1, 2, 3})), "1,7,3");
    EXPECT_EQ(textOf(centre.oriVarConConvertPoint(7.0, 2, {1, 2, 3})), "1,2,7");
    YxGePoint3d point(9, 9, 9);
    EXPECT_FALSE(centre.oriArrConvertPoint({1, 2}, point));
    EXPECT_EQ(textOf(point), "9,9,9");
    EXPECT_TRUE(centre.oriArrConvertPoint({1, 2, 3, 4}, point));
    EXPECT_EQ(textOf(point), "1,2,3");
}

TEST(PropertiesCoordinate, ReplacesThatOneOfTheOldPoint) {
    Palette palette(kDriverDrawing);
    EXPECT_TRUE(palette.value("b", 2, 5.0, 0));
    EXPECT_EQ(palette.recorded("b"), "kind 1 delta 5,0,0 values 0 0 identity type 1");
    EXPECT_TRUE(palette.value("b", 2, 5.0, 1));
    EXPECT_EQ(palette.recorded("b"), "kind 1 delta 0,2,0 values 0 0 identity type 1");
    EXPECT_TRUE(palette.value("b", 2, 1e-10, 2));
    EXPECT_EQ(palette.record("b").delta.z, 1e-10);
}

TEST(PropertiesCoordinate, DeletesTheConstraintsOnlyAsZ) {
    Palette palette(kDriverDrawing);
    EXPECT_TRUE(palette.value("a", 1, 5.0, 0));
    EXPECT_TRUE(palette.value("a", 1, 5.0, 1));
    EXPECT_FALSE(palette.value("a", 1, 1.0000001e-10, 2));
    EXPECT_EQ(palette.scene.constraints("near"), "vertical b");
    EXPECT_EQ(palette.centre.getWithResetDelConsCounts(), 2);
}

TEST(PropertiesScalar, DeletesTheConstraintsWhenReportedAsZ) {
    Palette palette(kDriverDrawing + std::string("; concentric c c"));
    EXPECT_FALSE(palette.value("c", 2, 5.0, 2));
    EXPECT_EQ(palette.scene.calls("deleteConstraints"), 1);
    EXPECT_EQ(palette.recorded("c"), "nothing");
    EXPECT_EQ(palette.centre.getWithResetDelConsCounts(), 1);
}

TEST(PropertiesScalar, IsRecordedUnderAnyOtherCoordinate) {
    Palette palette(kDriverDrawing);
    for (const int coordinate : {-1, 0, 1, 3}) {
        EXPECT_TRUE(palette.value("c", 2, 5.0, coordinate)) << coordinate;
        EXPECT_EQ(palette.recorded("c"), "kind 1 delta 0,0,0 values 5 0 identity type 5");
    }
}

TEST(PropertiesDeletion, CountsOnlyTheLast) {
    Palette palette(kDriverDrawing);
    palette.point("a", 1, 1, 2, 3);
    palette.point("b", 1, 1, 2, 3);
    EXPECT_EQ(palette.centre.getWithResetDelConsCounts(), 1);
    EXPECT_EQ(palette.scene.constraints("near"), "");
}

TEST(PropertiesCopies, AreFreedWhenTheyWereNeverHandedOver) {
    Palette palette(kDriverDrawing);
    {
        ConstraintPropertiesCmdCenter centre;
        EXPECT_TRUE(centre.addOriInfo(palette.scene.id("a"), 1, 0, 5.0));
        EXPECT_TRUE(centre.addOriInfo(palette.scene.id("a"), 1, 0, 6.0));
        EXPECT_EQ(palette.scene.copies(), 2);
    }
    EXPECT_EQ(palette.scene.copies(), 0);
}

TEST(PropertiesCopies, AreSharedByACopiedCentre) {
    Palette palette(kDriverDrawing);
    std::optional<ConstraintPropertiesCmdCenter> first(std::in_place);
    first->addOriInfo(palette.scene.id("a"), 1, 0, 5.0);
    first->addExpanderOriInfo(palette.scene.id("p"), 0, 1, 0, 7.0);
    palette.centre = *first;
    first.reset();
    EXPECT_EQ(palette.recorded("a"), "kind 0 delta 5,0,0 values 0 0 identity type 1");
    EXPECT_EQ(LvTestAccess::expanderCount(palette.centre), 1);
    EXPECT_EQ(textOf(LvTestAccess::expanderPoint(palette.centre)), "7,0,0");
    palette.centre.addDataToWork();
    EXPECT_EQ(palette.scene.text(palette.scene.header().preEditEntities), "a(line 0,0,0 4,0,0)");
}

}  // namespace
}  // namespace holdfast::module
