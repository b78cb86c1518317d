#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "holdfast/sketch/Drawing.h"
#include "holdfast/sketch/Export.h"

namespace holdfast::sketch {

/// What counts as the same in a plain drawing, and which kinds of constraints are looked for.
struct InferOptions {
    /// How far points may be apart, sizes differ, and ends deviate from a common line, in the drawing's unit.
    /// 0: a millionth of the larger side of what is drawn and may move.
    double length = 0.0;
    /// How far directions may differ, in radians; at most an eighth of a turn.
    double angle = 1e-4;
    /// Kinds that are not among these are not looked for; other kinds than these are never found.
    std::vector<ConstraintType> kinds = {
        ConstraintType::coincident, ConstraintType::concentric,    ConstraintType::horizontal,
        ConstraintType::vertical,   ConstraintType::tangent,       ConstraintType::collinear,
        ConstraintType::parallel,   ConstraintType::perpendicular, ConstraintType::equal};
    /// Joined lines and arcs become polylines first, whose vertices need no coincidences.
    bool polylines = false;
};

/// A drawing with the constraints that were found in it.
struct Inferred {
    /// Why nothing was found out, in one sentence; empty: it was. Refused are options out of range, a drawing whose own
    /// constraints contradict one another, and tolerances so coarse that what is the same within them cannot be the
    /// same exactly.
    std::string error{};
    Document document;         ///< new constraints behind those that it had; refused: as it was given
    std::size_t added = 0;     ///< how many there are
    std::size_t implied = 0;   ///< left out, because the others imply them
    std::size_t contrary = 0;  ///< left out, because they cannot hold exactly beside the others
    double length = 0.0;       ///< the tolerance that was used, in the drawing's unit

    bool done() const { return error.empty(); }
};

/// Puts the constraints on a drawing that its geometry already fulfils and that a person who drew it would expect:
/// coincident ends, concentric circles, horizontal, vertical, collinear, parallel and perpendicular lines, tangent
/// joints, equal radii and lengths. Constraints that it has are kept; nothing moves by more than the tolerance, and
/// without polylines nothing at all.
///
/// Throws DrawingError for a document that checkDocument refuses. Cost: n log n in the curves, a few diagnoses of the
/// drawing, and a solve for each constraint that is in the way of others.
HOLDFAST_SKETCH_EXPORT Inferred infer(const Document& drawing, const InferOptions& options = {});

}  // namespace holdfast::sketch
