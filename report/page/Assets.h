#pragma once

#include <string_view>

#include "report/Uses.h"

namespace holdfast::report {

/// The text files beside this one, built into the program so that a report needs none of them.
extern const std::string_view kPictureStyle;  ///< assets/picture.css
extern const std::string_view kReportStyle;   ///< assets/report.css
extern const std::string_view kReportScript;  ///< assets/report.js

}  // namespace holdfast::report
