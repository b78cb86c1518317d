#include "report/picture/Markup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace holdfast::report {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool isForbiddenInXml(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    if (first < 0x20)
        return first != '\t' && first != '\n' && first != '\r';
    return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

std::string_view entityFor(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            return {};
    }
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// Length and smallest code point by the first byte, from RFC 3629, section 3.
struct Lead {
    std::size_t length;
    unsigned long bits, smallest;
};

Lead leadOf(unsigned char byte) {
    if (byte < 0x80)
        return {1, byte, 0};
    if (byte >= 0xC2 && byte < 0xE0)
        return {2, byte & 0x1FU, 0x80};
    if (byte >= 0xE0 && byte < 0xF0)
        return {3, byte & 0x0FU, 0x800};
    if (byte >= 0xF0 && byte < 0xF5)
        return {4, byte & 0x07U, 0x10000};
    return {0, 0, 0};
}

}  // namespace

std::size_t characterLength(std::string_view text) {
    if (text.empty())
        return 0;
    const Lead lead = leadOf(static_cast<unsigned char>(text.front()));
    if (lead.length == 0 || lead.length > text.size())
        return 0;
    unsigned long code = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        if (!isContinuation(text[i]))
            return 0;
        code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < lead.smallest || surrogate || code > 0x10FFFF ? 0 : lead.length;
}

std::string escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t size = characterLength(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(size, 1));
        if (size == 0 || isForbiddenInXml(character))
            out += kReplacement;
        else if (const std::string_view entity = entityFor(character.front()); !entity.empty())
            out += entity;
        else
            out += character;
        text.remove_prefix(character.size());
    }
    return out;
}

std::string decimal(double value, int places) {
    if (!std::isfinite(value))
        return "0";
    std::array<char, 400> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, places);
    std::string text(buffer.data(), result.ptr);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string measure(double value) {
    if (!std::isfinite(value))
        return "?";
    const double size = std::fabs(value);
    if (size == 0.0 || (size >= 1e-3 && size < 1e9))
        return decimal(value, 4);
    std::array<char, 40> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, 2);
    return {buffer.data(), result.ptr};
}

std::string attribute(std::string_view name, std::string_view value) {
    return " " + std::string(name) + "=\"" + escaped(value) + "\"";
}

std::size_t textLength(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return !isContinuation(c); }));
}

std::string idToken(std::string_view id) {
    std::string token;
    for (const char c : id) {
        if (c == ' ' || c == '%' || (c >= '\t' && c <= '\r'))
            token += std::string("%") + "0123456789abcdef"[c >> 4 & 15] + "0123456789abcdef"[c & 15];
        else
            token += c;
    }
    return token;
}

}  // namespace holdfast::report
