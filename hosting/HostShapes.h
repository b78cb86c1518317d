#pragma once

#include <memory>

#include <yxdb/YxDbEntity.h>

#include "document/Document.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// A new entity of the host with a shape's data, in the world's xy plane. Vertex identifiers of polylines are taken
/// over. Throws std::invalid_argument for shapes that no entity can have.
std::unique_ptr<YxDbEntity> makeEntity(const Shape& shape);

/// Gives an entity a shape of its own kind; a resident one has to be open for write. Arcs and elliptical arcs that are
/// seen from below stay so, so that constraints on their ends stay on the same points. Throws std::invalid_argument for
/// another kind.
void writeShape(YxDbEntity& entity, const Shape& shape);

/// The shape of an entity. Angles of arcs come as the host keeps them; an arc seen from below comes as the
/// counter-clockwise arc over the same points.
Shape readShape(const YxDbEntity& entity);

/// True for an arc or an ellipse whose normal points down, as mirroring leaves it: its start is the end of the
/// counter-clockwise shape.
bool isSeenFromBelow(const YxDbEntity& entity);

/// True when an entity of the host's class holds shapes of this kind (circles and arcs are two kinds, an ellipse and
/// an elliptical arc one).
bool sameHostKind(const Shape& a, const Shape& b);

}  // namespace holdfast::hosting
