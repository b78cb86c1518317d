#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "document/BlockContents.h"
#include "document/BlockPlacement.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/dxf/DxfReader.h"
#include "geometry/Angles.h"
#include "geometry/Transforms.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

/// A bracket: a line along x, a quarter of a circle and a letter, with the base point (1, 0).
const std::string kBracket =
    "0 BLOCK\n2 Bracket\n70 0\n10 1\n20 0\n"
    "0 LINE\n8 0\n62 0\n10 1\n20 0\n11 5\n21 0\n"
    "0 ARC\n8 Holes\n62 3\n10 1\n20 0\n40 2\n50 0\n51 90\n"
    "0 ENDBLK\n";

std::string fileWith(const std::string& blocks, const std::string& entities) {
    return dxfLines("0 SECTION\n2 BLOCKS\n" + blocks + "0 ENDSEC\n0 SECTION\n2 ENTITIES\n" + entities +
                    "\n0 ENDSEC\n0 EOF\n");
}

DxfDrawing reading(const std::string& blocks, const std::string& entities) {
    return readDxf(fileWith(blocks, entities), "a.dxf");
}

std::vector<Entity> partsOf(const BlockReference& reference) {
    std::vector<Entity> parts;
    forEachPart(reference, [&](Entity&& part) { parts.push_back(std::move(part)); });
    return parts;
}

std::vector<std::string> namesIn(const BlockReference& reference) {
    std::vector<std::string> names;
    for (const Entity& part : partsOf(reference))
        names.push_back(part.id);
    return names;
}

std::vector<std::string> told(const DxfDrawing& drawing) {
    std::vector<std::string> all;
    for (const DxfNotice& notice : drawing.notUnderstood)
        all.push_back(notice.what);
    return all;
}

void expectNear(Vec2 a, Vec2 b) {
    EXPECT_NEAR(a.x, b.x, 1e-12);
    EXPECT_NEAR(a.y, b.y, 1e-12);
}

TEST(DxfInsert, ShowsTheContentsOfItsBlockWhereItStands) {
    const DxfDrawing drawing =
        reading(kBracket, "0 INSERT\n8 Walls\n62 1\n2 BRACKET\n10 10\n20 20\n41 2\n42 2\n50 90\n0 POINT\n10 0\n20 0");
    EXPECT_THAT(told(drawing), testing::IsEmpty());
    ASSERT_EQ(drawing.document.references.size(), 1u);
    ASSERT_EQ(drawing.document.entities.size(), 1u);
    const std::vector<Entity> parts = partsOf(drawing.document.references.front());
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(parts[0].id, "insert:0/g0");
    EXPECT_EQ(std::get<LineShape>(parts[0].shape), (LineShape{{10, 20}, {10, 28}}));
    const auto& arc = std::get<ArcShape>(parts[1].shape);
    EXPECT_EQ(arc.centre, (Vec2{10, 20}));
    EXPECT_EQ(arc.radius, 4);
    EXPECT_NEAR(arc.startAngle, kPi / 2, 1e-12);
}

TEST(DxfInsert, GivesPartsTheLayerAndColourThatTheBlockLeavesToIt) {
    const std::vector<Entity> parts =
        partsOf(reading(kBracket, "0 INSERT\n8 Walls\n62 1\n2 Bracket\n10 0\n20 0").document.references.at(0));
    EXPECT_EQ(parts[0].look->layer, "Walls");
    EXPECT_EQ(parts[0].look->colour, (Colour{Colour::Kind::index, 1}));
    EXPECT_EQ(parts[1].look->layer, "Holes");
    EXPECT_EQ(parts[1].look->colour, (Colour{Colour::Kind::index, 3}));
}

TEST(DxfInsert, MakesEllipsesWhereItsScalesDiffer) {
    const std::vector<Entity> parts =
        partsOf(reading(kBracket, "0 INSERT\n2 Bracket\n10 0\n20 0\n41 1\n42 3").document.references.at(0));
    const auto& arc = std::get<EllipticalArcShape>(parts[1].shape);
    EXPECT_EQ(arc.centre, (Vec2{0, 0}));
    EXPECT_NEAR(arc.ratio, 1.0 / 3.0, 1e-12);
    EXPECT_NEAR(arc.endParam - arc.startParam, kPi / 2, 1e-12);
}

