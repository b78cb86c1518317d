#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "document/Uses.h"

namespace holdfast::document {

/// A formula that cannot be read or has no value: what is wrong, where in it, and in whose formula.
class FormulaError : public std::runtime_error {
public:
    FormulaError(std::string message, std::size_t column, std::string hint = {});

    /// Without place and hint: "division by zero".
    const std::string& message() const { return m_message; }
    /// "; did you mean "width"?", or empty.
    const std::string& hint() const { return m_hint; }
    /// Of the sign in the formula, counted from 1.
    std::size_t column() const { return m_column; }
    /// Whose formula it is; empty while nobody has said so.
    const std::string& owner() const { return m_owner; }
    const std::string& formula() const { return m_formula; }

    /// The same error, in the formula of this owner; one that has an owner already keeps it.
    FormulaError in(const std::string& owner, const std::string& formula) const;

private:
    std::string m_message, m_hint;
    std::size_t m_column;
    std::string m_owner, m_formula;
};

}  // namespace holdfast::document
