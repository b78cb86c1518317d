#include "apps/cli/files/DrawingFiles.h"

#include <filesystem>
#include <vector>

#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/files/SketchFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Terminal.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "formats/dxf/DxfText.h"
#include "formats/json/JsonReader.h"
#include "formats/svg/SvgReader.h"
#include "report/page/Wording.h"

namespace holdfast::cli {

namespace {

constexpr const char* kPictureForm = ".svg";

template <class Notice>
void tellNotices(const std::string& path, const char* what, const std::vector<Notice>& notices) {
    std::string list;
    for (const Notice& notice : notices)
        list += (list.empty() ? "" : ", ") + notice.what +
                (notice.count > 1 ? " (" + std::to_string(notice.count) + " times)" : "");
    if (!list.empty())
        complain(path + ": " + what + ": " + list);
}

/// Standard input has no name of its own in messages.
std::string spokenPath(const std::string& path) {
    return path == kStandardStream ? kStandardInput : path;
}

std::string textOf(const std::string& path) {
    return path == kStandardStream ? readStandardInput() : readFile(path);
}

/// A drawing in JSON begins with a brace, a picture with an angle, a SolveSpace file with three marks, and a DXF file
/// with none of these.
std::string formOfText(const std::string& text) {
    if (text.starts_with("\xB1\xB2\xB3") || text.starts_with("\xC2\xB1\xC2\xB2"))
        return kSlvsForm;
    const std::size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    if (first != std::string::npos && text[first] == '<')
        return kPictureForm;
    return first == std::string::npos || text[first] == '{' ? ".json" : ".dxf";
}

/// The form by name, as far as the text need not be looked into.
std::string namedForm(const DrawingSource& source) {
    if (!source.form.empty())
        return "." + source.form;
    if (source.path == kStandardStream)
        return {};
    const std::string ending = endingOf(source.path);
    if (ending == ".dxf" || ending == kPictureForm)
        return ending;
    if (ending == ".json" || ending.empty() || !std::filesystem::exists(source.path))
        return ".json";
    throw UsageError(source.path, "a name that ends in " + ending,
                     "a drawing whose name ends in .json, .dxf, .svg or .slvs, or its form behind --from");
}

struct DrawingText {
    std::string name, text, form;
};

DrawingText readText(const DrawingSource& source) {
    DrawingText read{spokenPath(source.path), {}, namedForm(source)};
    read.text = textOf(source.path);
    if (read.form.empty())
        read.form = formOfText(read.text);
    return read;
}

Document pictureOf(const DrawingText& read) {
    SvgDrawing drawing = readSvg(read.text, read.name);
    if (!drawing.isMeasured)
        complain(read.name + ": says no unit of length, and is taken as pixels, 96 an inch");
    if (drawing.roundCubics > 0)
        complain(read.name + ": read as the arcs that they stand for: " +
                 report::counted(static_cast<std::size_t>(drawing.roundCubics), "cubic piece"));
    tellNotices(read.name, "not understood and left out", drawing.notUnderstood);
    tellNotices(read.name, "dropped", drawing.dropped);
    return std::move(drawing.document);
}

Document documentOf(const DrawingText& read) {
    if (read.form == kPictureForm)
        return pictureOf(read);
    if (read.form == kSlvsForm)
        return readSlvsSketch(read.text, "", read.name);
    if (read.form != ".dxf")
        return readJson(read.text, read.name);
    DxfDrawing drawing = readDxf(read.text, read.name);
    tellNotices(read.name, "not understood and left out", drawing.notUnderstood);
    tellNotices(read.name, "drawn and not measured", drawing.notMeasured);
    tellNotices(read.name, "dropped", drawing.dropped);
    return std::move(drawing.document);
}

}  // namespace

Document readAnyDrawing(const DrawingSource& source) {
    if (isSketch(source))
        return readSketchFor({}, source).document;
    return documentOf(readText(source));
}

std::string formOf(const DrawingTarget& target, const std::string& cameAs) {
    if (!target.form.empty())
        return "." + target.form;
    return target.path == kStandardStream ? cameAs : endingOf(target.path);
}

DrawingFile readDrawingFor(const DrawingTarget& target, const DrawingSource& source) {
    if (isSketch(source) || formOf(target, {}) == kSketchForm)
        return readSketchFor(target, source);
    DrawingText read = readText(source);
    if (read.form != ".dxf" || target.path.empty() || formOf(target, read.form) != ".dxf")
        return {documentOf(read), std::nullopt, read.form};
    DxfDrawing drawing = readDxf(read.text, read.name);
    tellNotices(read.name, "not understood and kept as it is", drawing.notUnderstood);
    tellNotices(read.name, "drawn and not measured", drawing.notMeasured);
    return {drawing.document, DxfOriginal{std::move(read.text), std::move(drawing.layout), std::move(drawing.document)},
            read.form};
}

std::string spokenName(const Document& document, const std::string& path) {
    if (path == kStandardStream && document.name.empty())
        return spokenPath(path);
    return document.name.empty() ? utf8Of(std::filesystem::path(path).stem().string()) : document.name;
}

}  // namespace holdfast::cli