TEST(DxfInsert, ReflectsWhereAScaleIsNegativeOrItIsSeenFromBelow) {
    for (const char* insert :
         {"0 INSERT\n2 Bracket\n10 10\n20 0\n41 -1", "0 INSERT\n2 Bracket\n10 -10\n20 0\n230 -1"}) {
        const std::vector<Entity> parts = partsOf(reading(kBracket, insert).document.references.at(0));
        const auto& line = std::get<LineShape>(parts[0].shape);
        expectNear(line.start, {10, 0});
        expectNear(line.end, {6, 0});
        const auto& arc = std::get<ArcShape>(parts[1].shape);
        EXPECT_NEAR(arc.startAngle, kPi / 2, 1e-12) << insert;
    }
}

TEST(DxfInsert, StandsInColumnsAndRowsAlongItsAxes) {
    const BlockReference reference =
        reading(kBracket, "0 INSERT\n2 Bracket\n10 0\n20 0\n41 2\n42 2\n50 90\n70 2\n71 2\n44 10\n45 100")
            .document.references.at(0);
    EXPECT_THAT(namesIn(reference),
                testing::ElementsAre("insert:0/g0", "insert:0/g1", "insert:0[1,0]/g0", "insert:0[1,0]/g1",
                                     "insert:0[0,1]/g0", "insert:0[0,1]/g1", "insert:0[1,1]/g0", "insert:0[1,1]/g1"));
    const std::vector<Entity> parts = partsOf(reference);
    expectNear(std::get<LineShape>(parts[2].shape).start, {0, 10});
    expectNear(std::get<LineShape>(parts[4].shape).start, {-100, 0});
}

TEST(DxfInsert, ShowsBlocksThatStandInBlocks) {
    const DxfDrawing drawing =
        reading("0 BLOCK\n2 *U7\n10 0\n20 0\n0 INSERT\n8 0\n2 Bracket\n10 100\n20 0\n50 90\n0 ENDBLK\n" + kBracket,
                "0 INSERT\n8 Walls\n2 *U7\n10 0\n20 5\n41 2\n42 2");
    const BlockReference& reference = drawing.document.references.at(0);
    EXPECT_THAT(namesIn(reference), testing::ElementsAre("insert:0/insert:0/g0", "insert:0/insert:0/g1"));
    const std::vector<Entity> parts = partsOf(reference);
    EXPECT_EQ(std::get<LineShape>(parts[0].shape), (LineShape{{200, 5}, {200, 13}}));
    EXPECT_EQ(parts[0].look->layer, "Walls");
}

TEST(DxfInsert, FindsItsBlockBehindTheEntities) {
    const std::string text =
        dxfLines("0 SECTION\n2 ENTITIES\n0 INSERT\n2 Bracket\n10 0\n20 0\n0 ENDSEC\n0 SECTION\n2 BLOCKS\n" + kBracket +
                 "0 ENDSEC\n0 EOF\n");
    EXPECT_EQ(readDxf(text, "a.dxf").document.references.size(), 1u);
}

TEST(DxfInsert, ShowsItsAttributesAndNotTheirDefinitions) {
    const DxfDrawing drawing =
        reading("0 BLOCK\n2 Title\n10 0\n20 0\n0 ATTDEF\n10 0\n20 0\n40 1\n1 ?\n2 NAME\n0 ENDBLK\n",
                "0 INSERT\n66 1\n2 Title\n10 1\n20 1\n0 ATTRIB\n10 2\n20 3\n40 1\n1 Plate\n2 NAME\n70 0\n"
                "0 ATTRIB\n10 2\n20 5\n40 1\n1 secret\n2 NOTE\n70 1\n0 SEQEND\n0 POINT\n10 0\n20 0");
    EXPECT_THAT(told(drawing), testing::IsEmpty());
    EXPECT_EQ(drawing.document.entities.size(), 1u);
    const std::vector<Entity> parts = partsOf(drawing.document.references.at(0));
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(parts[0].id, "insert:0/attrib:0");
    EXPECT_EQ(std::get<TextShape>(parts[0].shape).text, "Plate");
    EXPECT_TRUE(parts[0].look->visible);
    EXPECT_FALSE(parts[1].look->visible);
}

