#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/BlockContents.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/dxf/DxfReader.h"
#include "geometry/Angles.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

std::vector<Shape> outlinesOf(const std::string& paths, const std::string& head = "") {
    const std::string text = dxfFile("0 HATCH\n8 Fill\n10 0\n20 0\n30 0\n" + head + "2 ANSI31\n70 0\n71 0\n" + paths +
                                     "75 0\n76 1\n52 0\n41 1\n77 0\n78 1\n53 45\n43 0\n44 0\n45 1\n46 1\n79 0\n98 1\n"
                                     "10 1\n20 1\n0 POINT\n10 0\n20 0");
    const DxfDrawing drawing = readDxf(text, "a.dxf");
    EXPECT_THAT(drawing.notUnderstood, testing::IsEmpty());
    EXPECT_EQ(patchedDxf(text, drawing.layout, drawing.document, drawing.document).text, text);
    std::vector<Shape> shapes;
    for (const BlockReference& reference : drawing.document.references) {
        EXPECT_EQ(reference.id, "hatch:0");
        EXPECT_EQ(reference.look->layer, "Fill");
        forEachPart(reference, [&](Entity&& part) { shapes.push_back(std::move(part.shape)); });
    }
    return shapes;
}

TEST(DxfHatch, ShowsItsPolylines) {
    const std::vector<Shape> shapes = outlinesOf(
        "91 2\n92 7\n72 0\n73 1\n93 3\n10 0\n20 0\n10 4\n20 0\n10 4\n20 4\n97 1\n330 AB\n"
        "92 2\n72 1\n73 1\n93 2\n10 1\n20 1\n42 1\n10 2\n20 1\n42 1\n97 0\n");
    ASSERT_EQ(shapes.size(), 2u);
    EXPECT_EQ(std::get<PolylineShape>(shapes[0]).vertices, (std::vector<Vec2>{{0, 0}, {4, 0}, {4, 4}}));
    EXPECT_TRUE(std::get<PolylineShape>(shapes[0]).closed);
    EXPECT_EQ(std::get<PolylineShape>(shapes[1]).bulges, (std::vector<double>{1, 1}));
}

TEST(DxfHatch, ShowsItsEdgesOfEveryKind) {
    const std::vector<Shape> shapes = outlinesOf(
        "91 1\n92 1\n93 7\n72 1\n10 0\n20 0\n11 4\n21 0\n72 2\n10 4\n20 2\n40 2\n50 270\n51 90\n73 1\n"
        "72 2\n10 0\n20 0\n40 2\n50 0\n51 90\n73 0\n72 2\n10 1\n20 1\n40 2\n50 0\n51 360\n73 1\n"
        "72 3\n10 0\n20 0\n11 4\n21 0\n40 0.5\n50 0\n51 90\n73 1\n72 3\n10 0\n20 0\n11 4\n21 0\n40 0.5\n50 0\n51 "
        "360\n73 1\n"
        "72 4\n94 3\n73 0\n74 0\n95 8\n96 4\n40 0\n40 0\n40 0\n40 0\n40 1\n40 1\n40 1\n40 1\n"
        "10 0\n20 0\n10 1\n20 2\n10 3\n20 2\n10 4\n20 0\n97 0\n97 2\n330 A\n330 B\n");
    ASSERT_EQ(shapes.size(), 7u);
    EXPECT_EQ(std::get<LineShape>(shapes[0]), (LineShape{{0, 0}, {4, 0}}));
    EXPECT_EQ(std::get<ArcShape>(shapes[1]), (ArcShape{{4, 2}, 2, inRadians(270), inRadians(270) + kPi}));
    EXPECT_EQ(std::get<ArcShape>(shapes[2]), (ArcShape{{0, 0}, 2, -kPi / 2, 0}));
    EXPECT_EQ(std::get<CircleShape>(shapes[3]), (CircleShape{{1, 1}, 2}));
    EXPECT_NEAR(std::get<EllipticalArcShape>(shapes[4]).endParam, kPi / 2, 1e-12);
    EXPECT_EQ(std::get<EllipseShape>(shapes[5]), (EllipseShape{{0, 0}, {4, 0}, 0.5}));
    EXPECT_EQ(std::get<SplineShape>(shapes[6]).control.size(), 4u);
}

