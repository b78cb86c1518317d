#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

namespace holdfast::document {

// Names of the drawing's files go by their letters, small or capital ones.

inline char capital(char letter) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
}

inline std::string inCapitals(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), capital);
    return result;
}

/// The word is in capitals.
inline bool isCalled(std::string_view text, std::string_view word) {
    return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                      [](char a, char b) { return capital(a) == b; });
}

}  // namespace holdfast::document
