#include "formats/dxf/DxfWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/text/DrawingError.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

Document documentOf(std::vector<Entity> entities) {
    Document document;
    document.entities = std::move(entities);
    return document;
}

/// Without the blanks in front of group codes.
std::string packed(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c != ' ' || !(out.empty() || out.back() == '\n'))
            out += c;
    }
    return out;
}

TEST(DxfWriter, WritesOneSectionOfEntitiesInTheOldForm) {
    const Document document = documentOf({{"a", LineShape{{0, 0}, {1.5, 2}}},
                                          {"b", CircleShape{{1, 1}, 2}, true},
                                          {"c", PointShape{{3, 4}}, false, true}});
    EXPECT_EQ(packed(dxfText(document).text), dxfFile("0 LINE\n8 0\n10 0.0\n20 0.0\n30 0.0\n11 1.5\n21 2.0\n31 0.0\n"
                                                      "0 CIRCLE\n8 CONSTRUCTION\n10 1.0\n20 1.0\n30 0.0\n40 2.0\n"
                                                      "0 POINT\n8 REFERENCE\n10 3.0\n20 4.0\n30 0.0"));
}

TEST(DxfWriter, WritesPolylinesWithTheirBulges) {
    const Document document =
        documentOf({{"p", PolylineShape{{{0, 0}, {1, 0}, {1, 1}}, {0, 0.5, 0}, {11, 12, 0}, true}}});
    const DxfDrawing again = readDxf(dxfText(document).text, "again.dxf");
    EXPECT_EQ(std::get<PolylineShape>(again.document.entities.at(0).shape),
              (PolylineShape{{{0, 0}, {1, 0}, {1, 1}}, {0, 0.5, 0}, {0, 0, 0}, true}));
}

TEST(DxfWriter, NamesWhatItFlattensSplitsAndLeavesOut) {
    const TextShape note{.position = {0, 10}, .height = 3, .text = "one\ntwo\n", .multiline = true};
    const DxfOutput output = dxfText(documentOf({{"e", EllipseShape{{0, 0}, {2, 0}, 0.5}},
                                                 {"s", SplineShape{1, false, {{0, 0}, {1, 1}}, {0, 0, 1, 1}, {}}},
                                                 {"x", XlineShape{{0, 0}, {1, 0}}},
                                                 {"r", RayShape{{0, 0}, {1, 0}}},
                                                 {"t", note}}),
                                     0.1);
    EXPECT_EQ(output.tolerance, 0.1);
    EXPECT_THAT(output.notes,
                testing::ElementsAre(DxfNote{"e", DxfLoss::flattened, 10}, DxfNote{"s", DxfLoss::flattened, 1},
                                     DxfNote{"x", DxfLoss::leftOut, 0}, DxfNote{"r", DxfLoss::leftOut, 0},
                                     DxfNote{"t", DxfLoss::split, 3}));
    const Document again = readDxf(output.text, "again.dxf").document;
    ASSERT_EQ(again.entities.size(), 5U);
    EXPECT_TRUE(std::get<PolylineShape>(again.entities[0].shape).closed);
    EXPECT_EQ(std::get<TextShape>(again.entities[3].shape).text, "two");
    EXPECT_EQ(std::get<TextShape>(again.entities[3].shape).position, (Vec2{0, 2}));
}

TEST(DxfWriter, SaysHowManyConstraintsTheFileLoses) {
    EXPECT_EQ(dxfText(readDrawing("examples/drawings/battery-clip.json")).lostConstraints, 97U);
}

TEST(DxfWriter, GivesBackAPlainDrawing) {
    const Document plate = readDxf(readFile("examples/drawings/split-keyboard-plate.dxf"), "plate.dxf").document;
    const DxfOutput output = dxfText(plate);
    EXPECT_THAT(output.notes, testing::IsEmpty());
    const Document again = readDxf(output.text, "plate.dxf").document;
    ASSERT_EQ(again.entities.size(), plate.entities.size());
    for (std::size_t i = 0; i < plate.entities.size(); ++i) {
        if (const auto* line = std::get_if<LineShape>(&plate.entities[i].shape)) {
            EXPECT_EQ(std::get<LineShape>(again.entities[i].shape), *line);
            continue;
        }
        const auto& arc = std::get<ArcShape>(plate.entities[i].shape);
        const auto& same = std::get<ArcShape>(again.entities[i].shape);
        EXPECT_EQ(same.centre, arc.centre);
        EXPECT_NEAR(same.startAngle, arc.startAngle, 1e-14);
        EXPECT_NEAR(same.endAngle, arc.endAngle, 1e-14);
    }
}

TEST(DxfWriter, RefusesFaultyDrawingsAndTolerances) {
    EXPECT_THROW(dxfText(documentOf({{"c", CircleShape{{0, 0}, -1}}})), DrawingError);
    for (const double tolerance : {0.0, -1.0, 1.0 / 0.0})
        EXPECT_THROW(dxfText(Document(), tolerance), DrawingError) << tolerance;
}

}  // namespace
}  // namespace holdfast::formats
