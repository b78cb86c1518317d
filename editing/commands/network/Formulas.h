#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "document/formulas/Calculation.h"
#include "editing/EditContext.h"
#include "editing/Sourced.h"
#include "editing/Uses.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

/// What formulas are to name in other ways than the drawing has it: by a parameter's name or a dimension's id.
using OtherItems = std::unordered_map<std::string, FormulaItem>;

/// The calculation over a drawing, which stays as it is meanwhile. Cost of a value: the formulas that hang together
/// with it.
Calculation calculationOver(const Drawing& drawing, OtherItems others = {});

/// What all formulas of a drawing come to.
struct Calculated {
    std::vector<DimensionGoal> goals;   ///< the dimensions that are to have another value than they have
    std::vector<Parameter> parameters;  ///< all of them
};

/// EditError for a formula without a value, and for a value that its dimension cannot have; the former about the typed
/// formula points into it. Cost: all formulas.
Calculated calculated(const Drawing& drawing, const OtherItems& others, const Sourced<std::string>& typed = {});

/// The value of a formula that a user has typed for an item; EditError as above.
Quantity typedValue(const Drawing& drawing, const FormulaItem& item, const Sourced<std::string>& typed);

/// EditError that points into the typed formula, or tells whose formula it is about.
[[noreturn]] void refuseFormula(const FormulaError& error, const Sourced<std::string>& typed = {});

/// Leads the dimensions to what they are calculated to be. False when the constraints do not let them.
bool leadTo(EditContext& context, const Calculated& calculated);

/// The same where a dimension is to have its value whatever it has now.
bool leadWith(EditContext& context, const Constraint& dimension, Calculated calculated);

/// "c9 (= width / 2)" of all that name a parameter in their formulas, but for those that are to go, too.
std::string usersOf(const Drawing& drawing, const std::string& parameter, const std::vector<std::string>& going);

/// True for a text that is a number and nothing else.
bool isPlainNumber(const std::string& formula);

/// EditError for a value that makes the curve of a length vanish, or that the kind cannot have.
void refuseImpossible(const Drawing& drawing, const Constraint& dimension);

}  // namespace holdfast::editing
