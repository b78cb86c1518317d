#include "editing/commands/fillet/PolylineCorner.h"

#include <algorithm>
#include <cassert>

#include "editing/commands/fillet/ChamferGeometry.h"
#include "editing/commands/fillet/SegmentSide.h"
#include "editing/text/EditText.h"
#include "geometry/Segments.h"

namespace holdfast::editing {

namespace {

using Mode = SegmentFillet::Mode;

// Vertices of a polyline with their bulges and identifiers.

void place(PolylineShape& polyline, std::size_t vertex, Vec2 point, double bulge) {
    polyline.vertices[vertex] = point;
    polyline.bulges[vertex] = bulge;
}

template <class T>
void insertAt(std::vector<T>& list, std::size_t index, T value) {
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(index), value);
}

void insertVertex(PolylineShape& polyline, std::size_t index, Vec2 point, double bulge) {
    insertAt(polyline.vertices, index, point);
    insertAt(polyline.bulges, index, bulge);
    insertAt(polyline.ids, index, 0);
}

template <class T>
void eraseFrom(std::vector<T>& list, std::size_t first, std::size_t last) {
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(first), list.begin() + static_cast<std::ptrdiff_t>(last));
}

void eraseVertices(PolylineShape& polyline, std::size_t first, std::size_t last) {
    eraseFrom(polyline.vertices, first, last);
    eraseFrom(polyline.bulges, first, last);
    eraseFrom(polyline.ids, first, last);
}

bool isCorner(const SegmentFillet& fillet) {
    return fillet.mode == Mode::kCorner || fillet.mode == Mode::kClosingCorner;
}

/// The arc, and what it leaves of the segments that it joins, in the polyline's direction.
struct Rounding {
    CutSegment from, to;
    double arcBulge = 0.0;
};

struct CornerSides {
    FilletSide before, behind;
};

CornerSides sidesAt(const SegmentFillet& fillet, const std::string& name, std::size_t from, std::size_t to) {
    const PolylineShape& polyline = fillet.counted;
    const auto spoken = [&](std::size_t segment) {
        return spokenSegment(name, (segment + fillet.seam) % polyline.vertices.size());
    };
    CornerSides sides{segmentSide(spoken(from), polyline, from, CurveEnd::end),
                      segmentSide(spoken(to), polyline, to, CurveEnd::start)};
    sides.before.mayGrow = sides.behind.mayGrow = !isCorner(fillet);
    return sides;
}

Rounding roundingBetween(const SegmentFillet& fillet, const std::string& name, std::size_t from, std::size_t to,
                         double radius) {
    const PolylineShape& polyline = fillet.counted;
    const auto [before, behind] = sidesAt(fillet, name, from, to);
    const CurveFillet curves = filletCurves(before, behind, radius);
    Rounding rounding{.from = cutSegment(before.name, polyline, from, curves.first, curves.firstEnd),
                      .to = cutSegment(behind.name, polyline, to, curves.second, curves.secondEnd)};
    if (curves.arc)
        rounding.arcBulge = bulgeFrom(*curves.arc, rounding.from.point);
    return rounding;
}

/// The arc is inserted at the corner between neighbours.
void roundCorner(SegmentFillet& fillet, const Rounding& rounding) {
    fillet.edited.bulges[fillet.first] = rounding.from.bulge;
    insertVertex(fillet.edited, fillet.second, rounding.from.point, rounding.arcBulge);
    place(fillet.edited, fillet.second + 1, rounding.to.point, rounding.to.bulge);
}

/// The part between the segments gives way. The centre compares by the vertices' numbers, so that those which an arc
/// leaves over are taken out after it; in a sharp corner it expects them gone.
void bridge(SegmentFillet& fillet, const Rounding& rounding) {
    fillet.edited.bulges[fillet.first] = rounding.from.bulge;
    place(fillet.edited, fillet.second, rounding.to.point, rounding.to.bulge);
    if (fillet.sharp)
        return eraseVertices(fillet.edited, fillet.first + 1, fillet.second);
    place(fillet.edited, fillet.first + 1, rounding.from.point, rounding.arcBulge);
    fillet.vanishing = fillet.second - fillet.first - 2;
}

