#include "core/PointCoincidence.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

namespace holdfast::module {
namespace {

YxGeomConstraint* firstUncollectedCoincidence(std::span<YxConstrainedImplicitPoint* const> points,
                                              const OnceList<YxGeomConstraint>& collected) {
    YxArray<YxGeomConstraint*> connected;
    for (const YxConstrainedImplicitPoint* point : points) {
        point->getConnectedConstraints(connected);
        for (YxGeomConstraint* constraint : connected) {
            if (constraint != nullptr && constraint->isKindOf(YxPointCoincidenceConstraint::desc()) &&
                !collected.contains(constraint))
                return constraint;
        }
    }
    return nullptr;
}

}  // namespace

void deleteOnePointCoincidence(GroupSurvey& survey, YxDbAssoc2dConstraintGroup& group,
                               const YxDbAssocGeomDependency* dependency, const OnceList<YxGeomConstraint>& collected) {
    const YxConstrainedGeometry* geometry = dependency != nullptr ? survey.geometryOn(dependency) : nullptr;
    if (geometry == nullptr)
        return;
    YxGeomConstraint* coincidence = firstUncollectedCoincidence(survey.pointsOf(*geometry), collected);
    if (coincidence == nullptr)
        return;
    coincidence->setIsImplied(false);
    group.deleteConstraint(coincidence);
    survey.forgetPoints();
}

}  // namespace holdfast::module
