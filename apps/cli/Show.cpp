#include <nlohmann/json.hpp>

#include <iostream>
#include <map>
#include <optional>

#include "apps/cli/Commands.h"
#include "apps/cli/ShowList.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/files/SketchFiles.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "apps/window/PageAlone.h"
#include "document/Names.h"
#include "editing/Refusal.h"
#include "formats/FileIo.h"
#include "hosting/DocumentSketch.h"
#include "report/picture/Svg.h"

namespace holdfast::cli {

namespace {

using Counts = std::map<std::string, int>;

/// Constraints farther than this part of the drawing's size from holding count as broken.
constexpr double kBroken = 1e-6;

struct Overview {
    Counts entities, references, constraints;
    int freedom = 0;
    std::vector<std::pair<std::size_t, double>> broken;  ///< numbers of constraints, and by how much
};

Overview overviewOf(const Document& document) {
    Overview overview;
    for (const Entity& entity : document.entities)
        ++overview.entities[std::string(typeName(entity.shape))];
    for (const BlockReference& reference : document.references)
        ++overview.references[std::string(typeName(reference.kind))];
    for (const Constraint& constraint : document.constraints)
        ++overview.constraints[std::string(typeName(constraint.type))];
    const DocumentSketch sketch(document);
    const std::vector<double> misses = sketch.shortfalls();
    const double broken = kBroken * sketch.size();
    for (std::size_t i = 0; i < document.constraints.size(); ++i)
        if (misses[i] > broken)
            overview.broken.emplace_back(i, misses[i]);
    overview.freedom = sketch.diagnose().freedom;
    return overview;
}

void tellCounts(const char* title, const Counts& counts) {
    int total = 0;
    for (const auto& [name, count] : counts)
        total += count;
    std::cout << title << ": " << total << '\n';
    for (const auto& [name, count] : counts)
        std::cout << "  " << name << ": " << count << '\n';
}

void tell(const std::string& name, const Document& document, const Overview& overview) {
    std::cout << name << '\n';
    tellCounts("entities", overview.entities);
    if (!overview.references.empty())
        tellCounts("drawn as a whole", overview.references);
    tellCounts("constraints", overview.constraints);
    std::cout << "degrees of freedom: " << overview.freedom << '\n';
    std::cout << "broken constraints: " << overview.broken.size() << '\n';
    for (const auto& [number, miss] : overview.broken)
        std::cout << "  " << spokenConstraint(document.constraints[number]) << ", off by " << miss << '\n';
}

nlohmann::ordered_json jsonOf(const std::string& name, const Document& document, const Overview& overview) {
    nlohmann::ordered_json json;
    json["drawing"] = name;
    json["entities"] = overview.entities;
    if (!overview.references.empty())
        json["references"] = overview.references;
    json["constraints"] = overview.constraints;
    json["degrees_of_freedom"] = overview.freedom;
    json["broken"] = nlohmann::ordered_json::array();
    for (const auto& [number, miss] : overview.broken)
        json["broken"].push_back({{"constraint", document.constraints[number].id}, {"off_by", miss}});
    return json;
}

nlohmann::ordered_json findingsOf(const std::string& name, const Document& document, const ShowOptions& options) {
    nlohmann::ordered_json json = jsonOf(name, document, overviewOf(document));
    if (options.list)
        json["list"] = listJson(document);
    if (options.missing)
        json["missing"] = missingJson(document);
    return json;
}

void tellFindings(const std::string& name, const Document& document, const ShowOptions& options) {
    tell(name, document, overviewOf(document));
    if (options.list)
        tellList(document);
    if (options.missing)
        tellMissing(document);
}

bool isPage(const std::string& path) {
    const std::string ending = endingOf(path);
    return ending == ".html" || ending == ".htm";
}

/// A picture, or a page to pan, zoom and point in.
void addView(OutputFiles& outputs, const std::string& path, const Document& document, const std::string& name,
             const ShowOptions& options) {
    if (!isPage(path))
        outputs.addPicture(path, writePicture(document, {}, {.names = options.ids, .colours = options.colours}), name);
    else if (options.colours)
        throw UsageError("--colours", "a page", "a picture (.svg, .pdf); the page's colours tell what is free");
    else
        outputs.add(path, window::pageAlone(document, name, options.ids));
}

int showOne(const std::string& drawing, const ShowOptions& options, Teller& teller) {
    const std::string picture =
        options.drawings.size() == 1 ? options.output : outputIn(options.output, drawing, "svg");
    OutputFiles outputs({viewNamed(picture)}, teller.wantsJson());
    const std::optional<SketchPath> path = options.from.empty() ? sketchPathOf(drawing) : std::nullopt;
    const std::string bytes = path ? readFile(path->file) : std::string();
    if (path && isListed(*path, bytes))
        return showSketches(*path, bytes, options, teller);
    const Document document = path ? readSketch(*path, bytes) : readAnyDrawing({drawing, options.from});
    const std::string name = spokenName(document, drawing);
    if (!picture.empty())
        addView(outputs, picture, document, name, options);
    outputs.write([&] {
        if (teller.wantsJson())
            teller.tell(findingsOf(name, document, options));
        else
            tellFindings(name, document, options);
    });
    return kExitDone;
}

}  // namespace

int show(const ShowOptions& options) {
    refuseSharedNames(options.drawings, options.output, "svg");
    return tellEach(options.drawings, options.telling,
                    [&](const std::string& drawing, Teller& teller) { return showOne(drawing, options, teller); });
}

}  // namespace holdfast::cli
