#include "document/text/NumberText.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace holdfast::document {
namespace {

/// A positive number as its shortest decimal digits d0 d1 d2... and the power of ten of d0.
struct Decimal {
    std::array<char, 24> kept{};  // as many as a double needs, and more
    std::size_t count = 0;
    int exponent = 0;

    std::string_view digits() const { return {kept.data(), count}; }
};

Decimal decimalOf(std::string_view scientific) {
    const std::size_t mark = scientific.find('e');
    Decimal decimal;
    for (const char c : scientific.substr(0, mark)) {
        if (c != '.')
            decimal.kept[decimal.count++] = c;
    }
    const std::string_view exponent = scientific.substr(mark + (scientific[mark + 1] == '+' ? 2 : 1));
    std::from_chars(exponent.data(), exponent.data() + exponent.size(), decimal.exponent);
    return decimal;
}

void appendFixed(std::string& out, const Decimal& decimal) {
    if (decimal.exponent < 0) {
        out.append("0.").append(static_cast<std::size_t>(-decimal.exponent - 1), '0').append(decimal.digits());
        return;
    }
    const std::size_t whole = static_cast<std::size_t>(decimal.exponent) + 1;
    if (decimal.count <= whole) {
        out.append(decimal.digits()).append(whole - decimal.count, '0').append(".0");
        return;
    }
    out.append(decimal.digits().substr(0, whole)).append(".").append(decimal.digits().substr(whole));
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
