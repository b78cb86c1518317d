#pragma once

#include <string>

#include "apps/cli/Uses.h"
#include "document/Document.h"

namespace holdfast::cli {

/// Reads a drawing by the ending of its name: .json, or .dxf with notes of what was not understood on standard error.
Document readAnyDrawing(const std::string& path);

/// What to call a drawing: its own name or, without one, that of its file.
std::string spokenName(const Document& document, const std::string& path);

}  // namespace holdfast::cli
