#pragma once

#include <optional>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// A line, or a straight segment of a polyline.
struct DxfLine {
    Vec2 start{}, end{};
    Place place{};   ///< all of it, as a direction from its start to its end
    Place turned{};  ///< the direction back
};

/// A circle, an arc, or a bent segment of a polyline.
struct DxfRound {
    Vec2 centre{};
    double radius = 0.0;
    Place place{};
};

/// An arc, or a bent segment of a polyline.
struct DxfArc {
    Vec2 centre{}, start{}, end{};  ///< counter-clockwise
    Place place{}, startPlace{}, endPlace{};

    double sweep() const;
    double length() const;
    /// True for what lies in its sector.
    bool passes(Vec2 point) const;
};

/// The line of which a place is a part; nothing where that is no line, or has no length.
std::optional<DxfLine> lineOf(const Entity& entity, const Place& place);
/// The circle or arc of which a place is a part.
std::optional<DxfRound> roundOf(const Entity& entity, const Place& place);

/// The arc alone.
std::optional<DxfArc> arcOf(const Entity& entity, const Place& place);

/// Of a line, an arc or a segment.
bool isEnd(PlaceKind kind);

}  // namespace holdfast::formats
