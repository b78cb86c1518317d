#include "formats/dxf/DxfShapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "document/checks/ShapeCheck.h"
#include "formats/dxf/DxfFitSpline.h"
#include "formats/dxf/DxfPlane.h"
#include "formats/dxf/DxfText.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"

namespace holdfast::formats {
namespace {

Vec2 pointOf(const DxfEntity& entity, int code) {
    return {entity.required(code), entity.required(code + 10)};
}

DxfReading of(Shape shape) {
    return {std::move(shape), {}, {}};
}

DxfReading notUnderstood(std::string reason) {
    return {std::nullopt, std::move(reason), {}};
}

DxfReading readLine(const DxfEntity& entity) {
    return of(LineShape{pointOf(entity, 10), pointOf(entity, 11)});
}

DxfReading readPoint(const DxfEntity& entity) {
    return of(PointShape{pointOf(entity, 10)});
}

DxfReading readRay(const DxfEntity& entity) {
    return of(RayShape{pointOf(entity, 10), pointOf(entity, 11)});
}

DxfReading readXline(const DxfEntity& entity) {
    return of(XlineShape{pointOf(entity, 10), pointOf(entity, 11)});
}

DxfReading readCircle(const DxfEntity& entity) {
    return of(CircleShape{turned(pointOf(entity, 10), facingOf(entity)), entity.required(40)});
}

DxfReading readArc(const DxfEntity& entity) {
    const double start = entity.required(50), end = entity.required(51);
    double sweep = std::fmod(end - start, 360.0);
    if (sweep <= 0.0)
        sweep += 360.0;
    const Facing facing = facingOf(entity);
    const double first = facing == Facing::down ? 180.0 - start - sweep : start;
    return of(ArcShape{turned(pointOf(entity, 10), facing), entity.required(40), inRadians(first),
                       inRadians(first) + inRadians(sweep)});
}

/// Ratios above 1 come from programs that name the axes the other way round; the shape is the same.
void putMajorAxisFirst(Vec2& axis, double& ratio, double& startParam) {
    if (ratio <= 1.0)
        return;
    axis = {-axis.y * ratio, axis.x * ratio};
    ratio = 1.0 / ratio;
    startParam -= kPi / 2;
}

DxfReading readEllipse(const DxfEntity& entity) {
    const Vec2 centre = pointOf(entity, 10);
    Vec2 axis = pointOf(entity, 11);
    double ratio = std::abs(entity.required(40));
    const double start = entity.number(41, 0.0), end = entity.number(42, kTurn);
    double sweep = end - start;
    if (sweep <= 0.0 || sweep > kTurn + kSameDirection)
        sweep -= kTurn * std::floor(sweep / kTurn);
    // Seen from above, the parameter of an ellipse whose plane looks down runs backwards.
    double first = facingOf(entity) == Facing::down ? -start - sweep : start;
    putMajorAxisFirst(axis, ratio, first);
    if (sweep == 0.0 || sweep >= kTurn - kSameDirection)
        return of(EllipseShape{centre, axis, ratio});
    return of(EllipticalArcShape{centre, axis, ratio, first, first + sweep});
}

bool isWide(const DxfEntity& entity) {
    return std::any_of(entity.groups.begin(), entity.groups.end(), [&](const DxfGroup& group) {
        return (group.code == 40 || group.code == 41 || group.code == 43) && entity.source->number(group) != 0.0;
    });
}

void turnOver(PolylineShape& polyline) {
    for (Vec2& vertex : polyline.vertices)
        vertex = turned(vertex, Facing::down);
    for (double& bulge : polyline.bulges)
        bulge = -bulge;
}

void append(PolylineShape& polyline, Vec2 vertex, double bulge) {
    polyline.vertices.push_back(vertex);
    polyline.bulges.push_back(bulge);
    polyline.ids.push_back(0);
}

DxfReading finished(const DxfEntity& entity, PolylineShape polyline, bool wide) {
    if (polyline.vertices.size() < 2)
        return notUnderstood(std::string(entity.name) + " of fewer than two vertices");
    // The bulge of an open polyline's last vertex belongs to no segment.
    if (!polyline.closed)
        polyline.bulges.back() = 0.0;
    if (facingOf(entity) == Facing::down)
        turnOver(polyline);
    DxfReading reading = of(std::move(polyline));
    if (wide)
        reading.dropped.push_back("width of a " + std::string(entity.name));
    return reading;
}

DxfReading readLightPolyline(const DxfEntity& entity) {
    PolylineShape polyline;
    polyline.closed = (static_cast<unsigned>(entity.integer(70, 0)) & 1U) != 0;
    for (const DxfGroup& group : entity.groups) {
        if (group.code == 10)
            append(polyline, {entity.source->number(group), 0.0}, 0.0);
        else if (group.code == 20 && !polyline.vertices.empty())
            polyline.vertices.back().y = entity.source->number(group);
        else if (group.code == 42 && !polyline.vertices.empty())
            polyline.bulges.back() = entity.source->number(group);
    }
    const int count = entity.integer(90, static_cast<int>(polyline.vertices.size()));
    if (count != static_cast<int>(polyline.vertices.size()))
        entity.fail("a LWPOLYLINE of " + std::to_string(polyline.vertices.size()) + " vertices",
                    std::to_string(count) + " vertices, as its group 90 says");
    return finished(entity, std::move(polyline), isWide(entity));
}

DxfReading readPolyline(const DxfEntity& entity, std::span<const DxfEntity> vertices) {
    constexpr unsigned closedFlag = 1, spaceFlag = 8, meshFlags = 16 | 64, frameFlag = 16;
    const unsigned flags = static_cast<unsigned>(entity.integer(70, 0));
    if ((flags & meshFlags) != 0)
        return notUnderstood("POLYLINE that is a mesh");
    PolylineShape polyline;
    polyline.closed = (flags & closedFlag) != 0;
    bool wide = isWide(entity);
    for (const DxfEntity& vertex : vertices) {
        if ((static_cast<unsigned>(vertex.integer(70, 0)) & frameFlag) != 0)
            continue;
        if ((flags & spaceFlag) != 0 && vertex.number(30, 0.0) != 0.0)
            return notUnderstood("POLYLINE in space");
        append(polyline, pointOf(vertex, 10), vertex.number(42, 0.0));
        wide = wide || isWide(vertex);
    }
    return finished(entity, std::move(polyline), wide);
}

std::vector<double> numbersOf(const DxfEntity& entity, int code) {
    std::vector<double> values;
    for (const DxfGroup& group : entity.groups) {
        if (group.code == code)
            values.push_back(entity.source->number(group));
    }
    return values;
}

void expectCount(const DxfEntity& entity, std::size_t found, int countCode, const char* what) {
    const int count = entity.integer(countCode, static_cast<int>(found));
    if (count != static_cast<int>(found))
        entity.fail("a SPLINE of " + std::to_string(found) + " " + what,
                    std::to_string(count) + " " + what + ", as its group " + std::to_string(countCode) + " says");
}

std::optional<Vec2> tangentOf(const DxfEntity& entity, int code) {
    const Vec2 tangent{entity.number(code, 0.0), entity.number(code + 10, 0.0)};
    return tangent == Vec2{} ? std::nullopt : std::optional(tangent);
}

/// Points that a program was given for a spline, and left to others to find the spline for.
DxfReading readFittedSpline(const DxfEntity& entity) {
    constexpr unsigned closedFlag = 1;
    const std::vector<double> xs = numbersOf(entity, 11), ys = numbersOf(entity, 21);
    expectCount(entity, xs.size(), 74, "fit points");
    if (xs.size() != ys.size())
        entity.fail(
            "a SPLINE of " + std::to_string(xs.size()) + " x and " + std::to_string(ys.size()) + " y of fit points",
            "as many of both");
    FitPoints fit{.points = {},
                  .isClosed = (static_cast<unsigned>(entity.integer(70, 0)) & closedFlag) != 0,
                  .startTangent = tangentOf(entity, 12),
                  .endTangent = tangentOf(entity, 13)};
    for (std::size_t i = 0; i < xs.size(); ++i)
        if (const Vec2 point{xs[i], ys[i]}; fit.points.empty() || fit.points.back() != point)
            fit.points.push_back(point);
    if (fit.points.size() < 2)
        return notUnderstood("SPLINE of fewer than two points");
    return of(splineThrough(std::move(fit)));
}

DxfReading readSpline(const DxfEntity& entity) {
    const std::vector<double> xs = numbersOf(entity, 10), ys = numbersOf(entity, 20);
    SplineShape spline;
    spline.degree = entity.integer(71, 3);
    spline.knots = numbersOf(entity, 40);
    spline.weights = numbersOf(entity, 41);
    expectCount(entity, spline.knots.size(), 72, "knots");
    expectCount(entity, xs.size(), 73, "control points");
    if (xs.empty())
        return readFittedSpline(entity);
    if (xs.size() != ys.size())
        entity.fail("a SPLINE of " + std::to_string(xs.size()) + " x and " + std::to_string(ys.size()) + " y",
                    "as many of both");
    for (std::size_t i = 0; i < xs.size(); ++i)
        spline.control.push_back({xs[i], ys[i]});
    return of(std::move(spline));
}

DxfReading readText(const DxfEntity& entity) {
    const Facing facing = facingOf(entity);
    const double rotation = inRadians(entity.number(50, 0.0));
    return of(TextShape{turned(pointOf(entity, 10), facing), facing == Facing::down ? kPi - rotation : rotation,
                        entity.required(40),
                        shownText(decodedDxfText(entity.requiredText(1), entity.source->codePage())), false});
}

DxfReading readParagraph(const DxfEntity& entity) {
    std::string text;
    for (const DxfGroup& group : entity.groups) {
        if (group.code == 3 || group.code == 1)
            text += group.value;
    }
    double rotation = inRadians(entity.number(50, 0.0));
    if (entity.find(11) != nullptr)
        rotation = std::atan2(entity.required(21), entity.required(11));
    DxfReading reading = of(TextShape{pointOf(entity, 10), rotation, entity.number(40, 2.5),
                                      shownParagraph(decodedDxfText(text, entity.source->codePage())), true});
    constexpr int topLeft = 1;
    if (entity.integer(71, topLeft) != topLeft)
        reading.dropped.push_back("attachment of an MTEXT elsewhere than at its top left corner");
    return reading;
}

/// How the coordinates of an entity are meant.
enum class Coordinates { world, plane };

struct Kind {
    std::string_view name;
    Coordinates coordinates;
    DxfReading (*read)(const DxfEntity&);
};

constexpr std::array<Kind, 11> kKinds = {{
    {"LINE", Coordinates::world, readLine},
    {"POINT", Coordinates::world, readPoint},
    {"RAY", Coordinates::world, readRay},
    {"XLINE", Coordinates::world, readXline},
    {"CIRCLE", Coordinates::plane, readCircle},
    {"ARC", Coordinates::plane, readArc},
    {"ELLIPSE", Coordinates::plane, readEllipse},
    {"LWPOLYLINE", Coordinates::plane, readLightPolyline},
    {"SPLINE", Coordinates::world, readSpline},
    {"TEXT", Coordinates::plane, readText},
    {"MTEXT", Coordinates::world, readParagraph},
}};

bool leavesThePlane(const DxfEntity& entity) {
    return std::any_of(entity.groups.begin(), entity.groups.end(), [&](const DxfGroup& group) {
        return (group.code == 30 || group.code == 31 || group.code == 38) && entity.source->number(group) != 0.0;
    });
}

void nameDropped(const DxfEntity& entity, DxfReading& reading) {
    if (leavesThePlane(entity))
        reading.dropped.push_back("height above the plane of a " + std::string(entity.name));
    if (entity.number(39, 0.0) != 0.0)
        reading.dropped.push_back("thickness of a " + std::string(entity.name));
}

DxfReading readKind(const DxfEntity& entity, std::span<const DxfEntity> vertices) {
    const std::string name(entity.name);
    if (entity.name == "POLYLINE")
        return facingOf(entity) == Facing::sideways ? notUnderstood(name + " on a tilted plane")
                                                    : readPolyline(entity, vertices);
    const auto kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& k) { return k.name == entity.name; });
    if (kind == kKinds.end())
        return notUnderstood(name);
    if (kind->coordinates == Coordinates::plane && facingOf(entity) == Facing::sideways)
        return notUnderstood(name + " on a tilted plane");
    return kind->read(entity);
}

}  // namespace

std::optional<TextShape> readDxfAttribute(const DxfEntity& attribute) {
    if (facingOf(attribute) == Facing::sideways || !(attribute.required(40) > 0.0))
        return std::nullopt;
    return std::get<TextShape>(*readText(attribute).shape);
}

DxfReading readDxfEntity(const DxfEntity& entity, std::span<const DxfEntity> vertices) {
    if (entity.integer(67, 0) == 1)
        return notUnderstood(std::string(entity.name) + " in paper space");
    DxfReading reading = readKind(entity, vertices);
    if (!reading.shape)
        return reading;
    if (const std::optional<Fault> fault = faultIn(*reading.shape))
        return notUnderstood(std::string(entity.name) + " with faulty " +
                             fault->place.substr(0, fault->place.find('/')));
    nameDropped(entity, reading);
    return reading;
}

}  // namespace holdfast::formats
