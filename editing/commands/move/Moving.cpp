#include "editing/commands/move/Moving.h"

#include <unordered_set>

#include "document/checks/ShapeCheck.h"
#include "geometry/GeometryError.h"
#include "geometry/curves/Soundness.h"
#include "hosting/HostOpening.h"

namespace holdfast::editing {

namespace {

bool isArc(const Shape& shape) {
    return std::holds_alternative<ArcShape>(shape) || std::holds_alternative<EllipticalArcShape>(shape);
}

}  // namespace

std::vector<std::string> requireOnce(const Drawing& drawing, const std::vector<Name>& entities,
                                     std::span<const std::string_view> ends) {
    requireEntities(drawing, entities, ends);
    std::unordered_set<std::string_view> seen;
    for (const Name& name : entities)
        if (!seen.insert(name.value).second)
            throw EditError(name.value + " is named twice; name each entity once");
    return valuesOf(entities);
}

std::vector<std::string> requireSelection(const Drawing& drawing, const std::vector<Name>& entities,
                                          std::string_view end) {
    std::vector<std::string> names = requireOnce(drawing, entities, {&end, end.empty() ? 0u : 1u});
    for (const std::string& name : names)
        refuseFixed(drawing, name);
    return names;
}

YxGeMatrix3d matrixOf(const PlaneTransform& transform) {
    YxGeMatrix3d matrix;
    matrix(0, 0) = transform.xAxis.x;
    matrix(1, 0) = transform.xAxis.y;
    matrix(0, 1) = transform.yAxis.x;
    matrix(1, 1) = transform.yAxis.y;
    matrix(2, 2) = transform.scale;
    matrix(0, 3) = transform.offset.x;
    matrix(1, 3) = transform.offset.y;
    return matrix;
}

void moveEntity(const EditContext& context, const std::string& name, const PlaneTransform& transform) {
    const Shape shape = context.drawing.shape(name);
    if (!transform.mirrors || !isArc(shape))
        return writeEdited(context, name, transformed(shape, transform));
    const auto open = opened<YxDbEntity>(context.drawing.id(name), YxDb::kForWrite);
    if (open->transformBy(matrixOf(transform)) != Yxrt::eOk)
        throw EditError("the host does not move " + name);
}

void writeEdited(const EditContext& context, const std::string& name, const Shape& shape) {
    refuseUnsound(name, shape);
    context.drawing.write(name, shape);
}

void refuseUnsound(const std::string& name, const Shape& shape) {
    if (const std::optional<Fault> fault = faultIn(shape))
        throw EditError("nothing proper would be left of " + name + ": its " + fault->place + " would be " +
                        fault->found + "; it takes " + fault->expected);
    if (!isCurve(shape))
        return;
    try {
        requireSound(shape);
    } catch (const GeometryError& error) {
        throw EditError("nothing proper would be left of " + name + ": " + error.what());
    }
}

}  // namespace holdfast::editing
