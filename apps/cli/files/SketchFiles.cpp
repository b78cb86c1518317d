#include "apps/cli/files/SketchFiles.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>
#include <string_view>

#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Terminal.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/FileIo.h"
#include "formats/fcstd/FcstdReader.h"
#include "formats/slvs/SlvsReader.h"
#include "hosting/DocumentSketch.h"
#include "report/page/Wording.h"

namespace holdfast::cli {

namespace {

void tellKept(const std::string& path, const char* what, const std::vector<std::string>& notUnderstood) {
    std::string list;
    for (const std::string& each : notUnderstood)
        list += (list.empty() ? "" : ", ") + each;
    if (!list.empty())
        complain(path + ": " + what + ": " + list);
}

std::string sketchCount(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " sketch" : " sketches");
}

/// A sketch by its name and that which its user has given it.
struct SketchName {
    std::string name, label;
};

std::vector<SketchName> sketchesIn(const std::string& form, const std::string& bytes, const std::string& file) {
    std::vector<SketchName> names;
    if (form == kSlvsForm)
        for (SlvsSketchName& sketch : sketchesInSlvs(bytes, file))
            names.push_back({std::move(sketch.name), std::move(sketch.label)});
    else
        for (FcstdSketchName& sketch : sketchesInFcstd(bytes, file))
            names.push_back({std::move(sketch.name), std::move(sketch.label)});
    return names;
}

/// The only one of a document, unless the user has named one.
std::string chosenSketch(const SketchPath& path, const std::string& bytes) {
    if (!path.sketch.empty())
        return path.sketch;
    const std::vector<SketchName> sketches = sketchesIn(path.form, bytes, path.file);
    if (sketches.size() == 1)
        return sketches.front().name;
    std::vector<std::string> names;
    names.reserve(sketches.size());
    for (const SketchName& sketch : sketches)
        names.push_back(path.file + "#" + sketch.name);
    const std::vector<std::string_view> views(names.begin(), names.end());
    throw UsageError(path.file, "a document of " + sketchCount(sketches.size()),
                     sketches.empty() ? "one with a sketch" : "one of them: " + oneOf(views));
}

/// What the list of sketches tells of one.
struct SketchLine {
    SketchName sketch;
    std::size_t entities = 0, constraints = 0;
    std::optional<int> freedom;
    std::string fault;
};

SketchLine lineOf(const SketchName& sketch, const std::string& bytes, const SketchPath& path) {
    SketchLine line;
    line.sketch = sketch;
    try {
        const Document drawing = path.form == kSlvsForm ? readSlvs(bytes, sketch.name, path.file).document
                                                        : readFcstd(bytes, sketch.name, path.file).document;
        line.entities = static_cast<std::size_t>(std::count_if(drawing.entities.begin(), drawing.entities.end(),
                                                               [](const Entity& entity) { return !entity.fixed; }));
        line.constraints = drawing.constraints.size();
        line.freedom = DocumentSketch(drawing).diagnose().freedom;
    } catch (const UnsolvableDocument&) {
        line.freedom.reset();
    } catch (const DrawingError& error) {
        line.fault = error.what();
    }
    return line;
}

void tell(const SketchLine& line) {
    std::cout << "  " << line.sketch.name;
    if (line.sketch.label != line.sketch.name)
        std::cout << ' ' << inQuotes(line.sketch.label);
    if (!line.fault.empty()) {
        std::cout << ": " << line.fault << '\n';
        return;
    }
    std::cout << ": " << report::counted(line.entities, "entity") << ", "
              << report::counted(line.constraints, "constraint");
    if (line.freedom)
        std::cout << ", degrees of freedom: " << *line.freedom;
    std::cout << '\n';
}

nlohmann::ordered_json jsonOf(const SketchLine& line) {
    nlohmann::ordered_json json{{"name", line.sketch.name}, {"label", line.sketch.label}};
    if (!line.fault.empty()) {
        json["fault"] = line.fault;
        return json;
    }
    json["entities"] = line.entities;
    json["constraints"] = line.constraints;
    if (line.freedom)
        json["degrees_of_freedom"] = *line.freedom;
    return json;
}

nlohmann::ordered_json jsonOf(const SketchPath& path, const std::vector<SketchLine>& lines) {
    nlohmann::ordered_json json{{"document", path.file}, {"sketches", nlohmann::ordered_json::array()}};
    for (const SketchLine& line : lines)
        json["sketches"].push_back(jsonOf(line));
    return json;
}

}  // namespace

