#pragma once

#include <string>
#include <vector>

#include "apps/window/Uses.h"
#include "document/Document.h"

namespace holdfast::window {

/// A file that was dropped on the page: what is in it, and what people call it. The name is for reading only, and for
/// the form by its ending: nothing on a disk is looked for under it.
struct DroppedFile {
    std::string name, bytes;
    std::string sketch{};  ///< of a document with several, the one that was chosen
};

/// The drawing in a dropped file, or the sketches of which one is to be chosen.
struct DroppedDrawing {
    struct Sketch {
        std::string name, label;
    };
    Document document{};
    std::vector<std::string> remarks{};  ///< what was not understood
    std::vector<Sketch> sketches{};      ///< not empty: choose one
    std::string sketch{};                ///< of a document, the one that this is
};

/// The ending of a name, in small letters, with its dot; empty: none.
std::string endingOf(std::string_view name);

/// A name without folders and without signs that a terminal or a script would obey.
std::string plainName(std::string_view name);

/// Reads it as a file of that name is read. Throws DrawingError for what is no drawing.
DroppedDrawing readDropped(const DroppedFile& file);

}  // namespace holdfast::window
