#pragma once

#include <utility>
#include <vector>

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbEntity.h>

namespace holdfast {

/// The numbers by which the host's helpers tell kinds of constrained geometry.
enum class GeometryKind : unsigned int {
    other = 0,
    point = 1,
    line = 2,
    boundedLine = 3,
    ray = 4,
    circle = 5,
    datumLine = 6,  ///< the direction of a text
    arc = 7,
    ellipse = 8,
    boundedEllipse = 9,
    spline = 10,
    implicitPoint = 11
};

GeometryKind geometryKind(const YxConstrainedGeometry& geometry);

/// The constrained geometries of an entity, its implicit points included, in the order of its dependencies.
std::vector<YxConstrainedGeometry*> geometriesOf(const YxDbEntity& entity);

/// The top-level constraints, but no internal ones, that touch an entity, each once, with their group.
std::vector<std::pair<YxDbAssoc2dConstraintGroup*, YxGeomConstraint*>> constraintsTouching(const YxDbObjectId& entity);

}  // namespace holdfast
