#include "drag/DragPreview.h"

#include <unordered_set>

#include <YxDbConstraints/AssocConstraintHeader.h>
#include <yxdb/YxGiWorldDraw.h>

namespace holdfast::module {

namespace {

bool drawEachOnce(const YxArray<YxDbEntity*>& entities, YxGiWorldGeometry& geometry) {
    std::unordered_set<const YxDbEntity*> drawn;
    for (const YxDbEntity* entity : entities)
        if (entity != nullptr && drawn.insert(entity).second)
            geometry.draw(entity);
    return !drawn.empty();
}

void drawTransformed(const YxArray<YxDbEntity*>& entities, const YxGeMatrix3d& transform, YxGiWorldGeometry& geometry) {
    for (const YxDbEntity* entity : entities) {
        if (entity == nullptr)
            continue;
        geometry.pushModelTransform(transform);
        geometry.draw(entity);
        geometry.popModelTransform();
    }
}

}  // namespace

bool drawPreview(const AssocConstraintHeader& header, YxGiWorldDraw& worldDraw) {
    if (header.entitiesToDraw.isEmpty())
        return false;
    YxGiWorldGeometry& geometry = worldDraw.geometry();
    const bool drawn = drawEachOnce(header.entitiesToDraw, geometry);
    drawTransformed(header.unconstrainedEntities, header.dragTransform, geometry);
    return drawn;
}

}  // namespace holdfast::module
