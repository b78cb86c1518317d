#include "tests/module/commands/break/CutCommand.h"

#include <cmath>
#include <cstddef>

namespace holdfast::module {
namespace {

constexpr double kAtVertex = 1e-6;

struct Place {
    std::size_t index;
    double fraction;  // 0 at a vertex
};

Place placeAt(double param) {
    const double whole = std::floor(param);
    const double fraction = param - whole;
    return {static_cast<std::size_t>(whole), fraction <= kAtVertex ? 0.0 : fraction};
}

double partOfBulge(double bulge, double fraction) {
    return std::tan(std::atan(bulge) * fraction);
}

// From a chord's end point and the bulge: the point after a fraction of the included angle.
YxGePoint2d pointOnSegment(const PolylineVertex& from, const PolylineVertex& to, double fraction) {
    if (from.bulge == 0.0) {
        return {from.point.x + fraction * (to.point.x - from.point.x),
                from.point.y + fraction * (to.point.y - from.point.y)};
    }
    const auto polyline = EntityAccess::makePolyline({.vertices = {from, to}, .closed = false});
    YxGePoint3d point;
    polyline->getPointAtParam(fraction, point);
    return {point.x, point.y};
}

PolylineVertex withoutIdentifier(PolylineVertex vertex) {
    vertex.identifier = 0;
    return vertex;
}

PolylineData piece(const PolylineData& uncut, Place from, Place to) {
    PolylineData data;
    for (std::size_t index = from.index; index <= to.index; ++index)
        data.vertices.push_back(withoutIdentifier(uncut.vertices[index]));
    if (to.fraction > 0.0) {
        PolylineVertex& before = data.vertices.back();
        const PolylineVertex& after = uncut.vertices[to.index + 1];
        const YxGePoint2d end = pointOnSegment(before, after, to.fraction);
        before.bulge = partOfBulge(before.bulge, to.fraction);
        data.vertices.push_back({.point = end, .bulge = 0.0, .identifier = 0});
    }
    if (from.fraction > 0.0) {
        PolylineVertex& first = data.vertices.front();
        first.point = pointOnSegment(uncut.vertices[from.index], uncut.vertices[from.index + 1], from.fraction);
        first.bulge = partOfBulge(uncut.vertices[from.index].bulge, 1.0 - from.fraction);
    }
    return data;
}

}  // namespace

CutPieces cutPolyline(const PolylineData& uncut, double startParam, double endParam) {
    const Place start = placeAt(startParam);
    const Place end = placeAt(endParam);
    const std::size_t last = uncut.vertices.size() - 1;
    CutPieces pieces;
    if (start.index > 0 || start.fraction > 0.0)
        pieces.first = piece(uncut, {0, 0.0}, start);
    if (end.index < last)
        pieces.second = piece(uncut, end, {last, 0.0});
    return pieces;
}

YxGePoint3d pointAt(const PolylineData& polyline, double param) {
    const auto built = EntityAccess::makePolyline(polyline);
    YxGePoint3d point;
    built->getPointAtParam(param, point);
    return point;
}

void copyReactors(const YxDbEntity& from, YxDbEntity& to) {
    for (const YxDbObjectId& reactor : HostAccess::reactors(from))
        HostAccess::addReactor(to, reactor);
}

void putInto(const YxDbObjectId& resident, const YxDbEntity& data) {
    const auto open = YxDbObjectIdImpl::openObject(resident, YxDb::kForWrite, false);
    if (open.isNull() || open->isA() != data.isA())
        return;
    if (auto* line = open->isKindOf(YxDbLine::desc()) ? static_cast<YxDbLine*>(open.get()) : nullptr) {
        const LineData cut = EntityAccess::line(static_cast<const YxDbLine&>(data));
        EntityAccess::setLine(*line, cut.start, cut.end);
    } else if (open->isKindOf(YxDbRay::desc())) {
        const DirectedData cut = EntityAccess::ray(static_cast<const YxDbRay&>(data));
        EntityAccess::setRay(static_cast<YxDbRay&>(*open), cut.base, cut.direction);
    } else if (open->isKindOf(YxDbArc::desc())) {
        EntityAccess::setArc(static_cast<YxDbArc&>(*open), EntityAccess::arc(static_cast<const YxDbArc&>(data)));
    } else if (open->isKindOf(YxDbEllipse::desc())) {
        EntityAccess::setEllipse(static_cast<YxDbEllipse&>(*open),
                                 EntityAccess::ellipse(static_cast<const YxDbEllipse&>(data)));
    } else if (open->isKindOf(YxDbSpline::desc())) {
        EntityAccess::setSpline(static_cast<YxDbSpline&>(*open),
                                EntityAccess::spline(static_cast<const YxDbSpline&>(data)));
    } else if (open->isKindOf(YxDbPolyline::desc())) {
        EntityAccess::setPolyline(static_cast<YxDbPolyline&>(*open),
                                  EntityAccess::polyline(static_cast<const YxDbPolyline&>(data)));
    }
}

}  // namespace holdfast::module
