#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/cli/Commands.h"
#include "apps/cli/Uses.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/telling/Teller.h"
#include "document/Document.h"

namespace holdfast::cli {

/// A sketch in a FreeCAD document, as users name it: part.FCStd#Sketch001.
struct SketchPath {
    std::string file;
    std::string sketch;  ///< by name or label; empty: the only one that there is
};

/// What a name means as one of a sketch; nothing for names of other files.
std::optional<SketchPath> sketchPathOf(const std::string& path);

/// The form of documents, as an ending.
inline constexpr const char* kSketchForm = ".fcstd";
bool isSketch(const DrawingSource& source);

/// Reads a sketch that is to be written to a file, or to none where that has no name: as a copy of its document, or as
/// a drawing of another form. Throws UsageError where something else is to become a document.
DrawingFile readSketchFor(const DrawingTarget& target, const DrawingSource& source);

struct SketchOutput {
    std::string bytes;
    std::vector<std::string> notes;
};
/// The document that the drawing comes from, with the drawing as it is now. Polylines, which sketches do not have, go
/// out as lines and arcs.
SketchOutput documentWith(const Document& drawing, const SketchOriginal& from);

/// Tells the sketches of a document.
int showSketches(const SketchPath& path, const ShowOptions& options, Teller& teller);

}  // namespace holdfast::cli
