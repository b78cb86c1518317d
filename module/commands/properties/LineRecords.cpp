#include "commands/properties/LineRecords.h"

#include "core/OpenAs.h"
#include "evaluation/EvaluationHeader.h"

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <YxDbConstraints/YxDbAssocPersSubentId.h>
#include <yxbase/YxGeLine3d.h>
#include <yxdb/YxDbLine.h>
#include <yxdb/YxDbRay.h>
#include <yxdb/YxDbXline.h>

namespace holdfast::module {

namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

bool isLineLike(const YxDbEntity& entity) {
    return entity.isKindOf(YxDbLine::desc()) || entity.isKindOf(YxDbXline::desc()) || entity.isKindOf(YxDbRay::desc());
}

bool carriesFixedConstraint(const YxDbAssoc2dConstraintGroup& group, const YxDbFullSubentPath& path) {
    YxConstrainedGeometry* geometry = nullptr;
    group.getConstrainedGeometry(path, geometry, false);
    if (geometry == nullptr)
        return false;
    YxArray<YxGeomConstraint*> constraints;
    geometry->getConnectedConstraints(constraints);
    bool fixed = false;
    for (const YxGeomConstraint* constraint : constraints)
        fixed = (constraint != nullptr && constraint->isKindOf(YxFixedConstraint::desc())) || fixed;
    return fixed;
}

/// A ray or construction line: the line through two points.
struct Carrier {
    YxGePoint3d base;
    YxGePoint3d second;
    YxGeVector3d unitDir;
};

/// The turn about the base that brings the direction to a point.
YxGeMatrix3d turnTowards(const Carrier& carrier, const YxGePoint3d& point) {
    const YxGeVector3d wanted = (point - carrier.base).normal();
    const YxGeVector3d axis = carrier.unitDir.crossProduct(wanted);
    const double angle = carrier.unitDir.angleTo(wanted);
    YxGeMatrix3d turn;
    // KEEP: the axis points down already when the angle is negated, so that a clockwise turn comes out
    // counterclockwise (PropertiesRay.TurnsCounterclockwiseForAPointOnItsRight).
    turn.setToRotation(axis.z < 0.0 ? -angle : angle, axis, carrier.base);
    return turn;
}

std::optional<PropertiesOriRecord> carrierRecord(EntType entType, const Carrier& carrier, const PropertyChange& change,
                                                 bool isFixed) {
    const EditableProperty* property = findProperty(entType, change.property);
    if (property == nullptr)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*property);
    const bool movesBase = property->edited == Edited::position;
    const YxGePoint3d target = change.newPoint(movesBase ? carrier.base : carrier.second);
    if (isFixed && !YxGeLine3d(carrier.base, carrier.second).isOn(target, YxGeContext::gTol))
        return record;
    if (movesBase)
        record.delta = target - carrier.base;
    else
        record.transform = turnTowards(carrier, target);
    return record;
}

}  // namespace

bool isFixedLine(const YxDbObjectId& id) {
    const auto entity = openAs<YxDbEntity>(id);
    if (!entity || !isLineLike(*entity))
        return false;
    const auto group = openAs<YxDbAssoc2dConstraintGroup>(findGroup(id));
    const auto* parts = static_cast<const YxDbAssocPersSubentIdPE*>(entity->queryX(YxDbAssocPersSubentIdPE::desc()));
    YxArray<YxDbSubentId> edges;
    if (!group || parts == nullptr || parts->getAllSubentities(entity.get(), YxDb::kEdgeSubentType, edges) != Yxrt::eOk)
        return false;
    bool fixed = false;
    // KEEP: asks the host about every edge, also behind the first that carries one
    // (PropertiesFix.IsLookedForOnEveryEdgeBehindTheFirstThatHasIt).
    for (const YxDbSubentId& edge : edges)
        fixed = (edge != YxDbSubentId() && carriesFixedConstraint(*group, {id, edge})) || fixed;
    return fixed;
}

std::optional<PropertiesOriRecord> lineRecord(const YxDbLine& line, const PropertyChange& change, bool isFixed) {
    const EditableProperty* property = findProperty(EntType::kLine, change.property);
    if (property == nullptr)
        return std::nullopt;
    PropertiesOriRecord record = recordOf(*property);
    const YxGePoint3d old = property->edited == Edited::position ? line.startPoint() : line.endPoint();
    const YxGePoint3d target = change.newPoint(old);
    if (!isFixed || YxGeLine3d(line.startPoint(), line.endPoint()).isOn(target, YxGeContext::gTol))
        record.delta = target - old;
    return record;
}

std::optional<PropertiesOriRecord> rayRecord(const YxDbRay& ray, const PropertyChange& change, bool isFixed) {
    const YxGePoint3d base = ray.basePoint();
    return carrierRecord(EntType::kRay, {base, base + ray.unitDir(), ray.unitDir()}, change, isFixed);
}

std::optional<PropertiesOriRecord> xlineRecord(const YxDbXline& xline, const PropertyChange& change, bool isFixed) {
    return carrierRecord(EntType::kXline, {xline.basePoint(), xline.secondPoint(), xline.unitDir()}, change, isFixed);
}

}  // namespace holdfast::module
