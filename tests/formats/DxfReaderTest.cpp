#include "formats/dxf/DxfReader.h"
#include "geometry/Angles.h"
#include "geometry/SplineCurve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "document/Names.h"
#include "document/text/DrawingError.h"
#include "formats/FileIo.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

DxfDrawing read(const std::string& entities) {
    return readDxf(dxfFile(entities), "test.dxf");
}

template <class Kind>
Kind only(const std::string& entities) {
    const DxfDrawing drawing = read(entities);
    EXPECT_EQ(drawing.document.entities.size(), 1U);
    EXPECT_THAT(drawing.notUnderstood, testing::IsEmpty());
    return std::get<Kind>(drawing.document.entities.at(0).shape);
}

std::string messageOf(const std::string& text) {
    try {
        readDxf(text, "test.dxf");
    } catch (const DrawingError& error) {
        return error.what();
    }
    return "no error";
}

TEST(DxfReader, NamesEntitiesInTheOrderOfTheFile) {
    const Document document =
        readDxf(dxfFile("0 POINT\n10 1\n20 2\n0 LINE\n10 0\n20 0\n11 3\n21 4"), "parts/plate.dxf").document;
    EXPECT_EQ(document.name, "plate");
    EXPECT_EQ(document.entities.at(0), (Entity{"g0", PointShape{{1, 2}}}));
    EXPECT_EQ(document.entities.at(1), (Entity{"g1", LineShape{{0, 0}, {3, 4}}}));
}

TEST(DxfReader, TurnsDegreesIntoRadiansThatRunForward) {
    const auto arc = only<ArcShape>("0 ARC\n10 0\n20 0\n40 2\n50 270\n51 90");
    EXPECT_DOUBLE_EQ(arc.startAngle, 3 * kPi / 2);
    EXPECT_DOUBLE_EQ(arc.endAngle, 5 * kPi / 2);
    const auto turn = only<ArcShape>("0 ARC\n10 0\n20 0\n40 2\n50 10\n51 10");
    EXPECT_DOUBLE_EQ(turn.endAngle - turn.startAngle, 2 * kPi);
}

TEST(DxfReader, TurnsPlanesThatLookDownOver) {
    const std::string down = "\n210 0\n220 0\n230 -1";
    const auto circle = only<CircleShape>("0 CIRCLE\n10 3\n20 4\n40 1" + down);
    EXPECT_EQ(circle.centre, (Vec2{-3, 4}));
    const auto arc = only<ArcShape>("0 ARC\n10 3\n20 4\n40 1\n50 0\n51 90" + down);
    EXPECT_EQ(arc.centre, (Vec2{-3, 4}));
    EXPECT_DOUBLE_EQ(arc.startAngle, kPi / 2);
    EXPECT_DOUBLE_EQ(arc.endAngle, kPi);
    const auto polyline = only<PolylineShape>("0 LWPOLYLINE\n90 2\n70 0\n10 1\n20 2\n42 0.5\n10 3\n20 4" + down);
    EXPECT_EQ(polyline, (PolylineShape{{{-1, 2}, {-3, 4}}, {-0.5, 0}, {0, 0}, false}));
    const auto line = only<LineShape>("0 LINE\n10 1\n20 2\n11 3\n21 4" + down);
    EXPECT_EQ(line, (LineShape{{1, 2}, {3, 4}}));
}

TEST(DxfReader, ReadsOldPolylinesWithTheirVerticesAndLeavesOutTheirFrames) {
    const auto polyline = only<PolylineShape>(
        "0 POLYLINE\n66 1\n10 0\n20 0\n70 1\n0 VERTEX\n10 1\n20 2\n42 1\n0 VERTEX\n10 9\n20 9\n70 16\n"
        "0 VERTEX\n10 3\n20 4\n0 SEQEND\n8 0");
    EXPECT_EQ(polyline, (PolylineShape{{{1, 2}, {3, 4}}, {1, 0}, {0, 0}, true}));
}

