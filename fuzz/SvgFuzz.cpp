#include "document/checks/DocumentCheck.h"
#include "formats/svg/SvgReader.h"
#include "fuzz/Fuzz.h"

// Pictures: what is read is a sound drawing.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace holdfast;
    formats::SvgDrawing drawing;
    if (fuzz::accepts([&] { drawing = formats::readSvg(fuzz::textOf(data, size), "fuzz.svg"); }))
        fuzz::requireAccepted("a picture", [&] { document::checkDocument(drawing.document, "fuzz.svg"); });
    return 0;
}
