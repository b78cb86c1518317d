#include "document/formulas/FormulaError.h"

#include <utility>

namespace holdfast::document {

namespace {

std::string sentence(const std::string& message, std::size_t column, const std::string& hint) {
    return message + " (column " + std::to_string(column) + ")" + hint;
}

}  // namespace

FormulaError::FormulaError(std::string message, std::size_t column, std::string hint)
    : std::runtime_error(sentence(message, column, hint)),
      m_message(std::move(message)),
      m_hint(std::move(hint)),
      m_column(column) {}

FormulaError FormulaError::in(const std::string& owner, const std::string& formula) const {
    FormulaError error = *this;
    if (error.m_owner.empty()) {
        error.m_owner = owner;
        error.m_formula = formula;
    }
    return error;
}

}  // namespace holdfast::document
