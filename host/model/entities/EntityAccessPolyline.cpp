#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"
#include "host/src/EntityCheck.h"
#include "host/src/yxdb/curves/BulgeSegment.h"

namespace holdfast {
namespace {

constexpr EntityCheck kPolyline("polyline");

std::string numbered(std::size_t index) {
    return "vertex " + std::to_string(index);
}

void check(std::size_t index, const PolylineVertex& vertex) {
    if (std::isfinite(vertex.point.x) && std::isfinite(vertex.point.y) && std::isfinite(vertex.bulge))
        return;
    kPolyline.finite(numbered(index), vertex.point);
    kPolyline.finite(numbered(index) + " bulge", vertex.bulge);
}

void checkIndex(std::size_t index, std::size_t count) {
    if (index >= count)
        kPolyline.refuse("there is no vertex " + std::to_string(index) + "; give an index below " +
                         std::to_string(count));
}

}  // namespace

void EntityAccess::remember(YxDbPolyline& polyline, int identifier) {
    polyline.m_lastFreshIdentifier = std::max(polyline.m_lastFreshIdentifier, identifier);
}

std::unique_ptr<YxDbPolyline> EntityAccess::makePolyline(const PolylineData& data) {
    std::unique_ptr<YxDbPolyline> made(new YxDbPolyline);
    setPolyline(*made, data);
    return made;
}

void EntityAccess::setPolyline(YxDbPolyline& polyline, const PolylineData& data) {
    if (data.vertices.empty())
        kPolyline.refuse("there are no vertices; give at least one");
    for (std::size_t i = 0; i < data.vertices.size(); ++i)
        check(i, data.vertices[i]);
    requireOpenForWrite(polyline, "setPolyline");
    std::vector<YxDbPolyline::Vertex> vertices;
    vertices.reserve(data.vertices.size());
    for (const PolylineVertex& each : data.vertices) {
        vertices.push_back({each.point, each.bulge, each.identifier});
        remember(polyline, each.identifier);
    }
    polyline.m_vertices = std::move(vertices);
    polyline.m_closed = data.closed;
}

PolylineData EntityAccess::polyline(const YxDbPolyline& polyline) {
    PolylineData data{.vertices = {}, .closed = polyline.m_closed};
    data.vertices.reserve(polyline.m_vertices.size());
    for (const YxDbPolyline::Vertex& each : polyline.m_vertices)
        data.vertices.push_back({each.point, each.bulge, each.identifier});
    return data;
}

PolylineVertex EntityAccess::vertex(const YxDbPolyline& polyline, std::size_t index) {
    checkIndex(index, polyline.m_vertices.size());
    const YxDbPolyline::Vertex& vertex = polyline.m_vertices[index];
    return {vertex.point, vertex.bulge, vertex.identifier};
}

void EntityAccess::setVertex(YxDbPolyline& polyline, std::size_t index, const PolylineVertex& vertex) {
    checkIndex(index, polyline.m_vertices.size());
    check(index, vertex);
    requireOpenForWrite(polyline, "setVertex");
    polyline.m_vertices[index] = {vertex.point, vertex.bulge, vertex.identifier};
    remember(polyline, vertex.identifier);
}

void EntityAccess::setVertexPoint(YxDbPolyline& polyline, std::size_t index, const YxGePoint2d& point) {
    checkIndex(index, polyline.m_vertices.size());
    kPolyline.finite(numbered(index), point);
    requireOpenForWrite(polyline, "setVertexPoint");
    polyline.m_vertices[index].point = point;
}

void EntityAccess::setBulge(YxDbPolyline& polyline, std::size_t index, double bulge) {
    checkIndex(index, polyline.m_vertices.size());
    kPolyline.finite(numbered(index) + " bulge", bulge);
    requireOpenForWrite(polyline, "setBulge");
    polyline.m_vertices[index].bulge = bulge;
}

void EntityAccess::insertVertex(YxDbPolyline& polyline, std::size_t index, const PolylineVertex& vertex) {
    checkIndex(index, polyline.m_vertices.size() + 1);
    check(index, vertex);
    requireOpenForWrite(polyline, "insertVertex");
    polyline.m_vertices.insert(polyline.m_vertices.begin() + static_cast<std::ptrdiff_t>(index),
                               {vertex.point, vertex.bulge, vertex.identifier});
    remember(polyline, vertex.identifier);
}

void EntityAccess::removeVertex(YxDbPolyline& polyline, std::size_t index) {
    removeVertices(polyline, index, 1);
}

void EntityAccess::removeVertices(YxDbPolyline& polyline, std::size_t first, std::size_t count) {
    const std::size_t vertices = polyline.m_vertices.size();
    if (count == 0)
        return;
    checkIndex(first, vertices);
    checkIndex(first + count - 1, vertices);
    if (count == vertices)
        kPolyline.refuse("no vertex would be left; keep at least one, or erase the polyline");
    requireOpenForWrite(polyline, "removeVertices");
    const auto begin = polyline.m_vertices.begin() + static_cast<std::ptrdiff_t>(first);
    polyline.m_vertices.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
}

void EntityAccess::setClosed(YxDbPolyline& polyline, bool closed) {
    requireOpenForWrite(polyline, "setClosed");
    polyline.m_closed = closed;
}

int EntityAccess::lastFreshIdentifier(const YxDbPolyline& polyline) {
    return polyline.m_lastFreshIdentifier;
}

int EntityAccess::takeFreshIdentifier(YxDbPolyline& polyline) {
    if (polyline.m_lastFreshIdentifier == std::numeric_limits<int>::max())
        return 0;
    HostAccess::tellChange(polyline);
    return ++polyline.m_lastFreshIdentifier;
}

std::size_t EntityAccess::segmentCount(const YxDbPolyline& polyline) {
    const std::size_t vertices = vertexCount(polyline);
    return vertices == 0 || isClosed(polyline) ? vertices : vertices - 1;
}

bool EntityAccess::isArc(const YxDbPolyline& polyline, std::size_t segment) {
    return segment < segmentCount(polyline) && polyline.segmentAt(static_cast<unsigned int>(segment)).isArc();
}

int EntityAccess::numberVertex(YxDbPolyline& polyline, std::size_t index) {
    HostAccess::tellChange(polyline);
    return polyline.m_vertices[index].identifier = takeFreshIdentifier(polyline);
}

}  // namespace holdfast
