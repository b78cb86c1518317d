#include "formats/dxf/DxfPatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "document/text/DrawingError.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "geometry/Angles.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

/// A file that is being edited.
struct Patched {
    explicit Patched(std::string file)
        : text(std::move(file)), drawing(readDxf(text, "a.dxf")), now(drawing.document) {}

    template <class Kind>
    Kind& shape(std::size_t entity) {
        return std::get<Kind>(now.entities.at(entity).shape);
    }
    /// A new entity that is made of one that is there.
    void addPieceOf(std::size_t entity, Shape shape) {
        now.entities.push_back({.id = now.entities.at(entity).id + "_2", .shape = std::move(shape)});
    }
    void erase(std::size_t entity) { now.entities.erase(now.entities.begin() + static_cast<std::ptrdiff_t>(entity)); }

    DxfOutput output() const { return patchedDxf(text, drawing.layout, drawing.document, now); }
    std::string written() const { return output().text; }

    std::string text;
    DxfDrawing drawing;
    Document now;
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    EXPECT_EQ(text.find(from, at + 1), std::string::npos) << from << " is there twice";
    return text.replace(at, from.size(), to);
}

/// A file with much that a drawing does not hold, written as no program of ours writes it.
const std::string kOdd =
    "999\r\nkept by hand\r\n  0\r\nSECTION\r\n  2\r\nHEADER\r\n  9\r\n$HANDSEED\r\n  5\r\n2F\r\n  9\r\n$OTHER\r\n "
    "40\r\n"
    "1.50\r\n  0\r\nENDSEC\r\n  0\r\nSECTION\r\n  2\r\nSTRANGE\r\n 90\r\n+7\r\n  0\r\nENDSEC\r\n  0\r\nSECTION\r\n"
    "  2\r\nENTITIES\r\n"
    "  0\r\nLINE\r\n  5\r\n2A\r\n102\r\n{THEIRS\r\n330\r\n99\r\n102\r\n}\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\n"
    "Cut \xE9\r\n 62\r\n     5\r\n370\r\n 35\r\n100\r\nAcDbLine\r\n 39\r\n2.5\r\n 10\r\n  0.000\r\n 20\r\n0.000\r\n "
    "30\r\n"
    "7.0\r\n 11\r\n10.000\r\n 21\r\n0.000\r\n 31\r\n7.0\r\n1001\r\nTHEIRS\r\n1070\r\n     3\r\n"
    "999\r\nbehind the line\r\n"
    "  0\r\nHATCH\r\n  5\r\n2B\r\n  8\r\n0\r\n 10\r\n1\r\n"
    "  0\r\nCIRCLE\r\n  5\r\n2C\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\nHoles\r\n100\r\nAcDbCircle\r\n "
    "10\r\n5.000\r\n"
    " 20\r\n5.000\r\n 30\r\n0.0\r\n 40\r\n2.000\r\n"
    "  0\r\nENDSEC\r\n  0\r\nEOF\r\n\r\n";

TEST(DxfPatch, GivesBackAFileThatWasNotEditedToTheByte) {
    EXPECT_EQ(Patched(kOdd).written(), kOdd);
    const std::string marked = "\xEF\xBB\xBF" + dxfFile("0 POINT\n10 1\n20 2") + "\n";
    EXPECT_EQ(Patched(marked).written(), marked);
    for (const char* name : {"acrylic-case-top", "split-keyboard-plate"}) {
        const std::string text = readFile("examples/drawings/" + std::string(name) + ".dxf");
        EXPECT_EQ(Patched(text).written(), text) << name;
    }
}

TEST(DxfPatch, ChangesOnlyTheNumbersThatAreOthers) {
    Patched file(kOdd);
    file.shape<LineShape>(0).end = {12.5, 0};
    EXPECT_EQ(file.written(), replaced(kOdd, "10.000\r\n 21", "12.500\r\n 21"));
}

TEST(DxfPatch, WritesNumbersThatReadBackAsTheSame) {
    for (const double x : {0.1 + 0.2, -1.0 / 3.0, 1e-12, 2.5e17, 123456.0, -0.0}) {
        Patched file(kOdd);
        file.shape<LineShape>(0).end = {x, 0};
        const Document again = readDxf(file.written(), "b.dxf").document;
        EXPECT_EQ(std::get<LineShape>(again.entities.at(0).shape).end, (Vec2{x, 0})) << x;
    }
}

