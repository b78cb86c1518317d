#include "formats/dxf/DxfPatch.h"
#include "formats/dxf/DxfReader.h"
#include "fuzz/Fuzz.h"

// DXF, text and binary: what is read goes out to the byte, and once more after edits as a file that can be read.

namespace {

using holdfast::fuzz::require;
using holdfast::fuzz::requireAccepted;
using namespace holdfast::formats;

void checkDrawing(const std::string& text, const DxfDrawing& drawing) {
    const holdfast::document::Document& document = drawing.document;
    const DxfLayout& layout = drawing.layout;
    requireAccepted("a file that was not edited", [&] {
        require(patchedDxf(text, layout, document, document).text == text, "comes back to the byte");
    });
    const holdfast::document::Document now = holdfast::fuzz::edited(document);
    std::string patched;
    // A drawing may be none that an edit would leave: sizes that are nothing when doubled.
    if (!holdfast::fuzz::accepts([&] { patched = patchedDxf(text, layout, document, now).text; }))
        return;
    requireAccepted("a patched file", [&] {
        const DxfDrawing again = readDxf(patched, "again.dxf");
        require(document.entities.empty() || again.document.entities.size() >= now.entities.size() - 1,
                "has the drawing's entities");
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = holdfast::fuzz::textOf(data, size);
    DxfDrawing drawing;
    if (holdfast::fuzz::accepts([&] { drawing = readDxf(text, "fuzz.dxf"); }))
        checkDrawing(text, drawing);
    return 0;
}
