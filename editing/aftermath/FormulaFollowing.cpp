#include "editing/aftermath/FormulaFollowing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "document/Names.h"
#include "editing/aftermath/Aftermath.h"
#include "editing/commands/network/Formulas.h"

namespace holdfast::editing {

namespace {

/// A measured dimension that a formula names may change with what is calculated from it. Where that comes to rest it
/// does so in one or two rounds.
constexpr int kRounds = 8;

/// A tie may have made a dimension anew under its id: that is not gone.
OtherItems deletedBy(const DrawingChange& change, const Drawing& drawing) {
    OtherItems deleted;
    for (const ConstraintChange& each : change.constraints)
        if (each.before && !each.after && isDimension(each.before->type) && !drawing.hasConstraint(each.before->id)) {
            deleted.emplace(each.before->id, itemOf(*each.before));
            if (!each.before->name.empty())
                deleted.emplace(each.before->name, itemOf(*each.before));
        }
    return deleted;
}

/// The first name in a formula that is one of these; empty: none.
std::string firstNamed(const std::string& formula, const OtherItems& items) {
    const Formula read(formula);
    for (const Formula::NameInIt& name : read.names())
        if (items.contains(name.name))
            return name.name;
    return {};
}

std::string shortest(double number) {
    std::array<char, 32> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), result.ptr};
}

std::string unitText(const char* unit, int power) {
    return power == 0 ? "" : std::string(" ") + unit + (power == 1 ? "" : "^" + std::to_string(power));
}

/// The quantity as a formula that says nothing but itself.
std::string literal(const Quantity& quantity, const std::string& lengthUnit) {
    if (quantity.isNumber() || quantity.length < 0 || quantity.angle < 0 || quantity.length * quantity.angle != 0)
        return shortest(quantity.value);
    return shortest(quantity.value) + unitText(lengthUnit.c_str(), quantity.length) + unitText("rad", quantity.angle);
}

class Following {
public:
    explicit Following(EditContext& context) : m_context(context), m_drawing(context.drawing) {}

    void run() {
        freeFrom(m_drawing.change());
        for (int round = 0; round < kRounds; ++round) {
            const Calculated next = calculated(m_drawing, {});
            if (!leadTo(m_context, next))
                throw EditError("the constraints do not let " + next.goals.front().id +
                                " be what it is calculated from");
            if (next.goals.empty())
                return;
            refreshMeasures(m_drawing, m_drawing.editedPart(m_drawing.change()));
        }
        throw EditError(
            "what measured dimensions say and what is calculated from them do not come to rest; give a "
            "dimension of the formulas a number");
    }

private:
    void freeFrom(const DrawingChange& change) {
        try {
            freeUsersOf(deletedBy(change, m_drawing));
            freeChanged(change);
        } catch (const FormulaError& error) {
            refuseFormula(error);
        }
    }

    void freeUsersOf(const OtherItems& deleted) {
        if (deleted.empty())
            return;
        for (const std::string& id : m_drawing.calculated())
            if (const std::string formula = m_drawing.constraint(id)->formula, gone = firstNamed(formula, deleted);
                !gone.empty())
                release(id, "its formula " + formula + " named " + gone + ", which is gone");
        std::vector<Parameter> parameters = m_drawing.parameters();
        for (Parameter& parameter : parameters)
            if (const std::string gone = firstNamed(parameter.formula, deleted); !gone.empty())
                releaseParameter(parameter, gone, deleted);
        if (parameters != m_drawing.parameters())
            m_drawing.setParameters(std::move(parameters));
    }

    void release(const std::string& id, const std::string& why) {
        const Constraint dimension = *m_drawing.constraint(id);
        m_drawing.setFormula(id, {});
        m_context.reasons.note(
            id, why + "; " + spoken(spokenValue(dimension.type, *dimension.value)) + " stays as a plain number");
    }

    void releaseParameter(Parameter& parameter, const std::string& gone, const OtherItems& deleted) {
        const std::string formula = parameter.formula;
        parameter.formula =
            literal(calculationOver(m_drawing, deleted).value(itemOf(parameter)), m_drawing.lengthUnit());
        m_context.remarks.push_back(parameter.name + " is " + parameter.formula + " from now on: its formula " +
                                    formula + " named " + gone + ", which is gone");
    }

    /// Dimensions that the edit has given another value than their formulas.
    void freeChanged(const DrawingChange& change) {
        Calculation calculation = calculationOver(m_drawing);
        for (const ConstraintChange& each : change.constraints) {
            const bool isSame = each.before && each.after && each.before->formula == each.after->formula;
            if (!isSame || each.after->formula.empty() || each.before->value == each.after->value ||
                m_drawing.constraint(each.after->id)->formula.empty())
                continue;
            if (!agrees(*each.after->value, calculation.value(itemOf(*each.after)).value))
                release(each.after->id, "the edit changes it, so that its formula " + each.after->formula + " goes");
        }
    }

    EditContext& m_context;
    Drawing& m_drawing;
};

}  // namespace

void followFormulas(EditContext& context) {
    if (!context.drawing.parameters().empty() || !context.drawing.calculated().empty())
        Following(context).run();
}

}  // namespace holdfast::editing
