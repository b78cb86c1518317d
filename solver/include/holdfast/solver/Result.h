#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

#include <holdfast/solver/Export.h>

namespace holdfast::solver {

/// Why something was not done: nothing of the sketch has changed.
struct Error {
    std::string what;    ///< "its radius is -2"
    std::string where;   ///< "circle"; "radius of e3"
    std::string remedy;  ///< "give a radius above 0"

    /// All three in one line.
    std::string message() const { return where + ": " + what + (remedy.empty() ? "" : "; " + remedy); }
};

/// Ends the program with the error on the standard error stream: somebody took a value that is not there.
[[noreturn]] HOLDFAST_SOLVER_EXPORT void endWith(const Error& error) noexcept;

/// A value, or the error that came instead. To take the value of an error ends the program, as there is nothing to go
/// on with; ask first where an error can come.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : m_content(std::in_place_index<0>, std::move(value)) {}      // NOLINT(google-explicit-constructor)
    Result(Error error) : m_content(std::in_place_index<1>, std::move(error)) {}  // NOLINT(google-explicit-constructor)

    bool isDone() const { return m_content.index() == 0; }
    explicit operator bool() const { return isDone(); }

    const T& value() const& {
        if (!isDone())
            endWith(error());
        return *std::get_if<0>(&m_content);
    }
    T value() && {
        if (!isDone())
            endWith(error());
        return std::move(*std::get_if<0>(&m_content));
    }

    /// Only when it is not done.
    const Error& error() const {
        assert(!isDone());
        return *std::get_if<1>(&m_content);
    }

private:
    std::variant<T, Error> m_content;
};

/// What a Result holds when there is nothing to tell beyond that it was done.
struct Done {};

}  // namespace holdfast::solver
