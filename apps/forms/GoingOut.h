#pragma once

#include <string>
#include <vector>

#include "apps/forms/Uses.h"
#include "document/Document.h"
#include "formats/dxf/DxfLayout.h"

namespace holdfast::forms {

// The forms of documents, as endings: those of FreeCAD, into copies of which sketches go back, and those of SolveSpace,
// which are written anew.
inline constexpr const char* kSketchForm = ".fcstd";
inline constexpr const char* kSlvsForm = ".slvs";

/// A DXF file that is to be written again, with the edits of the drawing that was read from it.
struct DxfOriginal {
    std::string text;
    DxfLayout layout;
    Document drawing;  ///< as it was read
};

/// A FreeCAD document that is to be written again, with the edits of one of its sketches.
struct SketchOriginal {
    std::string bytes;
    std::string sketch;  ///< its name
};

/// True for ".svg" and ".pdf", which are for looking at: no drawing comes back from them as it was.
bool isPicture(const std::string& form);

/// What a drawing comes from: its form as an ending, and what of the file goes out again.
struct CameFrom {
    std::string form{};
    const DxfOriginal* dxf = nullptr;
    const SketchOriginal* sketch = nullptr;
};

/// A file of another form, or the same, and in sentences what of the drawing it does not hold as the drawing does.
struct GoneOut {
    std::string bytes;
    std::vector<std::string> notes{};
};

/// A drawing as a file of a form, which is an ending: ".json", ".dxf", ".svg", ".pdf", ".slvs"; ".fcstd" for one that
/// comes from such a document. Curves that the form cannot hold deviate by the tolerance at most.
GoneOut goingOut(const Document& document, const std::string& form, const CameFrom& from, double tolerance);

}  // namespace holdfast::forms
