#include "formats/dxf/DxfText.h"

#include <gtest/gtest.h>

namespace holdfast::formats {
namespace {

TEST(DxfText, IsDecodedIntoUtf8) {
    EXPECT_EQ(decodedDxfText("Gr\\U+00F6\\U+00dfe"), "Größe");
    EXPECT_EQ(decodedDxfText("Gr\xF6\xDF"
                             "e \x80"),
              "Größe €");
    EXPECT_EQ(decodedDxfText("Größe"), "Größe");
    EXPECT_EQ(decodedDxfText("\\U+D83D\\U+DE00"), "\U0001F600");
    EXPECT_EQ(decodedDxfText("\\U+D83D alone"), "\uFFFD alone");
    EXPECT_EQ(decodedDxfText("a^Ib^Jc^ d^"), "a\tb\nc^d^");
    EXPECT_EQ(decodedDxfText("\\U+00 \\U+ZZZZ"), "\\U+00 \\U+ZZZZ");
}

TEST(DxfText, ShowsSignsForItsPercentCodes) {
    EXPECT_EQ(shownText("45%%d %%P1 %%C8 %%uunder%%U"), "45\u00B0 \u00B11 \u00D88 under");
    EXPECT_EQ(shownText("100%%% %%065 50% %%"), "100% A 50% %%");
    EXPECT_EQ(shownText("%%x"), "%%x");
}

TEST(DxfText, ShowsParagraphsWithoutTheirFormatting) {
    EXPECT_EQ(shownParagraph("one\\Ptwo\\~three"), "one\ntwo three");
    EXPECT_EQ(shownParagraph("{\\fArial|b0;plain} \\H2.5x;tall \\C1;red \\Lline\\l"), "plain tall red line");
    EXPECT_EQ(shownParagraph("\\S1/2; \\S+0.1^-0.2; \\S3#4;"), "1/2 +0.1/-0.2 3/4");
    EXPECT_EQ(shownParagraph("\\\\P \\{a\\} 90%%d"), "\\P {a} 90\u00B0");
    EXPECT_EQ(shownParagraph("end \\"), "end ");
    EXPECT_EQ(shownParagraph("\\fArial"), "");
    EXPECT_EQ(shownParagraph("\\S1/2"), "1/2");
}

TEST(DxfText, ComesBackAsItWasEncoded) {
    for (const char* text : {"plain", "Größe \u00D8 8", "\U0001F600", "tab\there\nline", "a^b", "50%", "100%%d", "%%%",
                             "\\U+0041", "C:\\Users", "^I", ""}) {
        const std::string encoded = encodedDxfText(text);
        for (const char c : encoded)
            EXPECT_TRUE(c >= 0x20 && c < 0x7F) << encoded;
        EXPECT_EQ(shownText(decodedDxfText(encoded)), text) << encoded;
    }
}

}  // namespace
}  // namespace holdfast::formats
