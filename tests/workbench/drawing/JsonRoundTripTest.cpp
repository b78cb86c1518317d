// Reading and writing drawings gives the same bytes, and the same document.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>

#include "tests/workbench/drawing/DrawingText.h"
#include "workbench/drawing/JsonWriter.h"

namespace holdfast {
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
    EXPECT_EQ(expectSameBytes("examples/drawings"), 6);
}

TEST(JsonRoundTrip, KeepsEveryByteOfTheDrawingsInANamedFolder) {
    const char* folder = std::getenv("HOLDFAST_DRAWINGS");
    if (folder == nullptr)
        GTEST_SKIP() << "set HOLDFAST_DRAWINGS to a folder of *.json drawings to read and write them all";
    EXPECT_GT(expectSameBytes(folder), 0) << "no *.json file in " << folder;
}

/// Every kind of entity and every field that drawings have.
const std::string kAllKinds = json(R"({
'name': 'all kinds',
'source': {'repository': 'r', 'revision': '1', 'file': 'f', 'sketch': 's'},
'license': 'CC0-1.0',
'units': {'length': 'in', 'angle': 'rad'},
'plane': {'origin': [0.0, 0.0, 5.0], 'x_axis': [0.0, 1.0, 0.0], 'y_axis': [0.0, 0.0, 1.0]},
'entities': [
{'id': 'g0', 'type': 'line', 'start': [0.0, -0.0], 'end': [1e-05, 1e+16], 'construction': true, 'fixed': true},
{'id': 'g1', 'type': 'arc', 'centre': [1.0, 0.0], 'radius': 1.0, 'start_angle': 6.0, 'end_angle': 7.5},
{'id': 'g2', 'type': 'circle', 'centre': [0.1, 0.2], 'radius': 3.0000000000000004},
{'id': 'g3', 'type': 'ellipse', 'centre': [0.0, 0.0], 'major_axis': [2.0, 1.0], 'ratio': 1.0},
{'id': 'g4', 'type': 'elliptical_arc', 'centre': [0.0, 0.0], 'major_axis': [2.0, 1.0], 'ratio': 0.5, 'start_param': -1.0, 'end_param': 1.0},
{'id': 'g5', 'type': 'spline', 'degree': 1, 'periodic': false, 'control': [[0.0, 0.0], [1.0, 1.0]], 'knots': [0.0, 0.0, 1.0, 1.0], 'weights': [1.0, 2.0]},
{'id': 'g6', 'type': 'spline', 'degree': 2, 'periodic': true, 'control': [[0.0, 0.0], [1.0, 0.0], [0.0, 1.0]], 'knots': [0.0, 1.0, 2.0, 3.0]},
{'id': 'g7', 'type': 'point', 'position': [0.0, 0.0]},
{'id': 'g8', 'type': 'xline', 'point': [0.0, 0.0], 'direction': [0.0, 1.0]},
{'id': 'g9', 'type': 'ray', 'point': [0.0, 0.0], 'direction': [0.0, -1.0]},
{'id': 'p0', 'type': 'polyline', 'vertices': [[0.0, 0.0], [10.0, 0.0], [10.0, 5.0]], 'bulges': [0.0, -1.0, 0.5], 'ids': [11, 0, 12], 'closed': true},
{'id': 't0', 'type': 'text', 'position': [0.0, 0.0], 'rotation': 0.5, 'height': 2.5, 'text': 'say \'a\\b\'\t'},
{'id': 't1', 'type': 'mtext', 'position': [0.0, 0.0], 'rotation': 0.0, 'height': 2.5, 'text': 'Größe\n2'}
],
'constraints': [
{'id': 'c0', 'type': 'coincident', 'refs': [{'entity': 'p0', 'point': 'segment:0.start'}, {'entity': 'g5', 'point': 'control:1'}], 'implied': true},
{'id': 'c1', 'type': 'tangent', 'refs': [{'entity': 'p0', 'point': 'segment:1'}, {'entity': 'g0', 'point': 'whole'}], 'active': false},
{'id': 'c2', 'type': 'g2_smooth', 'refs': [{'entity': 'g5', 'point': 'end'}, {'entity': 'p0', 'point': 'segment:0.start'}], 'members': ['c0']},
{'id': 'c3', 'type': 'composite', 'members': ['c2', 'c1'], 'name': 'seam'},
{'id': 'c4', 'type': 'internal', 'refs': [{'entity': 'g7', 'point': 'whole'}, {'entity': 'g3', 'point': 'whole'}], 'role': 'focus2'},
{'id': 'c5', 'type': 'radius', 'refs': [{'entity': 'p0', 'point': 'segment:2'}], 'value': 2.0, 'driving': false, 'name': 'r'},
{'id': 'c6', 'type': 'midpoint', 'refs': [{'entity': 'g1', 'point': 'mid'}, {'entity': 'p0', 'point': 'segment:0'}]}
]
}
)");

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
}  // namespace holdfast
