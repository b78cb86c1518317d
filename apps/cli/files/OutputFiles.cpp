#include "apps/cli/files/OutputFiles.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <set>

#include "apps/cli/files/SketchFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Terminal.h"
#include "document/text/Suggest.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/json/JsonWriter.h"
#include "formats/slvs/SlvsWriter.h"
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
    if (fits || name.path == kStandardStream || (name.takesDevices && isDevice(name.path)))
        return;
    throw UsageError(name.path, ending.empty() ? "a name without an ending" : "a name that ends in " + ending,
                     "a name that ends in " + oneOf(name.endings));
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

/// Some of many names.
std::string firstOf(const std::vector<std::string>& names) {
    constexpr std::size_t most = 5;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, names.size()); ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return text + (names.size() > most ? " and " + std::to_string(names.size() - most) + " more" : "");
}

/// "2 block references and 1 hatched area were left out".
std::string leftOutReferences(const Document& document) {
    using Kind = BlockReference::Kind;
    const auto countOf = [&](Kind kind, bool isMeasured = false) {
        return static_cast<std::size_t>(
            std::count_if(document.references.begin(), document.references.end(), [&](const BlockReference& reference) {
                return reference.kind == kind && reference.measure.empty() != isMeasured;
            }));
    };
    std::vector<std::string> counted;
    const auto add = [&](std::size_t count, const char* word) {
        if (count > 0)
            counted.push_back(report::counted(count, word));
    };
    add(countOf(Kind::insert), "block reference");
    add(countOf(Kind::dimension), "dimension");
    add(countOf(Kind::dimension, true), "dimension picture");
    add(countOf(Kind::hatch), "hatched area");
    std::vector<std::string> names;
    names.reserve(document.references.size());
    for (const BlockReference& reference : document.references)
        names.push_back(reference.id);
    return allOf(counted) + (document.references.size() == 1 ? " was" : " were") + " left out: " + firstOf(names) +
           (countOf(Kind::insert) > 0 ? "; \"explode\" makes entities of a block reference" : "");
}

}  // namespace

OutputName drawingNamed(const DrawingTarget& target) {
    return {target.path, {".json", ".dxf", ".svg", kSketchForm, kSlvsForm}, !target.form.empty()};
}

OutputName pictureNamed(const std::string& path) {
    return {path, {".svg"}, true};
}

