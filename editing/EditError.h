#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "editing/Sourced.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Why an edit is not done. Its text is whole only with that of the edit, to which the column belongs.
struct Refusal {
    std::string message;     ///< what is wrong and how to mend it, without the place: "the drawing has no entity g9"
    std::string hint{};      ///< goes behind the place: "; did you mean "g8"?"
    std::size_t column = 0;  ///< of the word that is wrong, counted from 1; 0: none, or an edit made in code
    friend bool operator==(const Refusal&, const Refusal&) = default;
};

/// The refusal as one sentence, which points at the word of the edit's text that is wrong when it knows it.
std::string sentenceOf(const Refusal& refusal, std::string_view edit);

/// An edit that cannot be read or cannot be done: one sentence that says what is wrong, where, and how to mend it.
/// Whoever throws it has changed nothing, or whoever catches it puts the drawing back.
class EditError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An edit with a word that the drawing makes wrong; its own sentence knows no place.
class RefusedWord : public EditError {
public:
    explicit RefusedWord(Refusal refusal) : EditError(refusal.message + refusal.hint), m_refusal(std::move(refusal)) {}

    const Refusal& refusal() const { return m_refusal; }

private:
    Refusal m_refusal;
};

/// An entity that an edit names, and the words that could have stood in its place.
struct NamedEntity {
    Name name;
    std::vector<std::string_view> ends{};
};

/// A text that is no edit. Its sentence quotes the text and points at the first word that does not fit.
class EditSyntaxError : public EditError {
public:
    EditSyntaxError(const std::string& sentence, std::size_t column, std::vector<NamedEntity> named)
        : EditError(sentence), m_column(column), m_named(std::move(named)) {}

    /// Counted from 1; one behind the last sign when the text ends too early.
    std::size_t column() const { return m_column; }
    /// The entities that the words before name: one of them may be what is really wrong.
    const std::vector<NamedEntity>& named() const { return m_named; }

private:
    std::size_t m_column;
    std::vector<NamedEntity> m_named;
};

}  // namespace holdfast::editing
