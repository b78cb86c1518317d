#include "apps/cli/OutputFiles.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "apps/cli/Terminal.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/json/JsonWriter.h"
#include "report/page/Wording.h"
#include "report/picture/Svg.h"

namespace holdfast::cli {

namespace {

namespace fs = std::filesystem;

bool isDevice(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

void checkEnding(const OutputName& name) {
    const std::string ending = endingOf(name.path);
    const bool fits = std::find(name.endings.begin(), name.endings.end(), ending) != name.endings.end();
    // A device has no ending; what it is to take is plain where there is one form only.
    if (fits || (name.isOneForm && isDevice(name.path)))
        return;
    throw DrawingError(name.path, {"", ending.empty() ? "a name without an ending" : "a name that ends in " + ending,
                                   "a name that ends in " + oneOf(name.endings)});
}

std::string noteOf(const DxfNote& note, const DxfOutput& output, const std::string& unit) {
    switch (note.loss) {
        case DxfLoss::flattened:
            return note.entity + " went out as a polyline of " + report::counted(note.pieces, "segment") + ", within " +
                   shortNumber(output.tolerance) + " " + unit;
        case DxfLoss::split:
            return note.entity + " went out as " + report::counted(note.pieces, "single line") + " of text";
        case DxfLoss::firstOfKind:
            return note.entity + " is the first " + note.kind + " in the file, in the oldest form that it can have";
        case DxfLoss::leftOut:
            break;
    }
    return note.entity + " was left out, a line without end";
}

}  // namespace

OutputName drawingNamed(const std::string& path) {
    return {path, {".json", ".dxf", ".svg"}};
}

OutputName pictureNamed(const std::string& path) {
    return {path, {".svg"}, true};
}

OutputName reportNamed(const std::string& path) {
    return {path, {".html", ".htm"}, true};
}

std::string endingOf(const fs::path& path) {
    std::string ending = path.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

OutputFiles::OutputFiles(std::initializer_list<OutputName> names) {
    std::set<fs::path> known;
    for (const OutputName& name : names) {
        if (name.path.empty())
            continue;
        checkEnding(name);
        std::error_code error;
        if (!isDevice(name.path) && !known.insert(fs::weakly_canonical(name.path, error)).second)
            throw DrawingError(name.path, {"", "one name for two files", "a name of its own for each file"});
    }
}

void OutputFiles::add(const std::string& path, std::string text) {
    if (!path.empty())
        m_files.push_back({path, std::move(text)});
}

void OutputFiles::addDrawing(const std::string& path, const Document& document, const std::optional<DxfOriginal>& from,
                             double tolerance) {
    if (path.empty())
        return;
    const std::string ending = endingOf(path);
    if (ending == ".json")
        return add(path, jsonText(document));
    if (ending == ".svg")
        return add(path, writeTrueSizeSvg(document));
    DxfOutput output =
        from ? patchedDxf(from->text, from->layout, from->drawing, document, tolerance) : dxfText(document, tolerance);
    tellLosses(path, document, output);
    if (!from && document.lengthUnit != "mm")
        m_notes.push_back(path + ": numbers are in the unit " + inQuotes(document.lengthUnit) +
                          ", which the file does not say");
    add(path, std::move(output.text));
}

void OutputFiles::tellLosses(const std::string& path, const Document& document, const DxfOutput& output) {
    for (const DxfNote& note : output.notes)
        m_notes.push_back(path + ": " + noteOf(note, output, document.lengthUnit));
    if (output.lostConstraints > 0)
        m_notes.push_back(path + ": " + report::counted(output.lostConstraints, "constraint") +
                          (output.lostConstraints == 1 ? " was" : " were") + " left out");
    if (output.lostParameters > 0)
        m_notes.push_back(path + ": " + report::counted(output.lostParameters, "parameter") +
                          (output.lostParameters == 1 ? " was" : " were") + " left out");
}

void OutputFiles::write() {
    writeFiles(m_files);
    for (const std::string& note : m_notes)
        complain(note);
}

}  // namespace holdfast::cli
