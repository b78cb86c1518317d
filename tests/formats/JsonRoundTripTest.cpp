// Reading and writing drawings gives the same bytes, and the same document.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>

#include "formats/json/JsonWriter.h"
#include "tests/formats/DrawingText.h"

namespace holdfast::formats {
namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Reads and writes every drawing of a folder; how many there were.
int expectSameBytes(const fs::path& folder) {
    int count = 0;
    for (const fs::directory_entry& file : fs::recursive_directory_iterator(folder)) {
        if (file.path().extension() != ".json" || file.path().filename() == "manifest.json")
            continue;
        const std::string text = textOf(file.path());
        EXPECT_TRUE(jsonText(readJson(text, file.path().string())) == text) << file.path() << " comes out changed";
        ++count;
    }
    return count;
}

TEST(JsonRoundTrip, KeepsEveryByteOfTheExampleDrawings) {
    EXPECT_EQ(expectSameBytes("examples/drawings"), 7);
}

TEST(JsonRoundTrip, KeepsHowManyNumbersConstraintsHaveUsedUp) {
    Document document = readJson(
        "{\"units\": {\"length\": \"mm\", \"angle\": \"rad\"}, \"entities\": [], "
        "\"constraints\": [], \"constraint_numbers\": 7}",
        "test.json");
    EXPECT_EQ(document.constraintNumbers, 7u);
    EXPECT_EQ(readJson(jsonText(document), "test.json"), document);
    document.constraintNumbers = 0;
    EXPECT_EQ(jsonText(document).find("constraint_numbers"), std::string::npos);
}

TEST(JsonRoundTrip, KeepsEveryByteOfTheDrawingsInANamedFolder) {
    const char* folder = std::getenv("HOLDFAST_DRAWINGS");
    if (folder == nullptr)
        GTEST_SKIP() << "set HOLDFAST_DRAWINGS to a folder of *.json drawings to read and write them all";
    EXPECT_GT(expectSameBytes(folder), 0) << "no *.json file in " << folder;
}

/// Every kind of entity and every field that drawings have; the schema's test reads it too.
const std::string kAllKinds = textOf("tests/formats/data/all-kinds.json");

TEST(JsonRoundTrip, KeepsEveryKindOfEntityConstraintAndField) {
    const Document document = readJson(kAllKinds, "all.json");
    EXPECT_EQ(jsonText(document), kAllKinds);
    EXPECT_EQ(readJson(jsonText(document), "again.json"), document);
}

TEST(JsonReader, PutsEveryFieldWhereItBelongs) {
    const Document document = readJson(kAllKinds, "all.json");
    const auto& arc = std::get<ArcShape>(document.entities[1].shape);
    EXPECT_EQ(arc, (ArcShape{{1, 0}, 1, 6, 7.5}));
    EXPECT_EQ(std::get<EllipticalArcShape>(document.entities[4].shape),
              (EllipticalArcShape{{0, 0}, {2, 1}, 0.5, -1, 1}));
    const auto& polyline = std::get<PolylineShape>(document.entities[10].shape);
    EXPECT_EQ(polyline, (PolylineShape{{{0, 0}, {10, 0}, {10, 5}}, {0, -1, 0.5}, {11, 0, 12}, true}));
    EXPECT_EQ(std::get<TextShape>(document.entities[11].shape), (TextShape{{0, 0}, 0.5, 2.5, "say \"a\\b\"\t", false}));
    EXPECT_TRUE(std::get<TextShape>(document.entities[12].shape).multiline);
    EXPECT_TRUE(document.entities[0].construction && document.entities[0].fixed);
    EXPECT_EQ(document.constraints[0].refs[0], (Place{"p0", PlaceKind::segmentStart, 0}));
    EXPECT_THAT(document.constraints[3].members, testing::ElementsAre("c2", "c1"));
    EXPECT_EQ(document.constraints[5].value, 2.0);
    EXPECT_FALSE(document.constraints[5].driving);
    EXPECT_EQ(document.lengthUnit, "in");
    EXPECT_EQ(document.plane->origin[2], 5.0);
}

TEST(JsonReader, FillsInWhatMayBeLeftOut) {
    const Document document = drawing("{'id': 'p', 'type': 'polyline', 'vertices': [[0, 0], [1, 2]], 'closed': false}");
    const auto& polyline = std::get<PolylineShape>(document.entities[0].shape);
    EXPECT_THAT(polyline.bulges, testing::ElementsAre(0.0, 0.0));
    EXPECT_THAT(polyline.ids, testing::ElementsAre(0, 0));
    EXPECT_EQ(document.name, "");
    EXPECT_FALSE(document.source || document.plane);
}

TEST(JsonReader, ReadsStreamsToTheirEnd) {
    std::istringstream in(drawingText("{'id': 'a', 'type': 'point', 'position': [1, 2]}"));
    EXPECT_EQ(std::get<PointShape>(readJson(in, "stream").entities[0].shape).position, (Vec2{1, 2}));
}

TEST(JsonWriter, RefusesADocumentThatCouldNotBeReadAgain) {
    Document document = drawing("{'id': 'a', 'type': 'point', 'position': [1, 2]}");
    std::get<PointShape>(document.entities[0].shape).position.y = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THROW(jsonText(document), DrawingError);
    document = drawing("{'id': 'a', 'type': 'point', 'position': [1, 2]}");
    document.name = "\xff";
    EXPECT_THROW(jsonText(document), DrawingError);
}

TEST(JsonWriter, WritesAnEmptyDrawingThatReadsAgain) {
    const Document nothing;
    EXPECT_EQ(jsonText(nothing),
              json("{\n'units': {'length': 'mm', 'angle': 'rad'},\n'entities': [\n],\n'constraints': [\n]\n}\n"));
    EXPECT_EQ(readJson(jsonText(nothing), "empty.json"), nothing);
}

}  // namespace
}  // namespace holdfast::formats