TEST(DxfPatch, TakesTheRecordOfAnErasedEntityAndLeavesTheCommentBehindIt) {
    Patched file(kOdd);
    file.erase(0);
    const std::size_t begin = kOdd.find("  0\r\nLINE"), end = kOdd.find("999\r\nbehind");
    EXPECT_EQ(file.written(), kOdd.substr(0, begin) + kOdd.substr(end));
}

TEST(DxfPatch, GivesAPieceTheAttributesOfItsCurveAndAHandleOfItsOwn) {
    Patched file(kOdd);
    file.shape<LineShape>(0).end = {4, 0};
    file.addPieceOf(0, LineShape{{6, 0}, {10, 0}});
    std::string expected = replaced(kOdd, "10.000\r\n 21", "4.000\r\n 21");
    expected = replaced(expected, "$HANDSEED\r\n  5\r\n2F", "$HANDSEED\r\n  5\r\n30");
    const std::string piece =
        "  0\r\nLINE\r\n  5\r\n2F\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\nCut \xE9\r\n 62\r\n     5\r\n370\r\n"
        " 35\r\n100\r\nAcDbLine\r\n 39\r\n2.5\r\n 10\r\n  6.000\r\n 20\r\n0.000\r\n 30\r\n7.0\r\n 11\r\n10.000\r\n "
        "21\r\n"
        "0.000\r\n 31\r\n7.0\r\n1001\r\nTHEIRS\r\n1070\r\n     3\r\n";
    EXPECT_EQ(file.written(), replaced(expected, "  0\r\nENDSEC\r\n  0\r\nEOF", piece + "  0\r\nENDSEC\r\n  0\r\nEOF"));
}

TEST(DxfPatch, WritesAnotherKindInTheFormOfTheFile) {
    Patched file(kOdd);
    file.now.entities.at(1).shape = ArcShape{{5, 5}, 2, 0, kPi};
    const std::string circle =
        kOdd.substr(kOdd.find("  0\r\nCIRCLE"), kOdd.find("  0\r\nENDSEC\r\n  0\r\nEOF") - kOdd.find("  0\r\nCIRCLE"));
    const std::string arc =
        "  0\r\nARC\r\n  5\r\n2C\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\nHoles\r\n100\r\nAcDbCircle\r\n "
        "10\r\n5.000\r\n"
        " 20\r\n5.000\r\n 30\r\n0.000\r\n 40\r\n2.000\r\n100\r\nAcDbArc\r\n 50\r\n0.000\r\n 51\r\n180.000\r\n";
    EXPECT_EQ(file.written(), replaced(kOdd, circle, arc));
    EXPECT_EQ(file.output().notes, (std::vector<DxfNote>{{"g1", DxfLoss::firstOfKind, 0, "ARC"}}));
}

TEST(DxfPatch, PutsTheOnlyPieceOfWhatIsGoneInItsPlace) {
    Patched file(kOdd);
    file.addPieceOf(1, CircleShape{{5, 5}, 3});
    file.erase(1);
    EXPECT_EQ(file.written(), replaced(kOdd, " 40\r\n2.000", " 40\r\n3.000"));
}

TEST(DxfPatch, KeepsWhatIsMadeOfInvisibleEntitiesInvisible) {
    Patched file(kOdd);
    file.now.entities.push_back(
        {.id = "p0", .shape = LineShape{{0, 0}, {1, 1}}, .look = SharedLook({.layer = "Cut", .visible = false})});
    const Document again = readDxf(file.written(), "b.dxf").document;
    EXPECT_FALSE(again.entities.back().look->visible);
    EXPECT_TRUE(again.entities.front().look->visible);
}

TEST(DxfPatch, DrawsWhatComesOfNothingOnLayerZeroInTheFormOfTheFile) {
    Patched file(kOdd);
    file.now.entities.push_back({.id = "new", .shape = PointShape{{1, 2}}});
    const std::string point =
        "  0\r\nPOINT\r\n  5\r\n2F\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\n0\r\n100\r\nAcDbPoint\r\n "
        "10\r\n1.000\r\n"
        " 20\r\n2.000\r\n 30\r\n0.000\r\n";
    const std::string counted = replaced(kOdd, "$HANDSEED\r\n  5\r\n2F", "$HANDSEED\r\n  5\r\n30");
    EXPECT_EQ(file.written(), replaced(counted, "  0\r\nENDSEC\r\n  0\r\nEOF", point + "  0\r\nENDSEC\r\n  0\r\nEOF"));
}

