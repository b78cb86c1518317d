#include "formats/slvs/SlvsReader.h"
#include "formats/slvs/SlvsWriter.h"
#include "fuzz/Fuzz.h"

// Sketches of SolveSpace: what is read goes out as a file that can be read.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace holdfast::formats;
    const std::string text = holdfast::fuzz::textOf(data, size);
    std::vector<SlvsSketchName> sketches;
    if (!holdfast::fuzz::accepts([&] { sketches = sketchesInSlvs(text, "fuzz.slvs"); }))
        return 0;
    for (const SlvsSketchName& sketch : sketches) {
        SlvsDrawing drawing;
        if (!holdfast::fuzz::accepts([&] { drawing = readSlvs(text, sketch.name, "fuzz.slvs"); }))
            continue;
        std::string written;
        if (holdfast::fuzz::accepts([&] { written = slvsText(drawing.document, 0.01).text; }))
            holdfast::fuzz::requireAccepted("a written file", [&] { readSlvs(written, "", "again.slvs"); });
    }
    return 0;
}
