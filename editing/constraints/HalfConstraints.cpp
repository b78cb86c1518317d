#include "editing/constraints/HalfConstraints.h"

namespace holdfast::editing {

namespace {

/// The start of a line or of a polyline's segment.
Place startOf(const Place& line) {
    const bool isSegment = line.kind == PlaceKind::segment;
    return {line.entity, isSegment ? PlaceKind::segmentStart : PlaceKind::start, line.index};
}

}  // namespace

std::optional<Constraint> halfOf(const Constraint& whole, bool first) {
    Constraint half = whole;
    switch (whole.type) {
        case ConstraintType::collinear:
            half.type = first ? ConstraintType::pointOnCurve : ConstraintType::parallel;
            if (first)
                half.refs = {startOf(whole.refs[1]), whole.refs[0]};
            return half;
        case ConstraintType::coincident:
        case ConstraintType::concentric:
            half.type = first ? ConstraintType::horizontal : ConstraintType::vertical;
            return half;
        default:
            return {};
    }
}

}  // namespace holdfast::editing
