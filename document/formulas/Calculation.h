#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"
#include "document/formulas/Formula.h"

namespace holdfast::document {

/// What a name in a formula stands for: a parameter or a dimension.
struct FormulaItem {
    /// What the result has to be, of a formula.
    enum class Result { any, length, angle };

    std::string name;     ///< no other item has it
    std::string formula;  ///< empty: the value stands by itself
    Quantity value{};     ///< what it is, or was when it was calculated last
    Result result = Result::any;
};

FormulaItem itemOf(const Parameter& parameter);
/// The constraint has to be a dimension with a value.
FormulaItem itemOf(const Constraint& dimension);

/// The values of formulas that name each other, each calculated once.
class Calculation {
public:
    /// The item that a name stands for, or nothing.
    using Lookup = std::function<std::optional<FormulaItem>(const std::string& name)>;
    /// All names, for suggestions.
    using Names = std::function<std::vector<std::string>()>;

    Calculation(std::string lengthUnit, Lookup lookup, Names names)
        : m_lengthUnit(std::move(lengthUnit)), m_lookup(std::move(lookup)), m_names(std::move(names)) {}

    /// FormulaError, with its owner, for an unknown name, for one that hangs on itself, for wrong units and what has no
    /// value. Cost: the formulas that hang together with it.
    Quantity value(const FormulaItem& item);

private:
    Quantity calculated(const FormulaItem& item);
    Quantity named(const Formula::NameInIt& name);
    [[noreturn]] void refuseCircle(const FormulaItem& item, const Formula::NameInIt& name) const;

    std::string m_lengthUnit;
    Lookup m_lookup;
    Names m_names;
    std::unordered_map<std::string, Quantity> m_known;
    std::vector<std::string> m_open;  // that are being calculated, each for the one before
};

/// A calculation over the parameters and dimensions of a document, which stays as it is meanwhile.
Calculation calculationOver(const Document& document);

/// What the parameters of a document come to, with their units; of one without a value the number that it has.
std::vector<Quantity> parameterValues(const Document& document);

/// Gives parameters and dimensions of a document what their formulas come to. True when a dimension has another value
/// than before. Throws FormulaError, and changes nothing, where a formula has no value.
bool recalculate(Document& document);

/// True when a value is what its formula comes to, but for rounding.
bool agrees(double value, double calculated);

}  // namespace holdfast::document
