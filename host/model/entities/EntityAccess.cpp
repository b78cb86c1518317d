#include "host/model/entities/EntityAccess.h"

#include <cmath>

#include "host/src/EntityCheck.h"
#include "host/src/yxdb/curves/CurveMath.h"

namespace holdfast {
namespace {

void check(const EntityCheck& kind, const YxGePoint3d& start, const YxGePoint3d& end) {
    kind.finite("start", start);
    kind.finite("end", end);
}

void checkDirected(const EntityCheck& kind, const YxGePoint3d& base, const YxGeVector3d& direction) {
    kind.finite("base", base);
    kind.direction("direction", direction);
}

void check(const CircleData& data) {
    const EntityCheck circle("circle");
    circle.finite("centre", data.centre);
    circle.positive("radius", data.radius);
    circle.direction("normal", data.normal);
}

void check(const ArcData& data) {
    const EntityCheck arc("arc");
    arc.finite("centre", data.centre);
    arc.positive("radius", data.radius);
    arc.finite("start angle", data.startAngle);
    arc.finite("end angle", data.endAngle);
    arc.direction("normal", data.normal);
}

void check(const EllipseData& data) {
    constexpr double kAcross = 1e-9;
    const EntityCheck ellipse("ellipse");
    ellipse.finite("centre", data.centre);
    ellipse.direction("major axis", data.majorAxis);
    ellipse.positive("ratio", data.ratio);
    if (data.ratio > 1.0)
        ellipse.refuse("ratio is " + spelt(data.ratio) + "; give a number up to 1, or exchange the axes");
    ellipse.finite("start angle", data.startAngle);
    ellipse.finite("end angle", data.endAngle);
    ellipse.direction("normal", data.normal);
    if (std::abs(data.majorAxis.normal().dotProduct(data.normal.normal())) > kAcross)
        ellipse.refuse("major axis leaves the plane; give one at a right angle to the normal");
}

void check(const EntityCheck& kind, const TextData& data) {
    kind.finite("position", data.position);
    kind.finite("rotation", data.rotation);
    kind.positive("height", data.height);
    kind.direction("normal", data.normal);
}

}  // namespace

std::unique_ptr<YxDbLine> EntityAccess::makeLine(const YxGePoint3d& start, const YxGePoint3d& end) {
    std::unique_ptr<YxDbLine> made(new YxDbLine);
    setLine(*made, start, end);
    return made;
}

void EntityAccess::setLine(YxDbLine& line, const YxGePoint3d& start, const YxGePoint3d& end) {
    check(EntityCheck("line"), start, end);
    requireOpenForWrite(line, "setLine");
    line.m_start = start;
    line.m_end = end;
}

LineData EntityAccess::line(const YxDbLine& line) {
    return {line.m_start, line.m_end};
}

std::unique_ptr<YxDbRay> EntityAccess::makeRay(const YxGePoint3d& base, const YxGeVector3d& direction) {
    std::unique_ptr<YxDbRay> made(new YxDbRay);
    setRay(*made, base, direction);
    return made;
}

void EntityAccess::setRay(YxDbRay& ray, const YxGePoint3d& base, const YxGeVector3d& direction) {
    checkDirected(EntityCheck("ray"), base, direction);
    requireOpenForWrite(ray, "setRay");
    ray.m_base = base;
    ray.m_direction = direction.normal();
}

DirectedData EntityAccess::ray(const YxDbRay& ray) {
    return {ray.m_base, ray.m_direction};
}

std::unique_ptr<YxDbXline> EntityAccess::makeXline(const YxGePoint3d& base, const YxGeVector3d& direction) {
    std::unique_ptr<YxDbXline> made(new YxDbXline);
    setXline(*made, base, direction);
    return made;
}

void EntityAccess::setXline(YxDbXline& xline, const YxGePoint3d& base, const YxGeVector3d& direction) {
    checkDirected(EntityCheck("xline"), base, direction);
    requireOpenForWrite(xline, "setXline");
    xline.m_base = base;
    xline.m_direction = direction.normal();
}

DirectedData EntityAccess::xline(const YxDbXline& xline) {
    return {xline.m_base, xline.m_direction};
}

std::unique_ptr<YxDbPoint> EntityAccess::makePoint(const YxGePoint3d& position) {
    std::unique_ptr<YxDbPoint> made(new YxDbPoint);
    setPoint(*made, position);
    return made;
}

void EntityAccess::setPoint(YxDbPoint& point, const YxGePoint3d& position) {
    EntityCheck("point").finite("position", position);
    requireOpenForWrite(point, "setPoint");
    point.m_position = position;
}

YxGePoint3d EntityAccess::point(const YxDbPoint& point) {
    return point.m_position;
}

std::unique_ptr<YxDbCircle> EntityAccess::makeCircle(const CircleData& data) {
    std::unique_ptr<YxDbCircle> made(new YxDbCircle);
    setCircle(*made, data);
    return made;
}

void EntityAccess::setCircle(YxDbCircle& circle, const CircleData& data) {
    check(data);
    requireOpenForWrite(circle, "setCircle");
    circle.m_centre = data.centre;
    circle.m_radius = data.radius;
    circle.m_normal = data.normal.normal();
}

CircleData EntityAccess::circle(const YxDbCircle& circle) {
    return {circle.m_centre, circle.m_radius, circle.m_normal};
}

std::unique_ptr<YxDbArc> EntityAccess::makeArc(const ArcData& data) {
    std::unique_ptr<YxDbArc> made(new YxDbArc);
    setArc(*made, data);
    return made;
}

void EntityAccess::setArc(YxDbArc& arc, const ArcData& data) {
    check(data);
    requireOpenForWrite(arc, "setArc");
    arc.m_centre = data.centre;
    arc.m_radius = data.radius;
    arc.m_startAngle = data.startAngle;
    arc.m_endAngle = data.endAngle;
    arc.m_normal = data.normal.normal();
}

ArcData EntityAccess::arc(const YxDbArc& arc) {
    return {arc.m_centre, arc.m_radius, arc.m_startAngle, arc.m_endAngle, arc.m_normal};
}

std::unique_ptr<YxDbEllipse> EntityAccess::makeEllipse(const EllipseData& data) {
    std::unique_ptr<YxDbEllipse> made(new YxDbEllipse);
    setEllipse(*made, data);
    return made;
}

void EntityAccess::setEllipse(YxDbEllipse& ellipse, const EllipseData& data) {
    check(data);
    requireOpenForWrite(ellipse, "setEllipse");
    ellipse.m_centre = data.centre;
    ellipse.m_major = data.majorAxis;
    ellipse.m_normal = data.normal.normal();
    ellipse.m_ratio = data.ratio;
    ellipse.m_startAngle = data.startAngle;
    ellipse.m_endAngle = data.endAngle;
}

EllipseData EntityAccess::ellipse(const YxDbEllipse& ellipse) {
    return {ellipse.m_centre,     ellipse.m_major,    ellipse.m_ratio,
            ellipse.m_startAngle, ellipse.m_endAngle, ellipse.m_normal};
}

double EntityAccess::nearestAngle(const YxDbEllipse& ellipse, const YxGePoint3d& point) {
    const AngleRange range(ellipse.m_startAngle, ellipse.m_endAngle);
    return ellipse.nearestAngle(range.start(), range.end(), point);
}

std::unique_ptr<YxDbText> EntityAccess::makeText(const TextData& data) {
    std::unique_ptr<YxDbText> made(new YxDbText);
    setText(*made, data);
    return made;
}

void EntityAccess::setText(YxDbText& text, const TextData& data) {
    check(EntityCheck("text"), data);
    requireOpenForWrite(text, "setText");
    text.m_position = data.position;
    text.m_normal = data.normal.normal();
    text.m_rotation = data.rotation;
    text.m_height = data.height;
    text.m_text = data.text;
}

TextData EntityAccess::text(const YxDbText& text) {
    return {text.m_position, text.m_rotation, text.m_height, text.m_text, text.m_normal};
}

std::unique_ptr<YxDbMText> EntityAccess::makeMText(const TextData& data) {
    std::unique_ptr<YxDbMText> made(new YxDbMText);
    setMText(*made, data);
    return made;
}

void EntityAccess::setMText(YxDbMText& text, const TextData& data) {
    check(EntityCheck("mtext"), data);
    requireOpenForWrite(text, "setMText");
    text.m_location = data.position;
    text.m_normal = data.normal.normal();
    text.m_rotation = data.rotation;
    text.m_height = data.height;
    text.m_text = data.text;
}

TextData EntityAccess::mtext(const YxDbMText& text) {
    return {text.m_location, text.m_rotation, text.m_height, text.m_text, text.m_normal};
}

}  // namespace holdfast
