#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// Finds what carries a place of a drawing on after an edit: the same end on the piece that has it now, the segment of
/// a polyline under its new number, the point of a corner that was kept.
///
/// Cost of a question: the ends of the pieces; of a polyline one pass over it at the first question, and one over its
/// vertices for a corner that is none any more.
class CarriedPlaces {
public:
    explicit CarriedPlaces(const TieScene& scene) : m_scene(scene) {}

    /// The place, on the piece that has it where the place was before; nothing when none has it there.
    std::optional<Place> unmoved(const Place& place);
    /// The place as it is called now, wherever it lies; nothing when there is none.
    std::optional<Place> renamed(const Place& place);
    /// The curve that the place names, on the piece through a point of it.
    std::optional<Place> through(const Place& curve, Vec2 point);

private:
    using VertexNumbers = std::multimap<std::pair<double, double>, int>;
    const VertexNumbers& verticesOf(const std::string& piece);
    std::optional<Place> segmentNow(const Place& place);
    bool isSegmentOf(const Place& now, const Shape& was) const;
    std::optional<Place> onPieces(const Place& place, Vec2 at);

    const TieScene& m_scene;
    std::map<std::string, VertexNumbers> m_vertices;
};

}  // namespace holdfast::editing
