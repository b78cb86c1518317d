#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "document/Uses.h"
#include "document/formulas/Quantity.h"

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

/// A formula over numbers with units, and values with names: "width / 2 + 3 mm", "max(c9, 2 * sin(30))".
///
/// + - * / ^ with brackets; numbers with a unit behind them, as also brackets may have one; pi; sqrt, abs, min, max,
/// round, floor, ceil (the last three also to a step: round(c9, 0.5 mm)), mod, hypot; sin, cos, tan of angles, where
/// plain numbers are degrees; asin, acos, atan, atan2, which give angles. A name that is no word (a dimension
/// called "wall thickness", or like a unit) stands in double quotes.
///
/// Sums, min, max and the like want the same units on both sides; a plain number goes with everything: it is a length
/// in the drawing's unit, or degrees.
class Formula {
public:
    /// FormulaError for a text that is none. Cost: linear in the text.
    explicit Formula(std::string_view text);
    ~Formula();
    Formula(Formula&&) noexcept;
    Formula& operator=(Formula&&) noexcept;

    struct NameInIt {
        std::string name;
        std::size_t column = 0;
    };
    /// The values that it asks for by name, in the order in which they stand there.
    const std::vector<NameInIt>& names() const { return m_names; }

    /// Answers a name, or throws a FormulaError with its column.
    using ValueOf = std::function<Quantity(const NameInIt& name)>;
    /// FormulaError where units do not go together and where a result is no finite number.
    Quantity value(std::string_view lengthUnit, const ValueOf& valueOf) const;

    struct Node;

private:
    std::unique_ptr<Node> m_root;
    std::vector<NameInIt> m_names;
};

/// True for what can stand in a formula as it is: letters, digits and underscores, no digit first.
bool isWord(std::string_view name);

/// Why a value that formulas name cannot be called so ("mm is a unit of formulas"); empty when it can.
std::string faultInFormulaName(std::string_view name);

}  // namespace holdfast::document
