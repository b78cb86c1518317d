#pragma once

#include "tests/module/core/PlainSteps.h"

namespace holdfast::plain {

// The rules of whole curves once more, step by step.

/// The ends of a line or any other curve.
Points endsOf(const YxDbEntity& curve);
std::vector<YxGePoint3d> controlPointsOf(const YxDbEntity& spline);

/// Adds what the line rule or the arc rule takes from the curve's dependencies, each once.
void judgeLine(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& curve, const Points& before,
               const Points& after, Constraints& collected);
void judgeArc(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& curve, const Points& before,
              const Points& after, Constraints& collected);
void judgeRay(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& ray, const YxGePoint3d& before,
              const YxGePoint3d& after, Constraints& collected);

/// The control points of the dependency's spline at which the constraint holds.
std::vector<int> controlPointsAt(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency,
                                 const YxGeomConstraint& constraint);

}  // namespace holdfast::plain
