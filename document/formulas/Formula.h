#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "document/Uses.h"
#include "document/formulas/FormulaError.h"
#include "document/formulas/Quantity.h"

namespace holdfast::document {

struct FormulaNode;

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

private:
    std::unique_ptr<FormulaNode> m_root;
    std::vector<NameInIt> m_names;
};

/// Why a value that formulas name cannot be called so ("mm is a unit of formulas"); empty when it can.
std::string faultInFormulaName(std::string_view name);

}  // namespace holdfast::document