TEST(DxfPatch, WritesTheOldestFormWhereTheFileShowsNoNewer) {
    Patched file(dxfFile("0 LINE\n8 Cut\n10 0\n20 0\n11 1\n21 0"));
    file.addPieceOf(0, PolylineShape{{{0, 0}, {1, 0}}, {0.5, 0}, {0, 0}, false});
    EXPECT_EQ(file.written(), dxfFile("0 LINE\n8 Cut\n10 0\n20 0\n11 1\n21 0\n"
                                      "0 POLYLINE\n8 Cut\n66 1\n10 0\n20 0\n30 0\n70 0\n"
                                      "0 VERTEX\n8 Cut\n10 0\n20 0\n30 0\n42 0.5\n0 VERTEX\n8 Cut\n10 1\n20 0\n30 0\n"
                                      "0 SEQEND\n8 Cut"));
    file.now.entities.back().shape = EllipseShape{{0, 0}, {2, 0}, 0.5};
    const DxfOutput output = file.output();
    EXPECT_EQ(output.notes.at(0).loss, DxfLoss::flattened);
    EXPECT_THAT(output.text, testing::HasSubstr("POLYLINE\n8\nCut\n"));
    file.now.entities.back().shape = XlineShape{{0, 0}, {2, 0}};
    EXPECT_EQ(file.output().notes, (std::vector<DxfNote>{{"g0_2", DxfLoss::leftOut, 0}}));
}

TEST(DxfPatch, WritesALightPolylineWhereTheFileHasOne) {
    const std::string light = "0 LWPOLYLINE\n8 A\n90 2\n70 0\n10 0\n20 0\n10 1\n20 1\n";
    Patched file(dxfFile(light + "0 LINE\n8 B\n10 0\n20 0\n11 1\n21 0"));
    file.addPieceOf(1, PolylineShape{{{0, 0}, {1, 0}}, {0, 1}, {0, 0}, true});
    EXPECT_EQ(file.written(), dxfFile(light + "0 LINE\n8 B\n10 0\n20 0\n11 1\n21 0\n"
                                              "0 LWPOLYLINE\n8 B\n90 2\n70 1\n10 0\n20 0\n10 1\n20 0\n42 1"));
}

TEST(DxfPatch, KeepsTheWidthsBesideTheVerticesOfALightPolyline) {
    const std::string head = "0 LWPOLYLINE\n8 A\n90 3\n70 128\n43 0.5\n";
    const std::string tail = "210 0\n220 0\n230 1\n1001 THEIRS\n1000 x";
    Patched file(dxfFile(head + "10 0\n20 0\n40 1\n41 2\n91 7\n10 10\n20 0\n40 3\n41 4\n10 10\n20 10\n" + tail));
    file.shape<PolylineShape>(0) = {{{0, 0}, {8, 0}, {10, 2}, {10, 10}}, {0, 0.25, 0, 0}, {1, 2, 3, 4}, false};
    EXPECT_EQ(file.written(),
              dxfFile("0 LWPOLYLINE\n8 A\n90 4\n70 128\n43 0.5\n10 0\n20 0\n40 1\n41 2\n91 7\n10 8\n20 0\n40 1\n41 2\n"
                      "42 0.25\n10 10\n20 2\n40 1\n41 2\n10 10\n20 10\n" +
                      tail));
}

TEST(DxfPatch, KeepsWhatStandsBetweenTheVerticesOfALightPolyline) {
    Patched file(
        dxfFile("0 LWPOLYLINE\n8 A\n10 0\n20 0\n70 1\n10 10\n20 0\n102 {THEIRS\n10 7\n102 }\n43 0\n10 10\n20 10"));
    file.shape<PolylineShape>(0).vertices[1] = {8, 0};
    EXPECT_EQ(file.written(), dxfFile("0 LWPOLYLINE\n8 A\n70 1\n102 {THEIRS\n10 7\n102 }\n43 0\n10 0\n20 0\n"
                                      "10 8\n20 0\n10 10\n20 10"));
}

TEST(DxfPatch, KeepsAPolylineWhoseVerticesWereOnlyNumbered) {
    Patched file(dxfFile("0 LWPOLYLINE\n90 2\n70 0\n10 0\n20 0\n10 1\n20 1"));
    file.shape<PolylineShape>(0).ids = {3, 4};
    EXPECT_EQ(file.written(), file.text);
}

