#pragma once

#include <string>
#include <string_view>

#include "document/Uses.h"

namespace holdfast::document {

/// True for well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isUtf8(std::string_view text);

/// Appends a code point; one that is no character becomes U+FFFD.
void appendUtf8(std::string& out, char32_t codePoint);

}  // namespace holdfast::document
