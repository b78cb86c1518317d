#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "document/text/DrawingError.h"
#include "formats/fcstd/FcstdPatch.h"
#include "formats/fcstd/FcstdReader.h"
#include "tests/fcstd/Documents.h"

namespace holdfast::formats {
namespace {

using ::testing::HasSubstr;

std::string refusalOf(const std::string& archive) {
    try {
        readFcstd(archive, "Sketch", "part.FCStd");
    } catch (const DrawingError& error) {
        return error.what();
    }
    return "was read";
}

std::string replacedIn(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

const std::string& soundText() {
    static const std::string text = documentText({cornerSketch()});
    return text;
}

TEST(FcstdFaults, WhatIsNoArchiveIsRefused) {
    for (const std::string& bytes :
         {std::string("{}"), std::string("PK\3\4 and no more"), documentOf(cornerSketch()).substr(0, 400)})
        EXPECT_THAT(refusalOf(bytes), HasSubstr("part.FCStd: found no sound archive"));
}

TEST(FcstdFaults, AnArchiveWithoutADocumentIsRefused) {
    EXPECT_THAT(refusalOf(zipped({{"word/document.xml", "<a/>"}})),
                HasSubstr("an archive without an entry Document.xml"));
}

TEST(FcstdFaults, NamesThatLeadOutOfTheArchiveAreRefused) {
    for (const char* name : {"../../home/x", "/etc/passwd", "a/../../b", "C:\\x", "..\\x"})
        EXPECT_THAT(refusalOf(zipped({{"Document.xml", soundText()}, {name, "x"}})), HasSubstr("leads out of it"))
            << name;
}

TEST(FcstdFaults, ATextThatSaysThatItIsTooLongIsRefusedUnread) {
    EXPECT_THAT(refusalOf(zipped({{"Document.xml", soundText(), 3000000000U}})), HasSubstr("part.FCStd: found"));
}

TEST(FcstdFaults, ATextThatIsTooLongIsRefused) {
    EXPECT_THAT(refusalOf(zipped({{"Document.xml", std::string((64U << 20U) + 1, ' ')}})), HasSubstr("at most 64 MB"));
}

TEST(FcstdFaults, ABrokenTextIsFoundByItsChecksum) {
    EXPECT_THAT(refusalOf(replacedIn(documentOf(cornerSketch()), "FileVersion=\"1\"", "FileVersion=\"2\"")),
                HasSubstr("no sound archive"));
}

TEST(FcstdFaults, DocumentTypesAreRefusedWithTheirEntities) {
    const std::string bomb = "<!DOCTYPE a [<!ENTITY b \"bbbbbbbb\"><!ENTITY c \"&b;&b;&b;&b;\">]>\n";
    EXPECT_THAT(refusalOf(archiveOf(replacedIn(soundText(), "<Document ", bomb + "<Document "))),
                HasSubstr("Document.xml: found a document type"));
}

TEST(FcstdFaults, BrokenTextsAreRefusedWithTheirLine) {
    EXPECT_THAT(refusalOf(archiveOf(replacedIn(soundText(), "</ObjectData>", "</ObjectDate>"))),
                HasSubstr("found </ObjectDate>; expected </ObjectData>"));
    EXPECT_THAT(refusalOf(archiveOf(soundText().substr(0, soundText().size() / 2))), HasSubstr("Document.xml"));
    EXPECT_THAT(refusalOf(archiveOf("no elements")), HasSubstr("found no element; expected <Document>"));
    EXPECT_THAT(refusalOf(archiveOf("<html></html>")), HasSubstr("found <html>; expected <Document>"));
    EXPECT_THAT(refusalOf(archiveOf(replacedIn(soundText(), "FirstPos=\"1\"", "FirstPos=1"))),
                HasSubstr("part.FCStd:26: Document.xml"));
}

TEST(FcstdFaults, ElementsNestedTooDeepAreRefused) {
    std::string deep = "<Document>";
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    EXPECT_THAT(refusalOf(archiveOf(deep)), HasSubstr("nested more than 256 deep"));
}

TEST(FcstdFaults, MoreElementsThanMemoryHoldsAreRefused) {
    std::string many;
    for (int i = 0; i < 1700000; ++i)
        many += "<a/>";
    SketchText sketch = cornerSketch();
    sketch.geometry = {many};
    EXPECT_THAT(refusalOf(documentOf(sketch)), HasSubstr("more than a million elements"));
}

TEST(FcstdFaults, NumbersWithoutAMeaningLeaveTheirEntityOut) {
    for (const char* number : {"nan", "inf", "1e999", "", "twelve"}) {
        SketchText sketch;
        sketch.geometry = {lineGeometry("0", "0", number, "0")};
        EXPECT_EQ(readFcstd(documentOf(sketch), "Sketch", "part.FCStd").notUnderstood,
                  std::vector<std::string>{"g0 (LineSegment)"});
    }
}

TEST(FcstdFaults, HugeMultiplicitiesMakeNoHugeSplines) {
    SketchText sketch;
    sketch.geometry = {
        geometry("BSplineCurve",
                 "<BSplineCurve PolesCount=\"1\" KnotsCount=\"1\" Degree=\"2000000000\" IsPeriodic=\"0\">"
                 "<Pole X=\"0\" Y=\"0\" Z=\"0\" Weight=\"1\"/><Knot Value=\"0\" Mult=\"2000000000\"/>"
                 "</BSplineCurve>")};
    EXPECT_EQ(readFcstd(documentOf(sketch), "Sketch", "part.FCStd").notUnderstood,
              std::vector<std::string>{"g0 (BSplineCurve)"});
}

/// Documents with one piece of their text in another's place: they are read, and written, or refused.
TEST(FcstdFaults, TextsWithPiecesInWrongPlacesAreReadOrRefused) {
    SketchText sketch = cornerSketch();
    sketch.geometry.push_back(
        geometry("BSplineCurve",
                 "<BSplineCurve PolesCount=\"2\" KnotsCount=\"2\" Degree=\"1\" IsPeriodic=\"0\"><Pole X=\"0\" "
                 "Y=\"0\" Z=\"0\" Weight=\"1\"/><Pole X=\"1\" Y=\"2\" Z=\"0\" Weight=\"1\"/><Knot "
                 "Value=\"0\" Mult=\"2\"/><Knot Value=\"1\" Mult=\"2\"/></BSplineCurve>"));
    sketch.geometry.push_back(geometry("Point", "<GeomPoint X=\"1\" Y=\"2\" Z=\"0\"/>"));
    sketch.constraints.push_back(
        constrain({15, {3, 1, 2, 0, -2000, 0}, "0", "", "InternalAlignmentType=\"9\" InternalAlignmentIndex=\"1\" "}));
    sketch.constraints.push_back(constrain({17, {1, 0, -2000, 0, -2000, 0}}));
    const std::string sound = documentText({sketch});
    std::mt19937 random(7);
    const auto upTo = [&](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
    int read = 0, refused = 0;
    for (int i = 0; i < 1000; ++i) {
        std::string text = sound;
        const std::size_t length = upTo(3), from = upTo(text.size() - 4), to = upTo(text.size() - 4);
        text.replace(to, length, text.substr(from, upTo(3)));
        const std::string archive = archiveOf(text);
        try {
            Document drawing = readFcstd(archive, "Sketch", "part.FCStd").document;
            drawing.entities.push_back({.id = "g0_2", .shape = LineShape{{1, 2}, {3, 4}}});
            drawing.constraints.clear();
            EXPECT_FALSE(patchedFcstd(archive, "Sketch", drawing, "part.FCStd").archive.empty());
            ++read;
        } catch (const DrawingError&) {
            ++refused;
        }
    }
    EXPECT_GT(read, 30);
    EXPECT_GT(refused, 30);
}

}  // namespace
}  // namespace holdfast::formats
