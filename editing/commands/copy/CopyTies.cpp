#include "editing/commands/copy/CopyTies.h"

#include <cmath>
#include <optional>
#include <unordered_map>

#include "document/Names.h"
#include "editing/EditContext.h"
#include "geometry/DisjointSets.h"
#include "geometry/Segments.h"
#include "geometry/Tolerances.h"

namespace holdfast::editing {

namespace {

bool isUpright(const Shape& shape) {
    return std::holds_alternative<LineShape>(shape) || std::holds_alternative<RayShape>(shape) ||
           std::holds_alternative<XlineShape>(shape) || std::holds_alternative<TextShape>(shape);
}

bool hasSize(const Shape& shape) {
    return std::holds_alternative<LineShape>(shape) || std::holds_alternative<ArcShape>(shape) ||
           std::holds_alternative<CircleShape>(shape) || std::holds_alternative<EllipseShape>(shape) ||
           std::holds_alternative<EllipticalArcShape>(shape);
}

bool isRound(const Shape& shape) {
    return hasSize(shape) && !std::holds_alternative<LineShape>(shape);
}

/// Where an entity is, for its spacing.
Place anchorOf(const std::string& name, const Shape& shape) {
    if (isRound(shape))
        return {name, PlaceKind::centre};
    if (std::holds_alternative<PointShape>(shape))
        return {name};
    if (std::holds_alternative<PolylineShape>(shape))
        return {name, PlaceKind::segmentStart, 0};
    if (std::holds_alternative<SplineShape>(shape))
        return {name, PlaceKind::control, 0};
    return {name, PlaceKind::start};
}

/// The same place of a copy.
Place on(const std::string& copy, Place place) {
    place.entity = copy;
    return place;
}

/// One entity and its copies, the original first.
struct Copied {
    Shape shape;
    std::vector<std::string> names;

    Place anchor(std::size_t i) const { return anchorOf(names[i], shape); }
};

/// The parts of an entity that have a size or a direction of their own.
struct SizedPart {
    Place place;
    bool hasSize, isUpright;
};

std::vector<SizedPart> partsOf(const Copied& entity) {
    const auto* polyline = std::get_if<PolylineShape>(&entity.shape);
    if (polyline == nullptr)
        return {{{entity.names.front()}, hasSize(entity.shape), isUpright(entity.shape)}};
    std::vector<SizedPart> parts;
    for (std::size_t i = 0; i < segmentCount(*polyline); ++i)
        parts.push_back(
            {{entity.names.front(), PlaceKind::segment, static_cast<int>(i)}, true, polyline->bulges[i] == 0.0});
    return parts;
}

class Ties {
public:
    void equals(const Copied& entity) {
        for (const SizedPart& part : partsOf(entity))
            for (std::size_t i = 1; part.hasSize && i < entity.names.size(); ++i)
                add(ConstraintType::equal, {part.place, on(entity.names[i], part.place)});
    }
    void directions(const Copied& entity, std::size_t copy, ConstraintType kind) {
        for (const SizedPart& part : partsOf(entity))
            if (part.isUpright)
                add(kind, {part.place, on(entity.names[copy], part.place)});
    }
    /// One step of a row; a level one stays level, whatever becomes of its length.
    void step(const Place& from, const Place& to, Vec2 by) {
        if (by.y == 0.0)
            add(ConstraintType::horizontal, {from, to});
        if (by.x == 0.0)
            add(ConstraintType::vertical, {from, to});
        if (by.x != 0.0)
            coordinate(ConstraintType::distanceX, from, to, by.x);
        if (by.y != 0.0)
            coordinate(ConstraintType::distanceY, from, to, by.y);
    }
    /// A further step as wide as the one before it.
    void onward(const Place& first, const Place& middle, const Place& last) {
        add(ConstraintType::symmetric, {first, last, middle});
    }
    void add(ConstraintType type, std::vector<Place> refs) {
        m_ties.push_back({.type = type, .refs = std::move(refs)});
    }
    std::vector<Constraint> take() { return std::move(m_ties); }

private:
    void coordinate(ConstraintType type, const Place& from, const Place& to, double by) {
        add(type, by > 0.0 ? std::vector<Place>{from, to} : std::vector<Place>{to, from});
        m_ties.back().value = std::abs(by);
    }

