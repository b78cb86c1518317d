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

/// Digits that no number can hold, or so few that they are nothing.
bool isBeyondNumbers(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc::result_out_of_range && end == text.data() + text.size();
}

std::optional<Vec2> pointIn(std::string_view text) {
    const std::size_t comma = text.find(',');
    Vec2 point;
    if (comma == std::string_view::npos || !readNumber(text.substr(0, comma), point.x) ||
        !readNumber(text.substr(comma + 1), point.y))
        return std::nullopt;
    return point;
}

constexpr std::string_view kVertex = "vertex:";

/// A place as it is spelt behind an entity; a vertex is taken for the start of the segment that begins there.
std::optional<Place> placeIn(std::string_view text) {
    if (!text.starts_with(kVertex))
        return parsePlace(text);
    return parsePlace("segment:" + std::string(text.substr(kVertex.size())) + ".start");
}

bool isIndex(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// What stands behind a backslash in quotes.
char unescaped(char c) {
    switch (c) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return c;
    }
}

}  // namespace

EditText::EditText(std::string_view text) : m_text(text) {
    std::size_t at = 0;
    while (at < m_text.size()) {
        if (isSpace(m_text[at])) {
            ++at;
            continue;
        }
        m_words.push_back(wordAt(at));
        at = m_words.back().end;
    }
}

/// The word that begins there. Quotes count at the beginning of a word only.
EditText::Word EditText::wordAt(std::size_t at) const {
    Word word{.text = {}, .column = at + 1, .end = at};
    word.hasQuotes = word.isOpen = m_text[at] == '"';
    std::size_t end = at + (word.hasQuotes ? 1 : 0);
    for (; end < m_text.size() && word.isOpen; ++end) {
        const bool isEscaped = m_text[end] == '\\' && end + 1 < m_text.size();
        if (m_text[end] == '"')
            word.isOpen = false;
        else
            word.text += isEscaped ? unescaped(m_text[++end]) : m_text[end];
    }
    word.quoted = word.text.size();
    for (; end < m_text.size() && !isSpace(m_text[end]); ++end)
        word.text += m_text[end];
    word.end = end;
    return word;
}

std::string_view EditText::peek() const {
    return atEnd() ? std::string_view() : std::string_view(m_words[m_next].text);
}

