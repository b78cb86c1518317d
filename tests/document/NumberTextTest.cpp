#include "document/text/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>

namespace holdfast::document {
namespace {

TEST(NumberText, IsTheShortestInTheFormThatDrawingsHave) {
    const struct {
        double value;
        const char* text;
    } rows[] = {
        {0.0, "0.0"},
        {-0.0, "-0.0"},
        {3.0, "3.0"},
        {-120.0, "-120.0"},
        {0.1, "0.1"},
        {100.25, "100.25"},
        {0.0001, "0.0001"},
        {0.00012345, "0.00012345"},
        {0.00001, "1e-05"},
        {5.83095190401e-05, "5.83095190401e-05"},
        {3e-16, "3e-16"},
        {1e15, "1000000000000000.0"},
        {1e16, "1e+16"},
        {123456789012345680.0, "1.2345678901234568e+17"},
        {9007199254740993.0, "9007199254740992.0"},
        {1e100, "1e+100"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
        {3.0000000000000004, "3.0000000000000004"},
        {-521.1999072998763, "-521.1999072998763"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(numberText(row.value), row.text);
}

TEST(NumberText, ReadsBackAsTheSameDouble) {
    std::mt19937_64 random(20240817);  // NOLINT(bugprone-random-generator-seed): the same numbers in every run
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
        if (!std::isfinite(value))
            continue;
        const double again = std::strtod(numberText(value).c_str(), nullptr);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(again), std::bit_cast<std::uint64_t>(value)) << numberText(value);
    }
}

TEST(NumberText, IsAppendedBehindWhatIsThere) {
    std::string text = "x = ";
    appendNumber(text, 2.5);
    EXPECT_EQ(text, "x = 2.5");
}

}  // namespace
}  // namespace holdfast::document
