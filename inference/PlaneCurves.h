#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "document/Document.h"
#include "inference/Uses.h"

namespace holdfast::inference {

constexpr std::size_t kNoNode = static_cast<std::size_t>(-1);

/// A point of a drawing that constraints can name. Neighbouring segments of a polyline share theirs.
struct Node {
    Place place;
    Vec2 point;
    bool isCentre = false;
    bool fixed = false;
};

/// A curve, or one segment of a polyline, reduced to what constraints are inferred from.
struct PlaneCurve {
    enum class Kind { line, round, other };

    Kind kind = Kind::other;
    Place whole;                 ///< how constraints name it
    Place startPlace, endPlace;  ///< of curves that have ends
    std::size_t entity = 0;      ///< position in the document
    std::size_t startNode = kNoNode, endNode = kNoNode, centreNode = kNoNode;
    Vec2 startDirection, endDirection;  ///< of the tangents at the ends, of any length
    double size = 0.0;                  ///< a line's length, a circle's or arc's radius
    bool fixed = false;

    bool hasEnds() const { return startNode != kNoNode; }
};

/// The curves of a drawing and their points, in the order of the document; a polyline's segments in their order.
struct PlaneCurves {
    std::vector<Node> nodes;
    std::vector<PlaneCurve> curves;
};

/// Takes a drawing apart. Curves and segments whose ends (or whose circle) are no more than smallest apart are left
/// out, with their points; unbounded lines and texts have no part in it.
PlaneCurves planeCurvesOf(const Document& document, double smallest);

/// The larger side of the box around all that is drawn and may move, or around the references where nothing else has a
/// size: how large the drawing is for its user. 0 for an empty one.
double drawnSizeOf(const Document& document);

}  // namespace holdfast::inference
