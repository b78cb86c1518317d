#include "editing/fates/SpokenFreedom.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "document/Places.h"
#include "editing/EditContext.h"
#include "geometry/Angles.h"

namespace holdfast::editing {

namespace {

/// Directions and places that differ by less are the same in words.
constexpr double kSame = 1e-6;

std::optional<Vec2> directionOf(const Shape& shape) {
    Vec2 along;
    if (const auto* line = std::get_if<LineShape>(&shape))
        along = {line->end.x - line->start.x, line->end.y - line->start.y};
    else if (const auto* xline = std::get_if<XlineShape>(&shape))
        along = xline->direction;
    else if (const auto* ray = std::get_if<RayShape>(&shape))
        along = ray->direction;
    const double length = std::hypot(along.x, along.y);
    return length > 0.0 ? std::optional<Vec2>({along.x / length, along.y / length}) : std::nullopt;
}

bool areParallel(Vec2 u, Vec2 v) {
    return std::abs(u.x * v.y - u.y * v.x) <= kSame;
}

/// The motions of one entity as a sentence.
class Sentence {
public:
    Sentence(const Document& document, std::size_t entity, const std::vector<std::size_t>& tied)
        : m_document(document), m_entity(document.entities[entity]), m_tied(tied) {}

    std::string of(const EntityMotions& found) const {
        if (m_entity.fixed)
            return "fixed";
        if (found.motions.empty())
            return "fully determined";
        if (found.isFree)
            return "free";
        const std::vector<std::string> ways = waysOf(found);
        std::string text = "free to ";
        for (std::size_t i = 0; i < ways.size(); ++i)
            text += (i == 0 ? "" : i + 1 == ways.size() ? " and to " : ", to ") + ways[i];
        return text;
    }

private:
    std::vector<std::string> waysOf(const EntityMotions& found) const {
        const auto isKind = [](MotionKind kind) { return [kind](const FreeMotion& m) { return m.kind == kind; }; };
        const auto& motions = found.motions;
        const bool shifts = std::count_if(motions.begin(), motions.end(), isKind(MotionKind::slide)) > 1;
        const auto others = std::count_if(motions.begin(), motions.end(), isKind(MotionKind::other));
        std::vector<std::string> ways;
        if (shifts)
            ways.emplace_back("shift");
        for (const FreeMotion& motion : motions) {
            if (motion.kind == MotionKind::slide && !shifts)
                ways.push_back("slide " + along(motion.direction));
            else if (motion.kind == MotionKind::turn)
                ways.push_back(shifts ? "turn" : "turn about " + nameOf(motion.centre));
            else if (motion.kind == MotionKind::length)
                ways.emplace_back(std::holds_alternative<LineShape>(m_entity.shape) ? "change its length"
                                                                                    : "change its sweep");
            else if (motion.kind == MotionKind::radius)
                ways.emplace_back("change its radius");
        }
        if (others > 0)
            ways.push_back("change its shape" + (others > 1 ? " in " + std::to_string(others) + " ways" : ""));
        ways.erase(std::unique(ways.begin(), ways.end()), ways.end());
        return ways;
    }

    /// A line that a constraint ties to the entity says it best, then the entity itself; a point on a round curve moves
    /// along that.
    std::string along(Vec2 direction) const {
        const bool isPoint = std::holds_alternative<PointShape>(m_entity.shape);
        for (const std::size_t number : m_tied) {
            const Entity& other = m_document.entities[number];
            const auto line = directionOf(other.shape);
            if (line ? areParallel(*line, direction) : isPoint && !std::holds_alternative<PointShape>(other.shape))
                return "along " + other.id;
        }
        if (const auto own = directionOf(m_entity.shape); own && areParallel(*own, direction))
            return "along itself";
        if (areParallel(direction, {1.0, 0.0}))
            return "along x";
        if (areParallel(direction, {0.0, 1.0}))
            return "along y";
        return "towards " + spoken(inDegrees(std::atan2(direction.y, direction.x))) + " degrees";
    }

    std::string nameOf(Vec2 centre) const {
        constexpr std::pair<PlaceKind, const char*> places[] = {{PlaceKind::centre, "its centre"},
                                                                {PlaceKind::start, "its start"},
                                                                {PlaceKind::end, "its end"},
                                                                {PlaceKind::mid, "its middle"}};
        for (const auto& [kind, words] : places) {
            const Place place{m_entity.id, kind, 0};
            const auto point = hasPlace(m_entity.shape, place) ? pointAt(m_entity.shape, place) : std::nullopt;
            const double near = kSame * (1.0 + std::abs(centre.x) + std::abs(centre.y));
            if (point && std::hypot(point->x - centre.x, point->y - centre.y) <= near)
                return words;
        }
        return spoken(centre);
    }

    const Document& m_document;
    const Entity& m_entity;
    const std::vector<std::size_t>& m_tied;
};

/// For each entity those that a constraint ties to it, in the order of the constraints.
std::vector<std::vector<std::size_t>> tiedEntities(const Document& document) {
    std::map<std::string, std::size_t> numbers;
    for (std::size_t i = 0; i < document.entities.size(); ++i)
        numbers.emplace(document.entities[i].id, i);
    std::vector<std::vector<std::size_t>> tied(document.entities.size());
    for (const Constraint& constraint : document.constraints) {
        for (const Place& one : constraint.refs)
            for (const Place& other : constraint.refs)
                if (one.entity != other.entity && constraint.active)
                    tied[numbers.at(one.entity)].push_back(numbers.at(other.entity));
    }
    return tied;
}

}  // namespace

std::vector<EntityFreedom> spokenFreedom(const Document& document) {
    std::vector<EntityMotions> motions = DocumentSketch(document).freeMotions();
    const std::vector<std::vector<std::size_t>> tied = tiedEntities(document);
    std::vector<EntityFreedom> freedom;
    for (std::size_t i = 0; i < motions.size(); ++i) {
        std::string words = Sentence(document, i, tied[i]).of(motions[i]);
        freedom.push_back({std::move(motions[i]), std::move(words)});
    }
    return freedom;
}

}  // namespace holdfast::editing
