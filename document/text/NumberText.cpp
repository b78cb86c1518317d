#include "document/text/NumberText.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace holdfast::document {
namespace {

/// A positive number as its shortest decimal digits d0 d1 d2... and the power of ten of d0.
struct Decimal {
    std::string digits;
    int exponent = 0;
};

Decimal decimalOf(std::string_view scientific) {
    const std::size_t mark = scientific.find('e');
    Decimal decimal;
    for (const char c : scientific.substr(0, mark)) {
        if (c != '.')
            decimal.digits += c;
    }
    decimal.exponent = std::atoi(std::string(scientific.substr(mark + 1)).c_str());
    return decimal;
}

void appendFixed(std::string& out, const Decimal& decimal) {
    if (decimal.exponent < 0) {
        out.append("0.").append(static_cast<std::size_t>(-decimal.exponent - 1), '0').append(decimal.digits);
        return;
    }
    const std::size_t whole = static_cast<std::size_t>(decimal.exponent) + 1;
    if (decimal.digits.size() <= whole) {
        out.append(decimal.digits).append(whole - decimal.digits.size(), '0').append(".0");
        return;
    }
    out.append(decimal.digits, 0, whole).append(".").append(decimal.digits, whole);
}

}  // namespace

void appendNumber(std::string& out, double value) {
    std::array<char, 40> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    std::string_view text(buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data()));
    if (text.front() == '-') {
        out += '-';
        text.remove_prefix(1);
    }
    const Decimal decimal = decimalOf(text);
    if (decimal.exponent >= -4 && decimal.exponent < 16) {
        appendFixed(out, decimal);
        return;
    }
    out.append(text);
}

std::string numberText(double value) {
    std::string text;
    appendNumber(text, value);
    return text;
}

}  // namespace holdfast::document
