#pragma once

#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

// The points by which a user stretches or drags an entity, numbered as the evaluator knows them:
//   line                                0 start, 1 end, 2 middle (both ends)
//   arc                                 0 start, 1 end, 2 centre (all of it)
//   circle, ellipse                     0 centre (all of it)
//   elliptical arc                      0 centre (all of it), 1 start, 2 end
//   point, text                         0 position
//   ray, xline                          0 base, 1 the point one unit along it; xline also 2, one unit the other way
//   polyline, spline                    the number of the vertex or control point

struct Grip {
    int number = 0;
    Vec2 point;
};

/// The grips that are points of their own, in the order of their numbers: not the middle of a line and the centre of an
/// arc, which follow the ends.
std::vector<Grip> pointGrips(const Shape& shape);

/// Those of them that a selection window catches: an elliptical arc is stretched whole or not at all.
std::vector<Grip> windowGrips(const Shape& shape);

/// The grips that a user drags who drags a place of the entity: of a segment its two vertices, of other places one.
/// None where the entity has no grip.
std::vector<int> gripsAt(const Shape& shape, const Place& place);

/// All the numbers that belong to a stretch of these: an arc with both ends in it moves as a whole.
std::vector<int> completed(const Shape& shape, std::vector<int> grips);

/// The shape after its grips were moved. Of an arc the included angle stays, of a polyline every bulge; a ray or a
/// construction line whose second point moves turns about its base. An end of an elliptical arc slides along the
/// ellipse to where it is nearest in direction. Splines keep knots and weights.
Shape withGripsMoved(const Shape& shape, const std::vector<int>& grips, Vec2 by);

}  // namespace holdfast::editing
