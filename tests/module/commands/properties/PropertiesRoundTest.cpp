#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kRoundDrawing =
    "ellipse e centre 10,0 major 4,0 ratio 0.5 from 0 to 90; circle c centre 1,2 radius 3;"
    "arc k centre 0,0 radius 5 from 0 to 90; arc d centre 0,0 radius 5 from 0 to 90 down;"
    "dependency d; dependency k; dependency c; dependency e";

TEST(PropertiesCircle, MovesItsCentre) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.point("c", 1, 4, 4));
    EXPECT_EQ(palette.recorded("c"), "kind 0 delta 3,2,0 values 0 0 identity type 5");
}

TEST(PropertiesCircle, TurnsEverySizeIntoARadius) {
    struct Size {
        const char* what;
        int property;
        double value;
        double radius;
    };
    const Size sizes[] = {{"radius", 2, 7.25, 7.25},
                          {"diameter", 3, 7.0, 3.5},
                          {"circumference", 4, 6.283185307179586, 1.0},
                          {"area", 5, 3.141592653589793, 1.0},
                          {"area", 5, 12.566370614359172, 2.0}};
    for (const Size& size : sizes) {
        Palette palette(kRoundDrawing);
        EXPECT_TRUE(palette.value("c", size.property, size.value)) << size.what;
        EXPECT_EQ(palette.record("c").value1, size.radius) << size.what;
        EXPECT_EQ(palette.record("c").changeKind, 1) << size.what;
        EXPECT_EQ(textOf(palette.record("c").delta), "0,0,0") << size.what;
    }
}

TEST(PropertiesCircle, RefusesASizeThatIsNotAboveZero) {
    Palette palette(kRoundDrawing);
    for (const int property : {2, 3, 4, 5})
        for (const double value : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
            EXPECT_FALSE(palette.value("c", property, value)) << property << " " << value;
    EXPECT_FALSE(palette.point("c", 2, 4, 4));
    EXPECT_EQ(palette.recorded("c"), "nothing");
}

TEST(PropertiesCircle, HasNoSixthProperty) {
    Palette palette(kRoundDrawing);
    EXPECT_FALSE(palette.value("c", 6, 1.0));
    EXPECT_FALSE(palette.value("c", 0, 1.0));
}

TEST(PropertiesArc, MovesItsCentre) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.value("k", 2, 3.0, 1));
    EXPECT_EQ(palette.recorded("k"), "kind 0 delta 0,3,0 values 0 0 identity type 6");
}

TEST(PropertiesArc, TakesARadiusAboveZero) {
    Palette palette(kRoundDrawing);
    EXPECT_FALSE(palette.value("k", 4, 0.0));
    EXPECT_FALSE(palette.value("k", 4, -2.0));
    EXPECT_TRUE(palette.value("k", 4, 2.5));
    EXPECT_EQ(palette.recorded("k"), "kind 3 delta 0,0,0 values 2.5 0 identity type 6");
}

TEST(PropertiesArc, MovesItsStartToTheNewAngle) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.value("k", 5, -std::numbers::pi / 2.0));
    EXPECT_EQ(palette.record("k").changeKind, 1);
    EXPECT_NEAR(palette.record("k").delta.x, -5.0, 1e-12);
    EXPECT_NEAR(palette.record("k").delta.y, -5.0, 1e-12);
}

TEST(PropertiesArc, MovesItsEndToTheNewAngle) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.value("k", 6, std::numbers::pi));
    EXPECT_EQ(palette.record("k").changeKind, 2);
    EXPECT_NEAR(palette.record("k").delta.x, -5.0, 1e-12);
    EXPECT_NEAR(palette.record("k").delta.y, -5.0, 1e-12);
}

TEST(PropertiesArc, MeasuresFromMinusXWhenItIsSeenFromBelow) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.value("d", 5, 0.0));
    EXPECT_NEAR(palette.record("d").delta.length(), 0.0, 1e-12);
    EXPECT_TRUE(palette.value("d", 6, std::numbers::pi / 2.0));
    EXPECT_NEAR(palette.record("d").delta.length(), 0.0, 1e-12);
    EXPECT_TRUE(palette.value("d", 5, std::numbers::pi));
    EXPECT_NEAR(palette.record("d").delta.x, 10.0, 1e-12);
}

