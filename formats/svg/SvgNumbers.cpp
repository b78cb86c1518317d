#include "formats/svg/SvgNumbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "document/text/Suggest.h"
#include "formats/svg/SvgFault.h"

namespace holdfast::formats {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// A letter's height is what readers begin with where nothing else is said.
constexpr double kInch = 25.4, kPixel = kInch / 96.0, kLetter = 16.0 * kPixel;

constexpr std::array<std::pair<std::string_view, double>, 10> kSvgUnits = {{{"px", kPixel},
                                                                            {"mm", 1.0},
                                                                            {"cm", 10.0},
                                                                            {"in", kInch},
                                                                            {"pt", kInch / 72.0},
                                                                            {"pc", kInch / 6.0},
                                                                            {"q", 0.25},
                                                                            {"Q", 0.25},
                                                                            {"em", kLetter},
                                                                            {"ex", kLetter / 2}}};

}  // namespace

void SvgNumbers::blanks() {
    while (m_at < m_text.size() && isBlank(m_text[m_at]))
        ++m_at;
}

bool SvgNumbers::atEnd() {
    blanks();
    return m_at == m_text.size();
}

char SvgNumbers::peek() {
    return atEnd() ? '\0' : m_text[m_at];
}

char SvgNumbers::take() {
    const char c = peek();
    if (c != '\0')
        ++m_at;
    return c;
}

void SvgNumbers::comma() {
    if (peek() == ',')
        ++m_at;
}

bool SvgNumbers::atNumber() {
    blanks();
    std::size_t at = m_at;
    if (at < m_text.size() && m_text[at] == ',')
        for (++at; at < m_text.size() && isBlank(m_text[at]);)
            ++at;
    if (at < m_text.size() && (m_text[at] == '+' || m_text[at] == '-'))
        ++at;
    if (at < m_text.size() && m_text[at] == '.')
        ++at;
    return at < m_text.size() && isDigit(m_text[at]);
}

double SvgNumbers::number() {
    if (!atNumber())
        fail("a number");
    comma();
    blanks();
    if (m_text[m_at] == '+')
        ++m_at;
    const char* begin = m_text.data() + m_at;
    double value = 0.0;
    const auto [end, error] = std::from_chars(begin, m_text.data() + m_text.size(), value);
    const std::string_view digits(begin, static_cast<std::size_t>(end - begin));
    // What is too small for a number is nothing.
    if (error == std::errc::result_out_of_range)
        value =
            digits.find("e-") != std::string_view::npos || digits.find("E-") != std::string_view::npos ? 0.0 : HUGE_VAL;
    if (!(std::abs(value) <= kSvgMost))
        throw SvgFault{"the number " + inQuotes(digits), "a number of at most a thousand millions"};
    m_at += digits.size();
    return value;
}

bool SvgNumbers::flag() {
    comma();
    const char c = peek();
    if (c != '0' && c != '1')
        fail("a flag of an arc, 0 or 1");
    ++m_at;
    return c == '1';
}

std::string_view SvgNumbers::rest() {
    blanks();
    return m_text.substr(m_at);
}

std::string_view SvgNumbers::word() {
    const std::size_t begin = m_at;
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '%'; };
    while (m_at < m_text.size() && isLetter(m_text[m_at]))
        ++m_at;
    return m_text.substr(begin, m_at - begin);
}

void SvgNumbers::fail(const char* expected) {
    constexpr std::size_t shown = 20;
    if (atEnd())
        throw SvgFault{"the end of the numbers", expected};
    throw SvgFault{inQuotes(m_text.substr(m_at, shown)) + " as letter " + std::to_string(m_at + 1), expected};
}

std::optional<double> svgUnit(std::string_view name) {
    for (const auto& [unit, millimetres] : kSvgUnits)
        if (unit == name)
            return millimetres;
    return std::nullopt;
}

std::optional<double> svgLength(std::string_view text, double whole) {
    SvgNumbers numbers(text);
    if (numbers.atEnd() || text == "auto")
        return std::nullopt;
    const double value = numbers.number();
    const std::string_view unit = numbers.word();
    if (!numbers.atEnd())
        numbers.fail("a length, such as 12.5mm");
    if (unit.empty())
        return value;
    if (unit == "%")
        return value / 100.0 * whole;
    if (const std::optional<double> millimetres = svgUnit(unit))
        return value * *millimetres / kPixel;
    throw SvgFault{"the unit " + inQuotes(unit), "px, mm, cm, in, pt, pc, em, % or none"};
}

}  // namespace holdfast::formats
