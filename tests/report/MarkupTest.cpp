#include "report/picture/Markup.h"

#include <gtest/gtest.h>

#include <limits>

namespace holdfast::report {

namespace {

TEST(Escaped, ReplacesWhatMarkupWouldTakeForItsOwn) {
    EXPECT_EQ(escaped("<a href=\"x\">&'</a>"), "&lt;a href=&quot;x&quot;&gt;&amp;&#39;&lt;/a&gt;");
}

TEST(Escaped, KeepsCharactersBeyondAscii) {
    EXPECT_EQ(escaped("Größe \u2300 \U0001F600"), "Größe \u2300 \U0001F600");
}

TEST(Escaped, ReplacesBytesAndCharactersThatXmlForbids) {
    EXPECT_EQ(escaped(std::string("a\0b", 3)), "a\uFFFDb");
    EXPECT_EQ(escaped("a\x1b[31mb"), "a\uFFFD[31mb");
    EXPECT_EQ(escaped("\xC3("), "\uFFFD(");                    // cut short
    EXPECT_EQ(escaped("\xC0\xAF"), "\uFFFD\uFFFD");            // an overlong slash
    EXPECT_EQ(escaped("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");  // a surrogate
    EXPECT_EQ(escaped("\xF0\x9F\x98"), "\uFFFD\uFFFD\uFFFD");
}

TEST(Decimal, HasNoTrailingZerosAndNoNegativeZero) {
    EXPECT_EQ(decimal(1.5, 3), "1.5");
    EXPECT_EQ(decimal(100.0, 2), "100");
    EXPECT_EQ(decimal(-0.0004, 3), "0");
    EXPECT_EQ(decimal(2.0 / 3.0, 3), "0.667");
}

TEST(Decimal, IsReadableForNumbersThatAreNot) {
    EXPECT_EQ(decimal(std::numeric_limits<double>::quiet_NaN(), 2), "0");
    EXPECT_EQ(decimal(std::numeric_limits<double>::infinity(), 2), "0");
    EXPECT_EQ(decimal(1e300, 0).size(), 301u);
}

TEST(Measure, HidesNeitherSmallNorLargeNumbers) {
    EXPECT_EQ(measure(3.14159265), "3.1416");
    EXPECT_EQ(measure(2.1e-13), "2.10e-13");
    EXPECT_EQ(measure(1.5e12), "1.50e+12");
    EXPECT_EQ(measure(0.0), "0");
    EXPECT_EQ(measure(std::numeric_limits<double>::infinity()), "?");
}

TEST(IdToken, HoldsNoSpaceAndStaysUnique) {
    EXPECT_EQ(idToken("g3"), "g3");
    EXPECT_EQ(idToken("my line"), "my%20line");
    EXPECT_EQ(idToken("my%20line"), "my%2520line");
    EXPECT_EQ(idToken("a\nb"), "a%0ab");
}

TEST(TextLength, CountsCharactersAndNotBytes) {
    EXPECT_EQ(textLength("Größe"), 5u);
}

}  // namespace
}  // namespace holdfast::report
