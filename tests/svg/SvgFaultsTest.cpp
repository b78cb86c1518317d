#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "document/checks/DocumentCheck.h"
#include "document/text/DrawingError.h"
#include "tests/svg/Pictures.h"

namespace holdfast::formats {
namespace {

using ::testing::HasSubstr;

std::string refusalOfText(const std::string& text) {
    try {
        readSvg(text, "part.svg");
    } catch (const DrawingError& error) {
        return error.what();
    }
    return "was read";
}

std::string refusalOf(const std::string& elements) {
    return refusalOfText(pictureOf(elements));
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST(SvgFaults, WhatIsNoPictureIsRefused) {
    EXPECT_THAT(refusalOfText(""), HasSubstr("found no element; expected a picture, <svg>"));
    EXPECT_THAT(refusalOfText("{}"), HasSubstr("found no element"));
    EXPECT_THAT(refusalOfText("<html></html>"), HasSubstr("found <html>; expected a picture, <svg>"));
    EXPECT_THAT(refusalOfText("\xFF\xFE<\0s\0v\0g\0"), HasSubstr("another encoding than UTF-8"));
}

TEST(SvgFaults, BrokenTextsAreRefusedWithTheirLine) {
    EXPECT_THAT(refusalOf("<g>\n<path d='M0 0'></g>"), HasSubstr("part.svg:3: found </g>; expected </path>"));
    EXPECT_THAT(refusalOf("<g>"), HasSubstr("part.svg:3: found </svg>; expected </g>"));
    EXPECT_THAT(refusalOfText("<svg>\n<g>"), HasSubstr("part.svg:2: found the end of the text inside of <g>"));
    EXPECT_THAT(refusalOf("<path d=M0/>"), HasSubstr("part.svg:2: found Error parsing element attribute"));
    EXPECT_THAT(refusalOfText("<svg/></g>"), HasSubstr("found </g>; expected the end of the text"));
    EXPECT_THAT(refusalOf("<g <g>"), HasSubstr("part.svg:2: found a tag without an end"));
    EXPECT_THAT(refusalOf("<!-- "), HasSubstr("part.svg:2: found \"<!--\" without an end"));
}

TEST(SvgFaults, NumbersThatAreNoneAreRefusedWithTheirLine) {
    EXPECT_THAT(refusalOf("\n<path d=\"M0 0 L nan 1\"/>"),
                HasSubstr("part.svg:3: found \"nan 1\" as letter 8 in <path>; expected a number"));
    EXPECT_THAT(refusalOf("<path d=\"M0 0 L 1\"/>"),
                HasSubstr("found the end of the numbers in <path>; expected a number"));
    EXPECT_THAT(refusalOf("<path d=\"L1 1\"/>"), HasSubstr("expected M or m, with which a path begins"));
    EXPECT_THAT(refusalOf("<path d=\"M0 0 X1 1\"/>"), HasSubstr("one of the letters"));
    EXPECT_THAT(refusalOf("<path d=\"M0 0 A5 5 0 2 1 5 5\"/>"), HasSubstr("a flag of an arc, 0 or 1"));
    EXPECT_THAT(refusalOf("<circle r=\"inf\"/>"), HasSubstr("found \"inf\" as letter 1 in <circle>"));
    EXPECT_THAT(refusalOf("<circle r=\"-1\"/>"), HasSubstr("found the attribute r below 0 in <circle>"));
    EXPECT_THAT(refusalOf("<circle r=\"1parsec\"/>"), HasSubstr("found the unit \"parsec\" in <circle>"));
    EXPECT_THAT(refusalOf("<polygon points=\"1 2 3\"/>"), HasSubstr("the end of the numbers in <polygon>"));
    EXPECT_THAT(refusalOf("<g transform=\"turn(1)\"/>"), HasSubstr("found the transform \"turn\" in <g>"));
    EXPECT_THAT(refusalOf("<g transform=\"rotate(1 2)\"/>"), HasSubstr("found rotate of 2 numbers in <g>"));
    EXPECT_THAT(refusalOfText("<svg viewBox=\"0 0 0 10\"/>"), HasSubstr("found the viewBox \"0 0 0 10\""));
    EXPECT_THAT(refusalOfText("<svg width=\"-5mm\"/>"), HasSubstr("found the size \"-5mm\""));
}

TEST(SvgFaults, EnormousNumbersAreRefused) {
    EXPECT_THAT(refusalOf("<path d=\"M0 0 L 1e999 1\"/>"), HasSubstr("found the number \"1e999\" in <path>"));
    EXPECT_THAT(refusalOf("<path d=\"M0 0 L 1e10 1\"/>"), HasSubstr("at most a thousand millions"));
    EXPECT_THAT(refusalOf(repeated("<g transform=\"scale(1000)\">", 4) + "<circle r=\"1\"/>" + repeated("</g>", 4)),
                HasSubstr("transforms that come to more than a thousand millions"));
    EXPECT_THAT(refusalOf("<g transform=\"skewX(90)\"/>"), HasSubstr("transforms that come to more"));
    EXPECT_EQ(drawnByPath("M0 0 L 1e-999 1"), "line 0,0 0,1");
}

TEST(SvgFaults, DefinitionsOfEntitiesAreRefused) {
    EXPECT_THAT(refusalOfText("<!DOCTYPE svg [\n<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>\n<svg>&b;</svg>"),
                HasSubstr("part.svg:1: found a document type with definitions of its own"));
    EXPECT_THAT(refusalOfText("<!DOCTYPE svg [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><svg/>"),
                HasSubstr("save it as plain SVG"));
}

TEST(SvgFaults, ElementsNestedTooDeepAreRefused) {
    EXPECT_THAT(refusalOfText("<svg>" + repeated("<g>", 1000000)), HasSubstr("nested more than 256 deep"));
    std::string chain = "<defs><circle id=\"u0\" r=\"1\"/>";
    for (int i = 1; i < 400; ++i)
        chain += "<use id=\"u" + std::to_string(i) + "\" href=\"#u" + std::to_string(i - 1) + "\"/>";
    EXPECT_THAT(refusalOf(chain + "</defs><use href=\"#u399\"/>"), HasSubstr("used in each other more than 256 deep"));
}

TEST(SvgFaults, ThingsUsedOverAndOverAreRefused) {
    std::string bomb = "<defs><circle id=\"u0\" r=\"1\"/>";
    for (int i = 1; i < 60; ++i) {
        const std::string use = "<use href=\"#u" + std::to_string(i - 1) + "\"/>";
        bomb += "<g id=\"u" + std::to_string(i) + "\">" + use + use + "</g>";
    }
    EXPECT_THAT(refusalOf(bomb + "</defs><use href=\"#u59\"/>"), HasSubstr("parts in what is used again"));
    const std::string longPath = "<defs><path id=\"p\" d=\"M0 0" + repeated("h0", 1000000) + "\"/></defs>";
    EXPECT_THAT(refusalOf(longPath + repeated("<use href=\"#p\"/>", 1000)), HasSubstr("parts in what is used again"));
}

TEST(SvgFaults, MoreElementsThanMemoryHoldsAreRefused) {
    EXPECT_THAT(refusalOf(repeated("<g/>", 2200000)), HasSubstr("more than a million elements"));
    EXPECT_THAT(refusalOfText(std::string((64U << 20U) + 1, ' ')), HasSubstr("more than 64 MB"));
}

TEST(SvgFaults, MoreCurvesThanMemoryHoldsAreRefused) {
    EXPECT_THAT(refusalOf("<path d=\"M0 0" + repeated("h1", 1000001) + "\"/>"),
                HasSubstr("part.svg:2: found more than a million pieces in <path>"));
    EXPECT_THAT(refusalOf("<path d=\"" + repeated("M0 0z", 1000002) + "\"/>"), HasSubstr("more than a million pieces"));
}

TEST(SvgFaults, WhatIsToldIsShortHoweverMuchIsLeftOut) {
    std::string many;
    for (int i = 0; i < 1000; ++i)
        many += "<use href=\"#x" + std::to_string(i) + "\"/><kind" + std::to_string(i) + "/>";
    const SvgDrawing read = readPicture("<style>" + repeated("a b {}", 1000) + "</style>" + many);
    EXPECT_LT(told(read.notUnderstood).size(), 3000U);
    EXPECT_THAT(told(read.notUnderstood), HasSubstr("other things (19"));
}

/// Pictures with one piece of their text in another's place: they are read, and sound, or refused.
TEST(SvgFaults, TextsWithPiecesInWrongPlacesAreReadOrRefused) {
    const std::string sound = pictureOf(R"(<style>.a{stroke:red}</style><g transform='rotate(30) scale(2 1)'>
        <path class="a" d="M0 0h5a5 4 0 015 5C1 2 3 4 5 6Q1 2 3 4T5 6z"/></g><defs><circle id="c" r="5"/></defs>
        <use href="#c" x="3"/><rect x="1" y="2" width="30" height="20" rx="4"/><ellipse rx="3" ry="2"/>)");
    std::mt19937 random(7);
    const auto upTo = [&](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
    int read = 0, refused = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string text = sound;
        const std::size_t length = upTo(3), from = upTo(text.size() - 4), to = upTo(text.size() - 4);
        text.replace(to, length, text.substr(from, upTo(3)));
        try {
            const Document document = readSvg(text, "part.svg").document;
            EXPECT_NO_THROW(checkDocument(document, "part.svg")) << text;
            ++read;
        } catch (const DrawingError&) {
            ++refused;
        }
    }
    EXPECT_GT(read, 300);
    EXPECT_GT(refused, 300);
}

}  // namespace
}  // namespace holdfast::formats
