#include <nlohmann/json.hpp>

#include <iostream>
#include <map>

#include "apps/cli/Commands.h"
#include "apps/cli/DrawingFiles.h"
#include "apps/cli/OutputFiles.h"
#include "apps/cli/ShowList.h"
#include "apps/cli/Terminal.h"
#include "document/Names.h"
#include "editing/Refusal.h"
#include "hosting/DocumentSketch.h"
#include "report/picture/Svg.h"

namespace holdfast::cli {

namespace {

using Counts = std::map<std::string, int>;

/// Constraints farther than this part of the drawing's size from holding count as broken.
constexpr double kBroken = 1e-6;

struct Overview {
    Counts entities, constraints;
    int freedom = 0;
    std::vector<std::pair<std::size_t, double>> broken;  ///< numbers of constraints, and by how much
};

Overview overviewOf(const Document& document) {
    Overview overview;
    for (const Entity& entity : document.entities)
        ++overview.entities[std::string(typeName(entity.shape))];
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
    json["constraints"] = overview.constraints;
    json["degrees_of_freedom"] = overview.freedom;
    json["broken"] = nlohmann::ordered_json::array();
    for (const auto& [number, miss] : overview.broken)
        json["broken"].push_back({{"constraint", document.constraints[number].id}, {"off_by", miss}});
    return json;
}

}  // namespace

int show(const ShowOptions& options) {
    OutputFiles outputs{pictureNamed(options.output)};
    const Document document = readAnyDrawing(options.drawing);
    const Overview overview = overviewOf(document);
    if (!options.output.empty())
        outputs.add(options.output, writePicture(document, {}, {.names = options.ids}));
    outputs.write();
    const std::string name = spokenName(document, options.drawing);
    if (options.json) {
        nlohmann::ordered_json json = jsonOf(name, document, overview);
        if (options.list)
            json["list"] = listJson(document);
        if (options.missing)
            json["missing"] = missingJson(document);
        std::cout << json.dump(2) << '\n';
        return kExitDone;
    }
    tell(name, document, overview);
    if (options.list)
        tellList(document);
    if (options.missing)
        tellMissing(document);
    return kExitDone;
}

}  // namespace holdfast::cli
