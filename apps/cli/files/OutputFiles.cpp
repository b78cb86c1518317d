#include "apps/cli/files/OutputFiles.h"

#include <algorithm>
#include <cctype>
#include <iostream>
#include <set>

#include "apps/cli/files/SketchFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Terminal.h"
#include "apps/forms/PdfPage.h"
#include "document/text/Suggest.h"

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

}  // namespace

OutputName drawingNamed(const DrawingTarget& target) {
    return {target.path, {".json", ".dxf", ".svg", ".pdf", kSketchForm, kSlvsForm}, !target.form.empty()};
}

OutputName pictureNamed(const std::string& path) {
    return {path, {".svg", ".pdf"}, true};
}

OutputName viewNamed(const std::string& path) {
    return {path, {".svg", ".pdf", ".html", ".htm"}, true};
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

void OutputFiles::addPicture(const std::string& path, std::string picture, const std::string& title) {
    add(path, endingOf(path) == ".pdf" ? pdfPage(picture, title) : std::move(picture));
}

void OutputFiles::addDrawing(const DrawingTarget& target, const Document& document, const DrawingFile& from,
                             double tolerance) {
    const std::string& path = target.path;
    if (path.empty())
        return;
    const std::string name = path == kStandardStream ? "standard output" : path;
    const CameFrom origin{
        .form = from.form, .dxf = from.dxf ? &*from.dxf : nullptr, .sketch = from.sketch ? &*from.sketch : nullptr};
    GoneOut output = goingOut(document, formOf(target, from.form), origin, tolerance);
    for (const std::string& note : output.notes)
        m_notes.push_back(name + ": " + note);
    add(path, std::move(output.bytes));
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
