#include "geometry/curves/Polylines.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Pieces.h"

namespace holdfast::geometry {
namespace {

struct Cut {
    std::size_t segment;
    double fraction;  ///< 0 up to, but not including, 1
};

Cut cutAt(double param) {
    const double nearest = std::round(param);
    if (std::abs(param - nearest) <= kAtVertex) {
        return {static_cast<std::size_t>(nearest), 0.0};
    }
    return {static_cast<std::size_t>(param), param - std::floor(param)};
}

Vec2 pointOf(const PolylineShape& polyline, Cut cut) {
    const std::size_t count = polyline.vertices.size();
    if (cut.fraction == 0.0) {
        return polyline.vertices[cut.segment % count];
    }
    const Piece piece = segmentPiece(polyline, cut.segment % count);
    return derivatives(piece.form, piece.first + cut.fraction * (piece.last - piece.first)).point;
}

double bulgeOfPart(double bulge, double fraction) {
    return bulgeOfAngle(fraction * angleOfBulge(bulge));
}

void append(PolylineShape& part, Vec2 vertex, double bulge, int id) {
    part.vertices.push_back(vertex);
    part.bulges.push_back(bulge);
    part.ids.push_back(id);
}

}  // namespace

Shape segmentCurve(const PolylineShape& polyline, std::size_t index) {
    if (index >= segmentCount(polyline)) {
        throw GeometryError("polyline: there is no segment " + std::to_string(index) + "; it has " +
                            std::to_string(segmentCount(polyline)));
    }
    const Piece piece = segmentPiece(polyline, index);
    if (std::holds_alternative<LineForm>(piece.form)) {
        return LineShape{polyline.vertices[index], polyline.vertices[(index + 1) % polyline.vertices.size()]};
    }
    const ConicForm& circle = std::get<ConicForm>(piece.form);
    const double towardsStart = std::atan2(circle.major.y, circle.major.x);
    const double start = circle.isClockwise() ? towardsStart - piece.last : towardsStart;
    return ArcShape{circle.centre, norm(circle.major), start, start + piece.last};
}

PolylineShape reversedPolyline(const PolylineShape& polyline) {
    PolylineShape turned = polyline;
    if (turned.vertices.empty()) {
        return turned;
    }
    const auto behindFirst = polyline.closed ? 1 : 0;
    std::reverse(turned.vertices.begin() + behindFirst, turned.vertices.end());
    std::reverse(turned.ids.begin() + behindFirst, turned.ids.end());
    std::reverse(turned.bulges.begin(), turned.bulges.end());
    if (!polyline.closed) {  // the bulge of the last vertex belongs to no segment and stays behind
        std::rotate(turned.bulges.begin(), turned.bulges.begin() + 1, turned.bulges.end());
    }
    for (double& bulge : turned.bulges) {
        bulge = bulge == 0.0 ? 0.0 : -bulge;
    }
    return turned;
}

PolylineShape openedPolyline(const PolylineShape& polyline) {
    PolylineShape open = polyline;
    if (polyline.closed) {
        open.closed = false;
        append(open, polyline.vertices.front(), 0.0, 0);
    }
    return open;
}

PolylineShape polylinePart(const PolylineShape& polyline, double firstParam, double lastParam) {
    assert(firstParam < lastParam);
    const std::size_t count = polyline.vertices.size();
    assert(polyline.bulges.size() == count && polyline.ids.size() == count);
    const Cut first = cutAt(firstParam);
    const Cut last = cutAt(lastParam);
    const std::size_t end = last.fraction == 0.0 ? last.segment : last.segment + 1;  // its vertex closes the part
    PolylineShape part;
    for (std::size_t i = first.segment; i < end; ++i) {
        const double from = i == first.segment ? first.fraction : 0.0;
        const double to = i == last.segment ? last.fraction : 1.0;
        const double bulge = polyline.bulges[i % count];
        append(part, i == first.segment ? pointOf(polyline, first) : polyline.vertices[i % count],
               to - from == 1.0 ? bulge : bulgeOfPart(bulge, to - from), polyline.ids[i % count]);
    }
    append(part, pointOf(polyline, last), 0.0, polyline.ids[end % count]);
    return part;
}

}  // namespace holdfast::geometry
