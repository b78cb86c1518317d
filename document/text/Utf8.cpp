#include "document/text/Utf8.h"

#include <cstddef>

namespace holdfast::document {
namespace {

unsigned byteAt(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

/// Bytes of the sequence that a byte leads, 0 for one that leads none.
std::size_t sequenceLength(unsigned lead) {
    if (lead < 0x80U)
        return 1;
    if (lead >= 0xC2U && lead <= 0xDFU)
        return 2;
    if (lead >= 0xE0U && lead <= 0xEFU)
        return 3;
    return lead >= 0xF0U && lead <= 0xF4U ? 4 : 0;
}

/// The second byte rules out overlong forms, surrogates and code points above the last.
bool secondFits(unsigned lead, unsigned second) {
    if (lead == 0xE0U)
        return second >= 0xA0U;
    if (lead == 0xEDU)
        return second < 0xA0U;
    if (lead == 0xF0U)
        return second >= 0x90U;
    return lead != 0xF4U || second < 0x90U;
}

bool sequenceFits(std::string_view text, std::size_t at, std::size_t length) {
    if (length == 0 || at + length > text.size())
        return false;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byteAt(text, at + k) & 0xC0U) != 0x80U)
            return false;
    }
    return length == 1 || secondFits(byteAt(text, at), byteAt(text, at + 1));
}

}  // namespace

bool isUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        if (byteAt(text, i) < 0x80U) {
            ++i;
            continue;
        }
        const std::size_t length = sequenceLength(byteAt(text, i));
        if (!sequenceFits(text, i, length))
            return false;
        i += length;
    }
    return true;
}

void appendUtf8(std::string& out, char32_t codePoint) {
    const bool isCharacter = codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
    const char32_t code = isCharacter ? codePoint : char32_t{0xFFFD};
    const auto put = [&out](char32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0U | (code >> 6U));
        put(0x80U | (code & 0x3FU));
    } else if (code < 0x10000) {
        put(0xE0U | (code >> 12U));
        put(0x80U | ((code >> 6U) & 0x3FU));
        put(0x80U | (code & 0x3FU));
    } else {
        put(0xF0U | (code >> 18U));
        put(0x80U | ((code >> 12U) & 0x3FU));
        put(0x80U | ((code >> 6U) & 0x3FU));
        put(0x80U | (code & 0x3FU));
    }
}

}  // namespace holdfast::document