    std::vector<Constraint> m_ties;
};

void space(Ties& ties, const Copied& entity, const CopyGrid& grid) {
    const auto columns = static_cast<std::size_t>(grid.row.times.value) + 1;
    const std::size_t rows = entity.names.size() / columns;
    const auto at = [&](std::size_t column, std::size_t row) { return entity.anchor(row * columns + column); };
    const Vec2 along = grid.row.by, across = grid.rows ? grid.rows->by : Vec2{};
    ties.step(at(0, 0), at(1, 0), along);
    if (rows > 1)
        ties.step(at(0, 0), at(0, 1), across);
    const bool isSquare = (along.y == 0.0 && across.x == 0.0) || (along.x == 0.0 && across.y == 0.0);
    if (rows > 1 && isSquare) {
        ties.add(along.y == 0.0 ? ConstraintType::horizontal : ConstraintType::vertical, {at(0, 1), at(1, 1)});
        ties.add(along.y == 0.0 ? ConstraintType::vertical : ConstraintType::horizontal, {at(1, 0), at(1, 1)});
    } else if (rows > 1) {
        ties.step(at(0, 1), at(1, 1), along);
    }
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            if (row < 2 && column > 1)
                ties.onward(at(column - 2, row), at(column - 1, row), at(column, row));
            else if (row > 1)
                ties.onward(at(column, row - 2), at(column, row - 1), at(column, row));
}

/// Rings have no spacing of their own.
void space(Ties&, const Copied&, const CopyRing&) {}

void turn(Ties& ties, const Copied& entity, const CopyGrid&) {
    for (std::size_t i = 1; i < entity.names.size(); ++i)
        ties.directions(entity, i, ConstraintType::parallel);
}

void turn(Ties& ties, const Copied& entity, const CopyRing& ring) {
    for (std::size_t i = 1; i < entity.names.size(); ++i) {
        const double quarters = std::abs(std::remainder(ring.degrees * static_cast<double>(i), 180.0)) / 90.0;
        if (quarters <= kSameDirection)
            ties.directions(entity, i, ConstraintType::parallel);
        else if (std::abs(quarters - 1.0) <= kSameDirection)
            ties.directions(entity, i, ConstraintType::perpendicular);
    }
}

/// Of each set of entities that hang together by what is copied, whether an entity is the first.
std::vector<bool> firstOfSets(const Drawing& drawing, const std::vector<std::string>& names) {
    std::unordered_map<std::string_view, std::size_t> numbers;
    for (const std::string& name : names)
        numbers.emplace(name, numbers.size());
    DisjointSets sets(names.size());
    for (const Constraint& constraint : drawing.around(names).constraints) {
        if (isDimension(constraint.type) || !constraint.active)
            continue;
        for (const Place& place : constraint.refs)
            if (const auto a = numbers.find(constraint.refs.front().entity), b = numbers.find(place.entity);
                a != numbers.end() && b != numbers.end())
                sets.join(a->second, b->second);
    }
    std::vector<bool> isFirst, isSeen(names.size(), false);
    for (std::size_t i = 0; i < names.size(); ++i) {
        isFirst.push_back(!isSeen[sets.find(i)]);
        isSeen[sets.find(i)] = true;
    }
    return isFirst;
}

std::vector<Copied> copiedEntities(const Drawing& drawing, const std::vector<std::string>& originals,
                                   const std::vector<CopyNames>& copies) {
    std::vector<Copied> entities;
    for (const std::string& name : originals) {
        entities.push_back({drawing.shape(name), {name}});
        for (const CopyNames& names : copies)
            entities.back().names.push_back(names.at(name));
    }
    return entities;
}

}  // namespace

std::vector<Constraint> tiesOfCopies(const Drawing& drawing, const Copy& edit, const std::vector<CopyNames>& copies) {
    const std::vector<std::string> originals = valuesOf(edit.entities);
    const std::vector<Copied> entities = copiedEntities(drawing, originals, copies);
    const std::vector<bool> isFirst = firstOfSets(drawing, originals);
    Ties ties;
    const auto spaceThose = [&](bool first) {
        for (std::size_t i = 0; i < entities.size(); ++i)
            if (isFirst[i] == first)
                std::visit([&](const auto& array) { space(ties, entities[i], array); }, edit.to);
    };
    spaceThose(true);
    for (const Copied& entity : entities) {
        std::visit([&](const auto& array) { turn(ties, entity, array); }, edit.to);
        ties.equals(entity);
    }
    spaceThose(false);
    return ties.take();
}

}  // namespace holdfast::editing
