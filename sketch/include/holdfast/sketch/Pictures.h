#pragma once

#include "holdfast/report/page/HtmlReport.h"
#include "holdfast/report/page/ReportJson.h"
#include "holdfast/report/picture/Svg.h"

namespace holdfast::sketch {

// A drawing as SVG.
using report::EntityTone;
using report::MarkTone;
using report::PictureNotes;
using report::PictureOptions;
using report::writePicture;
using report::writeTrueSizeSvg;

// The fates of a run of edits as one page, and for programs.
using report::writeHtmlReport;
using report::writeReportJson;

}  // namespace holdfast::sketch