TEST(DxfInsert, TellsWhatItCannotShowAndCountsTheOthers) {
    const std::string blocks =
        "0 BLOCK\n2 Round\n10 0\n20 0\n0 INSERT\n2 Trip\n10 0\n20 0\n0 ENDBLK\n"
        "0 BLOCK\n2 Trip\n10 0\n20 0\n0 INSERT\n2 Round\n10 0\n20 0\n0 ENDBLK\n"
        "0 BLOCK\n2 Else\n70 4\n10 0\n20 0\n0 ENDBLK\n"
        "0 BLOCK\n2 Mixed\n10 0\n20 0\n0 LINE\n10 0\n0 3DFACE\n0 POINT\n10 0\n20 0\n0 ENDBLK\n"
        "0 BLOCK\n2 Unused\n10 0\n20 0\n0 ENDBLK\n";
    const DxfDrawing drawing = reading(
        blocks,
        "0 INSERT\n2 Round\n10 0\n20 0\n0 INSERT\n2 Else\n10 0\n20 0\n0 INSERT\n10 0\n20 0\n"
        "0 INSERT\n2 Mixed\n10 0\n20 0\n41 0\n0 INSERT\n2 Mixed\n10 0\n20 0\n67 1\n0 INSERT\n2 Mixed\n10 0\n20 x\n"
        "0 INSERT\n2 Mixed\n10 0\n20 0\n210 1\n230 0\n0 INSERT\n2 Mixed\n10 3\n20 4");
    EXPECT_THAT(told(drawing),
                testing::ElementsAre("INSERT without a block's name", "INSERT scaled to nothing",
                                     "INSERT in paper space", "INSERT with faulty groups", "INSERT on a tilted plane",
                                     "INSERT of block \"ROUND\", which contains itself",
                                     "INSERT of block \"ELSE\", which is a drawing of its own",
                                     "LINE with faulty groups in a block", "3DFACE in a block", "BLOCK definition"));
    ASSERT_EQ(drawing.document.references.size(), 1u);
    EXPECT_THAT(namesIn(drawing.document.references[0]), testing::ElementsAre("insert:0/g0"));
}

/// Each of so many blocks shows the one before it eight times.
std::string bomb(int blocks, const std::string& within) {
    std::string text = "0 BLOCK\n2 B0\n10 0\n20 0\n" + within + "0 ENDBLK\n";
    for (int i = 1; i < blocks; ++i)
        text += "0 BLOCK\n2 B" + std::to_string(i) + "\n10 0\n20 0\n0 INSERT\n2 B" + std::to_string(i - 1) +
                "\n10 0\n20 0\n70 4\n71 2\n44 1\n45 1\n0 ENDBLK\n";
    return text;
}

