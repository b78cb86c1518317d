#include "formats/fcstd/FcstdPatch.h"
#include "formats/fcstd/FcstdReader.h"
#include "fuzz/Fuzz.h"
#include "tests/fcstd/Documents.h"

// FreeCAD documents. What begins as an archive does is one; all else is the text in one, which no packing hides.

namespace {

using holdfast::fuzz::require;
using holdfast::fuzz::requireAccepted;
using namespace holdfast::formats;

void checkSketch(const std::string& archive, const std::string& name) {
    FcstdDrawing drawing;
    if (!holdfast::fuzz::accepts([&] { drawing = readFcstd(archive, name, "fuzz.FCStd"); }))
        return;
    requireAccepted("a document that was not edited", [&] {
        require(patchedFcstd(archive, name, drawing.document, "fuzz.FCStd").archive == archive,
                "comes back to the byte");
    });
    const holdfast::document::Document now = holdfast::fuzz::edited(drawing.document);
    std::string patched;
    if (!holdfast::fuzz::accepts([&] { patched = patchedFcstd(archive, name, now, "fuzz.FCStd").archive; }))
        return;
    requireAccepted("a patched document", [&] { readFcstd(patched, name, "again.FCStd"); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = holdfast::fuzz::textOf(data, size);
    const std::string archive =
        text.starts_with("PK") ? text : zipped({{"Document.xml", text}, {"GuiDocument.xml", "<Document/>"}});
    std::vector<FcstdSketchName> sketches;
    if (holdfast::fuzz::accepts([&] { sketches = sketchesInFcstd(archive, "fuzz.FCStd"); }))
        for (const FcstdSketchName& sketch : sketches)
            checkSketch(archive, sketch.name);
    return 0;
}
