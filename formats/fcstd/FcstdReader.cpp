#include "formats/fcstd/FcstdReader.h"

#include "formats/fcstd/FcstdArchive.h"
#include "formats/fcstd/FcstdObjects.h"
#include "formats/fcstd/FcstdSketch.h"

namespace holdfast::formats {

std::vector<FcstdSketchName> sketchesInFcstd(std::string_view archive, const std::string& file) {
    const std::string text = documentTextOf(archive, file);
    std::vector<FcstdSketchName> sketches;
    for (const FcstdObject& sketch : objectsIn(text, file).sketches)
        sketches.push_back({sketch.name, sketch.label});
    return sketches;
}

FcstdDrawing readFcstd(std::string_view archive, const std::string& sketch, const std::string& file) {
    const std::string text = documentTextOf(archive, file);
    FcstdSketch read(text, sketch, file);
    return {std::move(read.drawing), std::move(read.notUnderstood)};
}

}  // namespace holdfast::formats