TEST(DxfInsert, IsNotShownWithMorePartsThanCanBeDrawn) {
    const auto start = std::chrono::steady_clock::now();
    for (const char* within : {"0 POINT\n10 0\n20 0\n", ""})
        EXPECT_THAT(told(reading(bomb(60, within), "0 INSERT\n2 B59\n10 0\n20 0")),
                    testing::ElementsAre("INSERT of block \"B59\", of which there are more parts than can be drawn"));
    EXPECT_THAT(told(reading(kBracket, "0 INSERT\n2 Bracket\n10 0\n20 0\n70 32767\n71 32767\n44 1\n45 1")),
                testing::ElementsAre("INSERT of block \"BRACKET\", of which there are more parts than can be drawn"));
    std::string chain = "0 BLOCK\n2 C0\n10 0\n20 0\n0 ENDBLK\n";
    for (int i = 1; i < 5000; ++i)
        chain +=
            "0 BLOCK\n2 C" + std::to_string(i) + "\n0 INSERT\n2 C" + std::to_string(i - 1) + "\n10 0\n20 0\n0 ENDBLK\n";
    EXPECT_THAT(told(reading(chain, "0 INSERT\n2 C4999\n10 0\n20 0")),
                testing::Contains("INSERT of block \"C4999\", in which blocks stand in each other more than 100 deep"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(DxfInsert, IsNotShownBeyondThatDepthWhateverIsShownBefore) {
    std::string chain = "0 BLOCK\n2 C0\n10 0\n20 0\n0 POINT\n10 0\n20 0\n0 ENDBLK\n", inserts;
    for (int i = 1; i < 300; ++i)
        chain +=
            "0 BLOCK\n2 C" + std::to_string(i) + "\n0 INSERT\n2 C" + std::to_string(i - 1) + "\n10 0\n20 0\n0 ENDBLK\n";
    for (const int block : {50, 99, 100, 150})
        inserts += "0 INSERT\n2 C" + std::to_string(block) + "\n10 0\n20 0\n";
    const std::string tooDeep = ", in which blocks stand in each other more than 100 deep";
    EXPECT_THAT(told(reading(chain, inserts)),
                testing::IsSupersetOf({"INSERT of block \"C100\"" + tooDeep, "INSERT of block \"C150\"" + tooDeep}));
    EXPECT_EQ(reading(chain, inserts).document.references.size(), 2u);
}

TEST(DxfInsert, CountsAllThatTheDrawingShowsTogether) {
    std::string inserts;
    for (int i = 0; i < 4; ++i)
        inserts += "0 INSERT\n2 Bracket\n10 0\n20 0\n70 100\n71 100\n44 1\n45 1\n";
    EXPECT_EQ(reading(kBracket, inserts).document.references.size(), 3u);  // of 30,000 each
}

/// A file as programs of today write it.
const std::string kFile =
    "  0\r\nSECTION\r\n  2\r\nHEADER\r\n  9\r\n$ACADVER\r\n  1\r\nAC1015\r\n  9\r\n$HANDSEED\r\n  5\r\n50\r\n  0\r\n"
    "ENDSEC\r\n  0\r\nSECTION\r\n  2\r\nBLOCKS\r\n"
    "  0\r\nBLOCK\r\n  5\r\n20\r\n  8\r\n0\r\n  2\r\nPlug\r\n 70\r\n2\r\n 10\r\n0.0\r\n 20\r\n0.0\r\n"
    "  0\r\nLINE\r\n  5\r\n21\r\n330\r\n1E\r\n100\r\nAcDbEntity\r\n  8\r\n0\r\n 62\r\n0\r\n100\r\nAcDbLine\r\n"
    " 10\r\n0.00\r\n 20\r\n0.00\r\n 11\r\n4.00\r\n 21\r\n0.00\r\n1001\r\nTHEIRS\r\n1070\r\n7\r\n"
    "  0\r\nENDBLK\r\n  5\r\n22\r\n  0\r\nENDSEC\r\n  0\r\nSECTION\r\n  2\r\nENTITIES\r\n"
    "  0\r\nINSERT\r\n  5\r\n30\r\n102\r\n{THEIRS\r\n360\r\n9\r\n102\r\n}\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\n"
    "Parts\r\n 62\r\n5\r\n100\r\nAcDbBlockReference\r\n 66\r\n1\r\n  2\r\nPlug\r\n 10\r\n 1.000\r\n 20\r\n 2.000\r\n"
    " 30\r\n 7.0\r\n"
    "  0\r\nATTRIB\r\n  5\r\n31\r\n330\r\n30\r\n  8\r\nParts\r\n 10\r\n1.000\r\n 20\r\n3.000\r\n 40\r\n2.5\r\n  1\r\nX1"
    "\r\n  2\r\nNAME\r\n 70\r\n0\r\n  0\r\nSEQEND\r\n  5\r\n32\r\n330\r\n30\r\n  8\r\nParts\r\n"
    "999\r\nbehind it\r\n"
    "  0\r\nPOINT\r\n  5\r\n33\r\n330\r\n1F\r\n  8\r\n0\r\n 10\r\n0.0\r\n 20\r\n0.0\r\n"
    "  0\r\nENDSEC\r\n  0\r\nEOF\r\n";

std::string changed(std::string text, const std::vector<std::pair<std::string, std::string>>& changes) {
    for (const auto& [from, to] : changes) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
    }
    return text;
}

struct EditedFile {
    DxfDrawing drawing = readDxf(kFile, "a.dxf");
    Document now = drawing.document;

    BlockReference& insert() { return now.references.at(0); }
    void move(const PlaneTransform& transform) { insert() = transformed(insert(), transform); }
    std::string written() const { return patchedDxf(kFile, drawing.layout, drawing.document, now).text; }
};

TEST(DxfInsertPatch, GivesBackAFileThatWasNotEditedToTheByte) {
    EXPECT_EQ(EditedFile().written(), kFile);
}

TEST(DxfInsertPatch, MovesTheInsertionPointAndTheAttributes) {
    EditedFile file;
    file.move(translation({10, 0.5}));
    EXPECT_EQ(file.written(), changed(kFile, {{" 10\r\n 1.000\r\n 20\r\n 2.000", " 10\r\n 11.000\r\n 20\r\n 2.500"},
                                              {" 10\r\n1.000\r\n 20\r\n3.000", " 10\r\n11.000\r\n 20\r\n3.500"}}));
}

TEST(DxfInsertPatch, TurnsByTheRotationAndMirrorsByAScale) {
    EditedFile turned;
    turned.move(rotation({1, 2}, kPi / 2));
    EXPECT_EQ(turned.written(), changed(kFile, {{" 30\r\n 7.0\r\n", " 30\r\n 7.0\r\n 50\r\n90.000\r\n"},
                                                {" 10\r\n1.000\r\n 20\r\n3.000", " 10\r\n0.000\r\n 20\r\n2.000"},
                                                {"  1\r\nX1\r\n", "  1\r\nX1\r\n 50\r\n90.000\r\n"}}));
    EditedFile mirrored;
    mirrored.move(reflection({0, 2}, {1, 2}));
    EXPECT_EQ(mirrored.written(), changed(kFile, {{" 30\r\n 7.0\r\n", " 30\r\n 7.0\r\n 42\r\n-1.000\r\n"},
                                                  {" 20\r\n3.000", " 20\r\n1.000"}}));
}

TEST(DxfInsertPatch, TakesAnErasedOneWithItsAttributes) {
    EditedFile file;
    file.now.references.clear();
    const std::size_t begin = kFile.find("  0\r\nINSERT"), end = kFile.find("999\r\nbehind");
    EXPECT_EQ(file.written(), kFile.substr(0, begin) + kFile.substr(end));
}

TEST(DxfInsertPatch, GivesACopyHandlesOfItsOwn) {
    EditedFile file;
    BlockReference copy = transformed(file.insert(), translation({5, 0}));
    copy.id += "_2";
    file.now.references.push_back(copy);
    const std::size_t begin = kFile.find("  0\r\nINSERT"), end = kFile.find("999\r\nbehind");
    const std::string record =
        changed(kFile.substr(begin, end - begin), {{"  5\r\n30", "  5\r\n50"},
                                                   {"102\r\n{THEIRS\r\n360\r\n9\r\n102\r\n}\r\n", ""},
                                                   {" 10\r\n 1.000", " 10\r\n 6.000"},
                                                   {"  5\r\n31\r\n330\r\n30", "  5\r\n51\r\n330\r\n50"},
                                                   {" 10\r\n1.000", " 10\r\n6.000"},
                                                   {"  5\r\n32\r\n330\r\n30", "  5\r\n52\r\n330\r\n50"}});
    EXPECT_EQ(file.written(), changed(kFile, {{"$HANDSEED\r\n  5\r\n50", "$HANDSEED\r\n  5\r\n53"},
                                              {" 20\r\n0.0\r\n  0\r\nENDSEC\r\n  0\r\nEOF",
                                               " 20\r\n0.0\r\n" + record + "  0\r\nENDSEC\r\n  0\r\nEOF"}}));
}

TEST(DxfInsertPatch, WritesWhatWasExplodedAsTheBlockHasIt) {
    EditedFile file;
    forEachPart(file.insert(), [&](Entity&& part) {
        if (part.id == "insert:0/g0")
            file.now.entities.push_back(std::move(part));
    });
    file.now.references.clear();
    const std::size_t begin = kFile.find("  0\r\nINSERT"), end = kFile.find("999\r\nbehind");
    const std::string line =
        "  0\r\nLINE\r\n  5\r\n50\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\nParts\r\n 62\r\n5\r\n100\r\nAcDbLine\r\n"
        " 10\r\n1.00\r\n 20\r\n2.00\r\n 11\r\n5.00\r\n 21\r\n2.00\r\n1001\r\nTHEIRS\r\n1070\r\n7\r\n";
    EXPECT_EQ(file.written(), changed(kFile.substr(0, begin) + kFile.substr(end),
                                      {{"$HANDSEED\r\n  5\r\n50", "$HANDSEED\r\n  5\r\n51"},
                                       {" 20\r\n0.0\r\n  0\r\nENDSEC\r\n  0\r\nEOF",
                                        " 20\r\n0.0\r\n" + line + "  0\r\nENDSEC\r\n  0\r\nEOF"}}));
}

TEST(DxfInsertPatch, MovesWhatIsSeenFromBelowInItsOwnCoordinates) {
    const std::string text =
        fileWith(kBracket, "0 INSERT\n2 Bracket\n10 -10\n20 0\n50 30\n70 2\n71 3\n44 7\n45 8\n230 -1");
    const DxfDrawing drawing = readDxf(text, "a.dxf");
    for (const PlaneTransform& transform : {translation({3, 4}), rotation({1, 1}, 0.5), reflection({0, 0}, {2, 1})}) {
        Document now = drawing.document;
        now.references[0] = transformed(now.references[0], transform);
        const DxfDrawing again = readDxf(patchedDxf(text, drawing.layout, drawing.document, now).text, "b.dxf");
        const std::vector<Entity> expected = partsOf(drawing.document.references[0]),
                                  found = partsOf(again.document.references.at(0));
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i < found.size(); i += 2) {  // the lines
            const auto &was = std::get<LineShape>(expected[i].shape), &is = std::get<LineShape>(found[i].shape);
            EXPECT_LT(distance(is.start, transform.pointAfter(was.start)), 1e-9);
            EXPECT_LT(distance(is.end, transform.pointAfter(was.end)), 1e-9);
        }
    }
}

}  // namespace
}  // namespace holdfast::formats
