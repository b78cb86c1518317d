#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

/// What a run of edits did to a parameter.
struct ParameterOutcome {
    std::string name;
    std::string fate;                   ///< "deleted", "changed", "added", "kept", as of constraints
    std::string formula;                ///< after the run; of a deleted one before it
    double value = 0.0;                 ///< the same
    std::string text;                   ///< the same with its unit: "43 mm"
    std::optional<double> valueBefore;  ///< of a changed one
    std::string textBefore;

    /// "40 mm -> 43 mm = width / 2 + 3 mm", "80"
    std::string explanation(std::string_view arrow) const;
};

/// Of the parameters before and after, in the order of the drawing, deleted ones last.
std::vector<ParameterOutcome> parameterOutcomes(const FateReport& report);

}  // namespace holdfast::report
