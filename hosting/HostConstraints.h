#pragma once

#include <string>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "host/model/HostBuilder.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// The whole of an entity as a place of the host; of a polyline its first segment.
BuiltPlace wholeOf(const YxDbObjectId& id, const Shape& shape);

/// A place of a document on an entity of the host.
BuiltPlace placeIn(const YxDbObjectId& id, const Shape& shape, const Place& place);

/// The place of a document that a geometry on an entity has; segment counts from 0 and matters for polylines only.
Place placeFrom(const std::string& name, const YxDbEntity& entity, const YxConstrainedGeometry& geometry, int segment);

/// The host's constraint for one of a document, on its geometries. Members of composites are not owned yet.
YxGeomConstraint& addHostConstraint(YxDbAssoc2dConstraintGroup& group, const Constraint& constraint,
                                    const std::vector<YxConstrainedGeometry*>& geometries);

/// Every top-level constraint that touches an entity, internal and implied ones too, each once.
std::vector<std::pair<YxDbAssoc2dConstraintGroup*, YxGeomConstraint*>> constraintsOn(const YxDbEntity& entity);

}  // namespace holdfast::hosting
