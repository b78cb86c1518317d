#include "formats/dxf/DxfText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <utility>

#include "document/text/Utf8.h"

#if defined(__linux__) && __has_include(<iconv.h>)
#define HOLDFAST_CODE_PAGES  // the system's library has them; elsewhere they are one that may be missing
#include <iconv.h>
#endif

namespace holdfast::formats {
namespace {

// Windows-1252 differs from Latin-1 between 0x80 and 0x9F only; unused places keep their code.
constexpr std::array<char16_t, 32> kWindows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t fromWindows1252(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 && byte < 0xA0 ? char32_t{kWindows1252[byte - 0x80U]} : char32_t{byte};
}

/// The four hexadecimal digits of \U+XXXX at a position, as a UTF-16 unit.
std::optional<char32_t> escapeAt(std::string_view text, std::size_t at) {
    if (at + 7 > text.size() || (text.substr(at, 3) != "\\U+" && text.substr(at, 3) != "\\u+"))
        return std::nullopt;
    unsigned unit = 0;
    const char* begin = text.data() + at + 3;
    const auto [end, error] = std::from_chars(begin, begin + 4, unit, 16);
    if (error != std::errc() || end != begin + 4)
        return std::nullopt;
    return char32_t{unit};
}

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

/// Appends the character of an escape, of two when they are a surrogate pair; returns where the text goes on.
std::size_t appendEscape(std::string& out, std::string_view text, std::size_t at, char32_t unit) {
    const std::optional<char32_t> second = isHighSurrogate(unit) ? escapeAt(text, at + 7) : std::nullopt;
    if (second && isLowSurrogate(*second)) {
        appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10U) + (*second - 0xDC00));
        return at + 14;
    }
    appendUtf8(out, unit);
    return at + 7;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Appends what a code behind %% stands for; returns its length behind the two signs.
std::size_t appendPercentCode(std::string& out, std::string_view code) {
    if (code.size() >= 3 && isDigit(code[0]) && isDigit(code[1]) && isDigit(code[2])) {
        appendUtf8(out, static_cast<char32_t>((code[0] - '0') * 100 + (code[1] - '0') * 10 + (code[2] - '0')));
        return 3;
    }
    switch (code.empty() ? '\0' : code[0]) {
        case 'd':
        case 'D':
            out += "\u00B0";
            return 1;
        case 'p':
        case 'P':
            out += "\u00B1";
            return 1;
        case 'c':
        case 'C':
            out += "\u00D8";
            return 1;
        case '%':
            out += '%';
            return 1;
        case 'u':
        case 'U':
        case 'o':
        case 'O':
        case 'k':
        case 'K':
            return 1;
        default:
            out += "%%";
            return 0;
    }
}

/// The text of a stack, "1/2", "1#2" or "+0.1^-0.2", with a slash between its two.
std::string unstacked(std::string_view stack) {
    std::string text;
    for (std::size_t i = 0; i < stack.size(); ++i) {
        if (stack[i] == '\\' && i + 1 < stack.size())
            text += stack[++i];
        else
            text += stack[i] == '^' || stack[i] == '#' ? '/' : stack[i];
    }
    return text;
}

/// Appends what a paragraph code stands for; text begins behind the backslash. Returns the code's length.
std::size_t appendParagraphCode(std::string& out, std::string_view text) {
    constexpr std::string_view toggles = "LlOoKkNX", withValue = "ACcFfHWQTp";
    if (text.empty())
        return 0;
    const char code = text.front();
    const std::size_t end = std::min(text.find(';'), text.size() - 1);
    if (code == 'P') {
        out += '\n';
    } else if (code == '~') {
        out += ' ';
    } else if (code == 'S') {
        out += unstacked(text.substr(1, end - 1 + (text[end] == ';' ? 0 : 1)));
        return end + 1;
    } else if (withValue.find(code) != std::string_view::npos) {
        return end + 1;
    } else if (toggles.find(code) == std::string_view::npos) {
        out += code;
    }
    return 1;
}

/// The first bytes of a UTF-8 text as a code point, and its length.
std::size_t lengthOfCharacter(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte < 0x80)
        return 1;
    if (byte < 0xE0)
        return 2;
    return byte < 0xF0 ? 3 : 4;
}

