#include "tests/module/commands/fillet/SelfFilletCommand.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

void moveTo(YxDbPolyline& polyline, std::size_t vertex, const YxGePoint2d& point) {
    EntityAccess::setVertexPoint(polyline, vertex, point);
}

void removeBehind(YxDbPolyline& polyline, std::size_t vertex) {
    const std::size_t count = EntityAccess::vertexCount(polyline);
    if (vertex + 1 < count)
        EntityAccess::removeVertices(polyline, vertex + 1, count - vertex - 1);
}

void withArc(YxDbPolyline& polyline, const SelfFilletEdit& edit) {
    const std::size_t last = EntityAccess::vertexCount(polyline) - 1;
    switch (edit.mode) {
        case Centre::kCorner:
            EntityAccess::insertVertex(polyline, edit.second, {.point = edit.onFirst, .bulge = 0.4, .identifier = 0});
            return moveTo(polyline, edit.second + 1, edit.onSecond);
        case Centre::kBetween:
            moveTo(polyline, edit.first + 1, edit.onFirst);
            EntityAccess::setBulge(polyline, edit.first + 1, 0.4);
            return moveTo(polyline, edit.second, edit.onSecond);
        case Centre::kClosingCorner:
            moveTo(polyline, 0, edit.onFirst);
            return EntityAccess::insertVertex(polyline, last + 1,
                                              {.point = edit.onSecond, .bulge = 0.4, .identifier = 0});
        case Centre::kBehind:
            moveTo(polyline, 0, edit.onFirst);
            moveTo(polyline, edit.second + 1, edit.onSecond);
            removeBehind(polyline, edit.second + 1);
            return EntityAccess::setBulge(polyline, edit.second + 1, 0.4);
        case Centre::kClosing:
            moveTo(polyline, 0, edit.onFirst);
            moveTo(polyline, last, edit.onSecond);
            EntityAccess::setBulge(polyline, last, 0.4);
            return EntityAccess::setClosed(polyline, true);
        case Centre::kNothing:
            return;
    }
}

void withCorner(YxDbPolyline& polyline, const SelfFilletEdit& edit) {
    const std::size_t last = EntityAccess::vertexCount(polyline) - 1;
    switch (edit.mode) {
        case Centre::kBetween:
            moveTo(polyline, edit.second, edit.corner);
            return EntityAccess::removeVertices(polyline, edit.first + 1, edit.second - edit.first - 1);
        case Centre::kBehind:
            moveTo(polyline, 0, edit.corner);
            return removeBehind(polyline, edit.second);
        case Centre::kClosing:
            moveTo(polyline, 0, edit.corner);
            EntityAccess::removeVertex(polyline, last);
            return EntityAccess::setClosed(polyline, true);
        default:
            return;
    }
}

}  // namespace

void filletVertices(YxDbPolyline& polyline, const SelfFilletEdit& edit) {
    if (edit.sharp)
        withCorner(polyline, edit);
    else
        withArc(polyline, edit);
}

}  // namespace holdfast::module
