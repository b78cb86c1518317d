#include "document/text/Suggest.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <vector>

namespace holdfast::document {
namespace {

bool sameLetter(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

/// Number of slips between two words: optimal string alignment (Damerau 1964 with each pair edited once).
std::size_t slips(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1), previous(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before.swap(previous);
        previous.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = sameLetter(a[i - 1], b[j - 1]) ? 0 : 1;
            row[j] = std::min({previous[j] + 1, row[j - 1] + 1, previous[j - 1] + change});
            if (i > 1 && j > 1 && sameLetter(a[i - 1], b[j - 2]) && sameLetter(a[i - 2], b[j - 1]))
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row[b.size()];
}

template <class Word>
std::string listed(std::span<const Word> words, std::string_view beforeLast) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0)
            text += i + 1 == words.size() ? beforeLast : ", ";
        text += words[i];
    }
    return text;
}

}  // namespace

std::string_view nearestWord(std::string_view word, std::span<const std::string_view> candidates) {
    constexpr std::size_t longestWord = 64;
    if (word.empty() || word.size() > longestWord)
        return {};
    std::string_view nearest;
    std::size_t fewest = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string_view candidate : candidates) {
        if (candidate.size() + fewest <= word.size() || word.size() + fewest <= candidate.size())
            continue;
        const std::size_t count = slips(word, candidate);
        if (count < fewest) {
            fewest = count;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string suggestion(std::string_view word, std::span<const std::string_view> candidates) {
    const std::string_view nearest = nearestWord(word, candidates);
    return nearest.empty() ? std::string() : "; did you mean " + inQuotes(nearest) + "?";
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 60;
    if (text.size() <= longest)
        return '"' + std::string(text) + '"';
    // Characters of several bytes stay whole; a byte 10xxxxxx continues one.
    const auto continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; };
    std::size_t end = 40, begin = text.size() - 12;
    while (end > 36 && continues(end))
        --end;
    while (begin < text.size() - 8 && continues(begin))
        ++begin;
    return '"' + std::string(text.substr(0, end)) + "..." + std::string(text.substr(begin)) + '"';
}

std::string oneOf(std::span<const std::string_view> words) {
    return listed(words, " or ");
}

std::string allOf(std::span<const std::string> words) {
    return listed(words, " and ");
}

}  // namespace holdfast::document