char32_t codePointOf(std::string_view character) {
    if (character.size() == 1)
        return static_cast<unsigned char>(character[0]);
    char32_t code = static_cast<unsigned char>(character[0]) & (0x7FU >> character.size());
    for (const char c : character.substr(1))
        code = (code << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
    return code;
}

void appendUnit(std::string& out, char32_t unit) {
    constexpr std::string_view hex = "0123456789ABCDEF";
    out += "\\U+";
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        out += hex[(unit >> shift) & 15U];
}

void appendUtf16(std::string& out, char32_t code) {
    if (code < 0x10000)
        return appendUnit(out, code);
    appendUnit(out, 0xD800 + ((code - 0x10000) >> 10U));
    appendUnit(out, 0xDC00 + ((code - 0x10000) & 0x3FFU));
}

#ifdef HOLDFAST_CODE_PAGES
/// What the system calls a code page: the number at its end tells, but for those of another family.
std::string systemsName(std::string_view codePage) {
    const std::size_t digits = codePage.find_last_not_of("0123456789") + 1;
    const bool isLatin = codePage.starts_with("ISO") || codePage.starts_with("iso");
    if (digits == codePage.size())
        return std::string(codePage);
    return (isLatin ? "ISO-8859-" : "CP") + std::string(codePage.substr(digits));
}

/// Nothing where the system does not know the code page, or the text is none of it.
std::optional<std::string> fromCodePage(std::string_view value, std::string_view codePage) {
    const iconv_t converter = ::iconv_open("UTF-8", systemsName(codePage).c_str());
    if (converter == reinterpret_cast<iconv_t>(-1))  // NOLINT(performance-no-int-to-ptr): what the system answers
        return std::nullopt;
    constexpr std::size_t longest = 4;  // bytes of a character in UTF-8
    std::string from(value), text(longest * value.size(), '\0');
    char *in = from.data(), *out = text.data();
    std::size_t inLeft = from.size(), outLeft = text.size();
    const bool isWhole = ::iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
    ::iconv_close(converter);
    if (!isWhole)
        return std::nullopt;
    text.resize(text.size() - outLeft);
    return text;
}
#else
std::optional<std::string> fromCodePage(std::string_view, std::string_view) {
    return std::nullopt;
}
#endif

}  // namespace

std::string utf8Of(std::string_view value, std::string_view codePage) {
    if (isUtf8(value))
        return std::string(value);
    if (!codePage.empty())
        if (std::optional<std::string> text = fromCodePage(value, codePage))
            return std::move(*text);
    std::string text;
    for (const char c : value)
        appendUtf8(text, fromWindows1252(c));
    return text;
}

std::string decodedDxfText(std::string_view value, std::string_view codePage) {
    const std::string text = utf8Of(value, codePage);
    std::string out;
    std::size_t i = 0;
    while (i < text.size()) {
        if (const std::optional<char32_t> unit = escapeAt(text, i)) {
            i = appendEscape(out, text, i, *unit);
        } else if (text[i] == '^' && i + 1 < text.size()) {
            const char next = text[i + 1];
            const bool isControl = next >= '@' && next <= '_';
            out += isControl ? static_cast<char>(next - '@') : '^';
            i += isControl || next == ' ' ? 2 : 1;
        } else {
            out += text[i++];
        }
    }
    return out;
}

std::string shownText(std::string_view decoded) {
    std::string out;
    std::size_t i = 0;
    while (i < decoded.size()) {
        if (decoded.substr(i, 2) == "%%")
            i += 2 + appendPercentCode(out, decoded.substr(i + 2));
        else
            out += decoded[i++];
    }
    return out;
}

std::string shownParagraph(std::string_view decoded) {
    std::string out;
    std::size_t i = 0;
    while (i < decoded.size()) {
        const char c = decoded[i++];
        if (c == '\\')
            i += appendParagraphCode(out, decoded.substr(i));
        else if (c != '{' && c != '}')
            out += c;
    }
    return shownText(out);
}

std::string encodedDxfText(std::string_view text) {
    std::string out;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = std::min(lengthOfCharacter(text[i]), text.size() - i);
        const std::string_view character = text.substr(i, length);
        const std::string_view rest = text.substr(i + length);
        const char32_t code = codePointOf(character);
        if (code < 0x20)
            out.append("^").append(1, static_cast<char>(code + '@'));
        else if (code >= 0x7F || (code == '\\' && (rest.starts_with("U+") || rest.starts_with("u+"))))
            appendUtf16(out, code);
        else if (code == '^')
            out += "^ ";
        else if (code == '%' && rest.starts_with("%"))
            out += "%%%";
        else
            out += character;
        i += length;
    }
    return out;
}

std::string encodedDxfParagraph(std::string_view text) {
    std::string coded;
    for (const char c : text) {
        if (c == '\n')
            coded += "\\P";
        else if (c == '\\' || c == '{' || c == '}')
            coded.append("\\").append(1, c);
        else
            coded += c;
    }
    return encodedDxfText(coded);
}

}  // namespace holdfast::formats