TEST(DxfHatch, ShowsASplineThatSaysWhatItWasFittedTo) {
    const std::string spline =
        "72 4\n94 1\n73 1\n74 0\n95 4\n96 2\n40 0\n40 0\n40 1\n40 1\n10 0\n20 0\n42 1\n10 1\n20 2\n42 1\n";
    EXPECT_EQ(outlinesOf("91 1\n92 1\n93 2\n" + spline + "97 2\n11 0\n21 0\n11 1\n21 2\n12 1\n22 1\n13 1\n23 1\n" +
                         spline + "97 1\n330 A\n")
                  .size(),
              2u);
}

TEST(DxfHatch, IsSeenFromBelowInItsOwnCoordinates) {
    const std::vector<Shape> shapes =
        outlinesOf("91 1\n92 1\n93 1\n72 1\n10 1\n20 2\n11 4\n21 0\n97 0\n", "210 0\n220 0\n230 -1\n");
    const auto& line = std::get<LineShape>(shapes.at(0));
    EXPECT_NEAR(line.start.x, -1, 1e-12);
    EXPECT_NEAR(line.start.y, 2, 1e-12);
}

TEST(DxfHatch, IsToldWhereItsGroupsDoNotFit) {
    for (const char* paths : {"91 2\n92 1\n93 1\n72 1\n10 1\n20 2\n11 4\n21 0\n97 0", "91 1\n92 1\n93 1\n72 9",
                              "91 1\n92 1\n93 2000000000\n72 1\n10 1\n20 2\n11 4\n21 0"}) {
        const DxfDrawing drawing = readDxf(dxfFile("0 HATCH\n10 0\n20 0\n" + std::string(paths)), "a.dxf");
        EXPECT_THAT(drawing.notUnderstood, testing::ElementsAre(DxfNotice{"HATCH with faulty groups", 1})) << paths;
    }
}

TEST(DxfDimension, ShowsThePictureThatTheFileHasOfIt) {
    const std::string text = dxfLines(
        "0 SECTION\n2 BLOCKS\n0 BLOCK\n2 *D1\n70 1\n10 0\n20 0\n0 LINE\n8 0\n62 0\n10 0\n20 5\n11 9\n21 5\n"
        "0 SOLID\n10 0\n20 5\n11 1\n21 5.2\n12 1\n22 4.8\n13 1\n23 4.8\n0 MTEXT\n10 4\n20 6\n40 2\n1 9\n0 ENDBLK\n0 "
        "ENDSEC\n"
        "0 SECTION\n2 ENTITIES\n0 DIMENSION\n8 Sizes\n2 *D1\n10 9\n20 5\n11 4.5\n21 5\n70 32\n13 0\n23 0\n14 9\n24 0\n"
        "0 DIMENSION\n10 9\n20 5\n70 32\n0 ENDSEC\n0 EOF\n");
    const DxfDrawing drawing = readDxf(text, "a.dxf");
    EXPECT_THAT(drawing.notUnderstood, testing::ElementsAre(DxfNotice{"DIMENSION without a picture of it", 1}));
    std::vector<std::string> names;
    std::vector<Shape> shapes;
    forEachPart(drawing.document.references.at(0), [&](Entity&& part) {
        names.push_back(part.id);
        EXPECT_EQ(part.look->layer, "Sizes");
        shapes.push_back(std::move(part.shape));
    });
    EXPECT_THAT(names, testing::ElementsAre("dimension:0/g0", "dimension:0/g1", "dimension:0/g2"));
    EXPECT_EQ(std::get<PolylineShape>(shapes.at(1)).vertices, (std::vector<Vec2>{{0, 5}, {1, 5.2}, {1, 4.8}}));
    EXPECT_EQ(patchedDxf(text, drawing.layout, drawing.document, drawing.document).text, text);
}

}  // namespace
}  // namespace holdfast::formats
