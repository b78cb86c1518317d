#include "editing/commands/network/Formulas.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "document/Names.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

/// Parts of a value by which a dimension may be off its formula without being led again: rounding.
constexpr double kAtRest = 1e-12;

bool isAtRest(double value, double calculated) {
    return std::abs(value - calculated) <= kAtRest * std::max({1.0, std::abs(value), std::abs(calculated)});
}

std::optional<FormulaItem> itemIn(const Drawing& drawing, const std::string& name) {
    for (const Parameter& parameter : drawing.parameters())
        if (parameter.name == name)
            return itemOf(parameter);
    const std::string id = drawing.constraintCalled(name);
    const std::optional<Constraint> constraint = id.empty() ? std::nullopt : drawing.constraint(id);
    if (!constraint || !isDimension(constraint->type) || !constraint->value)
        return std::nullopt;
    return itemOf(*constraint);
}

std::vector<std::string> namesIn(const Drawing& drawing) {
    std::vector<std::string> names;
    for (const Parameter& parameter : drawing.parameters())
        names.push_back(parameter.name);
    for (const std::string& id : drawing.constraintIds())
        if (const std::optional<Constraint> constraint = drawing.constraint(id);
            constraint && isDimension(constraint->type)) {
            names.push_back(id);
            if (!constraint->name.empty())
                names.push_back(constraint->name);
        }
    return names;
}

Constraint withValue(Constraint dimension, double value) {
    dimension.value = value;
    return dimension;
}

}  // namespace

Calculation calculationOver(const Drawing& drawing, OtherItems others) {
    return Calculation(
        drawing.lengthUnit(),
        [&drawing, others = std::move(others)](const std::string& name) -> std::optional<FormulaItem> {
            if (const auto other = others.find(name); other != others.end())
                return other->second;
            std::optional<FormulaItem> item = itemIn(drawing, name);
            if (item)
                if (const auto other = others.find(item->name); other != others.end())
                    return other->second;
            return item;
        },
        [&drawing] { return namesIn(drawing); });
}

void refuseFormula(const FormulaError& error, const Sourced<std::string>& typed) {
    if (typed.column > 0 && error.formula() == typed.value)
        throw RefusedWord({error.message(), error.hint(), typed.column + error.column() - 1});
    const std::string whose = error.owner().empty() ? "" : " of " + error.owner();
    throw EditError("the formula" + whose + ", \"" + error.formula() + "\", column " + std::to_string(error.column()) +
                    ": " + error.message() + error.hint());
}

Quantity typedValue(const Drawing& drawing, const FormulaItem& item, const Sourced<std::string>& typed) {
    try {
        return calculationOver(drawing, {{item.name, item}}).value(item);
    } catch (const FormulaError& error) {
        refuseFormula(error, typed);
    }
}

Calculated calculated(const Drawing& drawing, const OtherItems& others, const Sourced<std::string>& typed) {
    try {
        Calculation calculation = calculationOver(drawing, others);
        const auto valueOf = [&](const FormulaItem& item) {
            const auto other = others.find(item.name);
            return calculation.value(other == others.end() ? item : other->second).value;
        };
        Calculated found{{}, drawing.parameters()};
        for (Parameter& parameter : found.parameters)
            if (const double value = valueOf(itemOf(parameter)); !isAtRest(parameter.value, value))
                parameter.value = value;
        for (const std::string& id : drawing.calculated()) {
            const Constraint dimension = *drawing.constraint(id);
            const double value = valueOf(itemOf(dimension));
            if (isAtRest(*dimension.value, value))
                continue;
            refuseImpossible(drawing, withValue(dimension, value));
            found.goals.push_back({id, value});
        }
        return found;
    } catch (const FormulaError& error) {
        refuseFormula(error, typed);
    }
}

bool leadTo(EditContext& context, const Calculated& calculated) {
    if (calculated.parameters != context.drawing.parameters())
        context.drawing.setParameters(calculated.parameters);
    return calculated.goals.empty() || context.evaluator.group().lead(calculated.goals);
}

bool leadWith(EditContext& context, const Constraint& dimension, Calculated calculated) {
    std::erase_if(calculated.goals, [&](const DimensionGoal& goal) { return goal.id == dimension.id; });
    calculated.goals.insert(calculated.goals.begin(), {dimension.id, *dimension.value});
    return leadTo(context, calculated);
}

std::string usersOf(const Drawing& drawing, const std::string& parameter, const std::vector<std::string>& going) {
    std::string users;
    const auto take = [&](const std::string& user, const std::string& formula) {
        if (std::find(going.begin(), going.end(), user) != going.end())
            return;
        const Formula read(formula);
        if (std::any_of(read.names().begin(), read.names().end(),
                        [&](const Formula::NameInIt& name) { return name.name == parameter; }))
            users += (users.empty() ? "" : ", ") + user + " (= " + formula + ")";
    };
    for (const Parameter& other : drawing.parameters())
        take(other.name, other.formula);
    for (const std::string& id : drawing.calculated())
        take(id, drawing.constraint(id)->formula);
    return users;
}

bool isPlainNumber(const std::string& formula) {
    double value = 0.0;
    const char* const end = formula.data() + formula.size();
    const auto [stop, error] = std::from_chars(formula.data(), end, value);
    return error == std::errc() && stop == end && std::isfinite(value);
}

void refuseImpossible(const Drawing& drawing, const Constraint& dimension) {
    if (const std::optional<Fault> fault = faultOn(drawing, dimension))
        throw EditError(dimension.id + " cannot be " + fault->found + "; give " + fault->expected);
    if (dimension.type == ConstraintType::distance && dimension.refs.size() == 1 && *dimension.value == 0.0)
        throw EditError("with a length of 0 " + dimension.refs.front().entity +
                        " would vanish; give a length above 0, or erase it");
}

}  // namespace holdfast::editing
