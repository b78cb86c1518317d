#include "report/page/ParameterFates.h"

#include <algorithm>

#include "document/formulas/Calculation.h"

namespace holdfast::report {

namespace {

const Parameter* find(const Document& document, const std::string& name) {
    const auto found = std::find_if(document.parameters.begin(), document.parameters.end(),
                                    [&](const Parameter& parameter) { return parameter.name == name; });
    return found == document.parameters.end() ? nullptr : &*found;
}

std::vector<std::string> textsOf(const Document& document) {
    std::vector<std::string> texts;
    for (const Quantity& value : parameterValues(document))
        texts.push_back(quantityText(value, document.lengthUnit));
    return texts;
}

}  // namespace

std::string ParameterOutcome::explanation(std::string_view arrow) const {
    return (valueBefore ? textBefore + " " + std::string(arrow) + " " : "") + text +
           (formula == text ? "" : " = " + formula);
}

std::vector<ParameterOutcome> parameterOutcomes(const FateReport& report) {
    const std::vector<std::string> before = textsOf(report.before), after = textsOf(report.after);
    std::vector<ParameterOutcome> outcomes;
    for (std::size_t i = 0; i < after.size(); ++i) {
        const Parameter& now = report.after.parameters[i];
        ParameterOutcome outcome{now.name, "added", now.formula, now.value, after[i], {}, {}};
        if (const Parameter* was = find(report.before, now.name)) {
            outcome.fate = *was == now ? "kept" : "changed";
            if (was->value != now.value) {
                outcome.valueBefore = was->value;
                outcome.textBefore = before[static_cast<std::size_t>(was - report.before.parameters.data())];
            }
        }
        outcomes.push_back(std::move(outcome));
    }
    for (std::size_t i = 0; i < before.size(); ++i)
        if (const Parameter& was = report.before.parameters[i]; find(report.after, was.name) == nullptr)
            outcomes.push_back({was.name, "deleted", was.formula, was.value, before[i], {}, {}});
    return outcomes;
}

}  // namespace holdfast::report
