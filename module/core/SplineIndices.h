#pragma once

#include "core/GroupSurvey.h"

namespace holdfast::module {

/// The control points of the dependency's spline at which the constraint holds, in order, repeated where it reaches one
/// twice. Unlike other composites a smooth joint is asked for all of its coincidences.
void listControlPoints(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency,
                       const YxGeomConstraint& constraint, YxArray<int>& indices);

}  // namespace holdfast::module
