#pragma once

#include <vector>

#include "core/LvEditDeleteConstraint.h"
#include "host/model/state/HostAccess.h"

namespace holdfast::plain {

// The queries and rules of the clean-up base once more, as plainly as they can be said: one walk for each question,
// linear searches, nothing remembered. Random scenes compare the module with these.

using Points = std::vector<YxGePoint3d>;
using Constraints = std::vector<YxGeomConstraint*>;

struct Ends {
    int start = -1;
    int end = -1;
};

void addOnce(Constraints& list, YxGeomConstraint* constraint);

std::vector<YxDbAssocGeomDependency*> dependenciesOf(const YxDbEntity& entity);
Constraints constraintsOn(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency);
Constraints constraintsOnEntity(const YxDbAssoc2dConstraintGroup& group, const YxDbEntity& entity);
std::vector<const YxConstrainedImplicitPoint*> pointsOn(const YxDbAssoc2dConstraintGroup& group,
                                                        const YxDbAssocGeomDependency& dependency,
                                                        const YxGeomConstraint& constraint);

bool lineRule(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency, const Points& before,
              const Points& after, const YxGeomConstraint& constraint);
bool arcRule(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency, const Points& before,
             const Points& after, const YxGeomConstraint& constraint);
/// Adds what goes to the collection; true when nothing stays.
bool segmentRule(const YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency,
                 const Points& before, const Points& after, Constraints& collected);

/// A walk along the vertices; false when the segment cannot be told.
bool segmentOf(const YxDbAssocGeomDependency& dependency, const YxDbPolyline& polyline, Ends& ends);
int identifierAt(const YxDbPolyline& polyline, int index);
YxGePoint3d pointAt(const YxDbPolyline& polyline, int index);

/// Deletes one coincidence at the points of the dependency's curve that is not in the collection.
void deleteOneCoincidence(YxDbAssoc2dConstraintGroup& group, const YxDbAssocGeomDependency& dependency,
                          const Constraints& collected);

YxSmartPtr<YxDbAssocGeomDependency> openForWrite(const YxDbAssocGeomDependency& dependency);
void setIdentifier(YxDbPolyline& polyline, int index, int identifier);

/// Deletes through the group, in order, and answers how many there were.
int deleteAll(YxDbAssoc2dConstraintGroup* group, const Constraints& constraints);

}  // namespace holdfast::plain
