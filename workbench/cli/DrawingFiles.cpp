#include "workbench/cli/DrawingFiles.h"

#include <filesystem>

#include "workbench/cli/Terminal.h"
#include "workbench/drawing/DrawingError.h"
#include "workbench/drawing/DxfReader.h"
#include "workbench/drawing/DxfWriter.h"
#include "workbench/drawing/FileIo.h"
#include "workbench/report/Svg.h"

namespace holdfast {

namespace {

Document readDxfFile(const std::string& path) {
    DxfDrawing drawing = readDxf(readFile(path), path);
    for (const DxfNotice& notice : drawing.notUnderstood)
        complain(path + ": " + std::to_string(notice.count) + " " + notice.what + " not understood and left out");
    for (const DxfNotice& notice : drawing.dropped)
        complain(path + ": " + notice.what + " of " + std::to_string(notice.count) + " entities dropped");
    return std::move(drawing.document);
}

void writeDxfFile(const Document& document, const std::string& path, double tolerance) {
    const DxfOutput output = dxfText(document, tolerance);
    writeFile(path, output.text);
    for (const DxfNote& note : output.notes) {
        const char* fate = note.loss == DxfLoss::flattened ? " went out as a polyline"
                           : note.loss == DxfLoss::split   ? " went out as single lines of text"
                                                           : " was left out";
        complain(path + ": " + note.entity + fate);
    }
    if (output.lostConstraints > 0)
        complain(path + ": " + std::to_string(output.lostConstraints) + " constraints were left out");
}

[[noreturn]] void refuseEnding(const std::string& path, const char* expected) {
    throw DrawingError(
        path, {"", "a name that ends in \"" + std::filesystem::path(path).extension().string() + "\"", expected});
}

}  // namespace

Document readAnyDrawing(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    if (ending == ".dxf" || ending == ".DXF")
        return readDxfFile(path);
    if (ending == ".json" || ending.empty() || !std::filesystem::exists(path))
        return readDrawing(path);
    refuseEnding(path, "a drawing whose name ends in .json or .dxf");
}

void writeAnyDrawing(const Document& document, const std::string& path, double tolerance) {
    const std::string ending = std::filesystem::path(path).extension().string();
    if (ending == ".dxf")
        return writeDxfFile(document, path, tolerance);
    if (ending == ".svg")
        return writeFile(path, writeTrueSizeSvg(document));
    if (ending == ".json")
        return writeDrawing(document, path);
    refuseEnding(path, "a name that ends in .json, .dxf or .svg");
}

}  // namespace holdfast
