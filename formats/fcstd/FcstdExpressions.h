#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

/// What the constraints of a sketch are called in expressions.
struct FcstdNames {
    std::string sketch, label;
    std::vector<std::string> constraints;  ///< by number; empty: has no name

    /// The number of the constraint that a path of an expression belongs to ("Constraints.Width", ".Constraints[3]").
    std::optional<std::size_t> constraintAt(std::string_view path) const;
    /// ".Width" or, without a name that can stand so, "[3]".
    std::string tail(std::size_t constraint) const;
};

/// An expression over constraints of its own sketch as a formula: numbers with units, + - * / ^, brackets, and the
/// functions that mean the same. Nothing for what no formula says: other objects, conditions, other functions.
std::optional<std::string> formulaOf(std::string_view expression, const FcstdNames& names,
                                     const std::function<std::optional<std::string>(std::size_t constraint)>& nameOf);

/// A formula as an expression. Where a plain number is added to a quantity, expressions want its unit: the dimension's.
/// Nothing for formulas over names that no constraint has.
std::optional<std::string> expressionOf(std::string_view formula,
                                        const std::function<std::optional<std::string>(const std::string& name)>& refOf,
                                        std::string_view unit);

/// An expression whose constraints have other numbers or names now; nothing where one of them is gone.
std::optional<std::string> renamed(std::string_view expression, const FcstdNames& names,
                                   const std::function<std::optional<std::string>(std::size_t constraint)>& tailOf);

}  // namespace holdfast::formats
