#include "document/text/Suggest.h"

#include <gtest/gtest.h>

namespace holdfast::document {
namespace {

constexpr std::string_view kWords[] = {"parallel", "perpendicular", "point", "arc"};

TEST(Suggest, FindsTheWordThatASlipMeant) {
    EXPECT_EQ(nearestWord("paralell", kWords), "parallel");
    EXPECT_EQ(nearestWord("Parallel", kWords), "parallel");
    EXPECT_EQ(nearestWord("perpendiculr", kWords), "perpendicular");
    EXPECT_EQ(nearestWord("ponit", kWords), "point");
    EXPECT_EQ(nearestWord("ark", kWords), "arc");
}

TEST(Suggest, KeepsSilentWhenNothingIsNear) {
    EXPECT_EQ(nearestWord("bracket", kWords), "");
    EXPECT_EQ(nearestWord("", kWords), "");
    EXPECT_EQ(nearestWord(std::string(500, 'p'), kWords), "");
    EXPECT_EQ(suggestion("bracket", kWords), "");
    EXPECT_EQ(suggestion("ark", kWords), "; did you mean \"arc\"?");
}

TEST(Suggest, ListsAlternativesAsASentenceDoes) {
    EXPECT_EQ(oneOf(kWords), "parallel, perpendicular, point or arc");
    EXPECT_EQ(oneOf(std::span(kWords).first(1)), "parallel");
}

TEST(Suggest, CutsNoCharacterOfALongText) {
    std::string umlauts = "a";
    for (int i = 0; i < 40; ++i)
        umlauts += "\xC3\xBC";
    const std::string quoted = inQuotes(umlauts);
    EXPECT_EQ(quoted.size(), 1 + 39 + 3 + 12 + 1U);
    EXPECT_EQ(quoted.substr(38, 7), "\xC3\xBC...\xC3\xBC");
}

TEST(Suggest, ShortensLongTextsInTheMiddle) {
    EXPECT_EQ(inQuotes("short"), "\"short\"");
    EXPECT_EQ(inQuotes(std::string(50, 'a') + std::string(50, 'b')),
              '"' + std::string(40, 'a') + "..." + std::string(12, 'b') + '"');
}

}  // namespace
}  // namespace holdfast::document