/// The arc closes the polyline behind a new last vertex.
void roundClosingCorner(SegmentFillet& fillet, const Rounding& rounding) {
    fillet.edited.bulges[fillet.second] = rounding.from.bulge;
    place(fillet.edited, 0, rounding.to.point, rounding.to.bulge);
    insertVertex(fillet.edited, fillet.second + 1, rounding.from.point, rounding.arcBulge);
}

/// What lies behind the second segment gives way.
void closeBehind(SegmentFillet& fillet, const Rounding& rounding) {
    fillet.edited.bulges[fillet.second] = rounding.from.bulge;
    place(fillet.edited, 0, rounding.to.point, rounding.to.bulge);
    fillet.edited.closed = true;
    const std::size_t count = fillet.edited.vertices.size();
    if (fillet.sharp)
        return eraseVertices(fillet.edited, fillet.second + 1, count);
    place(fillet.edited, fillet.second + 1, rounding.from.point, rounding.arcBulge);
    eraseVertices(fillet.edited, fillet.second + 2, count);
}

/// Fillets segments of `fillet.counted` by the fillet's mode.
SegmentFillet filleted(SegmentFillet fillet, const std::string& name, double radius) {
    const bool leadsOn = fillet.mode == Mode::kCorner || fillet.mode == Mode::kBetween;
    fillet.sharp = radius == 0.0;
    fillet.edited = fillet.counted;
    const std::size_t from = leadsOn ? fillet.first : fillet.second, to = leadsOn ? fillet.second : fillet.first;
    if (isCorner(fillet) && fillet.sharp) {
        const auto [before, behind] = sidesAt(fillet, name, from, to);
        refuseSmooth(before, behind);
        return fillet;
    }
    const Rounding rounding = roundingBetween(fillet, name, from, to, radius);
    if (fillet.mode == Mode::kCorner)
        roundCorner(fillet, rounding);
    else if (fillet.mode == Mode::kBetween)
        bridge(fillet, rounding);
    else if (fillet.mode == Mode::kClosingCorner)
        roundClosingCorner(fillet, rounding);
    else
        closeBehind(fillet, rounding);
    return fillet;
}

[[noreturn]] void refuseCorner(const std::string& name, const PolylineShape& polyline, int corner) {
    const auto count = static_cast<int>(polyline.vertices.size());
    const int first = polyline.closed ? 0 : 1, last = polyline.closed ? count - 1 : count - 2;
    if (last < first)
        throw EditError(name + " has a single segment and no corner");
    const std::string existing = first == last
                                     ? "its only corner is " + std::to_string(first)
                                     : "its corners are " + std::to_string(first) + " to " + std::to_string(last);
    if (corner == 0 || corner == count - 1)
        throw EditError("vertex " + std::to_string(corner) + " is an end of " + name + ", not a corner; " + existing);
    throw EditError(name + " has no corner " + std::to_string(corner) + "; " + existing);
}

void requireSegment(const std::string& name, const PolylineShape& polyline, int segment) {
    const auto count = static_cast<int>(segmentCount(polyline));
    if (segment < 0 || segment >= count)
        throw EditError(
            name + " has no segment " + std::to_string(segment) +
            (count == 1 ? "; its only segment is 0" : "; its segments are 0 to " + std::to_string(count - 1)));
}