TEST(DxfReader, PutsTheLongerAxisOfAnEllipseFirst) {
    const auto ellipse = only<EllipseShape>("0 ELLIPSE\n10 0\n20 0\n11 1\n21 0\n40 4\n41 0\n42 6.283185307179586");
    EXPECT_EQ(ellipse.majorAxis, (Vec2{-0.0, 4}));
    EXPECT_DOUBLE_EQ(ellipse.ratio, 0.25);
    const auto arc = only<EllipticalArcShape>("0 ELLIPSE\n10 0\n20 0\n11 2\n21 0\n40 0.5\n41 5\n42 1");
    EXPECT_DOUBLE_EQ(arc.endParam - arc.startParam, 2 * kPi - 4);
}

TEST(DxfReader, ReadsTextsAsTheyAreShown) {
    const auto text = only<TextShape>("0 TEXT\n10 1\n20 2\n40 3.5\n50 90\n1 %%c12 %%p0.5");
    EXPECT_EQ(text.text, "\u00D812 \u00B10.5");
    EXPECT_DOUBLE_EQ(text.rotation, kPi / 2);
    EXPECT_EQ(text.height, 3.5);
    const auto note = only<TextShape>("0 MTEXT\n10 1\n20 2\n40 2\n11 0\n21 1\n3 first\\P\n1 {\\fArial;second}");
    EXPECT_EQ(note.text, "first\nsecond");
    EXPECT_TRUE(note.multiline);
    EXPECT_DOUBLE_EQ(note.rotation, kPi / 2);
}

TEST(DxfReader, CountsWhatItDoesNotUnderstand) {
    const DxfDrawing drawing = read(
        "0 HATCH\n2 SOLID\n0 INSERT\n2 PART\n0 HATCH\n2 SOLID\n0 CIRCLE\n67 1\n10 0\n20 0\n40 1\n"
        "0 CIRCLE\n10 0\n20 0\n40 1\n210 1\n220 0\n230 0\n0 CIRCLE\n10 0\n20 0\n40 0\n"
        "0 POLYLINE\n70 64\n0 VERTEX\n10 0\n20 0\n0 SEQEND\n0 POLYLINE\n70 8\n0 VERTEX\n10 0\n20 0\n30 5\n0 SEQEND\n"
        "0 LWPOLYLINE\n70 0\n10 0\n20 0\n0 SPLINE\n71 3\n11 0\n21 0");
    EXPECT_THAT(drawing.document.entities, testing::IsEmpty());
    EXPECT_THAT(
        drawing.notUnderstood,
        testing::ElementsAre(DxfNotice{"HATCH with faulty groups", 2}, DxfNotice{"CIRCLE in paper space", 1},
                             DxfNotice{"CIRCLE on a tilted plane", 1}, DxfNotice{"CIRCLE with faulty radius", 1},
                             DxfNotice{"POLYLINE that is a mesh", 1}, DxfNotice{"POLYLINE in space", 1},
                             DxfNotice{"LWPOLYLINE of fewer than two vertices", 1},
                             DxfNotice{"SPLINE of fewer than two points", 1},
                             DxfNotice{"INSERT of block \"PART\", which is not there", 1}));
}

TEST(DxfReader, RunsASplineThroughItsFitPoints) {
    const std::string points = "11 0\n21 0\n11 3\n21 4\n11 3\n21 4\n11 9\n21 4";
    const auto spline = only<SplineShape>("0 SPLINE\n71 3\n74 4\n" + points);
    EXPECT_EQ(spline.knots, (std::vector<double>{0, 0, 0, 0, 5, 11, 11, 11, 11}));
    EXPECT_NEAR(distance(splinePoint(spline, 5), {3, 4}), 0, 1e-12);
    EXPECT_EQ(spline.control.back(), (Vec2{9, 4}));
    // It does not bend at its ends: there, three control points lie in a line.
    EXPECT_NEAR(cross(spline.control[1] - spline.control[0], spline.control[2] - spline.control[0]), 0, 1e-12);
    const auto led = only<SplineShape>("0 SPLINE\n71 3\n74 4\n" + points + "\n12 0\n22 2\n13 0\n23 -1");
    EXPECT_NEAR(led.control[1].x, 0, 1e-12);
    EXPECT_GT(led.control[1].y, 0);
    EXPECT_NEAR(led.control[3].x, 9, 1e-12);
    EXPECT_GT(led.control[3].y, 4);
    EXPECT_NEAR(distance(splinePoint(led, 5), {3, 4}), 0, 1e-12);
}

