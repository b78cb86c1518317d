#include "apps/window/DrawingJson.h"

#include <nlohmann/json.hpp>

#include <string>
#include <unordered_set>

#include "apps/window/Answers.h"
#include "document/BlockContents.h"
#include "document/Names.h"
#include "report/page/Wording.h"

namespace holdfast::window {

namespace {

Json pointJson(Vec2 point) {
    return Json::array({point.x, point.y});
}

Json pointsJson(const std::vector<Vec2>& points) {
    Json json = Json::array();
    for (const Vec2 point : points)
        json.push_back(pointJson(point));
    return json;
}

/// Adds a shape's fields under the names that drawing files have for them.
struct Fields {
    Json& json;

    void operator()(const LineShape& s) const {
        json["start"] = pointJson(s.start);
        json["end"] = pointJson(s.end);
    }
    void operator()(const ArcShape& s) const {
        json["centre"] = pointJson(s.centre);
        json["radius"] = s.radius;
        json["start_angle"] = s.startAngle;
        json["end_angle"] = s.endAngle;
    }
    void operator()(const CircleShape& s) const {
        json["centre"] = pointJson(s.centre);
        json["radius"] = s.radius;
    }
    void operator()(const EllipseShape& s) const {
        json["centre"] = pointJson(s.centre);
        json["major_axis"] = pointJson(s.majorAxis);
        json["ratio"] = s.ratio;
    }
    void operator()(const EllipticalArcShape& s) const {
        (*this)(EllipseShape{s.centre, s.majorAxis, s.ratio});
        json["start_param"] = s.startParam;
        json["end_param"] = s.endParam;
    }
    void operator()(const SplineShape& s) const {
        json["degree"] = s.degree;
        json["periodic"] = s.periodic;
        json["control"] = pointsJson(s.control);
        json["knots"] = s.knots;
        json["weights"] = s.weights;
    }
    void operator()(const PointShape& s) const { json["position"] = pointJson(s.position); }
    void operator()(const XlineShape& s) const {
        json["point"] = pointJson(s.point);
        json["direction"] = pointJson(s.direction);
    }
    void operator()(const RayShape& s) const { (*this)(XlineShape{s.point, s.direction}); }
    void operator()(const PolylineShape& s) const {
        json["vertices"] = pointsJson(s.vertices);
        json["bulges"] = s.bulges;
        json["closed"] = s.closed;
    }
    void operator()(const TextShape& s) const {
        json["position"] = pointJson(s.position);
        json["rotation"] = s.rotation;
        json["height"] = s.height;
        json["text"] = s.text;
    }
};

/// What a reference shows, as entities that nothing moves.
void addParts(Json& json, const BlockReference& reference) {
    forEachShownPart(reference, [&](Entity&& part) {
        part.fixed = true;
        Json entity = entityJson(part);
        entity["block"] = reference.id;
        json.push_back(std::move(entity));
    });
}

/// Parts that are no longer there are erased; a name may go from a part to an entity, and back.
void addReferences(Json& json, const DrawingChange& change) {
    for (const ReferenceChange& each : change.references)
        if (each.after)
            addParts(json["entities"], *each.after);
    std::unordered_set<std::string> present;
    for (const Json& entity : json["entities"])
        present.insert(entity["id"].get<std::string>());
    for (const ReferenceChange& each : change.references)
        if (each.before)
            forEachPart(*each.before, [&](Entity&& part) { json["erased"].push_back(part.id); });
    Json erased = Json::array();
    for (Json& id : json["erased"])
        if (!present.contains(id.get<std::string>()))
            erased.push_back(std::move(id));
    json["erased"] = std::move(erased);
}

}  // namespace

Json entityJson(const Entity& entity) {
    Json json{{"id", entity.id}, {"type", typeName(entity.shape)}};
    std::visit(Fields{json}, entity.shape);
    if (entity.construction)
        json["construction"] = true;
    if (entity.fixed)
        json["fixed"] = true;
    return json;
}

Json constraintJson(const Constraint& constraint) {
    Json json{{"id", constraint.id}, {"type", typeName(constraint.type)}, {"refs", Json::array()}};
    for (const Place& place : constraint.refs)
        json["refs"].push_back({{"entity", place.entity}, {"point", placeText(place)}});
    if (constraint.value) {
        json["value"] = *constraint.value;
        json["text"] = labelText(constraint);
    }
    const auto addText = [&](const char* name, const std::string& text) {
        if (!text.empty())
            json[name] = text;
    };
    addText("name", constraint.name);
    addText("role", constraint.role);
    addText("formula", constraint.formula);
    if (!constraint.driving)
        json["driving"] = false;
    if (!constraint.active)
        json["active"] = false;
    if (!constraint.members.empty())
        json["members"] = constraint.members;
    return json;
}

Json parametersJson(const std::vector<Parameter>& parameters) {
    Json json = Json::array();
    for (const Parameter& parameter : parameters)
        json.push_back({{"name", parameter.name}, {"formula", parameter.formula}, {"value", parameter.value}});
    return json;
}

Json drawingJson(const Document& document) {
    Json json{{"unit", document.lengthUnit}, {"entities", Json::array()}, {"constraints", Json::array()}};
    for (const Entity& entity : document.entities)
        json["entities"].push_back(entityJson(entity));
    for (const BlockReference& reference : document.references)
        addParts(json["entities"], reference);
    for (const Constraint& constraint : document.constraints)
        json["constraints"].push_back(constraintJson(constraint));
    json["parameters"] = parametersJson(document.parameters);
    return json;
}

std::string drawingText(const Document& document) {
    Document small;
    small.lengthUnit = document.lengthUnit;
    small.references = document.references;
    small.parameters = document.parameters;
    const Json rest = drawingJson(small);
    std::string entities = listText(document.entities, entityJson);
    if (const std::string parts = textOf(rest["entities"]); !rest["entities"].empty())
        entities = document.entities.empty() ? parts : entities.substr(0, entities.size() - 1) + "," + parts.substr(1);
    return "{\"unit\":" + textOf(rest["unit"]) + ",\"entities\":" + entities +
           ",\n\"constraints\":" + listText(document.constraints, constraintJson) +
           ",\n\"parameters\":" + textOf(rest["parameters"]) + "}";
}

Json changeJson(const DrawingChange& change) {
    Json json{{"entities", Json::array()},
              {"erased", Json::array()},
              {"constraints", Json::array()},
              {"deleted", Json::array()}};
    for (const EntityChange& each : change.entities)
        if (each.after)
            json["entities"].push_back(entityJson(*each.after));
        else if (each.before)
            json["erased"].push_back(each.before->id);
    for (const ConstraintChange& each : change.constraints)
        if (each.after)
            json["constraints"].push_back(constraintJson(*each.after));
        else if (each.before)
            json["deleted"].push_back(each.before->id);
    if (!change.references.empty())
        addReferences(json, change);
    if (change.parameters)
        json["parameters"] = parametersJson(change.parameters->after);
    return json;
}

}  // namespace holdfast::window
