#pragma once

#include "core/GroupSurvey.h"

#include <yxbase/YxGePoint3d.h>

#include <optional>

namespace holdfast::module {

using Points = YxArray<YxGePoint3d>;
using Dependencies = YxArray<YxDbAssocGeomDependency*>;
using Collected = OnceList<YxGeomConstraint>;

// The rules of one constraint on one dependency's curve, from the curve's ends before and after an edit, start first.
// True: the constraint goes. Pairs that are not a start and an end: it stays.

bool lineConstraintGoes(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency, const Points& before,
                        const Points& after, const YxGeomConstraint& constraint);
bool arcConstraintGoes(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency, const Points& before,
                       const Points& after, const YxGeomConstraint& constraint);
/// By the kind of geometry on a polyline's segment: the line's or the arc's rule; no answer for any other kind.
std::optional<bool> segmentConstraintGoes(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency,
                                          const YxConstrainedGeometry& geometry, const Points& before,
                                          const Points& after, const YxGeomConstraint& constraint);

// The same for all constraints on a curve's dependencies, in order: what goes is collected, each once.

void judgeLine(GroupSurvey& survey, const Dependencies& dependencies, const Points& before, const Points& after,
               Collected& collected);
void judgeArc(GroupSurvey& survey, const Dependencies& dependencies, const Points& before, const Points& after,
              Collected& collected);
/// A ray whose base point moved loses every constraint that holds at a point of it, whatever the point.
void judgeRay(GroupSurvey& survey, const Dependencies& dependencies, const YxGePoint3d& baseBefore,
              const YxGePoint3d& baseAfter, Collected& collected);
/// One segment of a polyline. True when nothing on it stays, also when nothing was on it.
bool judgeSegment(GroupSurvey& survey, const YxDbAssocGeomDependency* dependency, const Points& before,
                  const Points& after, Collected& collected);

/// Calls judge(dependency, constraint) for every constraint on every dependency, in order, and collects those for which
/// it answers true.
template <class Judge>
void collectWhere(GroupSurvey& survey, const Dependencies& dependencies, Collected& collected, const Judge& judge) {
    survey.expect(dependencies);
    YxArray<YxGeomConstraint*> constraints;
    for (const YxDbAssocGeomDependency* dependency : dependencies) {
        if (dependency == nullptr)
            continue;
        survey.constraintsOn(dependency, constraints);
        for (YxGeomConstraint* constraint : constraints) {
            if (judge(*dependency, *constraint))
                collected.add(constraint);
        }
    }
}

}  // namespace holdfast::module
