#pragma once

#include "core/GroupSurvey.h"

class YxDbAssoc2dConstraintGroup;

namespace holdfast::module {

/// Deletes at once, and not through a collection, the first coincidence on the implicit points of the dependency's
/// curve that has not been collected; at most one. `group` is the surveyed group, open for write.
void deleteOnePointCoincidence(GroupSurvey& survey, YxDbAssoc2dConstraintGroup& group,
                               const YxDbAssocGeomDependency* dependency, const OnceList<YxGeomConstraint>& collected);

}  // namespace holdfast::module
