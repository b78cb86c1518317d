#include "formats/json/JsonReader.h"
#include "formats/json/JsonWriter.h"
#include "fuzz/Fuzz.h"

// Drawings in JSON: what is read and written reads as the same.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace holdfast;
    document::Document drawing;
    if (fuzz::accepts([&] { drawing = formats::readJson(fuzz::textOf(data, size), "fuzz.json"); }))
        fuzz::requireAccepted("a written drawing", [&] {
            fuzz::require(formats::readJson(formats::jsonText(drawing), "again.json") == drawing, "reads as the same");
        });
    return 0;
}