bool EditText::nextIs(std::string_view word) const {
    return !atEnd() && !m_words[m_next].hasQuotes && m_words[m_next].text == word;
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

const EditText::Word& EditText::take(std::string_view what) {
    if (atEnd())
        failAt(m_next, "expected " + std::string(what));
    return m_words[m_next++];
}

std::string EditText::oneOfWords(std::span<const std::string_view> choices, std::string_view what) {
    std::string found = take(what).text;
    if (std::find(choices.begin(), choices.end(), found) == choices.end())
        fail("expected " + std::string(what) + " (" + oneOf(choices) + ")", suggestion(found, choices));
    return found;
}

double EditText::number(std::string_view what) {
    double value = 0.0;
    const std::string& found = take(what).text;
    if (isBeyondNumbers(found))
        fail("expected " + std::string(what) + ", a number of less than 1e308");
    if (!readNumber(found, value))
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
    const Word word = take(what);
    const std::optional<Vec2> point = word.hasQuotes ? std::nullopt : pointIn(word.text);
    if (point)
        return *point;
    if (const std::optional<Vec2> found = pointOf(word))
        return *found;
    fail("expected " + std::string(what) + ", a point such as 4,0.5 without spaces");
}

Vec2 EditText::vector(std::string_view what) {
    const std::optional<Vec2> vector = pointIn(take(what).text);
    if (!vector)
        fail("expected " + std::string(what) + ", a point such as 4,0.5 without spaces");
    return *vector;
}

bool EditText::nextIsPoint() const {
    return nextIsPlace() || (!atEnd() && !m_words[m_next].hasQuotes && pointIn(m_words[m_next].text));
}

/// Where the place lies that was read last.
std::optional<Vec2> EditText::pointOf(const Word& word) {
    if (!m_finders.pointAt)
        return std::nullopt;
    --m_next;
    if (nextIsPlace())
        return m_finders.pointAt(place("a point"));
    ++m_next;
    return m_finders.pointAt({Place{word.text}, word.column});
}

Name EditText::name(std::string_view what) {
    Name named = otherName(what);
    named.value = found(m_words[m_next - 1], named.value);
    m_named.push_back({named});
    return named;
}

/// The entity that a word names, by a point perhaps.
std::string EditText::found(const Word& word, const std::string& name) const {
    if (!m_finders.entityAt || word.hasQuotes || !name.starts_with('@'))
        return name;
    const std::optional<Vec2> point = pointIn(std::string_view(name).substr(1));
    return point ? m_finders.entityAt(name, *point, word.column) : name;
}

/// Where the place begins behind an entity. The points of "@4,0.5.end" are no such dots, but the last.
std::size_t EditText::dotIn(const Word& word) const {
    std::size_t dot = word.text.find('.', word.quoted);
    if (!m_finders.entityAt || word.hasQuotes || !word.text.starts_with('@'))
        return dot;
    const std::string_view text = word.text;
    while (dot != std::string::npos && !(pointIn(text.substr(1, dot - 1)) && placeIn(text.substr(dot + 1))))
        dot = text.find('.', dot + 1);
    return dot;
}

Name EditText::otherName(std::string_view what) {
    const Word& word = take(what);
    if (word.isOpen)
        fail("the quote before the name has no end; put another behind it");
    if (word.hasQuotes && word.quoted != word.text.size())
        fail("expected " + std::string(what) + ", and a space behind its quotes");
    return {word.text, word.column};
}

bool EditText::nextIsNumber() const {
    double value = 0.0;
    return !atEnd() && !m_words[m_next].hasQuotes && readNumber(m_words[m_next].text, value);
}

bool EditText::nextIsNoName() const {
    constexpr std::string_view beginnings = "+-.,0123456789";
    return atEnd() || (!m_words[m_next].hasQuotes && beginnings.find(m_words[m_next].text.front()) != beginnings.npos);
}

std::vector<Name> EditText::names(std::string_view what, std::span<const std::string_view> ends) {
    std::vector<Name> found;
    const auto isNext = [this](std::string_view end) { return nextIs(end); };
    while (!atEnd() && std::none_of(ends.begin(), ends.end(), isNext)) {
        found.push_back(name(what));
        m_named.back().ends.assign(ends.begin(), ends.end());
    }
    if (found.empty())
        failAt(m_next, "expected " + std::string(what));
    return found;
}

bool EditText::nextIsPlace() const {
    if (atEnd())
        return false;
    const Word& word = m_words[m_next];
    const std::size_t dot = dotIn(word);
    const bool isApart = !word.hasQuotes || dot == word.quoted;
    return dot != std::string::npos && isApart && placeIn(std::string_view(word.text).substr(dot + 1)).has_value();
}

Sourced<Place> EditText::place(std::string_view what) {
    const Word& word = take(what);
    const std::size_t dot = dotIn(word);
    const std::string_view kind = dot == std::string::npos ? "whole" : std::string_view(word.text).substr(dot + 1);
    std::optional<Place> place = placeIn(kind);
    if (!place)
        fail("expected " + std::string(what) + std::string(kPlaceExamples), placeSuggestion(kind));
    place->entity = found(word, word.text.substr(0, dot));
    m_named.push_back({{place->entity, word.column}});
    if (m_finders.vertex && kind.starts_with(kVertex))
        place = m_finders.vertex(place->entity, place->index);
    return {*place, word.column};
}

bool EditText::nextIsFormula() const {
    return !atEnd() && !m_words[m_next].hasQuotes && m_words[m_next].text.front() == '=';
}

void EditText::partAtEquals() {
    if (atEnd() || m_words[m_next].hasQuotes)
        return;
    const std::size_t sign = m_words[m_next].text.find('=');
    if (sign == 0 || sign == std::string::npos)
        return;
    const auto behind = m_words.begin() + static_cast<std::ptrdiff_t>(m_next) + 1;
    m_words.insert(behind, wordAt(m_words[m_next].column - 1 + sign));
    m_words[m_next].text.resize(sign);
    m_words[m_next].end = m_words[m_next].column - 1 + sign;
}

void EditText::partAtDot(std::span<const std::string_view> words) {
    const auto isOne = [&](std::string_view word) {
        return std::find(words.begin(), words.end(), word) != words.end();
    };
    if (atEnd() || (m_next + 1 < m_words.size() && isOne(m_words[m_next + 1].text)))
        return;
    const Word word = m_words[m_next];
    if (m_finders.isName && m_finders.isName(word.text))
        return;
    const std::size_t dot = word.text.rfind('.');
    if (dot == std::string::npos || dot < word.quoted || (word.hasQuotes && dot != word.quoted))
        return;
    const std::string_view tail = std::string_view(word.text).substr(dot + 1);
    const std::size_t colon = tail.find(':');
    const std::string_view kind = tail.substr(0, colon);
    if (!isOne(kind) || (colon != std::string_view::npos && !isIndex(tail.substr(colon + 1))))
        return;
    // Behind quotes signs of the word are signs of the edit.
    const std::size_t begin = word.end - tail.size();
    const auto part = [&](std::size_t from, std::size_t to) {
        return Word{.text = std::string(tail.substr(from, to - from)), .column = begin + from + 1, .end = begin + to};
    };
    m_words[m_next].text.resize(dot);
    m_words[m_next].end = begin - 1;
    auto behind = m_words.begin() + static_cast<std::ptrdiff_t>(m_next) + 1;
    behind = m_words.insert(behind, part(0, kind.size()));
    if (colon != std::string_view::npos)
        m_words.insert(behind + 1, part(colon + 1, tail.size()));
}

Sourced<std::string> EditText::formula() {
    if (!nextIsFormula())
        failAt(m_next, "expected \"=\" and a formula, such as = width / 2 + 3 mm");
    std::size_t begin = m_words[m_next].column, end = m_text.size();
    while (begin < end && isSpace(m_text[begin]))
        ++begin;
    while (end > begin && isSpace(m_text[end - 1]))
        --end;
    m_next = m_words.size();
    if (begin == end)
        failAt(m_next, "expected a formula behind \"=\", such as width / 2 + 3 mm");
    return {m_text.substr(begin, end - begin), begin + 1};
}

bool EditText::hasAhead(std::string_view word) const {
    return std::any_of(m_words.begin() + static_cast<std::ptrdiff_t>(m_next), m_words.end(),
                       [word](const Word& ahead) { return !ahead.hasQuotes && ahead.text == word; });
}

void EditText::expectEnd() {
    if (!atEnd())
        failAt(m_next, "nothing more was expected");
}

void EditText::fail(const std::string& message, const std::string& hint) const {
    failAt(m_next == 0 ? 0 : m_next - 1, message, hint);
}

std::string EditText::sentenceAt(std::size_t index, const std::string& message, const std::string& hint) const {
    if (index >= m_words.size())
        return "edit \"" + m_text + "\": " + message + ", but the edit ends there";
    return "edit \"" + m_text + "\", column " + std::to_string(m_words[index].column) + ": " + message + ", found \"" +
           m_words[index].text + "\"" + hint;
}

void EditText::failAt(std::size_t index, const std::string& message, const std::string& hint) const {
    const std::size_t column = index < m_words.size() ? m_words[index].column : m_text.size() + 1;
    throw EditSyntaxError(sentenceAt(index, message, hint), column, m_named);
}

std::string placeSuggestion(std::string_view kind) {
    constexpr std::string_view kinds[] = {"whole",  "start",     "end",       "mid",
                                          "centre", "control:0", "segment:0", "vertex:0"};
    return suggestion(kind, kinds);
}

std::string sentenceOf(const Refusal& refusal, std::string_view edit) {
    const EditText text(edit);
    for (std::size_t i = 0; i < text.m_words.size(); ++i)
        if (text.m_words[i].column == refusal.column)
            return text.sentenceAt(i, refusal.message, refusal.hint);
    // Within a formula or behind it.
    if (refusal.column > 0 && refusal.column <= edit.size() + 1)
        return "edit \"" + text.m_text + "\", column " + std::to_string(refusal.column) + ": " + refusal.message +
               refusal.hint;
    return refusal.message + refusal.hint;
}

}  // namespace holdfast::editing
