#include "apps/cli/ShowList.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>
#include <unordered_map>

#include "apps/cli/telling/Terminal.h"
#include "document/BlockContents.h"
#include "document/Names.h"
#include "document/Places.h"
#include "document/formulas/Calculation.h"
#include "editing/EditContext.h"
#include "editing/Refusal.h"
#include "editing/define/Missing.h"
#include "editing/fates/Sizes.h"
#include "editing/fates/SpokenFreedom.h"
#include "editing/text/Parse.h"
#include "formats/json/JsonLooks.h"
#include "formats/json/JsonWriter.h"
#include "geometry/Angles.h"
#include "report/page/Wording.h"

namespace holdfast::cli {

namespace {

/// "(4, 0.5)"
std::string pair(Vec2 point) {
    return "(" + shortNumber(point.x) + ", " + shortNumber(point.y) + ")";
}

std::string towards(Vec2 direction) {
    return " towards " + shortNumber(inDegrees(std::atan2(direction.y, direction.x))) + " degrees";
}

/// Where an entity is, in a few numbers.
struct Geometry {
    std::string operator()(const LineShape& s) const { return pair(s.start) + " to " + pair(s.end); }
    std::string operator()(const ArcShape& s) const { return "about " + pair(s.centre); }
    std::string operator()(const CircleShape& s) const { return "about " + pair(s.centre); }
    std::string operator()(const EllipseShape& s) const { return "about " + pair(s.centre); }
    std::string operator()(const EllipticalArcShape& s) const { return "about " + pair(s.centre); }
    std::string operator()(const SplineShape& s) const {
        return pair(s.control.front()) + " to " + pair(s.control.back()) + ", " + std::to_string(s.control.size()) +
               " control points";
    }
    std::string operator()(const PointShape& s) const { return pair(s.position); }
    std::string operator()(const XlineShape& s) const { return "through " + pair(s.point) + towards(s.direction); }
    std::string operator()(const RayShape& s) const { return "from " + pair(s.point) + towards(s.direction); }
    std::string operator()(const PolylineShape& s) const {
        return pair(s.vertices.front()) + (s.closed ? " and back, " : " to " + pair(s.vertices.back()) + ", ") +
               std::to_string(segmentCount(s)) + (segmentCount(s) == 1 ? " segment" : " segments");
    }
    std::string operator()(const TextShape& s) const { return "at " + pair(s.position); }
};

std::string sizesIn(const Shape& shape) {
    std::string text;
    for (const EntitySize& size : sizesOf(shape))
        text += ", " + report::sizeWords(size.size) + " " + shortNumber(size.value) +
                (size.size == SizeKind::sweep ? " degrees" : "");
    return text;
}

std::string spokenColour(const Colour& colour) {
    switch (colour.kind) {
        case Colour::Kind::index:
            return "colour " + std::to_string(colour.value);
        case Colour::Kind::rgb:
            return "colour " + colourText(colour);
        case Colour::Kind::byBlock:
            return "the block's colour";
        case Colour::Kind::byLayer:
            break;
    }
    return {};
}

std::string spokenWeight(int weight) {
    constexpr double weightsInMillimetre = 100.0;
    switch (weight) {
        case kWeightByLayer:
            return {};
        case kWeightByBlock:
            return "the block's width";
        case kWeightDefault:
            return "the usual width";
        default:
            return "width " + shortNumber(weight / weightsInMillimetre) + " mm";
    }
}

/// A name from a file cannot command the terminal.
std::string withoutControls(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return name;
}

/// "on Cut, colour 1, DASHED, width 0.35 mm, invisible"; nothing of what is usual.
std::string lookText(const std::string& layer, const Colour& colour, const std::string& linetype, int weight) {
    std::string text = layer.empty() ? "" : "on " + withoutControls(layer);
    for (const std::string& more : {spokenColour(colour), withoutControls(linetype), spokenWeight(weight)})
        if (!more.empty())
            text += (text.empty() ? "" : ", ") + more;
    return text;
}

std::string lookText(const Look& look) {
    const std::string text = lookText(look.layer, look.colour, look.linetype, look.weight);
    return text + (look.visible ? "" : text.empty() ? "invisible" : ", invisible");
}

void tellLayers(const Document& document) {
    if (document.layers.empty())
        return;
    std::cout << "each layer:\n";
    for (const Layer& layer : document.layers)
        std::cout << "  " << withoutControls(layer.name) << ": "
                  << lookText("", layer.colour, layer.linetype, layer.weight) << (layer.isOff ? ", off" : "")
                  << (layer.isFrozen ? ", frozen" : "") << (layer.isLocked ? ", locked" : "") << '\n';
}

/// For each entity the ids of the constraints on it, in their order.
std::unordered_map<std::string, std::vector<std::string>> constraintsByEntity(const Document& document) {
    std::unordered_map<std::string, std::vector<std::string>> found;
    for (const Constraint& constraint : document.constraints)
        for (const Place& place : constraint.refs)
            if (auto& ids = found[place.entity]; ids.empty() || ids.back() != constraint.id)
                ids.push_back(constraint.id);
    return found;
}

/// "(3, 4), turned by 30 degrees, scaled by 2 and -1, 3 columns and 2 rows"
std::string placementText(const Placement& placement) {
    std::string text = pair(placement.at);
    if (placement.rotation != 0.0)
        text += ", turned by " + shortNumber(inDegrees(placement.rotation)) + " degrees";
    if (placement.xScale != 1.0 || placement.yScale != 1.0)
        text += ", scaled by " + shortNumber(placement.xScale) +
                (placement.xScale == placement.yScale ? "" : " and " + shortNumber(placement.yScale));
    if (placement.columns > 1 || placement.rows > 1)
        text += ", " + report::counted(static_cast<std::size_t>(placement.columns), "column") + " and " +
                report::counted(static_cast<std::size_t>(placement.rows), "row") + " " + pair(placement.spacing) +
                " apart";
    return text;
}

/// References, each with its parts.
void tellReferences(const Document& document) {
    if (document.references.empty())
        return;
    std::cout << "each thing that is drawn as a whole:\n";
    for (const BlockReference& reference : document.references) {
        std::cout << "  " << reference.id << ": ";
        if (reference.kind == BlockReference::Kind::insert)
            std::cout << "block " << withoutControls(reference.block->name) << " at "
                      << placementText(reference.placement);
        else
            std::cout << typeName(reference.kind)
                      << (reference.measure.empty() ? "" : ", measured by " + reference.measure);
        if (!reference.look.isUsual())
            std::cout << "; " << lookText(*reference.look);
        std::cout << '\n';
        forEachPart(reference, [](Entity&& part) {
            std::cout << "    " << part.id << ": " << typeName(part.shape) << " " << std::visit(Geometry(), part.shape)
                      << sizesIn(part.shape);
            if (!part.look.isUsual())
                std::cout << "; " << lookText(*part.look);
            std::cout << '\n';
        });
    }
}

void tellEntities(const Document& document) {
    const std::vector<EntityFreedom> freedom = spokenFreedom(document);
    const auto constraints = constraintsByEntity(document);
    std::cout << "each entity:\n";
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        const Entity& entity = document.entities[i];
        std::cout << "  " << entity.id << ": " << typeName(entity.shape) << " " << std::visit(Geometry(), entity.shape)
                  << sizesIn(entity.shape) << "; " << freedom[i].words;
        if (!entity.look.isUsual())
            std::cout << "; " << lookText(*entity.look);
        if (const auto on = constraints.find(entity.id); on != constraints.end())
            for (std::size_t c = 0; c < on->second.size(); ++c)
                std::cout << (c == 0 ? "; " : " ") << on->second[c];
        std::cout << '\n';
    }
}

void tellConstraints(const Document& document) {
    std::cout << "each constraint:\n";
    for (const Constraint& constraint : document.constraints)
        std::cout << "  " << spokenConstraint(constraint) << (constraint.active ? "" : ", switched off")
                  << (constraint.driving ? "" : ", measured") << '\n';
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

nlohmann::ordered_json sizesJson(const Shape& shape) {
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (const EntitySize& size : sizesOf(shape))
        json.push_back({{"size", sizeName(size.size)}, {"value", size.value}});
    return json;
}

/// The edit that would add a constraint.
std::string editFor(const Constraint& constraint) {
    Constrain edit;
    edit.type = constraint.type;
    for (const Place& place : constraint.refs)
        edit.places.emplace_back(place);
    if (constraint.value)
        edit.value = spokenValue(constraint.type, *constraint.value);
    return toText(edit);
}

}  // namespace

void tellList(const Document& document) {
    tellEntities(document);
    tellReferences(document);
    tellConstraints(document);
    tellParameters(document);
    tellLayers(document);
}

namespace {

/// Parts as drawing files have entities.
nlohmann::ordered_json partsJson(const BlockReference& reference) {
    Document parts;
    forEachPart(reference, [&](Entity&& part) { parts.entities.push_back(std::move(part)); });
    return nlohmann::ordered_json::parse(formats::jsonText(parts)).at("entities");
}

nlohmann::ordered_json referencesJson(const Document& document) {
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    for (const BlockReference& reference : document.references) {
        const Placement& placement = reference.placement;
        nlohmann::ordered_json each{{"id", reference.id}, {"type", typeName(reference.kind)}};
        if (reference.kind == BlockReference::Kind::insert)
            each.update({{"block", reference.block->name},
                         {"position", {placement.at.x, placement.at.y}},
                         {"rotation", placement.rotation},
                         {"scale", {placement.xScale, placement.yScale}},
                         {"columns", placement.columns},
                         {"rows", placement.rows},
                         {"spacing", {placement.spacing.x, placement.spacing.y}}});
        if (!reference.measure.empty())
            each["measured_by"] = reference.measure;
        each["parts"] = partsJson(reference);
        json.push_back(std::move(each));
    }
    return json;
}

}  // namespace

nlohmann::ordered_json listJson(const Document& document) {
    std::stringstream text;
    formats::writeJson(document, text);
    const auto whole = nlohmann::ordered_json::parse(text);
    nlohmann::ordered_json list{{"entities", whole.at("entities")}, {"constraints", whole.at("constraints")}};
    if (whole.contains("parameters"))
        list["parameters"] = whole.at("parameters");
    if (whole.contains("layers"))
        list["layers"] = whole.at("layers");
    if (!document.references.empty())
        list["references"] = referencesJson(document);
    const std::vector<EntityFreedom> freedom = spokenFreedom(document);
    const auto constraints = constraintsByEntity(document);
    for (std::size_t i = 0; i < freedom.size(); ++i) {
        nlohmann::ordered_json& entity = list["entities"][i];
        entity["freedom"] = freedom[i].words;
        entity["motions"] = nlohmann::ordered_json::array();
        for (const FreeMotion& motion : freedom[i].motions.motions)
            entity["motions"].push_back(motionJson(motion));
        entity["sizes"] = sizesJson(document.entities[i].shape);
        const auto on = constraints.find(document.entities[i].id);
        entity["constraints"] = on == constraints.end() ? std::vector<std::string>() : on->second;
    }
    return list;
}

void tellMissing(const Document& document) {
    const Missing missing = missingIn(document);
    std::cout << "missing: " << missing.constraints.size() << '\n';
    for (const Proposal& proposal : missing.constraints)
        std::cout << "  " << editFor(proposal.constraint) << "  # " << proposal.reason << '\n';
}

nlohmann::ordered_json missingJson(const Document& document) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Proposal& proposal : missingIn(document).constraints)
        list.push_back({{"edit", editFor(proposal.constraint)}, {"reason", proposal.reason}});
    return list;
}

}  // namespace holdfast::cli
