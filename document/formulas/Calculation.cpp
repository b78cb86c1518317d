#include "document/formulas/Calculation.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "document/Names.h"
#include "document/text/Suggest.h"

namespace holdfast::document {

namespace {

/// Formulas that name each other in a longer row than this are calculated by nobody; a stack bears more.
constexpr std::size_t kLongestRow = 1000;

/// What rounding leaves between two ways to calculate the same number.
constexpr double kRounding = 1e-9;

Quantity inOwnUnits(const FormulaItem& item, const Quantity& value) {
    if (item.result == FormulaItem::Result::any)
        return value;
    const bool isAngle = item.result == FormulaItem::Result::angle;
    const Quantity wanted = meantAs(value, {1.0, isAngle ? 0 : 1, isAngle ? 1 : 0});
    if (isAngle ? !wanted.isAngle() : !wanted.isLength())
        throw FormulaError(
            "it comes to " + spokenKind(value) + "; " + item.name + " is " + (isAngle ? "an angle" : "a length"), 1);
    return wanted;
}

}  // namespace

FormulaItem itemOf(const Parameter& parameter) {
    return {parameter.name, parameter.formula, {parameter.value}, FormulaItem::Result::any};
}

FormulaItem itemOf(const Constraint& dimension) {
    const bool isAngle = traitsOf(dimension.type).value == ConstraintValue::angle;
    return {dimension.id, dimension.formula,
            isAngle ? Quantity{dimension.value.value_or(0.0), 0, 1} : Quantity{dimension.value.value_or(0.0), 1, 0},
            isAngle ? FormulaItem::Result::angle : FormulaItem::Result::length};
}

Quantity Calculation::value(const FormulaItem& item) {
    if (item.formula.empty())
        return item.value;
    if (const auto known = m_known.find(item.name); known != m_known.end())
        return known->second;
    return m_known.emplace(item.name, calculated(item)).first->second;
}

Quantity Calculation::calculated(const FormulaItem& item) {
    m_open.push_back(item.name);
    const std::shared_ptr<void> closes(nullptr, [this](void*) { m_open.pop_back(); });
    try {
        const Formula formula(item.formula);
        return inOwnUnits(item,
                          formula.value(m_lengthUnit, [this](const Formula::NameInIt& name) { return named(name); }));
    } catch (const FormulaError& error) {
        throw error.in(item.name, item.formula);
    }
}

Quantity Calculation::named(const Formula::NameInIt& name) {
    const std::optional<FormulaItem> item = m_lookup(name.name);
    if (!item) {
        const std::vector<std::string> names = m_names();
        const std::vector<std::string_view> candidates(names.begin(), names.end());
        throw FormulaError("there is no parameter or dimension " + name.name, name.column,
                           suggestion(name.name, candidates));
    }
    if (std::find(m_open.begin(), m_open.end(), item->name) != m_open.end())
        refuseCircle(*item, name);
    if (m_open.size() > kLongestRow)
        throw FormulaError("more than " + std::to_string(kLongestRow) + " formulas hang on each other here",
                           name.column);
    return value(*item);
}

void Calculation::refuseCircle(const FormulaItem& item, const Formula::NameInIt& name) const {
    std::string way;
    for (auto at = std::find(m_open.begin(), m_open.end(), item.name); at != m_open.end(); ++at)
        way += *at + " -> ";
    throw FormulaError(item.name + " would be calculated from itself (" + way + item.name + ")", name.column);
}

Calculation calculationOver(const Document& document) {
    auto items = std::make_shared<std::unordered_map<std::string, FormulaItem>>();
    for (const Parameter& parameter : document.parameters)
        items->emplace(parameter.name, itemOf(parameter));
    const auto takeAs = [&](const std::string& name, const Constraint& constraint) {
        if (!name.empty() && isDimension(constraint.type) && constraint.value)
            items->emplace(name, itemOf(constraint));
    };
    // An id is the surer name.
    for (const Constraint& constraint : document.constraints)
        takeAs(constraint.id, constraint);
    for (const Constraint& constraint : document.constraints)
        takeAs(constraint.name, constraint);
    return Calculation(
        document.lengthUnit,
        [items](const std::string& name) {
            const auto found = items->find(name);
            return found == items->end() ? std::nullopt : std::optional(found->second);
        },
        [items] {
            std::vector<std::string> names;
            for (const auto& [name, item] : *items)
                names.push_back(name);
            std::sort(names.begin(), names.end());
            return names;
        });
}

std::vector<Quantity> parameterValues(const Document& document) {
    Calculation calculation = calculationOver(document);
    std::vector<Quantity> values;
    for (const Parameter& parameter : document.parameters)
        try {
            values.push_back(calculation.value(itemOf(parameter)));
        } catch (const FormulaError&) {
            values.push_back({parameter.value});
        }
    return values;
}

bool recalculate(Document& document) {
    if (document.parameters.empty() &&
        std::all_of(document.constraints.begin(), document.constraints.end(),
                    [](const Constraint& constraint) { return constraint.formula.empty(); }))
        return false;
    Document next = document;
    Calculation calculation = calculationOver(document);
    for (Parameter& parameter : next.parameters)
        parameter.value = calculation.value(itemOf(parameter)).value;
    bool hasChanged = false;
    for (Constraint& constraint : next.constraints)
        if (!constraint.formula.empty()) {
            const double value = calculation.value(itemOf(constraint)).value;
            hasChanged = hasChanged || !agrees(*constraint.value, value);
            constraint.value = value;
        }
    document = std::move(next);
    return hasChanged;
}

bool agrees(double value, double calculated) {
    return std::abs(value - calculated) <= kRounding * std::max({1e-3, std::abs(value), std::abs(calculated)});
}

}  // namespace holdfast::document