TEST(DxfPatch, GivesNewVerticesOfAnOldPolylineTheirOwnHandles) {
    const std::string head = "0 POLYLINE\n5 A1\n8 A\n66 1\n10 0\n20 0\n30 0\n70 1\n";
    Patched file(dxfFile(head + "0 VERTEX\n5 A2\n8 A\n10 0\n20 0\n30 0\n0 VERTEX\n5 A3\n8 B\n10 4\n20 0\n30 0\n"
                                "0 SEQEND\n5 A4\n8 A"));
    file.shape<PolylineShape>(0) = {{{0, 0}, {2, 1}, {4, 0}}, {0, 0, 1}, {0, 0, 0}, false};
    EXPECT_EQ(file.written(),
              dxfFile("0 POLYLINE\n5 A1\n8 A\n66 1\n10 0\n20 0\n30 0\n70 0\n0 VERTEX\n5 A2\n8 A\n10 0\n20 0\n30 0\n"
                      "0 VERTEX\n5 A5\n8 A\n10 2\n20 1\n30 0\n0 VERTEX\n5 A3\n8 B\n10 4\n20 0\n30 0\n42 1\n"
                      "0 SEQEND\n5 A4\n8 A"));
}

TEST(DxfPatch, TakesTheFrameAwayFromAFittedPolyline) {
    Patched file(
        dxfFile("0 POLYLINE\n66 1\n10 0\n20 0\n70 4\n75 6\n0 VERTEX\n10 0\n20 0\n70 8\n"
                "0 VERTEX\n10 5\n20 5\n70 16\n0 VERTEX\n10 4\n20 0\n70 8\n0 SEQEND\n8 0"));
    file.shape<PolylineShape>(0).vertices[1] = {6, 0};
    EXPECT_EQ(file.written(), dxfFile("0 POLYLINE\n66 1\n10 0\n20 0\n70 0\n75 0\n0 VERTEX\n10 0\n20 0\n70 0\n"
                                      "0 VERTEX\n10 6\n20 0\n70 0\n0 SEQEND\n8 0"));
}

TEST(DxfPatch, WritesAnglesAsTheFileDoes) {
    Patched file(dxfFile("0 ARC\n10 0\n20 0\n40 2\n50 90.0\n51 -180.0\n0 ARC\n10 0\n20 0\n40 2\n50 90\n51 350"));
    file.shape<ArcShape>(0).endAngle = kPi * 4 / 3;
    file.shape<ArcShape>(1).endAngle = kPi * 4 / 3;
    EXPECT_EQ(file.written(),
              dxfFile("0 ARC\n10 0\n20 0\n40 2\n50 90.0\n51 -120.0\n0 ARC\n10 0\n20 0\n40 2\n50 90\n51 240"));
}

TEST(DxfPatch, WritesPlanesThatLookDownAsTheyAre) {
    const std::string down = "210 0\n220 0\n230 -1";
    Patched file(dxfFile("0 ARC\n10 3\n20 4\n40 1\n50 0\n51 90\n" + down +
                         "\n0 LWPOLYLINE\n70 0\n10 1\n20 2\n10 3\n20 4\n" + down));
    file.shape<ArcShape>(0).centre = {-5, 4};
    file.shape<ArcShape>(0).startAngle = kPi / 4;
    file.shape<PolylineShape>(1).vertices[1] = {-6, 4};
    file.shape<PolylineShape>(1).bulges[0] = 1;
    EXPECT_EQ(file.written(), dxfFile("0 ARC\n10 5\n20 4\n40 1\n50 0\n51 135\n" + down +
                                      "\n0 LWPOLYLINE\n70 0\n10 1\n20 2\n42 -1\n10 6\n20 4\n" + down));
    const Document again = readDxf(file.written(), "b.dxf").document;
    EXPECT_NEAR(std::get<ArcShape>(again.entities.at(0).shape).startAngle, kPi / 4, 1e-15);
}

TEST(DxfPatch, CutsAnEllipseInItsRecord) {
    const std::string ellipse = "0 ELLIPSE\n8 A\n10 0\n20 0\n30 0\n11 2\n21 0\n31 0\n40 0.5\n";
    Patched file(dxfFile(ellipse + "1001 X"));
    file.now.entities.at(0).shape = EllipticalArcShape{{0, 0}, {2, 0}, 0.5, 1, 2};
    EXPECT_EQ(file.written(), dxfFile(ellipse + "41 1\n42 2\n1001 X"));
}

TEST(DxfPatch, MovesTheControlPointsOfASplineAndTakesItsFitPointsAway) {
    const std::string head = "0 SPLINE\n8 A\n70 8\n71 2\n72 6\n73 3\n74 ";
    const std::string knots = "40 0\n40 0\n40 0\n40 1\n40 1\n40 1\n";
    Patched file(dxfFile(head + "2\n" + knots + "10 0\n20 0\n30 0\n10 1\n20 1\n30 0\n10 2\n20 0\n30 0\n" +
                         "11 0\n21 0\n31 0\n11 2\n21 0\n31 0"));
    file.shape<SplineShape>(0).control[1] = {1, 3};
    EXPECT_EQ(file.written(), dxfFile(head + "0\n" + knots + "10 0\n20 0\n30 0\n10 1\n20 3\n30 0\n10 2\n20 0\n30 0"));
}