std::optional<SketchPath> sketchPathOf(const std::string& path) {
    std::string small = path;
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const std::string_view ending : {kSketchForm, kSlvsForm}) {
        if (endingOf(path) == ending)
            return SketchPath{path, "", std::string(ending)};
        const std::size_t at = small.rfind(std::string(ending) + "#");
        std::error_code error;
        if (at != std::string::npos && !std::filesystem::exists(path, error))
            return SketchPath{path.substr(0, at + ending.size()), path.substr(at + ending.size() + 1),
                              std::string(ending)};
    }
    return std::nullopt;
}

bool isSketch(const DrawingSource& source) {
    return source.form.empty() && sketchPathOf(source.path).has_value();
}

Document readSlvsSketch(const std::string& text, const std::string& sketch, const std::string& file) {
    SlvsDrawing read = readSlvs(text, sketch, file);
    tellKept(file, "not understood and left out", read.notUnderstood);
    return std::move(read.document);
}

DrawingFile readSketchFor(const DrawingTarget& target, const DrawingSource& source) {
    const bool isFcstd = isSketch(source) && sketchPathOf(source.path)->form == kSketchForm;
    if (!isFcstd && !target.path.empty() && formOf(target, {}) == kSketchForm)
        throw UsageError(target.path, "a drawing that comes from " + inQuotes(source.path),
                         "a sketch of a document, of which this becomes a copy; or a name that ends in .json or .dxf");
    const SketchPath from = *sketchPathOf(source.path);
    std::string bytes = readFile(from.file);
    const std::string sketch = chosenSketch(from, bytes);
    if (!isFcstd)
        return {readSlvsSketch(bytes, sketch, from.file), std::nullopt, kSlvsForm};
    FcstdDrawing read = readFcstd(bytes, sketch, from.file);
    const bool isPatched = !target.path.empty() && formOf(target, kSketchForm) == kSketchForm;
    tellKept(from.file, isPatched ? "not understood and kept as it is" : "not understood and left out",
             read.notUnderstood);
    DrawingFile file{std::move(read.document), std::nullopt, kSketchForm};
    if (isPatched)
        file.sketch = SketchOriginal{std::move(bytes), sketch};
    return file;
}

bool isListed(const SketchPath& path, const std::string& bytes) {
    return path.sketch.empty() && (path.form == kSketchForm || sketchesIn(path.form, bytes, path.file).size() != 1);
}

Document readSketch(const SketchPath& path, const std::string& bytes) {
    const std::string sketch = chosenSketch(path, bytes);
    if (path.form == kSlvsForm)
        return readSlvsSketch(bytes, sketch, path.file);
    FcstdDrawing read = readFcstd(bytes, sketch, path.file);
    tellKept(path.file, "not understood and left out", read.notUnderstood);
    return std::move(read.document);
}

int showSketches(const SketchPath& path, const std::string& bytes, const ShowOptions& options, Teller& teller) {
    if (!options.output.empty() || options.list || options.missing)
        throw UsageError(path.file, "a whole document", "one of its sketches: " + path.file + "#NAME");
    std::vector<SketchLine> lines;
    for (const SketchName& sketch : sketchesIn(path.form, bytes, path.file))
        lines.push_back(lineOf(sketch, bytes, path));
    OutputFiles({}, teller.wantsJson()).write([&] {
        if (teller.wantsJson()) {
            teller.tell(jsonOf(path, lines));
            return;
        }
        std::cout << path.file << ": " << sketchCount(lines.size()) << '\n';
        for (const SketchLine& line : lines)
            tell(line);
    });
    return kExitDone;
}

}  // namespace holdfast::cli
