#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/text/DrawingError.h"
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

}  // namespace
}  // namespace holdfast::formats
