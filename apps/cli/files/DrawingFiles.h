#pragma once

#include <optional>
#include <string>

#include "apps/cli/Uses.h"
#include "apps/forms/GoingOut.h"
#include "document/Document.h"

namespace holdfast::cli {

/// What stands for standard input or standard output where a file is named.
inline constexpr const char* kStandardStream = "-";
/// What messages call it where it is read.
inline constexpr const char* kStandardInput = "standard input";

/// Where a drawing comes from, and in which form.
struct DrawingSource {
    std::string path;    ///< a file, or "-": standard input
    std::string form{};  ///< "json", "dxf", "svg", "slvs"; empty: by the ending, of standard input by how it begins
};

/// Reads a drawing: .json, or .dxf, .svg and sketches (part.FCStd#Sketch001, part.slvs) with notes of what was not
/// understood on standard error.
Document readAnyDrawing(const DrawingSource& source);

struct DrawingFile {
    Document document;
    std::optional<DxfOriginal> dxf;          ///< none: the drawing goes out as it is
    std::string form;                        ///< ".json", ".dxf", ".svg", ".slvs" or ".fcstd", in which it came in
    std::optional<SketchOriginal> sketch{};  ///< none: the drawing goes out as it is
};

/// Where a drawing goes to, and in which form.
struct DrawingTarget {
    std::string path;  ///< a file; "-": standard output; empty: nowhere
    /// "json", "dxf", "svg", "pdf", "slvs"; empty: by the ending, to standard output as it came in.
    std::string form{};
};

/// The form in which a drawing goes out that came in in another one, with a dot before it.
std::string formOf(const DrawingTarget& target, const std::string& cameAs);

/// Reads a drawing that is to be written to a file, or to none where that has no name. Where both are DXF, or
/// FreeCAD documents, what is not understood is told as kept.
DrawingFile readDrawingFor(const DrawingTarget& target, const DrawingSource& source);

/// What to call a drawing: its own name or, without one, that of its file.
std::string spokenName(const Document& document, const std::string& path);

}  // namespace holdfast::cli
