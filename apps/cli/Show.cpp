#include <nlohmann/json.hpp>

#include <iostream>
#include <map>
#include <sstream>

#include "apps/cli/Commands.h"
#include "apps/cli/DrawingFiles.h"
#include "apps/cli/OutputFiles.h"
#include "apps/cli/Terminal.h"
#include "document/Names.h"
#include "document/formulas/Calculation.h"
#include "editing/Refusal.h"
#include "editing/fates/SpokenFreedom.h"
#include "formats/json/JsonWriter.h"
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

/// "(4, 0.5)"
std::string pair(Vec2 point) {
    return "(" + shortNumber(point.x) + ", " + shortNumber(point.y) + ")";
}

/// Where an entity is, in a few numbers.
std::string geometryOf(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape))
        return " " + pair(line->start) + " to " + pair(line->end);
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        return " about " + pair(circle->centre) + ", radius " + shortNumber(circle->radius);
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        return " about " + pair(arc->centre) + ", radius " + shortNumber(arc->radius);
    if (const auto* point = std::get_if<PointShape>(&shape))
        return " " + pair(point->position);
    return "";
}

void tellParameters(const Document& document) {
    if (document.parameters.empty())
        return;
    const std::vector<Quantity> values = parameterValues(document);
    std::cout << "each parameter:\n";
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string text = quantityText(values[i], document.lengthUnit);
        const Parameter& parameter = document.parameters[i];
        std::cout << "  " << parameter.name << ": " << text
                  << (parameter.formula == text ? "" : " = " + parameter.formula) << '\n';
    }
}

void tellList(const Document& document) {
    const std::vector<EntityFreedom> freedom = spokenFreedom(document);
    std::cout << "each entity:\n";
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        const Entity& entity = document.entities[i];
        std::cout << "  " << entity.id << ": " << typeName(entity.shape) << geometryOf(entity.shape) << "; "
                  << freedom[i].words << '\n';
    }
    std::cout << "each constraint:\n";
    for (const Constraint& constraint : document.constraints)
        std::cout << "  " << spokenConstraint(constraint) << (constraint.active ? "" : ", switched off")
                  << (constraint.driving ? "" : ", measured") << '\n';
    tellParameters(document);
}

const char* motionWord(MotionKind kind) {
    switch (kind) {
        case MotionKind::slide:
            return "slide";
        case MotionKind::turn:
            return "turn";
        case MotionKind::length:
            return "length";
        case MotionKind::radius:
            return "radius";
        case MotionKind::other:
            return "other";
    }
    return "";
}

nlohmann::ordered_json motionJson(const FreeMotion& motion) {
    nlohmann::ordered_json json{{"kind", motionWord(motion.kind)}};
    if (motion.kind == MotionKind::slide)
        json["direction"] = {motion.direction.x, motion.direction.y};
    if (motion.kind == MotionKind::turn)
        json["centre"] = {motion.centre.x, motion.centre.y};
    if (motion.kind == MotionKind::length)
        json["end"] = motion.isAtStart ? "start" : "end";
    return json;
}

/// Entities and constraints as a drawing file has them, and how each entity can move.
nlohmann::ordered_json listJson(const Document& document) {
    std::stringstream text;
    formats::writeJson(document, text);
    const auto whole = nlohmann::ordered_json::parse(text);
    nlohmann::ordered_json list{{"entities", whole.at("entities")}, {"constraints", whole.at("constraints")}};
    if (whole.contains("parameters"))
        list["parameters"] = whole.at("parameters");
    const std::vector<EntityFreedom> freedom = spokenFreedom(document);
    for (std::size_t i = 0; i < freedom.size(); ++i) {
        nlohmann::ordered_json& entity = list["entities"][i];
        entity["freedom"] = freedom[i].words;
        entity["motions"] = nlohmann::ordered_json::array();
        for (const FreeMotion& motion : freedom[i].motions.motions)
            entity["motions"].push_back(motionJson(motion));
    }
    return list;
}

}  // namespace

int show(const ShowOptions& options) {
    OutputFiles outputs{pictureNamed(options.output)};
    const Document document = readAnyDrawing(options.drawing);
    const Overview overview = overviewOf(document);
    if (!options.output.empty())
        outputs.add(options.output, writePicture(document));
    outputs.write();
    const std::string name = spokenName(document, options.drawing);
    if (options.json) {
        nlohmann::ordered_json json = jsonOf(name, document, overview);
        if (options.list)
            json["list"] = listJson(document);
        std::cout << json.dump(2) << '\n';
        return kExitDone;
    }
    tell(name, document, overview);
    if (options.list)
        tellList(document);
    return kExitDone;
}

}  // namespace holdfast::cli
