#pragma once

#include <optional>
#include <string>

#include "apps/cli/Uses.h"
#include "document/Document.h"
#include "formats/dxf/DxfLayout.h"

namespace holdfast::cli {

/// Reads a drawing by the ending of its name: .json, or .dxf with notes of what was not understood on standard error.
Document readAnyDrawing(const std::string& path);

/// A DXF file that is to be written again, with the edits of the drawing that was read from it.
struct DxfOriginal {
    std::string text;
    DxfLayout layout;
    Document drawing;  ///< as it was read
};

struct DrawingFile {
    Document document;
    std::optional<DxfOriginal> dxf;  ///< none: the drawing goes out as it is
};

/// Reads a drawing that is to be written to a file, or to none where that has no name. Where both are .dxf files, what
/// is not understood is told as kept.
DrawingFile readDrawingFor(const std::string& output, const std::string& path);

/// What to call a drawing: its own name or, without one, that of its file.
std::string spokenName(const Document& document, const std::string& path);

}  // namespace holdfast::cli
