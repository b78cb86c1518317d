#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "editing/fates/FateReport.h"

namespace holdfast::editing {

/// What one edit did, told by the drawing before and after it.
struct Fates {
    std::vector<ConstraintOutcome> constraints;  ///< all but the kept ones, in drawing order
    std::vector<EntityOutcome> entities;         ///< all but the untouched ones, in drawing order
};

/// Compares two states of a drawing. `edited` names the entities that the user edited: when they differ they count as
/// edited, others that differ followed. What is deleted has the reason that the drawing is as it was without it. Cost:
/// linear in both drawings.
Fates fatesBetween(const Document& before, const Document& after, const std::vector<std::string>& edited,
                   std::size_t edit);

/// The same with the reasons of those who deleted constraints.
class DeletionReasons;
Fates fatesBetween(const Document& before, const Document& after, const std::vector<std::string>& edited,
                   std::size_t edit, const DeletionReasons& reasons);

/// The same of an undo: what is there again is told as restored.
Fates fatesOfUndo(const Document& before, const Document& after, std::size_t edit);

/// The points that define a shape, and its sizes as points on an axis of their own.
std::vector<Vec2> definingPoints(const Shape& shape);

/// The longest way that one of a shape's defining points went, in drawing units; radii count as their change.
/// Shapes of another kind, or of another number of points: the distance of their start points; of what has a centre
/// before and after, of the centres.
double movement(const Shape& before, const Shape& after);

/// Adds the outcomes of a further edit to those of earlier ones: a constraint that was added and then deleted vanishes,
/// what happened last otherwise stands, movements are those between the first and the last state.
FateReport runReport(const Document& before, const Document& after, const std::vector<EditOutcome>& edits,
                     const std::vector<Fates>& fates);

}  // namespace holdfast::editing
