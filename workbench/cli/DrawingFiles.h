#pragma once

#include <string>

#include "workbench/drawing/Document.h"

namespace holdfast {

/// Reads a drawing by the ending of its name: .json, or .dxf with notes of what was not understood on standard error.
Document readAnyDrawing(const std::string& path);

/// Writes a drawing whole or not at all, by the ending of its name: .json, .dxf (with notes of what was lost on
/// standard error) or .svg in true size.
void writeAnyDrawing(const Document& document, const std::string& path, double tolerance = 0.01);

}  // namespace holdfast
