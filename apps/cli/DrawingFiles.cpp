#include "apps/cli/DrawingFiles.h"

#include <filesystem>
#include <span>

#include "apps/cli/OutputFiles.h"
#include "apps/cli/Terminal.h"
#include "document/text/DrawingError.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "formats/dxf/DxfText.h"

namespace holdfast::cli {

namespace {

void tellNotices(const std::string& path, const char* what, std::span<const DxfNotice> notices) {
    std::string list;
    for (const DxfNotice& notice : notices)
        list += (list.empty() ? "" : ", ") + notice.what +
                (notice.count > 1 ? " (" + std::to_string(notice.count) + " times)" : "");
    if (!list.empty())
        complain(path + ": " + what + ": " + list);
}

Document readDxfFile(const std::string& path) {
    DxfDrawing drawing = readDxf(readFile(path), path);
    tellNotices(path, "not understood and left out", drawing.notUnderstood);
    tellNotices(path, "dropped", drawing.dropped);
    return std::move(drawing.document);
}

}  // namespace

Document readAnyDrawing(const std::string& path) {
    const std::string ending = endingOf(path);
    if (ending == ".dxf")
        return readDxfFile(path);
    if (ending == ".json" || ending.empty() || !std::filesystem::exists(path))
        return readDrawing(path);
    throw DrawingError(path, {"", "a name that ends in " + ending, "a drawing whose name ends in .json or .dxf"});
}

DrawingFile readDrawingFor(const std::string& output, const std::string& path) {
    if (endingOf(path) != ".dxf" || endingOf(output) != ".dxf")
        return {readAnyDrawing(path), std::nullopt};
    std::string text = readFile(path);
    DxfDrawing drawing = readDxf(text, path);
    tellNotices(path, "not understood and kept as it is", drawing.notUnderstood);
    return {drawing.document, DxfOriginal{std::move(text), std::move(drawing.layout), std::move(drawing.document)}};
}

std::string spokenName(const Document& document, const std::string& path) {
    return document.name.empty() ? utf8Of(std::filesystem::path(path).stem().string()) : document.name;
}

}  // namespace holdfast::cli
