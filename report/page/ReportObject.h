#pragma once

#include <nlohmann/json_fwd.hpp>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report {

/// What writeReportJson writes, for those who put it into an object of their own.
nlohmann::ordered_json reportJson(FateReport report);

}  // namespace holdfast::report
