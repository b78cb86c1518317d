#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "formats/Uses.h"

namespace holdfast::formats {

/// What no number of a drawing is above: beyond it there is nothing to cut, and sums lose what is to be kept.
inline constexpr double kSvgMost = 1e9;

/// Reads numbers, flags and letters from an attribute, which need nothing between them where it is clear without:
/// "M.5.5-1e1" holds a letter and three numbers. Throws SvgFault.
class SvgNumbers {
public:
    explicit SvgNumbers(std::string_view text) : m_text(text) {}

    /// Blanks are passed over.
    bool atEnd();
    /// The next sign, or 0 at the end, behind blanks.
    char peek();
    /// The next sign, taken.
    char take();
    /// True where a number begins, behind blanks and at most one comma.
    bool atNumber();
    double number();
    /// 0 or 1, also where a digit follows at once.
    bool flag();
    /// What is left, behind blanks.
    std::string_view rest();
    /// Takes a word of letters and %, or nothing.
    std::string_view word();
    /// Takes a comma if there is one.
    void comma();

    [[noreturn]] void fail(const char* expected);

private:
    void blanks();
    void separator();

    std::string_view m_text;
    std::size_t m_at = 0;
};

/// "12.5mm" in pixels, which are what a picture counts in unless it says otherwise; percentages of `whole`. Nothing
/// for an empty text and for "auto".
std::optional<double> svgLength(std::string_view text, double whole);

/// Millimetres of a unit of length by its name; nothing for what is none. Pixels are 96 an inch.
std::optional<double> svgUnit(std::string_view name);

}  // namespace holdfast::formats
