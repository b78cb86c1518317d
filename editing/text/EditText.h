#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "editing/EditError.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// The words of one edit, read from left to right. Every reader throws EditSyntaxError with the column and what was
/// expected when the next word is of another kind.
///
/// Blanks part words. A name may stand in double quotes and then holds blanks, dots and what would else be a keyword;
/// in it \" is a quote, \\ a backslash, \n a line's end, \r a return and \t a tabulator.
class EditText {
public:
    explicit EditText(std::string_view text);

    /// What only those know who know the drawing. Without them a word that needs one is one like any other.
    struct Finders {
        /// The entity that is named by a point: from the word as it stands ("@4,0.5"), the point and the column.
        std::function<std::string(const std::string& word, Vec2 point, std::size_t column)> entityAt{};
        /// Whether there is something of just this name, a dot in it and all.
        std::function<bool(const std::string& name)> isName{};
        /// The place that is a vertex of a polyline: "p4.vertex:2".
        std::function<Place(const std::string& polyline, int vertex)> vertex{};
        /// Where a place lies that is named for a point; nothing for what is none.
        std::function<std::optional<Vec2>(const Sourced<Place>& place)> pointAt{};
    };
    void findBy(Finders finders) { m_finders = std::move(finders); }

    const std::string& text() const { return m_text; }
    bool atEnd() const { return m_next == m_words.size(); }
    /// The next word, or an empty one at the end.
    std::string_view peek() const;
    /// Whether this keyword is next; a name in quotes is none.
    bool nextIs(std::string_view word) const;
    /// Takes the next word if it is this one.
    bool accept(std::string_view word);

    void expect(std::string_view word);
    /// One of a few words; a misspelt one is answered with the nearest.
    std::string oneOfWords(std::span<const std::string_view> choices, std::string_view what);
    double number(std::string_view what);
    int integer(std::string_view what);
    /// "x,y", or the place where it is: "g1.end"
    Vec2 point(std::string_view what);
    /// "x,y" that leads from a point to another.
    Vec2 vector(std::string_view what);
    /// True when the next word is spelt like a point, or like a place that may be one.
    bool nextIsPoint() const;
    /// The name of an entity.
    Name name(std::string_view what);
    /// One entity name or more, up to a word of `ends` or the end of the edit.
    std::vector<Name> names(std::string_view what, std::span<const std::string_view> ends);
    /// The name of anything else: a constraint, or something new.
    Name otherName(std::string_view what);
    /// True when the next word is a number; one in quotes is a name.
    bool nextIsNumber() const;
    /// True when the next word is no name, but begins as numbers do, or is missing.
    bool nextIsNoName() const;
    /// True when the next word is spelt like a place with something behind its entity: "g1.end".
    bool nextIsPlace() const;
    /// "g1.end", "s2.control:3", "p4.segment:1", or "g1" for the whole entity
    Sourced<Place> place(std::string_view what);
    /// True when "=" stands at the beginning of the next word.
    bool nextIsFormula() const;
    /// A name without quotes ends before "=": "width=80" becomes two words.
    void partAtEquals();
    /// A name ends before a dot and one of these words: "g3.end" becomes two words, "p4.corner:1" three. Not where such
    /// a word stands by itself behind it, nor where something is called so.
    void partAtDot(std::span<const std::string_view> words);
    /// "= width / 2", to the end of the edit, without the sign and without blanks around it.
    Sourced<std::string> formula();
    /// True when this keyword is the next word or comes later.
    bool hasAhead(std::string_view word) const;
    /// Throws when words are left over.
    void expectEnd();

    /// The column of the word that was read last, counted from 1.
    std::size_t column() const { return m_next == 0 ? 0 : m_words[m_next - 1].column; }
    /// That of the next word; 0 at the end.
    std::size_t nextColumn() const { return atEnd() ? 0 : m_words[m_next].column; }
    /// Throws an EditSyntaxError that points at the word that was read last. The hint comes behind the word: "; did you
    /// mean ...".
    [[noreturn]] void fail(const std::string& message, const std::string& hint = {}) const;

private:
    friend std::string sentenceOf(const Refusal& refusal, std::string_view edit);

    struct Word {
        std::string text;        ///< without quotes
        std::size_t column;      ///< counted from 1
        std::size_t end;         ///< behind its last sign in the edit
        std::size_t quoted = 0;  ///< so many signs of the text stood in quotes
        bool hasQuotes = false;
        bool isOpen = false;  ///< its quotes have no end
    };
    Word wordAt(std::size_t at) const;
    std::string found(const Word& word, const std::string& name) const;
    std::size_t dotIn(const Word& word) const;
    std::optional<Vec2> pointOf(const Word& word);
    const Word& take(std::string_view what);
    std::string sentenceAt(std::size_t index, const std::string& message, const std::string& hint) const;
    [[noreturn]] void failAt(std::size_t index, const std::string& message, const std::string& hint = {}) const;

    std::string m_text;
    std::vector<Word> m_words;
    std::size_t m_next = 0;
    std::vector<NamedEntity> m_named;
    Finders m_finders;
};

/// How messages show what a place looks like.
inline constexpr std::string_view kPlaceExamples = ", a place such as g1.end, s2.control:3 or p4.segment:1";

/// "; did you mean "end"?" for a misspelt kind of place, else nothing.
std::string placeSuggestion(std::string_view kind);

}  // namespace holdfast::editing