OutputName viewNamed(const std::string& path) {
    return {path, {".svg", ".html", ".htm"}, true};
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

std::string outputIn(const std::string& folder, const std::string& drawing, const std::string& form) {
    if (folder.empty())
        return {};
    fs::path name = drawing == kStandardStream ? fs::path("standard-input") : fs::path(drawing).filename();
    if (!form.empty())
        name.replace_extension(form);
    return (fs::path(folder) / name).string();
}

void refuseSharedNames(const std::vector<std::string>& drawings, const std::string& folder, const std::string& form) {
    if (drawings.size() == 1)
        return;
    if (std::count(drawings.begin(), drawings.end(), kStandardStream) > 1)
        throw UsageError(kStandardStream, "standard input twice", "it once, since it can be read once");
    if (folder.empty())
        return;
    std::error_code error;
    if (!fs::is_directory(folder, error))
        throw UsageError(folder, "one file for several drawings", "a folder that exists");
    std::set<std::string> names;
    for (const std::string& drawing : drawings)
        if (!names.insert(outputIn(folder, drawing, form)).second)
            throw UsageError(drawing, "a second drawing of this name",
                             "names that differ, as the results have them too");
}

OutputFiles::OutputFiles(std::initializer_list<OutputName> names, bool tellsJson) {
    std::set<fs::path> known;
    if (tellsJson)
        known.insert(kStandardStream);
    for (const OutputName& name : names) {
        if (name.path.empty())
            continue;
        checkEnding(name);
        std::error_code error;
        const bool isStream = name.path == kStandardStream;
        if (isStream && !known.insert(name.path).second)
            throw UsageError("standard output", "two things that go there",
                             "\"-\" for one of them, and no --json beside");
        if (!isStream && !isDevice(name.path) && !known.insert(fs::weakly_canonical(name.path, error)).second)
            throw UsageError(name.path, "one name for two files", "a name of its own for each file");
    }
}

void OutputFiles::add(const std::string& path, std::string text) {
    if (path == kStandardStream)
        m_standardOutput = std::move(text);
    else if (!path.empty())
        m_files.push_back({path, std::move(text)});
}

void OutputFiles::addDrawing(const DrawingTarget& target, const Document& document, const DrawingFile& from,
                             double tolerance) {
    const std::string& path = target.path;
    if (path.empty())
        return;
    const std::string form = formOf(target, from.form);
    const std::string name = path == kStandardStream ? "standard output" : path;
    if (form != ".svg" && !from.dxf && !document.references.empty())
        m_notes.push_back(name + ": " + leftOutReferences(document));
    if (form == ".json")
        return add(path, jsonText(document));
    if (form == ".svg")
        return add(path, writeTrueSizeSvg(document));
    if (from.sketch && form == kSketchForm)
        return addSketch(path, name, document, *from.sketch);
    if (form == kSlvsForm)
        return addSlvs(path, name, document, from, tolerance);
    const std::optional<DxfOriginal>& dxf = from.dxf;
    DxfOutput output =
        dxf ? patchedDxf(dxf->text, dxf->layout, dxf->drawing, document, tolerance) : dxfText(document, tolerance);
    tellLosses(name, document, output);
    if (!dxf && document.lengthUnit != "mm")
        m_notes.push_back(name + ": numbers are in the unit " + inQuotes(document.lengthUnit) +
                          ", which the file does not say");
    add(path, std::move(output.text));
}

void OutputFiles::addSketch(const std::string& path, const std::string& name, const Document& document,
                            const SketchOriginal& from) {
    SketchOutput output = documentWith(document, from);
    for (const std::string& note : output.notes)
        m_notes.push_back(name + ": " + note);
    add(path, std::move(output.bytes));
}

void OutputFiles::addSlvs(const std::string& path, const std::string& name, const Document& document,
                          const DrawingFile& from, double tolerance) {
    std::vector<std::string> notes;
    if (from.form == kSlvsForm)
        notes.emplace_back("a new file with this sketch alone; names, styles and views are not those of the old one");
    SlvsOutput output = slvsText(withoutPolylines(document, notes), tolerance);
    notes.insert(notes.end(), output.notes.begin(), output.notes.end());
    for (const std::string& note : notes)
        m_notes.push_back(name + ": " + note);
    add(path, std::move(output.text));
}

void OutputFiles::tellLosses(const std::string& path, const Document& document, const DxfOutput& output) {
    for (const DxfNote& note : output.notes)
        m_notes.push_back(path + ": " + noteOf(note, output, document.lengthUnit));
    if (!output.redrawn.empty())
        m_notes.push_back(path + ": the pictures of dimensions that have changed are as the file has them: " +
                          firstOf(output.redrawn));
    if (!output.left.empty())
        m_notes.push_back(
            path + ": dimensions that the drawing has no more stay as the file has them: " + firstOf(output.left));
    if (!output.lostFacts.empty())
        m_notes.push_back(path + ": " + output.lostFacts);
    if (output.lostConstraints > 0)
        m_notes.push_back(path + ": " + report::counted(output.lostConstraints, "constraint") +
                          (output.lostConstraints == 1 ? " was" : " were") + " left out");
    if (output.lostParameters > 0)
        m_notes.push_back(path + ": " + report::counted(output.lostParameters, "parameter") +
                          (output.lostParameters == 1 ? " was" : " were") + " left out");
}

bool OutputFiles::write(const std::function<void()>& tell) {
    writeFiles(m_files, [&] {
        if (m_standardOutput)
            std::cout << *m_standardOutput;
        else if (tell)
            tell();
        flushStandardOutput();
    });
    for (const std::string& note : m_notes)
        complain(note);
    return !m_standardOutput;
}

}  // namespace holdfast::cli
