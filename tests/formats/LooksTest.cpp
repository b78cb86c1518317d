// Layers, colours, line types and weights on their way through the files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/text/DrawingError.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/dxf/DxfReader.h"
#include "formats/dxf/DxfWriter.h"
#include "formats/json/JsonReader.h"
#include "formats/json/JsonWriter.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

Document drawnInColours() {
    Document document;
    document.layers = {{"Cut", {Colour::Kind::index, 1}, "DASHED", 35},
                       {.name = "Hidden", .isOff = true, .isFrozen = true}};
    const auto point = [&](const char* id, Look look) {
        document.entities.push_back({.id = id, .shape = PointShape{{1, 2}}, .look = SharedLook(std::move(look))});
    };
    point("a", {.layer = "Cut", .colour = {Colour::Kind::rgb, 0x10a0ff}, .linetype = "DOT", .weight = 50});
    point("b", {.colour = {Colour::Kind::byBlock, 0}, .weight = kWeightDefault, .visible = false});
    point("c", {});
    return document;
}

std::string faultInJson(const std::string& entity, const std::string& layer) {
    try {
        readJson(R"({"units": {"length": "mm", "angle": "rad"}, "layers": [)" + layer +
                     R"(], "entities": [{"id": "a", "type": "point", "position": [0, 0])" + entity +
                     R"(}], "constraints": []})",
                 "a.json");
    } catch (const DrawingError& error) {
        return error.what();
    }
    return "no error";
}

TEST(Looks, AreWrittenToJsonWhereTheyAreNotTheUsualOnes) {
    const std::string text = jsonText(drawnInColours());
    EXPECT_THAT(text, testing::HasSubstr(R"({"name": "Cut", "colour": 1, "linetype": "DASHED", "weight": 0.35})"));
    EXPECT_THAT(text, testing::HasSubstr(R"({"name": "Hidden", "colour": 7, "off": true, "frozen": true})"));
    EXPECT_THAT(text, testing::HasSubstr(R"("layer": "Cut", "colour": "#10a0ff", "linetype": "DOT", "weight": 0.5})"));
    EXPECT_THAT(text, testing::HasSubstr(R"("colour": "by_block", "weight": "default", "visible": false})"));
    EXPECT_THAT(text, testing::HasSubstr("{\"id\": \"c\", \"type\": \"point\", \"position\": [1.0, 2.0]}\n"));
    EXPECT_EQ(readJson(text, "a.json"), drawnInColours());
}

TEST(Looks, AreRefusedWhereTheyMeanNothing) {
    EXPECT_EQ(faultInJson("", R"({"name": "A"})"), "no error");
    const struct {
        const char *entity, *layer, *message;
    } rows[] = {
        {R"(, "colour": 300)", "", "expected a number from 1 to 255"},
        {R"(, "colour": "red")", "", "expected a colour"},
        {R"(, "colour": "#12345g")", "", "expected a colour"},
        {R"(, "weight": "thick")", "", "expected a width in millimetres"},
        {R"(, "weight": 9)", "", "expected 0 to 2.11 millimetres"},
        {R"(, "visible": 1)", "", "/entities/0/visible"},
        {"", R"({"name": ""})", "expected the name of a layer"},
        {"", R"({"name": "A"}, {"name": "A"})", "\"A\" once more"},
        {"", R"({"name": "A", "colour": 0})", "/layers/0/colour"},
        {"", R"({"name": "A", "color": 1})", "color"},
    };
    for (const auto& row : rows)
        EXPECT_THAT(faultInJson(row.entity, row.layer), testing::HasSubstr(row.message)) << row.entity << row.layer;
}

TEST(Looks, AreReadFromDxf) {
    const std::string text = dxfLines(
        "0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n70 2\n0 LAYER\n2 Cut\n70 0\n62 1\n6 DASHED\n370 35\n"
        "0 LAYER\n2 Hidden\n70 5\n62 -7\n6 CONTINUOUS\n0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n"
        "0 POINT\n8 Cut\n62 3\n420 1089791\n6 DOT\n370 50\n10 1\n20 2\n"
        "0 POINT\n8 0\n62 0\n6 ByLayer\n370 -3\n60 1\n10 1\n20 2\n0 POINT\n8 0\n62 256\n10 1\n20 2\n"
        "0 POINT\n62 blue\n370 900\n10 1\n20 2\n0 ENDSEC\n0 EOF\n");
    const Document document = readDxf(text, "a.dxf").document;
    Document expected = drawnInColours();
    expected.layers[1].isLocked = true;
    EXPECT_EQ(document.layers, expected.layers);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(document.entities.at(i).look, expected.entities.at(i).look) << i;
    EXPECT_TRUE(document.entities.at(3).look.isUsual());
}

TEST(Looks, GoIntoTheOldestFormOfDxfAsLayersAndColours) {
    const std::string text = dxfText(drawnInColours()).text;
    const Document again = readDxf(text, "b.dxf").document;
    ASSERT_EQ(again.layers.size(), 2U);
    EXPECT_EQ(again.layers[0].colour, (Colour{Colour::Kind::index, 1}));
    EXPECT_TRUE(again.layers[1].isOff && again.layers[1].isFrozen);
    EXPECT_EQ(again.entities.at(0).look->layer, "Cut");
    EXPECT_EQ(again.entities.at(0).look->colour, (Colour{Colour::Kind::index, 4}));  // the nearest of the pure ones
    EXPECT_EQ(again.entities.at(1).look->colour.kind, Colour::Kind::byBlock);
    EXPECT_TRUE(again.entities.at(2).look.isUsual());
}

TEST(Looks, OfWhatComesOfNoRecordAreWrittenToADxfFileThatIsChanged) {
    const std::string text = dxfFile("0 POINT\n8 A\n10 0\n20 0");
    const DxfDrawing drawing = readDxf(text, "a.dxf");
    Document now = drawing.document;
    now.entities.push_back(
        {.id = "p0",
         .shape = PointShape{{3, 4}},
         .look = SharedLook({.layer = "Cut", .colour = {Colour::Kind::index, 5}, .linetype = "DOT"})});
    EXPECT_EQ(patchedDxf(text, drawing.layout, drawing.document, now).text,
              dxfFile("0 POINT\n8 A\n10 0\n20 0\n0 POINT\n8 Cut\n6 DOT\n62 5\n10 3\n20 4\n30 0"));
}

}  // namespace
}  // namespace holdfast::formats
