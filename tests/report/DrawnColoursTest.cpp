#include "report/picture/DrawnColours.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "report/picture/Svg.h"

namespace holdfast::report {
namespace {

using testing::HasSubstr;
using testing::Not;

Entity lineIn(std::string id, Look look) {
    return {.id = std::move(id), .shape = LineShape{{0, 0}, {10, 5}}, .look = SharedLook(std::move(look))};
}

/// A layer in green, and entities on it, in a colour of the palette, in one of their own, and in ink.
Document colouredDrawing() {
    Document document;
    document.layers = {{.name = "Cut", .colour = {Colour::Kind::index, 3}}, {.name = "0"}};
    Look onLayer, red, orange;
    onLayer.layer = red.layer = "Cut";
    red.colour = {Colour::Kind::index, 1};
    orange.colour = {Colour::Kind::rgb, 0xFF8800};
    document.entities = {lineIn("a", onLayer), lineIn("b", red), lineIn("c", orange), lineIn("d", {})};
    return document;
}

TEST(DrawnColours, AreThoseOfEntitiesAndElseOfTheirLayers) {
    const std::string picture = writePicture(colouredDrawing(), {}, {.colours = true});
    EXPECT_THAT(picture, HasSubstr("<path class=\"e k00ff00\" data-e=\"a\""));
    EXPECT_THAT(picture, HasSubstr("<path class=\"e kff0000\" data-e=\"b\""));
    EXPECT_THAT(picture, HasSubstr("<path class=\"e kff8800\" data-e=\"c\""));
    EXPECT_THAT(picture, HasSubstr("<path class=\"e\" data-e=\"d\""));
    EXPECT_THAT(picture, HasSubstr(".e.kff0000 { stroke: #ff0000; }"));
}

TEST(DrawnColours, AreDrawnWhereTheyAreAskedForOnly) {
    EXPECT_THAT(writePicture(colouredDrawing()), Not(HasSubstr(" k00ff00")));
}

TEST(DrawnColours, GiveWayToWhatAnEditHasDone) {
    PictureNotes notes;
    notes.entities.emplace("b", EntityTone::edited);
    EXPECT_THAT(writePicture(colouredDrawing(), notes, {.colours = true}),
                HasSubstr("<path class=\"e edited\" data-e=\"b\""));
}

double shareOfLight(std::uint32_t colour) {
    double sum = 0.0;
    const double weights[] = {0.0722, 0.7152, 0.2126};
    for (unsigned i = 0; i < 3; ++i) {
        const double share = ((colour >> (8 * i)) & 0xFFU) / 255.0;
        sum += weights[i] * (share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4));
    }
    return sum;
}

TEST(DrawnColours, OfThePaletteStandOutFromLightAndDarkPaper) {
    const double light = 1.0, dark = shareOfLight(0x12161E);
    for (int number = 1; number < 256; ++number) {
        EXPECT_GE((light + 0.05) / (shareOfLight(readableOn(false, paletteColour(number))) + 0.05), 3.0) << number;
        EXPECT_GE((shareOfLight(readableOn(true, paletteColour(number))) + 0.05) / (dark + 0.05), 3.0) << number;
    }
}

TEST(DrawnColours, AreThoseThatThePaletteHas) {
    const std::pair<int, std::uint32_t> rows[] = {{1, 0xFF0000},   {5, 0x0000FF},   {8, 0x808080},  {10, 0xFF0000},
                                                  {11, 0xFF7F7F},  {30, 0xFF7F00},  {50, 0xFFFF00}, {90, 0x00FF00},
                                                  {170, 0x0000FF}, {250, 0x333333}, {255, 0xFFFFFF}};
    for (const auto& [number, expected] : rows)
        for (const unsigned shift : {0U, 8U, 16U})
            EXPECT_NEAR((paletteColour(number) >> shift) & 0xFFU, (expected >> shift) & 0xFFU, 1) << number;
}

}  // namespace
}  // namespace holdfast::report
