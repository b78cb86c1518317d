#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "document/Document.h"
#include "inference/Uses.h"

namespace holdfast::inference {

/// What counts as the same, and which kinds of constraints are looked for.
struct InferOptions {
    /// How far points may be apart, sizes differ, and ends deviate from a common line, in the drawing's unit.
    /// 0: a millionth of the larger side of what is drawn and may move.
    double length = 0.0;
    /// How far directions may differ, in radians.
    double angle = 1e-4;
    /// Kinds that are not among these are not looked for.
    std::vector<ConstraintType> kinds = {
        ConstraintType::coincident, ConstraintType::concentric,    ConstraintType::horizontal,
        ConstraintType::vertical,   ConstraintType::tangent,       ConstraintType::collinear,
        ConstraintType::parallel,   ConstraintType::perpendicular, ConstraintType::equal};
    /// Relations between what does not meet are looked for as well, whatever the kinds: centres at one level, ends on
    /// other curves, and pairs that are symmetric about reference or construction lines.
    bool relations = false;
};

/// True when a constraint follows from those that a document has already. Asked once for each candidate, with the
/// document as it is so far; a candidate that is redundant is left out.
using RedundancyTest = std::function<bool(const Document& soFar, const Constraint& candidate)>;

struct Inference {
    Document document;          ///< with the new constraints behind those that it had
    double length = 0.0;        ///< the tolerance that was used
    std::size_t added = 0;      ///< new constraints
    std::size_t redundant = 0;  ///< candidates that isRedundant refused
};

/// Puts the constraints on a drawing that its geometry already fulfils and that a person who drew it would expect, in
/// this order: coincident ends (and centres), concentric circles, horizontal and vertical lines, tangent joints,
/// lines in line with each other, parallel and perpendicular slanted lines, equal radii, equal lengths.
///
/// - Every group of equal things is held by a tree, never by all pairs: one link for each member but the first.
/// - What follows from shared points, from horizontals and verticals is not said again: horizontal lines at one height
///   are joined by a horizontal between two of their ends, joined collinear lines by a parallel, and opposite sides of
///   an upright rectangle get no equal length. Other redundancy is left to isRedundant.
/// - Curves shorter than twice the tolerance are passed over. Tangency is found where ends meet, not between whole
///   circles and lines. Nothing is put between two fixed entities.
/// - Constraints that the document has are kept, their coincidences, horizontals and verticals taken into account, and
///   none is repeated.
///
/// Relations come behind all these.
///
/// Cost: sorting, O(n log n) for n curves, and one call of isRedundant for each candidate; with relations also a look
/// at the points beside each curve, in the narrower of its two directions.
/// The result passes checkDocument if the document does.
Inference inferConstraints(const Document& document, const InferOptions& options = {},
                           const RedundancyTest& isRedundant = {});

}  // namespace holdfast::inference
