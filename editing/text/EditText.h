#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// An edit that cannot be read or cannot be done: one sentence that says what is wrong, where, and how to mend it.
/// Whoever throws it has changed nothing, or whoever catches it puts the drawing back.
class EditError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The words of one edit, read from left to right. Every reader throws EditError with the column and what was
/// expected when the next word is of another kind.
class EditText {
public:
    explicit EditText(std::string_view text);

    const std::string& text() const { return m_text; }
    bool atEnd() const { return m_next == m_words.size(); }
    /// The next word, or an empty one at the end.
    std::string_view peek() const;
    bool nextIs(std::string_view word) const { return !atEnd() && peek() == word; }
    /// Takes the next word if it is this one.
    bool accept(std::string_view word);

    void expect(std::string_view word);
    std::string word(std::string_view what);
    /// One of a few words; a misspelt one is answered with the nearest.
    std::string oneOfWords(std::span<const std::string_view> choices, std::string_view what);
    double number(std::string_view what);
    int integer(std::string_view what);
    /// "x,y"
    Vec2 point(std::string_view what);
    /// "g1.end", "s2.control:3", "p4.segment:1", or "g1" for the whole entity
    Place place(std::string_view what);
    /// One entity name or more, up to a word of `ends` or the end of the edit.
    std::vector<std::string> names(std::string_view what, std::span<const std::string_view> ends);
    /// Throws when words are left over.
    void expectEnd();

    /// Throws an EditError that points at a word before the reading place, by default the last one. The hint comes
    /// behind the word: "; did you mean ...".
    [[noreturn]] void fail(const std::string& message, const std::string& hint = {}, std::size_t back = 1) const;

private:
    struct Word {
        std::string text;
        std::size_t column;  ///< counted from 1
    };
    std::string take(std::string_view what);
    [[noreturn]] void failAt(std::size_t index, const std::string& message, const std::string& hint = {}) const;

    std::string m_text;
    std::vector<Word> m_words;
    std::size_t m_next = 0;
};

}  // namespace holdfast::editing