TEST(DxfPatch, GivesASplineThatHasFitPointsOnlyItsControlPoints) {
    const std::string head = "0 SPLINE\n8 A\n70 8\n71 3\n";
    Patched file(dxfFile(head + "74 2\n11 0\n21 0\n31 0\n11 3\n21 0\n31 0"));
    EXPECT_EQ(file.written(), file.text);
    for (Vec2& point : file.shape<SplineShape>(0).control)
        point.y += 1;
    EXPECT_EQ(file.written(), dxfFile(head + "72 8\n73 4\n74 0\n40 0\n40 0\n40 0\n40 0\n40 3\n40 3\n40 3\n40 3\n"
                                             "10 0\n20 1\n30 0\n10 1\n20 1\n30 0\n10 2\n20 1\n30 0\n10 3\n20 1\n30 0"));
}

TEST(DxfPatch, RebuildsASplineWithAnotherNumberOfControlPoints) {
    Patched file(
        dxfFile("0 SPLINE\n8 A\n70 8\n71 1\n72 4\n73 2\n40 0\n40 0\n40 1\n40 1\n10 0\n20 0\n30 5\n10 2\n20 0\n30 5"));
    file.shape<SplineShape>(0) = {1, false, {{0, 0}, {1, 1}, {2, 0}}, {0, 0, 0.5, 1, 1}, {}};
    EXPECT_EQ(file.written(),
              dxfFile("0 SPLINE\n8 A\n70 8\n71 1\n72 5\n73 3\n40 0\n40 0\n40 0.5\n40 1\n40 1\n10 0\n20 0\n"
                      "30 5\n10 1\n20 1\n30 5\n10 2\n20 0\n30 5"));
}

TEST(DxfPatch, MovesTheOtherPointOfAnAlignedText) {
    Patched file(dxfFile("0 TEXT\n8 A\n10 1\n20 1\n40 2\n1 a\\U+00E9%%d\n72 1\n11 3\n21 1"));
    file.shape<TextShape>(0).position = {2, 5};
    EXPECT_EQ(file.written(), dxfFile("0 TEXT\n8 A\n10 2\n20 5\n40 2\n1 a\\U+00E9%%d\n72 1\n11 4\n21 5"));
}

TEST(DxfPatch, WritesTheWordsOfATextOnlyWhenTheyAreOthers) {
    Patched file(dxfFile("0 MTEXT\n8 A\n10 1\n20 1\n40 2\n3 {\\fArial;one}\n1  two"));
    EXPECT_EQ(file.shape<TextShape>(0).text, "one two");
    file.shape<TextShape>(0).text = "a {b}\nc\\d";
    EXPECT_EQ(file.written(), dxfFile("0 MTEXT\n8 A\n10 1\n20 1\n40 2\n1 a \\{b\\}\\Pc\\\\d"));
    EXPECT_EQ(std::get<TextShape>(readDxf(file.written(), "b.dxf").document.entities.at(0).shape).text, "a {b}\nc\\d");
}

TEST(DxfPatch, MakesASectionForEntitiesWhereThereIsNone) {
    const std::string header = "0 SECTION\n2 HEADER\n9 $X\n40 1\n0 ENDSEC\n";
    Patched file(dxfLines(header + "0 EOF"));
    EXPECT_EQ(file.written(), file.text);
    file.now.entities.push_back({.id = "new", .shape = PointShape{{1, 2}}});
    EXPECT_EQ(file.written(), dxfLines(header + "0 SECTION\n2 ENTITIES\n0 POINT\n8 0\n10 1.0\n20 2.0\n30 0.0\n"
                                                "0 ENDSEC\n0 EOF"));
}

TEST(DxfPatch, TellsWhatTheFileDoesNotHold) {
    Patched file(dxfFile("0 LINE\n10 0\n20 0\n11 1\n21 0"));
    file.now.constraints.push_back({.id = "c0", .type = ConstraintType::horizontal, .refs = {{"g0"}}});
    EXPECT_EQ(file.output().lostConstraints, 1U);
    EXPECT_EQ(file.written(), file.text);
    EXPECT_THROW(patchedDxf(file.text, file.drawing.layout, file.drawing.document, file.now, 0.0), DrawingError);
}

}  // namespace
}  // namespace holdfast::formats
