#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "document/EntityIndex.h"
#include "report/Uses.h"
#include "report/picture/Frame.h"
#include "report/picture/Svg.h"

namespace holdfast::report {

/// A length that a dimension shows: the two places, and the way of the dimension line.
struct Measured {
    Vec2 from, to;
    Vec2 along{1.0, 0.0};
};

/// An angle that a dimension shows, with its apex in the mark's anchor.
struct Opening {
    double startAngle = 0.0, endAngle = 0.0;
};

/// One sign in a picture. It stands for all constraints of one kind and tone at one place; lengths and directions are
/// those of the drawing.
struct Mark {
    ConstraintType type = ConstraintType::coincident;
    MarkTone tone = MarkTone::kept;
    bool active = true;
    std::vector<std::string> constraints;
    Vec2 anchor;
    Vec2 outward{0.0, 1.0};  ///< where a label stands best, seen from the anchor
    std::string text;        ///< dimensions: the value
    std::optional<Measured> measured;
    std::optional<Opening> opening;
    std::string entity{};  ///< not empty: the name of this entity, and no constraint
};

/// The names of entities, each for its middle, in drawing order.
std::vector<Mark> namesOf(const Document& document);

/// The marks of all constraints whose entities the drawing has, in the order of its constraints. Kept helpers of
/// ellipses have none. Signs closer together than a reader could tell apart in the frame are one.
std::vector<Mark> marksOf(const Document& document, const EntityIndex& entities, const Frame& frame,
                          const std::unordered_map<std::string, MarkTone>& tones);

/// True for kinds that mark a point: kept, they are drawn on the point itself and need no room.
bool marksAPoint(ConstraintType type);

}  // namespace holdfast::report
