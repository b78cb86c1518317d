#include "solver/src/sketch/SketchData.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "geometry/SplineCurve.h"

namespace holdfast::solver::detail {

namespace {

/// Elements that are asked for the size that is typical.
constexpr std::size_t kMostAsked = 64;

Vec2 onCircle(Vec2 centre, double radius, double angle) {
    return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

Vec2 onEllipse(const EllipticalArcShape& arc, double param) {
    const Vec2 u = arc.majorAxis;
    const Vec2 v{-u.y * arc.ratio, u.x * arc.ratio};
    return {arc.centre.x + u.x * std::cos(param) + v.x * std::sin(param),
            arc.centre.y + u.y * std::cos(param) + v.y * std::sin(param)};
}

void requirePositive(double value, const std::string& id, const char* what) {
    if (!(value > 0.0) || !std::isfinite(value))
        throw SketchError(id + ": its " + what + " is " + std::to_string(value) + "; it must be above 0");
}

/// A growing box around points.
class Extent {
public:
    void include(double x, double y) {
        m_low = {std::min(m_low.x, x), std::min(m_low.y, y)};
        m_high = {std::max(m_high.x, x), std::max(m_high.y, y)};
    }
    void includeAround(double x, double y, double reach) {
        include(x - reach, y - reach);
        include(x + reach, y + reach);
    }
    bool isEmpty() const { return m_high.x < m_low.x; }
    void include(const Extent& other) {
        include(other.m_low.x, other.m_low.y);
        include(other.m_high.x, other.m_high.y);
    }
    double diagonal() const { return isEmpty() ? 0.0 : std::hypot(m_high.x - m_low.x, m_high.y - m_low.y); }

private:
    static constexpr double kFar = std::numeric_limits<double>::max();
    Vec2 m_low{kFar, kFar};
    Vec2 m_high{-kFar, -kFar};
};

void includePairs(Extent& extent, std::span<const double> pairs) {
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
        extent.include(pairs[i], pairs[i + 1]);
}

/// Many of them, two at a time: a minimum waits for the one before it.
void includeManyPairs(Extent& extent, std::span<const double> pairs) {
    constexpr std::size_t many = 16;  // fewer are included sooner than halves are put together
    if (pairs.size() < many)
        return includePairs(extent, pairs);
    Extent even, odd;
    std::size_t i = 0;
    for (; i + 3 < pairs.size(); i += 4) {
        even.include(pairs[i], pairs[i + 1]);
        odd.include(pairs[i + 2], pairs[i + 3]);
    }
    includePairs(even, pairs.subspan(i));
    for (const Extent& part : {even, odd})
        if (!part.isEmpty())
            extent.include(part);
}

/// Values that are coordinates and nothing else.
bool isPoints(EntityKind kind) {
    return kind == EntityKind::line || kind == EntityKind::point || kind == EntityKind::spline;
}

void include(Extent& extent, const SketchEntity& entity, std::span<const double> v) {
    switch (entity.kind) {
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::text:
            extent.include(v[0], v[1]);
            break;
        case EntityKind::circle:
            extent.includeAround(v[0], v[1], std::abs(v[2]));
            break;
        case EntityKind::arc:
            includePairs(extent, v.subspan(3));
            break;
        case EntityKind::ellipse:
            extent.includeAround(v[0], v[1], std::hypot(v[2], v[3]));
            break;
        case EntityKind::ellipticalArc:
            includePairs(extent, v.subspan(5));
            break;
        case EntityKind::polyline:
            includePairs(extent, v.first(2 * static_cast<std::size_t>(entity.vertexCount)));
            break;
        case EntityKind::line:
        case EntityKind::point:
        case EntityKind::spline:
            includePairs(extent, v);
            break;
    }
}

}  // namespace

int SketchData::add(std::string id, EntityKind kind, std::initializer_list<double> entityValues) {
    SketchEntity entity;
    entity.id = std::move(id);
    entity.kind = kind;
    entity.firstValue = static_cast<int>(values.size());
    entities.push_back(std::move(entity));
    append(entityValues);
    return static_cast<int>(entities.size()) - 1;
}

void SketchData::append(std::initializer_list<double> more) {
    values.insert(values.end(), more);
    reference.insert(reference.end(), more);
    entities.back().valueCount += static_cast<int>(more.size());
}

int SketchData::addLine(std::string id, Vec2 start, Vec2 end) {
    return add(std::move(id), EntityKind::line, {start.x, start.y, end.x, end.y});
}

int SketchData::addRay(std::string id, Vec2 base, double angle) {
    return add(std::move(id), EntityKind::ray, {base.x, base.y, angle});
}

int SketchData::addXline(std::string id, Vec2 base, double angle) {
    return add(std::move(id), EntityKind::xline, {base.x, base.y, angle});
}

int SketchData::addCircle(std::string id, Vec2 centre, double radius) {
    requirePositive(radius, id, "radius");
    return add(std::move(id), EntityKind::circle, {centre.x, centre.y, radius});
}

int SketchData::addArc(std::string id, const ArcShape& arc) {
    requirePositive(arc.radius, id, "radius");
    const Vec2 start = onCircle(arc.centre, arc.radius, arc.startAngle);
    const Vec2 end = onCircle(arc.centre, arc.radius, arc.endAngle);
    return add(std::move(id), EntityKind::arc,
               {arc.centre.x, arc.centre.y, arc.radius, start.x, start.y, end.x, end.y});
}

int SketchData::addEllipse(std::string id, const EllipseShape& ellipse) {
    const double major = std::hypot(ellipse.majorAxis.x, ellipse.majorAxis.y);
    requirePositive(major, id, "major radius");
    requirePositive(ellipse.ratio, id, "ratio");
    return add(std::move(id), EntityKind::ellipse,
               {ellipse.centre.x, ellipse.centre.y, ellipse.majorAxis.x, ellipse.majorAxis.y, major * ellipse.ratio});
}

int SketchData::addEllipticalArc(std::string id, const EllipticalArcShape& arc) {
    const int entity = addEllipse(std::move(id), {arc.centre, arc.majorAxis, arc.ratio});
    entities.back().kind = EntityKind::ellipticalArc;
    const Vec2 start = onEllipse(arc, arc.startParam);
    const Vec2 end = onEllipse(arc, arc.endParam);
    append({start.x, start.y, end.x, end.y});
    return entity;
}

int SketchData::addPoint(std::string id, Vec2 position) {
    return add(std::move(id), EntityKind::point, {position.x, position.y});
}

int SketchData::addText(std::string id, Vec2 position, double angle, double height) {
    const int entity = add(std::move(id), EntityKind::text, {position.x, position.y, angle});
    entities.back().textHeight = height;
    return entity;
}

int SketchData::addSpline(std::string id, const SplineShape& spline) {
    const SplineShape open = unwrapped(spline);
    if (spline.degree < 1 || open.knots.size() != open.control.size() + static_cast<std::size_t>(spline.degree) + 1)
        throw SketchError(id + ": degree, control points and knots do not fit together");
    const int entity = add(std::move(id), EntityKind::spline, {});
    entities.back().spline = static_cast<int>(splines.size());
    for (const Vec2& p : spline.control)
        append({p.x, p.y});
    splines.push_back(knotsOf(spline));
    return entity;
}

int SketchData::addPolyline(std::string id, const PolylineShape& polyline) {
    const std::size_t count = polyline.vertices.size();
    if (count < 2 || polyline.bulges.size() != count)
        throw SketchError(id + ": a polyline needs two vertices or more, and one bulge for each");
    const int entity = add(std::move(id), EntityKind::polyline, {});
    entities.back().vertexCount = static_cast<int>(count);
    entities.back().closed = polyline.closed;
    for (const Vec2& p : polyline.vertices)
        append({p.x, p.y});
    for (int i = 0; i < entities.back().segmentCount(); ++i) {
        const double bulge = polyline.bulges[static_cast<std::size_t>(i)];
        entities.back().bulgeValues.push_back(bulge == 0.0 ? -1 : static_cast<int>(values.size()));
        if (bulge != 0.0)
            append({bulge});
    }
    return entity;
}

int SketchData::addConstraint(SketchConstraint constraint) {
    constraintsOn.append(constraint.refs);
    constraints.push_back(std::move(constraint));
    return static_cast<int>(constraints.size()) - 1;
}

std::span<const double> SketchData::valuesOf(int entity) const {
    assert(entity >= 0 && static_cast<std::size_t>(entity) < entities.size());
    const SketchEntity& e = entities[static_cast<std::size_t>(entity)];
    return std::span(values).subspan(static_cast<std::size_t>(e.firstValue), static_cast<std::size_t>(e.valueCount));
}

int SketchData::vertexValue(int entity, int vertex) const {
    const SketchEntity& e = entities[static_cast<std::size_t>(entity)];
    assert(e.vertexCount > 0 && vertex >= 0 && vertex <= e.vertexCount);
    return e.firstValue + 2 * (vertex % e.vertexCount);
}

double SketchData::size() const {
    assert(reference.size() == values.size());
    Extent extent;
    const auto valuesFrom = [&](int from, int to) {
        return std::span(reference).subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    };
    int first = 0, last = 0;  // coordinates in a row, of one entity after the other
    for (const SketchEntity& entity : entities) {
        const int from = entity.firstValue, to = from + entity.valueCount;
        if (!isPoints(entity.kind)) {
            include(extent, entity, valuesFrom(from, to));
            continue;
        }
        if (from != last) {  // an entity with other values lies between
            includeManyPairs(extent, valuesFrom(first, last));
            first = from;
        }
        last = to;
    }
    includeManyPairs(extent, valuesFrom(first, last));
    const double diagonal = extent.diagonal();
    return std::max(sizeAround, diagonal > 0.0 && std::isfinite(diagonal) ? diagonal : 1.0);
}

double SketchData::typicalSize() const {
    const std::size_t stride = 1 + entities.size() / kMostAsked;
    std::vector<double> diagonals;
    for (std::size_t i = 0; i < entities.size(); i += stride) {
        const SketchEntity& entity = entities[i];
        const auto own = std::span(reference).subspan(static_cast<std::size_t>(entity.firstValue),
                                                      static_cast<std::size_t>(entity.valueCount));
        Extent extent;
        if (isPoints(entity.kind))
            includeManyPairs(extent, own);
        else
            include(extent, entity, own);
        if (const double diagonal = extent.diagonal(); diagonal > 0.0 && std::isfinite(diagonal))
            diagonals.push_back(diagonal);
    }
    if (diagonals.empty())
        return size();
    const auto middle = diagonals.begin() + std::ssize(diagonals) / 2;
    std::nth_element(diagonals.begin(), middle, diagonals.end());
    return *middle;
}

}  // namespace holdfast::solver::detail
