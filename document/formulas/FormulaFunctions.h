#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "document/Uses.h"
#include "document/formulas/Quantity.h"

namespace holdfast::document {

/// The values that a function of formulas is called with, and the column of its name for complaints.
struct FunctionCall {
    std::string_view name;
    std::span<const Quantity> values;
    std::size_t column = 0;
};

/// A function that formulas can call.
struct FormulaFunction {
    std::string_view name;
    std::size_t least, most;  ///< how many values it takes
    Quantity (*value)(const FunctionCall& call);

    /// "1 value", "1 to 2 values", "2 values or more".
    std::string takes() const;
};

/// As many values as a call has room for: "or more".
inline constexpr std::size_t kAnyCount = 1000;

/// Null for a word that is none.
const FormulaFunction* functionNamed(std::string_view name);
std::span<const std::string_view> functionNames();

/// Both in the units of the first that is no plain number. FormulaError where they do not go together; `how` says what
/// was to be done with them: "added", "compared".
void bringTogether(Quantity& a, Quantity& b, std::string_view how, std::size_t column);

/// base ^ exponent, which is a plain number, and for a base with units a whole one.
Quantity raised(const Quantity& base, const Quantity& exponent, std::size_t column);

/// The same quantity; FormulaError when it is no finite number.
Quantity finite(const Quantity& quantity, std::size_t column);

}  // namespace holdfast::document
