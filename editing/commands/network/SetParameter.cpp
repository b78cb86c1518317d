#include <algorithm>

#include "editing/Commands.h"
#include "editing/commands/network/Formulas.h"
#include "editing/commands/network/NamedConstraints.h"

namespace holdfast::editing {

namespace {

Parameter resolved(const SetParameter& edit, const Drawing& drawing) {
    const std::string& name = edit.parameter.value;
    if (!drawing.hasParameter(name)) {
        if (const std::string fault = faultInFormulaName(name); !fault.empty())
            throw RefusedWord({fault + "; choose another name", {}, edit.parameter.column});
        requireNewName(drawing, edit.parameter);
    }
    Parameter parameter{name, edit.formula.value};
    parameter.value = typedValue(drawing, itemOf(parameter), edit.formula).value;
    return parameter;
}

}  // namespace

void require(const SetParameter& edit, const Drawing& drawing) {
    resolved(edit, drawing);
}

void perform(const SetParameter& edit, EditContext& context) {
    const Parameter parameter = resolved(edit, context.drawing);
    std::vector<Parameter> parameters = context.drawing.parameters();
    const auto known = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const Parameter& each) { return each.name == parameter.name; });
    if (known == parameters.end())
        parameters.push_back(parameter);
    else
        *known = parameter;
    context.drawing.setParameters(std::move(parameters));
    if (!leadTo(context, calculated(context.drawing, {}, edit.formula)))
        throw EditError("the constraints do not let " + parameter.name + " be " + parameter.formula);
}

}  // namespace holdfast::editing
