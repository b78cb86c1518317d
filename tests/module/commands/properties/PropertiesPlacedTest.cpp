#include <gtest/gtest.h>

#include <numbers>

#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kPlacedDrawing =
    "text t 3,4 rotation 30; mtext m 5,6 rotation 0; point q 1,1; dependency q; horizontal m; horizontal t";

YxGeMatrix3d turnAbout(double angle, const YxGePoint3d& base) {
    YxGeMatrix3d matrix;
    return matrix.setToRotation(angle, YxGeVector3d::kZAxis, base);
}

TEST(PropertiesPosition, OfAPointMovesIt) {
    Palette palette(kPlacedDrawing);
    EXPECT_TRUE(palette.point("q", 1, 4, 5));
    EXPECT_EQ(palette.recorded("q"), "kind 0 delta 3,4,0 values 0 0 identity type 8");
    EXPECT_FALSE(palette.point("q", 2, 4, 5));
}

TEST(PropertiesPosition, OfATextIsItsEleventhProperty) {
    Palette palette(kPlacedDrawing);
    EXPECT_TRUE(palette.point("t", 11, 4, 4));
    EXPECT_EQ(palette.recorded("t"), "kind 0 delta 1,0,0 values 0 0 identity type 9");
    EXPECT_FALSE(palette.point("t", 8, 4, 4));
    EXPECT_FALSE(palette.point("t", 1, 4, 4));
}

TEST(PropertiesPosition, OfAParagraphIsItsEighthProperty) {
    Palette palette(kPlacedDrawing);
    EXPECT_TRUE(palette.value("m", 8, 7.0, 0));
    EXPECT_EQ(palette.recorded("m"), "kind 0 delta 2,0,0 values 0 0 identity type 10");
    EXPECT_FALSE(palette.value("m", 11, 7.0, 0));
}

TEST(PropertiesRotation, TurnsATextByTheDifferenceAboutItsPosition) {
    Palette palette(kPlacedDrawing);
    EXPECT_TRUE(palette.value("t", 7, std::numbers::pi / 2.0));
    EXPECT_EQ(palette.recorded("t"), "kind 7 delta 0,0,0 values 0 0 " +
                                         textOf(turnAbout(std::numbers::pi / 2.0 - std::numbers::pi / 6.0, {3, 4, 0})) +
                                         " type 9");
}

TEST(PropertiesRotation, TurnsAParagraphAboutItsLocation) {
    Palette palette(kPlacedDrawing);
    EXPECT_TRUE(palette.value("m", 7, -std::numbers::pi / 3.0));
    EXPECT_EQ(palette.recorded("m"),
              "kind 7 delta 0,0,0 values 0 0 " + textOf(turnAbout(-std::numbers::pi / 3.0, {5, 6, 0})) + " type 10");
}

TEST(PropertiesRotation, NeedsAConstrainedDirection) {
    Palette palette(kPlacedDrawing);
    palette.scene.host().refuse("checkEntHasGeomType");
    EXPECT_FALSE(palette.value("t", 7, 1.0));
    EXPECT_FALSE(palette.value("m", 7, 1.0));
    EXPECT_TRUE(palette.point("t", 11, 4, 4));
    EXPECT_EQ(palette.recorded("m"), "nothing");
}

TEST(PropertiesRotation, AsksForTheKindOneBelowTheProperty) {
    Palette palette(kPlacedDrawing);
    palette.value("t", 7, 1.0);
    std::string arguments;
    for (const JournalEntry& entry : palette.scene.process().journal().entries())
        if (namesOperation(entry.operation, "checkEntHasGeomType"))
            arguments += entry.subjectName + " " + entry.arguments;
    EXPECT_EQ(arguments, "t 6");
}

TEST(PropertiesRotation, IsNegatedForATextSeenFromBelow) {
    Palette palette(kPlacedDrawing);
    palette.scene.add("u", EntityAccess::makeText({.position = {1, 2, 0}, .normal = {0, 0, -1}}));
    palette.scene.add("n", EntityAccess::makeMText({.position = {1, 2, 0}, .normal = {0, 0, -1}}));
    palette.scene.put("near", "u");
    palette.scene.put("near", "n");
    for (const char* name : {"u", "n"}) {
        EXPECT_TRUE(palette.value(name, 7, 0.5));
        EXPECT_TRUE(palette.record(name).transform.isEqualTo(turnAbout(0.5, {1, 2, 0}))) << name;
    }
}

}  // namespace
}  // namespace holdfast::module