/// The fillet's numbers at one corner, before anything is done there.
SegmentFillet cornerOf(const std::string& name, const PolylineShape& polyline, int corner) {
    const std::size_t count = polyline.vertices.size();
    const auto vertex = static_cast<std::size_t>(corner);
    if (corner < 0 || vertex >= count || (!polyline.closed && (vertex == 0 || vertex + 1 == count)) || count < 2)
        refuseCorner(name, polyline, corner);
    // The centre counts the inserted arc in the number of the vertex at which a closing segment ends, too. Counted from
    // the next vertex, the corner before that segment is one like any other.
    const std::size_t seam = polyline.closed && vertex != 0 && vertex + 1 == count ? 1 : 0;
    SegmentFillet fillet{.mode = Mode::kCorner, .seam = seam, .counted = countedFrom(polyline, seam)};
    fillet.second = vertex - seam;
    if (vertex == seam) {
        fillet.mode = Mode::kClosingCorner;
        fillet.second = count - 1;
    } else {
        fillet.first = fillet.second - 1;
    }
    return fillet;
}

/// What is left of a segment without a length at the end that its side may move.
CutSegment cutBackSegment(const FilletSide& side, const PolylineShape& polyline, std::size_t segment, double by) {
    return cutSegment(side.name, polyline, segment, cutBack(side.name, side.shape, *side.moves, by), *side.moves);
}

}  // namespace

PolylineShape countedFrom(PolylineShape polyline, std::size_t vertex) {
    assert(vertex < polyline.vertices.size() && (polyline.closed || vertex == 0));
    const auto middle = static_cast<std::ptrdiff_t>(vertex);
    std::rotate(polyline.vertices.begin(), polyline.vertices.begin() + middle, polyline.vertices.end());
    std::rotate(polyline.bulges.begin(), polyline.bulges.begin() + middle, polyline.bulges.end());
    std::rotate(polyline.ids.begin(), polyline.ids.begin() + middle, polyline.ids.end());
    return polyline;
}

SegmentFillet cornerFillet(const std::string& name, const PolylineShape& polyline, int corner, double radius) {
    return filleted(cornerOf(name, polyline, corner), name, radius);
}

SegmentFillet cornerChamfer(const std::string& name, const PolylineShape& polyline, int corner, double before,
                            double behind) {
    SegmentFillet chamfer = cornerOf(name, polyline, corner);
    const bool leadsOn = chamfer.mode == Mode::kCorner;
    const std::size_t from = leadsOn ? chamfer.first : chamfer.second, to = leadsOn ? chamfer.second : chamfer.first;
    CornerSides sides = sidesAt(chamfer, name, from, to);
    sides.before.verb = sides.behind.verb = "chamfer";
    refuseSmooth(sides.before, sides.behind);
    const Rounding line{.from = cutBackSegment(sides.before, chamfer.counted, from, before),
                        .to = cutBackSegment(sides.behind, chamfer.counted, to, behind)};
    chamfer.edited = chamfer.counted;
    if (leadsOn)
        roundCorner(chamfer, line);
    else
        roundClosingCorner(chamfer, line);
    return chamfer;
}

SegmentFillet segmentFillet(const std::string& name, const PolylineShape& polyline, int from, int to, double radius) {
    requireSegment(name, polyline, from);
    requireSegment(name, polyline, to);
    if (from == to)
        throw EditError("a segment cannot be filleted with itself; name two segments of " + name);
    const auto count = static_cast<int>(segmentCount(polyline));
    const int low = std::min(from, to), high = std::max(from, to);
    if (polyline.closed && (from + 1) % count == to)
        return cornerFillet(name, polyline, to, radius);
    if (high == low + 1 || (polyline.closed && low == 0 && high == count - 1))
        return cornerFillet(name, polyline, high == low + 1 ? high : 0, radius);
    SegmentFillet fillet{.mode = Mode::kBetween,
                         .first = static_cast<std::size_t>(low),
                         .second = static_cast<std::size_t>(high),
                         .counted = polyline};
    if (from > to && polyline.closed) {
        fillet.mode = Mode::kBehind;
        fillet.seam = fillet.first;
        fillet.counted = countedFrom(polyline, fillet.seam);
        fillet.second -= fillet.seam;
        fillet.first = 0;
    } else if (from > to && low == 0 && high == count - 1) {
        fillet.mode = Mode::kClosing;
    }
    return filleted(std::move(fillet), name, radius);
}

}  // namespace holdfast::editing
