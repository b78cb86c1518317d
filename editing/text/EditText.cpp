#include "editing/text/EditText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "document/Names.h"
#include "document/text/Suggest.h"

namespace holdfast::editing {

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// A finite number that takes up the whole text.
bool readNumber(std::string_view text, double& value) {
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
}

}  // namespace

EditText::EditText(std::string_view text) : m_text(text) {
    std::size_t at = 0;
    while (at < m_text.size()) {
        if (isSpace(m_text[at])) {
            ++at;
            continue;
        }
        std::size_t end = at;
        while (end < m_text.size() && !isSpace(m_text[end]))
            ++end;
        m_words.push_back({m_text.substr(at, end - at), at + 1});
        at = end;
    }
}

std::string_view EditText::peek() const {
    return atEnd() ? std::string_view() : std::string_view(m_words[m_next].text);
}

bool EditText::accept(std::string_view word) {
    if (!nextIs(word))
        return false;
    ++m_next;
    return true;
}

void EditText::expect(std::string_view word) {
    if (!accept(word))
        failAt(m_next, "expected \"" + std::string(word) + "\"");
}

std::string EditText::take(std::string_view what) {
    if (atEnd())
        failAt(m_next, "expected " + std::string(what));
    return m_words[m_next++].text;
}

std::string EditText::word(std::string_view what) {
    return take(what);
}

std::string EditText::oneOfWords(std::span<const std::string_view> choices, std::string_view what) {
    const std::string found = take(what);
    if (std::find(choices.begin(), choices.end(), found) == choices.end())
        fail("expected " + std::string(what) + " (" + oneOf(choices) + ")", suggestion(found, choices));
    return found;
}

double EditText::number(std::string_view what) {
    double value = 0.0;
    if (!readNumber(take(what), value))
        fail("expected " + std::string(what) + ", a number such as 2.5");
    return value;
}

int EditText::integer(std::string_view what) {
    const double value = number(what);
    if (value != std::floor(value) || std::abs(value) > 1e9)
        fail("expected " + std::string(what) + ", a whole number");
    return static_cast<int>(value);
}

Vec2 EditText::point(std::string_view what) {
    const std::string found = take(what);
    const std::size_t comma = found.find(',');
    Vec2 point;
    if (comma == std::string::npos || !readNumber(std::string_view(found).substr(0, comma), point.x) ||
        !readNumber(std::string_view(found).substr(comma + 1), point.y))
        fail("expected " + std::string(what) + ", a point such as 4,0.5 without spaces");
    return point;
}

Place EditText::place(std::string_view what) {
    const std::string found = take(what);
    const std::size_t dot = found.find('.');
    const std::string_view kind = dot == std::string::npos ? "whole" : std::string_view(found).substr(dot + 1);
    std::optional<Place> place = parsePlace(kind);
    constexpr std::string_view kinds[] = {"whole", "start", "end", "mid", "centre", "control:0", "segment:0"};
    if (!place)
        fail("expected " + std::string(what) + ", a place such as g1.end, s2.control:3 or p4.segment:1",
             suggestion(kind, kinds));
    place->entity = found.substr(0, dot);
    return *place;
}

std::vector<std::string> EditText::names(std::string_view what, std::span<const std::string_view> ends) {
    std::vector<std::string> found;
    while (!atEnd() && std::find(ends.begin(), ends.end(), peek()) == ends.end())
        found.push_back(take(what));
    if (found.empty())
        failAt(m_next, "expected " + std::string(what));
    return found;
}

void EditText::expectEnd() {
    if (!atEnd())
        failAt(m_next, "nothing more was expected");
}

void EditText::fail(const std::string& message, const std::string& hint, std::size_t back) const {
    failAt(m_next < back ? 0 : m_next - back, message, hint);
}

void EditText::failAt(std::size_t index, const std::string& message, const std::string& hint) const {
    if (index >= m_words.size())
        throw EditError("edit \"" + m_text + "\": " + message + ", but the edit ends there");
    throw EditError("edit \"" + m_text + "\", column " + std::to_string(m_words[index].column) + ": " + message +
                    ", found \"" + m_words[index].text + "\"" + hint);
}

}  // namespace holdfast::editing
