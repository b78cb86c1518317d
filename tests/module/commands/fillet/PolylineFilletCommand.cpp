#include "tests/module/commands/fillet/PolylineFilletCommand.h"

#include <algorithm>

namespace holdfast::module {
namespace {

// The bulge belongs to the segment behind a vertex, so that it moves on by one.
void turnRound(PolylineData& polyline) {
    std::vector<PolylineVertex>& vertices = polyline.vertices;
    std::reverse(vertices.begin(), vertices.end());
    for (std::size_t k = 0; k + 1 < vertices.size(); ++k)
        vertices[k].bulge = -vertices[k + 1].bulge;
    vertices.back().bulge = 0.0;
}

}  // namespace

void cutBack(YxDbPolyline& polyline, const PolylineCutBack& cut) {
    const std::size_t moved = cut.dropBefore ? cut.segment : cut.segment + 1;
    EntityAccess::setVertexPoint(polyline, moved, cut.point);
    const std::size_t count = EntityAccess::vertexCount(polyline);
    if (!cut.dropBefore && moved + 1 < count)
        EntityAccess::removeVertices(polyline, moved + 1, count - moved - 1);
}

void removeLeading(YxDbPolyline& polyline, const PolylineCutBack& cut) {
    if (cut.dropBefore && cut.segment > 0)
        EntityAccess::removeVertices(polyline, 0, cut.segment);
}

PolylineData joinedPolyline(PolylineData first, bool turnFirst, PolylineData second, bool turnSecond) {
    if (turnFirst)
        turnRound(first);
    if (turnSecond)
        turnRound(second);
    for (PolylineVertex& vertex : second.vertices)
        vertex.identifier = 0;
    PolylineVertex& end = first.vertices.back();
    const YxGePoint2d start = second.vertices.front().point;
    const bool touches = end.point.x == start.x && end.point.y == start.y;
    end.bulge = touches ? second.vertices.front().bulge : 0.4;
    first.vertices.insert(first.vertices.end(), second.vertices.begin() + (touches ? 1 : 0), second.vertices.end());
    return first;
}

}  // namespace holdfast::module