TEST(DxfReader, ClosesASplineThroughItsFitPointsSmoothly) {
    const auto ring = only<SplineShape>("0 SPLINE\n70 1\n71 3\n11 1\n21 0\n11 0\n21 1\n11 -1\n21 0\n11 0\n21 -1");
    EXPECT_EQ(splineStart(ring), (Vec2{1, 0}));
    EXPECT_EQ(splineEnd(ring), (Vec2{1, 0}));
    const Vec2 out = ring.control[1] - ring.control[0],
               in = ring.control.back() - ring.control[ring.control.size() - 2];
    EXPECT_NEAR(distance(out, in), 0, 1e-12);
    EXPECT_NEAR(out.x, 0, 1e-12);
}

TEST(DxfReader, ReadsOnBehindAnEndThatComesTooEarly) {
    const std::string text = dxfLines(
        "0 SECTION\n2 BLOCKS\n0 ENDSEC\n0 BLOCK\n2 PART\n0 ENDBLK\n0 SECTION\n2 ENTITIES\n0 POINT\n10 1\n20 2\n0 "
        "ENDSEC\n"
        "0 POINT\n10 3\n20 4\n0 ENDSEC\n0 POINT\n10 5\n20 6\n0 EOF\n");
    const DxfDrawing drawing = readDxf(text, "test.dxf");
    EXPECT_EQ(drawing.document.entities.size(), 3U);
    EXPECT_THAT(drawing.notUnderstood, testing::ElementsAre(DxfNotice{"BLOCK definition", 1}));
    EXPECT_EQ(text.substr(drawing.layout.recordsEnd), "0\nEOF\n");
}

TEST(DxfReader, CountsABlockWithoutAName) {
    const DxfDrawing drawing =
        readDxf(dxfLines("0 SECTION\n2 BLOCKS\n0 BLOCK\n10 0\n0 ENDBLK\n0 ENDSEC\n0 EOF\n"), "test.dxf");
    EXPECT_THAT(drawing.notUnderstood, testing::ElementsAre(DxfNotice{"BLOCK definition", 1}));
}

TEST(DxfReader, ReadsTextsInTheCodePageOfTheHeader) {
    const auto textIn = [](const std::string& codePage, const std::string& bytes) {
        const DxfDrawing drawing =
            readDxf(dxfLines("0 SECTION\n2 HEADER\n9 $DWGCODEPAGE\n3 " + codePage +
                             "\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n0 TEXT\n10 0\n"
                             "20 0\n40 1\n1 " +
                             bytes + "\n0 MTEXT\n10 0\n20 0\n40 1\n1 " + bytes + "\n0 ENDSEC\n0 EOF\n"),
                    "test.dxf");
        const auto text = [&](std::size_t i) {
            return std::get<TextShape>(drawing.document.entities.at(i).shape).text;
        };
        EXPECT_EQ(text(0), text(1));
        return text(0);
    };
    EXPECT_EQ(textIn("ANSI_1251", "\xCF\xF0"), "\u041F\u0440");
    EXPECT_EQ(textIn("DOS850", "\x81"), "\u00FC");
    EXPECT_EQ(textIn("ISO8859-2", "\xB1"), "\u0105");
    EXPECT_EQ(textIn("ANSI_932", "\x93\xFA"), "\u65E5");
    EXPECT_EQ(textIn("ANSI_1252", "\xFC"), "\u00FC");
    EXPECT_EQ(textIn("STRANGE_9", "\xFC"), "\u00FC");
    EXPECT_EQ(textIn("ANSI_1251", "\u041F"), "\u041F");
}

