#pragma once

#include <yxdb/YxDbObjectId.h>

class YxDbEntity;

namespace holdfast::module {

/// Whether a geometry dependency stands among the entity's persistent reactors.
bool carriesGeometryDependency(const YxDbEntity& entity);

/// Detaches every geometry dependency of the entity and attaches it to the target; returns how many there were.
int moveGeometryDependencies(const YxDbEntity& entity, const YxDbObjectId& target);

}  // namespace holdfast::module
