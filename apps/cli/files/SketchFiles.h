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

/// A sketch in a document, as users name it: part.FCStd#Sketch001, part.slvs#g002.
struct SketchPath {
    std::string file;
    std::string sketch;  ///< by name or label; empty: the only one that there is
    std::string form;    ///< of the document, as an ending
};

/// What a name means as one of a sketch; nothing for names of other files.
std::optional<SketchPath> sketchPathOf(const std::string& path);

bool isSketch(const DrawingSource& source);

/// Reads a sketch that is to be written to a file, or to none where that has no name: as a copy of its document, or as
/// a drawing of another form. Throws UsageError where something else is to become a document.
DrawingFile readSketchFor(const DrawingTarget& target, const DrawingSource& source);

/// A SolveSpace file's sketch, the only one where none is named, with notes on what was left out on standard error.
Document readSlvsSketch(const std::string& text, const std::string& sketch, const std::string& file);

/// True for a document, of these bytes, of which the sketches are to be told, and not a drawing: one that names none
/// and has several, or of FreeCAD.
bool isListed(const SketchPath& path, const std::string& bytes);
/// Tells the sketches of a document.
int showSketches(const SketchPath& path, const std::string& bytes, const ShowOptions& options, Teller& teller);
/// The sketch of a document that is meant, with notes on what was left out on standard error.
Document readSketch(const SketchPath& path, const std::string& bytes);

}  // namespace holdfast::cli