TEST(DxfReader, NamesPropertiesThatEntitiesLose) {
    const DxfDrawing drawing =
        read("0 LINE\n10 0\n20 0\n30 5\n11 1\n21 1\n31 5\n39 2\n0 LWPOLYLINE\n43 0.5\n10 0\n20 0\n10 1\n20 0");
    EXPECT_EQ(drawing.document.entities.size(), 2U);
    EXPECT_THAT(drawing.dropped,
                testing::ElementsAre(DxfNotice{"height above the plane of a LINE", 1},
                                     DxfNotice{"thickness of a LINE", 1}, DxfNotice{"width of a LWPOLYLINE", 1}));
}

TEST(DxfReader, NamesAnAttachmentThatAParagraphLoses) {
    const DxfDrawing drawing =
        read("0 MTEXT\n10 1\n20 2\n40 2\n71 5\n1 middle\n0 MTEXT\n10 1\n20 2\n40 2\n71 1\n1 corner");
    EXPECT_EQ(drawing.document.entities.size(), 2U);
    EXPECT_THAT(drawing.dropped,
                testing::ElementsAre(DxfNotice{"attachment of an MTEXT elsewhere than at its top left corner", 1}));
}

TEST(DxfReader, NamesAStrangeSectionWhereTheEntitiesAreMissing) {
    const std::string strange = "0 SECTION\n2 ENTITES\n0 POINT\n10 0\n20 0\n0 ENDSEC\n";
    const std::string tables = "0 SECTION\n2 TABLES\n0 ENDSEC\n";
    EXPECT_THAT(readDxf(dxfLines(tables + strange + "0 EOF\n"), "test.dxf").notUnderstood,
                testing::ElementsAre(DxfNotice{"section \"ENTITES\" instead of \"ENTITIES\"", 1}));
    const std::string entities = "0 SECTION\n2 ENTITIES\n0 ENDSEC\n";
    EXPECT_THAT(readDxf(dxfLines(strange + entities + "0 EOF\n"), "test.dxf").notUnderstood, testing::IsEmpty());
}

TEST(DxfReader, CountsBlockDefinitionsButNotLayouts) {
    const std::string text = dxfLines(
        "0 SECTION\n2 BLOCKS\n0 BLOCK\n2 *Model_Space\n0 ENDBLK\n0 BLOCK\n2 PART\n0 LINE\n10 0\n20 0\n11 1\n21 1\n"
        "0 ENDBLK\n0 ENDSEC\n0 EOF\n");
    const DxfDrawing drawing = readDxf(text, "test.dxf");
    EXPECT_THAT(drawing.notUnderstood, testing::ElementsAre(DxfNotice{"BLOCK definition", 1}));
}

TEST(DxfReader, TakesTheUnitFromTheHeader) {
    const auto withUnit = [](const char* code) {
        return readDxf(dxfLines(std::string("0 SECTION\n2 HEADER\n9 $LTSCALE\n40 1\n9 $INSUNITS\n70 ") + code +
                                "\n0 ENDSEC\n0 EOF\n"),
                       "test.dxf");
    };
    EXPECT_EQ(withUnit("1").document.lengthUnit, "in");
    EXPECT_EQ(withUnit("5").document.lengthUnit, "cm");
    EXPECT_EQ(withUnit("0").document.lengthUnit, "mm");
    EXPECT_THAT(withUnit("0").notUnderstood, testing::IsEmpty());
    EXPECT_THAT(withUnit("10").notUnderstood, testing::ElementsAre(DxfNotice{"unit of length 10, taken as mm", 1}));
}

TEST(DxfReader, PassesOverCommentsForeignDataAndOtherLineEnds) {
    std::string text = dxfLines(
        "999 made by hand\n0 SECTION\n2 ENTITIES\n0 POINT\n10 +1.5\n20   2\n1001 PROGRAM\n1010 7\n0 ENDSEC\n0 EOF\n");
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
        text.insert(at, "\r");
    const Document document = readDxf(text, "test.dxf").document;
    EXPECT_EQ(std::get<PointShape>(document.entities.at(0).shape).position, (Vec2{1.5, 2}));
}

