#include "apps/window/Answers.h"

#include <nlohmann/json.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <variant>

#include "apps/window/DrawingJson.h"
#include "document/Names.h"
#include "editing/Verbs.h"
#include "editing/fates/SpokenFreedom.h"
#include "geometry/ConstraintKinds.h"
#include "hosting/DocumentSketch.h"
#include "report/marks/Glyphs.h"

namespace holdfast::window {

namespace {

/// Constraints farther than this part of the drawing's size from holding count as broken: what `show` says, too.
constexpr double kBroken = 1e-6;

Json fateJson(const ConstraintOutcome& outcome) {
    Json json{{"id", outcome.constraint}, {"fate", fateName(outcome.fate)}, {"reason", outcome.reason}};
    for (const PlaceMove& move : outcome.moves)
        json["moves"].push_back({{"from", spokenPlace(move.from)}, {"to", spokenPlace(move.to)}});
    return json;
}

void addNumber(double number, std::string& text) {
    std::array<char, 32> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text.append(digits.data(), written.ptr);
}

void addPoint(std::string_view name, Vec2 point, std::string& text) {
    text += name;
    addNumber(point.x, text);
    text += ',';
    addNumber(point.y, text);
    text += ']';
}

/// The same as the text of entityJson(), made at once for what drawings have most of: a hand that pulls waits for it.
void addText(const Entity& entity, std::string& text) {
    const auto* line = std::get_if<LineShape>(&entity.shape);
    const bool isPlain = line != nullptr && !entity.construction && !entity.fixed && std::isfinite(line->start.x) &&
                         std::isfinite(line->start.y) && std::isfinite(line->end.x) && std::isfinite(line->end.y);
    if (!isPlain) {
        text += textOf(entityJson(entity));
        return;
    }
    text += "{\"id\":" + textOf(entity.id) + ",\"type\":\"line\"";
    addPoint(",\"start\":[", line->start, text);
    addPoint(",\"end\":[", line->end, text);
    text += '}';
}

Json fateJson(const EntityOutcome& outcome) {
    Json json{{"id", outcome.entity}, {"fate", fateName(outcome.fate)}};
    if (outcome.movedBy > 0.0)
        json["movedBy"] = outcome.movedBy;
    for (const SizeChange& size : outcome.sizes)
        json["sizes"].push_back({{"size", sizeName(size.size)}, {"before", size.before}, {"after", size.after}});
    return json;
}

Json motionJson(const FreeMotion& motion) {
    switch (motion.kind) {
        case MotionKind::slide:
            return {{"kind", "slide"}, {"direction", {motion.direction.x, motion.direction.y}}};
        case MotionKind::turn:
            return {{"kind", "turn"}, {"centre", {motion.centre.x, motion.centre.y}}};
        case MotionKind::length:
            return {{"kind", "length"}, {"end", motion.isAtStart ? "start" : "end"}};
        case MotionKind::radius:
            return {{"kind", "radius"}};
        case MotionKind::other:
            break;
    }
    return {{"kind", "other"}};
}

Json entitiesFreedom(const Document& document) {
    const std::vector<EntityFreedom> freedom = spokenFreedom(document);
    Json json = Json::object();
    for (std::size_t i = 0; i < freedom.size(); ++i) {
        Json motions = Json::array();
        for (const FreeMotion& motion : freedom[i].motions.motions)
            motions.push_back(motionJson(motion));
        const bool isFree = freedom[i].motions.isFree || !motions.empty();
        // By name it would look for it among all that are there.
        json.get_ref<Json::object_t&>().emplace_back(
            document.entities[i].id, Json{{"words", freedom[i].words}, {"free", isFree}, {"motions", motions}});
    }
    return json;
}

Json conflictsJson(const Document& document, const DocumentDiagnosis& diagnosis) {
    Json json = Json::array();
    for (const std::vector<std::size_t>& conflict : diagnosis.conflicts) {
        Json ids = Json::array();
        for (const std::size_t number : conflict)
            ids.push_back(document.constraints[number].id);
        json.push_back(ids);
    }
    return json;
}

Json redundantJson(const Document& document, const DocumentDiagnosis& diagnosis) {
    Json json = Json::array();
    for (const DocumentDiagnosis::Redundancy& each : diagnosis.redundant)
        if (each.isWhole)
            json.push_back(document.constraints[each.constraint].id);
    return json;
}

Json brokenJson(const Document& document, const DocumentSketch& sketch) {
    const std::vector<double> misses = sketch.shortfalls();
    const double broken = kBroken * sketch.size();
    Json json = Json::array();
    for (std::size_t i = 0; i < document.constraints.size(); ++i)
        if (misses[i] > broken)
            json.push_back({{"id", document.constraints[i].id}, {"by", misses[i]}});
    return json;
}

Json kindJson(const ConstraintTraits& kind) {
    constexpr std::array<std::string_view, 8> kMarks{"first",  "point", "each",   "between",
                                                     "corner", "touch", "length", "radial"};
    const auto mark = static_cast<std::size_t>(kind.mark);
    return {{"name", kind.name},
            {"label", kind.label},
            {"sign", kind.sign},
            {"takes", kind.takes},
            {"icon", inlineGlyph(kind.type)},
            {"mark", mark < kMarks.size() ? kMarks[mark] : "opening"},
            {"coordinate", kind.coordinate},
            {"isDimension", kind.isDimension()},
            {"isAngle", kind.value == ConstraintValue::angle}};
}

}  // namespace

Json resultJson(const EditResult& result) {
    const EditOutcome& outcome = result.outcome;
    Json json{{"text", outcome.text},          {"done", outcome.done()},       {"error", outcome.error},
              {"remarks", outcome.remarks},    {"constraints", Json::array()}, {"entities", Json::array()},
              {"seconds", result.time.count()}};
    for (const ConstraintOutcome& each : result.fates.constraints)
        json["constraints"].push_back(fateJson(each));
    for (const EntityOutcome& each : result.fates.entities)
        json["entities"].push_back(fateJson(each));
    if (outcome.shortfall.by > 0.0)
        json["shortfall"] = {{"by", outcome.shortfall.by}, {"heldBackBy", outcome.shortfall.heldBackBy}};
    return json;
}

std::string glimpseText(const Glimpse& glimpse, std::string_view edit, std::uint64_t number) {
    Json json{{"text", edit},
              {"done", true},
              {"error", ""},
              {"isGlimpse", true},
              {"remarks", Json::array()},
              {"constraints", Json::array()},
              {"entities", Json::array()},
              {"number", number}};
    for (const std::string& name : glimpse.edited)
        json["entities"].push_back({{"id", name}, {"fate", "edited"}});
    std::string text = textOf(json);
    text.pop_back();
    text += ",\"change\":{\"erased\":[],\"deleted\":[],\"entities\":[";
    for (const Entity& entity : glimpse.entities) {
        addText(entity, text);
        text += &entity == &glimpse.entities.back() ? "" : ",";
    }
    return text + "],\"constraints\":" + listText(glimpse.constraints, constraintJson) + "}}";
}

Json freedomJson(const Document& document) {
    try {
        const DocumentSketch sketch(document);
        const DocumentDiagnosis diagnosis = sketch.diagnose();
        return {{"freedom", diagnosis.freedom},
                {"conflicts", conflictsJson(document, diagnosis)},
                {"redundant", redundantJson(document, diagnosis)},
                {"broken", brokenJson(document, sketch)},
                {"entities", entitiesFreedom(document)}};
    } catch (const UnsolvableDocument& failure) {
        return {{"error", failure.what()}};
    }
}

Json languageJson() {
    Json json{{"kinds", Json::array()}, {"verbs", Json::array()}, {"glyphs", glyphSheet()}};
    for (const ConstraintTraits& kind : constraintKinds())
        json["kinds"].push_back(kindJson(kind));
    for (const EditVerb& verb : editVerbs())
        json["verbs"].push_back(
            {{"name", verb.name}, {"usage", verb.usage}, {"example", verb.example}, {"purpose", verb.purpose}});
    return json;
}

std::string textOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace holdfast::window