TEST(PropertiesArc, HasNoOtherProperties) {
    Palette palette(kRoundDrawing);
    for (const int property : {0, 1, 3, 7, 8})
        EXPECT_FALSE(palette.value("k", property, 1.0)) << property;
}

TEST(PropertiesEllipse, MovesItsCentre) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.point("e", 2, 11, 2));
    EXPECT_EQ(palette.recorded("e"), "kind 0 delta 1,2,0 values 0 0 identity type 7");
}

TEST(PropertiesEllipse, TakesAMajorRadiusDownToTheMinorOne) {
    Palette palette(kRoundDrawing);
    EXPECT_FALSE(palette.value("e", 4, 1.999));
    EXPECT_FALSE(palette.value("e", 4, 0.0));
    EXPECT_FALSE(palette.value("e", 4, -5.0));
    EXPECT_TRUE(palette.value("e", 4, 2.0));
    EXPECT_TRUE(palette.value("e", 4, 8.0));
    EXPECT_EQ(palette.recorded("e"), "kind 1 delta 0,0,0 values 8 0 identity type 7");
}

TEST(PropertiesEllipse, TakesAMinorRadiusUpToTheMajorOne) {
    Palette palette(kRoundDrawing);
    EXPECT_FALSE(palette.value("e", 5, 4.001));
    EXPECT_FALSE(palette.value("e", 5, 0.0));
    EXPECT_TRUE(palette.value("e", 5, 4.0));
    EXPECT_TRUE(palette.value("e", 5, 0.5));
    EXPECT_EQ(palette.recorded("e"), "kind 2 delta 0,0,0 values 0 0.5 identity type 7");
}

TEST(PropertiesEllipse, TurnsARatioBetweenItsLimitsIntoAMinorRadius) {
    Palette palette(kRoundDrawing);
    EXPECT_FALSE(palette.value("e", 6, 1.0));
    EXPECT_FALSE(palette.value("e", 6, 1e-7));
    EXPECT_TRUE(palette.value("e", 6, 1.0000001e-7));
    EXPECT_TRUE(palette.value("e", 6, 0.25));
    EXPECT_EQ(palette.recorded("e"), "kind 2 delta 0,0,0 values 0 1 identity type 7");
}

TEST(PropertiesEllipse, MovesItsStartToTheNewParameter) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.value("e", 7, std::numbers::pi));
    EXPECT_EQ(palette.record("e").changeKind, 3);
    EXPECT_NEAR(palette.record("e").delta.x, -8.0, 1e-12);
    EXPECT_NEAR(palette.record("e").delta.y, 0.0, 1e-12);
}

TEST(PropertiesEllipse, MovesItsEndToTheNewParameter) {
    Palette palette(kRoundDrawing);
    EXPECT_TRUE(palette.value("e", 8, -std::numbers::pi / 2.0));
    EXPECT_EQ(palette.record("e").changeKind, 4);
    EXPECT_NEAR(palette.record("e").delta.x, 0.0, 1e-12);
    EXPECT_NEAR(palette.record("e").delta.y, -4.0, 1e-12);
}

TEST(PropertiesEllipse, HasNoOtherProperties) {
    Palette palette(kRoundDrawing);
    for (const int property : {0, 1, 3, 9})
        EXPECT_FALSE(palette.value("e", property, 1.0)) << property;
}

TEST(PropertiesRound, MeasuresFromTheOriginWhereAnEndCannotBeRead) {
    Palette palette(kRoundDrawing);
    palette.scene.refuse("getStartPoint", "k");
    EXPECT_TRUE(palette.value("k", 5, 0.0));
    EXPECT_EQ(textOf(palette.record("k").delta), "5,0,0");
}

}  // namespace
}  // namespace holdfast::module