TEST(DxfReader, PassesOverTheMarkBeforeUtf8) {
    const std::string text = "\xEF\xBB\xBF" + dxfFile("0 TEXT\n10 0\n20 0\n40 1\n1 \xC3\xBC");
    const Document document = readDxf(text, "test.dxf").document;
    EXPECT_EQ(std::get<TextShape>(document.entities.at(0).shape).text, "\xC3\xBC");
}

TEST(DxfReader, RefusesWhatIsNoWholeDxfFile) {
    const struct {
        const char* description;
        std::string text;
        const char* message;
    } rows[] = {
        {"nothing", "", "test.dxf: found an empty file"},
        {"binary", std::string("a\0b", 3), "found binary data; expected a DXF file in text form"},
        {"prose", "Dear reader,\nthis is no drawing.\n", "test.dxf:1: found \"Dear reader,\"; expected a group code"},
        {"JSON", "{}\n{}\n", "expected a group code"},
        {"no section", dxfLines("0 LINE\n10 0\n"), "test.dxf:2: found group 0 with \"LINE\"; expected SECTION or EOF"},
        {"section without a name", dxfLines("0 SECTION\n0 ENDSEC\n"), "expected the name of a section in group 2"},
        {"no EOF", dxfLines("0 SECTION\n2 ENTITIES\n0 ENDSEC\n"), "found the end of the file; expected EOF"},
        {"broken off in an entity", dxfLines("0 SECTION\n2 ENTITIES\n0 POINT\n10 1\n"), "the file is not complete"},
        {"broken off in a group", dxfLines("0 SECTION\n2 ENTITIES\n") + "0", "expected a value for group code 0"},
        {"group before the first entity", dxfFile("10 1"), "found group 10; expected an entity's name in group 0"},
        {"polyline without an end", dxfFile("0 POLYLINE\n70 0\n0 VERTEX\n10 0\n20 0\n0 LINE\n10 0"),
         "found \"LINE\" behind the vertices of a POLYLINE; expected VERTEX or SEQEND"},
        {"missing coordinate", dxfFile("0 LINE\n10 0\n20 0\n11 1"),
         "test.dxf:6: found a LINE without group 21; expected that group with a number"},
        {"text without text", dxfFile("0 TEXT\n10 0\n20 0\n40 1"), "a TEXT without group 1"},
        {"coordinate that is no number", dxfFile("0 POINT\n10 1,5\n20 0"),
         "test.dxf:8: found \"1,5\"; expected a number for group code 10"},
        {"coordinate that is not finite", dxfFile("0 POINT\n10 nan\n20 0"), "found \"nan\"; expected a number"},
        {"flag that is not whole", dxfFile("0 LWPOLYLINE\n70 1.5\n10 0\n20 0"), "expected a whole number"},
        {"fewer vertices than said", dxfFile("0 LWPOLYLINE\n90 3\n10 0\n20 0\n10 1\n20 1"),
         "found a LWPOLYLINE of 2 vertices; expected 3 vertices, as its group 90 says"},
        {"fewer knots than said", dxfFile("0 SPLINE\n71 3\n72 8\n40 0\n10 0\n20 0"),
         "found a SPLINE of 1 knots; expected 8 knots, as its group 72 says"},
        {"x without y", dxfFile("0 SPLINE\n71 1\n10 0\n20 0\n10 1"), "found a SPLINE of 2 x and 1 y"},
    };
    for (const auto& row : rows)
        EXPECT_THAT(messageOf(row.text), testing::HasSubstr(row.message)) << row.description;
}

TEST(DxfReader, ReadsTheExampleDrawingsWhole) {
    const DxfDrawing plate =
        readDxf(readFile("examples/drawings/split-keyboard-plate.dxf"), "split-keyboard-plate.dxf");
    EXPECT_EQ(plate.document.entities.size(), 356U);
    EXPECT_THAT(plate.notUnderstood, testing::IsEmpty());
    const DxfDrawing cover = readDxf(readFile("examples/drawings/acrylic-case-top.dxf"), "acrylic-case-top.dxf");
    EXPECT_EQ(cover.document.entities.size(), 56U);
    EXPECT_THAT(cover.notUnderstood, testing::IsEmpty());
}

}  // namespace
}  // namespace holdfast::formats
