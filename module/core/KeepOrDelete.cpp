#include "core/KeepOrDelete.h"

#include "core/EndRules.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <yxdb/YxDbDatabase.h>

namespace holdfast::module {
namespace {

YxDb::ImplicitPointType typeOf(const YxConstrainedGeometry* implicitPoint) {
    return static_cast<const YxConstrainedImplicitPoint*>(implicitPoint)->pointType();
}

// True for a horizontal or vertical constraint on a line that lies in the user's x or y direction.
bool isSatisfiedDirection(const YxDbAssoc2dConstraintGroup& group, const YxGeomConstraint& constraint,
                          const YxGeVector3d& direction) {
    const bool horizontal = constraint.isKindOf(YxHorizontalConstraint::desc());
    if (!horizontal && !constraint.isKindOf(YxVerticalConstraint::desc()))
        return false;
    const YxDbDatabase* database = group.objectId().database();
    if (database == nullptr)
        return false;
    const YxGeVector3d axis = horizontal ? database->ucsxdir() : database->ucsydir();
    return axis.isParallelTo(direction);
}

bool anyPointGoes(const YxArray<YxConstrainedGeometry*>& points, EndMoves moves) {
    for (const YxConstrainedGeometry* point : points) {
        if (onePointGoes(typeOf(point), moves))
            return true;
    }
    return false;
}

}  // namespace

bool lineConstraintGoes(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency, const Points& before,
                        const Points& after, const YxGeomConstraint& constraint) {
    if (!areEndPairs(before, after))
        return false;
    const EndMoves moves = endMoves(before, after);
    if (constraint.isKindOf(YxEqualLengthConstraint::desc()) && (moves.start || moves.end))
        return true;
    if (isSatisfiedDirection(survey.group(), constraint, before[0] - before[1]))
        return false;

    YxArray<YxConstrainedGeometry*> points;
    survey.implicitPointsOn(dependency, constraint, points);
    if (constraint.isKindOf(YxSymmetricConstraint::desc()) && points.length() == 2)
        return true;
    return anyPointGoes(points, moves);
}

bool arcConstraintGoes(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency, const Points& before,
                       const Points& after, const YxGeomConstraint& constraint) {
    if (!areEndPairs(before, after))
        return false;
    YxArray<YxConstrainedGeometry*> points;
    survey.implicitPointsOn(dependency, constraint, points);
    const EndMoves moves = endMoves(before, after);
    if (points.length() == 1)
        return onePointGoes(typeOf(points.first()), moves);
    return twoPointsGo(points, moves);
}

std::optional<bool> segmentConstraintGoes(GroupSurvey& survey, const YxDbAssocGeomDependency& dependency,
                                          const YxConstrainedGeometry& geometry, const Points& before,
                                          const Points& after, const YxGeomConstraint& constraint) {
    if (geometry.isKindOf(YxConstrainedBoundedLine::desc()))
        return lineConstraintGoes(survey, dependency, before, after, constraint);
    if (geometry.isKindOf(YxConstrainedArc::desc()))
        return arcConstraintGoes(survey, dependency, before, after, constraint);
    return std::nullopt;
}

void judgeLine(GroupSurvey& survey, const Dependencies& dependencies, const Points& before, const Points& after,
               Collected& collected) {
    collectWhere(survey, dependencies, collected, [&](const auto& dependency, const auto& constraint) {
        return lineConstraintGoes(survey, dependency, before, after, constraint);
    });
}

void judgeArc(GroupSurvey& survey, const Dependencies& dependencies, const Points& before, const Points& after,
              Collected& collected) {
    collectWhere(survey, dependencies, collected, [&](const auto& dependency, const auto& constraint) {
        return arcConstraintGoes(survey, dependency, before, after, constraint);
    });
}

void judgeRay(GroupSurvey& survey, const Dependencies& dependencies, const YxGePoint3d& baseBefore,
              const YxGePoint3d& baseAfter, Collected& collected) {
    if (baseBefore.isEqualTo(baseAfter))
        return;
    YxArray<YxConstrainedGeometry*> points;
    collectWhere(survey, dependencies, collected, [&](const auto& dependency, const auto& constraint) {
        survey.implicitPointsOn(dependency, constraint, points);
        return !points.isEmpty();
    });
}

bool judgeSegment(GroupSurvey& survey, const YxDbAssocGeomDependency* dependency, const Points& before,
                  const Points& after, Collected& collected) {
    const YxConstrainedGeometry* geometry = dependency != nullptr ? survey.geometryOn(dependency) : nullptr;
    if (geometry == nullptr)
        return true;
    YxArray<YxGeomConstraint*> constraints;
    survey.constraintsOn(dependency, constraints);
    bool nothingStays = true;
    for (YxGeomConstraint* constraint : constraints) {
        const auto goes = segmentConstraintGoes(survey, *dependency, *geometry, before, after, *constraint);
        if (!goes.has_value())
            continue;
        if (*goes)
            collected.add(constraint);
        else
            nothingStays = false;
    }
    return nothingStays;
}

}  // namespace holdfast::module
