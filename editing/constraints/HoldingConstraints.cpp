#include "editing/constraints/HoldingConstraints.h"

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "editing/EditContext.h"
#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

std::vector<std::size_t> addHolding(Drawing& drawing, const Document& document, std::size_t firstNew) {
    const std::vector<double> misses = DocumentSketch(document).shortfalls();
    const double holds = kHolds * drawing.extent();
    std::vector<std::size_t> leftOut;
    for (std::size_t i = firstNew; i < document.constraints.size(); ++i)
        if (misses[i] <= holds)
            drawing.addConstraint(document.constraints[i]);
        else
            leftOut.push_back(i);
    return leftOut;
}

namespace {

/// True for what tied one segment of a polyline to another: a corner that the edit has taken apart.
bool tiesOnePolyline(const Constraint& constraint) {
    return constraint.refs.size() == 2 && constraint.refs[0].entity == constraint.refs[1].entity;
}

bool mayBePutBack(const Deletion& deletion, const DeletionReasons& reasons) {
    if (deletion.by != Deletion::By::module || ownsMembers(deletion.constraint.type))
        return false;
    return !traitsOf(deletion.constraint.type).isJudgedByModule ||
           (reasons.wentAtOnce(deletion.constraint.id) && !tiesOnePolyline(deletion.constraint));
}

std::vector<std::string> entitiesOfAll(const std::vector<Constraint>& constraints) {
    std::vector<std::string> names;
    for (const Constraint& constraint : constraints)
        for (std::string& name : entitiesOf(constraint))
            names.push_back(std::move(name));
    return names;
}

}  // namespace

void putBackHolding(const EditContext& context) {
    Drawing& drawing = context.drawing;
    std::vector<Constraint> deleted;
    for (const Deletion& deletion : drawing.deletions())
        if (mayBePutBack(deletion, context.reasons))
            if (std::optional<Constraint> now = drawing.deletedConstraint(deletion.constraint.id))
                deleted.push_back(std::move(*now));
    if (deleted.empty())
        return;
    Document document = drawing.around(entitiesOfAll(deleted));
    const EntityIndex entities(document);
    const std::size_t first = document.constraints.size();
    for (Constraint& constraint : deleted)
        if (!faultIn(constraint, entities))
            document.constraints.push_back(std::move(constraint));
    const std::vector<double> misses = DocumentSketch(document).shortfalls();
    const double holds = kHolds * drawing.extent();
    for (std::size_t i = first; i < document.constraints.size(); ++i)
        if (!document.constraints[i].driving || misses[i] <= holds)
            drawing.restoreConstraint(document.constraints[i].id);
}

}  // namespace holdfast::editing
