#include "formats/dxf/records/DxfBodies.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "formats/dxf/DxfCodes.h"
#include "formats/dxf/DxfLooks.h"
#include "formats/dxf/DxfText.h"
#include "formats/dxf/records/DxfPolylines.h"
#include "formats/dxf/records/DxfRewrite.h"
#include "geometry/Angles.h"
#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

/// Groups that mean the same on every kind of entity.
constexpr std::array<int, 17> kCommon = {5, 330, 360, 67, 410, 8, 6, 347, 62, 48, 60, 370, 420, 430, 440, 390, 284};

/// What a kind is called that the first versions of the format do not know.
struct NewerNames {
    std::string_view operator()(const EllipseShape&) const { return "ELLIPSE"; }
    std::string_view operator()(const EllipticalArcShape&) const { return "ELLIPSE"; }
    std::string_view operator()(const SplineShape&) const { return "SPLINE"; }
    std::string_view operator()(const XlineShape&) const { return "XLINE"; }
    std::string_view operator()(const RayShape&) const { return "RAY"; }
    std::string_view operator()(const TextShape& text) const { return text.multiline ? "MTEXT" : ""; }
    template <class Older>
    std::string_view operator()(const Older&) const {
        return "";
    }
};

class Body {
public:
    Body(const DxfFrame& frame, const DxfForm& form, const DxfStyle& style, DxfHandles& handles)
        : m_frame(frame), m_form(form), m_style(style), m_handles(handles) {}

    void operator()(const LineShape& line) {
        begin("LINE", "AcDbLine", true);
        point(10, line.start);
        point(11, line.end);
    }
    void operator()(const PointShape& shape) {
        begin("POINT", "AcDbPoint", true);
        point(10, shape.position);
    }
    void operator()(const CircleShape& circle) {
        begin("CIRCLE", "AcDbCircle", true);
        point(10, circle.centre);
        number(40, circle.radius);
    }
    void operator()(const ArcShape& arc) {
        begin("ARC", "AcDbCircle", true);
        point(10, arc.centre);
        number(40, arc.radius);
        mark("AcDbArc");
        number(50, degreesInTurn(arc.startAngle));
        number(51, degreesInTurn(arc.endAngle));
    }
    void operator()(const EllipseShape& ellipse) {
        (*this)(EllipticalArcShape{ellipse.centre, ellipse.majorAxis, ellipse.ratio, 0.0, kTurn});
    }
    void operator()(const EllipticalArcShape& arc) {
        begin("ELLIPSE", "AcDbEllipse");
        point(10, arc.centre);
        plainPoint(11, arc.majorAxis);
        number(40, arc.ratio);
        number(41, arc.startParam);
        number(42, arc.endParam);
    }
    void operator()(const SplineShape& spline) {
        constexpr unsigned closedFlag = 1, rationalFlag = 4, planarFlag = 8;
        const bool isClosed = splineStart(spline) == splineEnd(spline);
        begin("SPLINE", "AcDbSpline");
        count(70, planarFlag | (spline.weights.empty() ? 0 : rationalFlag) | (isClosed ? closedFlag : 0));
        count(71, static_cast<std::size_t>(spline.degree));
        count(72, spline.knots.size());
        count(73, spline.control.size());
        count(74, 0);
        const DxfItems data = splineData(spline, m_frame.height, m_style);
        m_items.insert(m_items.end(), data.begin(), data.end());
    }
    void operator()(const XlineShape& xline) { endless("XLINE", "AcDbXline", xline.point, xline.direction); }
    void operator()(const RayShape& ray) { endless("RAY", "AcDbRay", ray.point, ray.direction); }
    void operator()(const PolylineShape& polyline) {
        if (m_form.kinds.contains("LWPOLYLINE"))
            light(polyline);
        else
            old(polyline);
    }
    void operator()(const TextShape& text) {
        if (text.multiline)
            paragraph(text);
        else
            line(text);
    }

    DxfItems finished() {
        DxfItems& into = m_items;
        into.insert(into.end(), m_frame.tail.begin(), m_frame.tail.end());
        into.insert(into.end(), m_behind.begin(), m_behind.end());
        return std::move(m_items);
    }

private:
    static double degreesInTurn(double angle) { return degreesOf(angle - kTurn * std::floor(angle / kTurn)); }

    void item(int code, std::string_view value) { m_items.push_back(newItem(code, value, m_style)); }
    void number(int code, double value) { m_items.push_back(newNumber(code, value, m_style)); }
    void count(int code, std::size_t value) { item(code, std::to_string(value)); }
    void mark(std::string_view name) {
        if (m_form.hasMarks)
            item(kClassMark, name);
    }
    void plainPoint(int code, Vec2 value) {
        number(code, value.x);
        number(code + 10, value.y);
        number(code + 20, 0.0);
    }
    void point(int code, Vec2 value) {
        plainPoint(code, value);
        if (m_frame.height != 0.0)
            m_items.back() = newNumber(code + 20, m_frame.height, m_style);
    }

    void begin(std::string_view name, std::string_view mark_, bool hasThickness = false) {
        item(0, name);
        m_items.insert(m_items.end(), m_frame.head.begin(), m_frame.head.end());
        mark(mark_);
        if (hasThickness)
            m_items.insert(m_items.end(), m_frame.thickness.begin(), m_frame.thickness.end());
    }

    void endless(std::string_view name, std::string_view mark_, Vec2 from, Vec2 direction) {
        const double length = std::hypot(direction.x, direction.y);
        begin(name, mark_);
        point(10, from);
        plainPoint(11, {direction.x / length, direction.y / length});
    }

    void light(const PolylineShape& polyline) {
        begin("LWPOLYLINE", "AcDbPolyline");
        count(90, polyline.vertices.size());
        item(70, polyline.closed ? "1" : "0");
        if (m_frame.height != 0.0)
            number(38, m_frame.height);
        m_items.insert(m_items.end(), m_frame.thickness.begin(), m_frame.thickness.end());
        for (std::size_t i = 0; i < polyline.vertices.size(); ++i) {
            number(10, polyline.vertices[i].x);
            number(20, polyline.vertices[i].y);
            if (polyline.bulges[i] != 0.0)
                number(42, polyline.bulges[i]);
        }
    }

    /// What belongs to the polyline as a whole stands before its vertices.
    void old(const PolylineShape& polyline) {
        begin("POLYLINE", "AcDb2dPolyline");
        item(66, "1");
        point(10, {0.0, 0.0});
        m_items.insert(m_items.end(), m_frame.thickness.begin(), m_frame.thickness.end());
        item(70, polyline.closed ? "1" : "0");
        const auto handle = findOwn(m_frame.head, kHandle);
        const std::string owner = handle ? m_frame.head[*handle].value : "";
        DxfItems whole = std::exchange(m_items, {});
        for (std::size_t i = 0; i < polyline.vertices.size(); ++i) {
            part("VERTEX", owner);
            mark("AcDbVertex");
            mark("AcDb2dVertex");
            point(10, polyline.vertices[i]);
            if (polyline.bulges[i] != 0.0)
                number(42, polyline.bulges[i]);
        }
        part("SEQEND", owner);
        m_behind = std::exchange(m_items, std::move(whole));
    }

    /// Vertices are on the layer of their polyline, and look like it.
    void part(std::string_view name, const std::string& owner) {
        item(0, name);
        for (const DxfItem& group : m_frame.head) {
            if (group.code == kHandle)
                item(kHandle, m_handles.take());
            else if (group.code == kOwner && !owner.empty())
                item(kOwner, owner);
            else if (group.code == kClassMark || group.code == 8 || group.code == 6 || group.code == 62 ||
                     group.code == 67 || group.code == 420)
                m_items.push_back(group);
        }
    }

    void line(const TextShape& text) {
        begin("TEXT", "AcDbText", true);
        point(10, text.position);
        number(40, text.height);
        item(1, encodedDxfText(text.text));
        if (text.rotation != 0.0)
            number(50, degreesInTurn(text.rotation));
        mark("AcDbText");
    }
    void paragraph(const TextShape& text) {
        begin("MTEXT", "AcDbMText");
        point(10, text.position);
        number(40, text.height);
        item(71, "1");
        item(1, encodedDxfParagraph(text.text));
        if (text.rotation != 0.0)
            number(50, degreesInTurn(text.rotation));
    }

    const DxfFrame& m_frame;
    const DxfForm& m_form;
    const DxfStyle& m_style;
    DxfHandles& m_handles;
    DxfItems m_items, m_behind;
};

DxfItems withoutLists(const DxfItems& items) {
    DxfItems kept;
    bool isInList = false;
    for (const DxfItem& item : items) {
        if (item.code == kList)
            isInList = item.value.starts_with('{');
        else if (!isInList && item.code != kHardOwned)
            kept.push_back(item);
    }
    return kept;
}

}  // namespace

bool canWrite(const DxfForm& form, const Shape& shape) {
    const auto* spline = std::get_if<SplineShape>(&shape);
    const std::string_view name = std::visit(NewerNames(), shape);
    return name.empty() || ((spline == nullptr || !spline->periodic) && (form.isNewer || form.kinds.contains(name)));
}

DxfItems newRecord(const DxfFrame& frame, const Shape& shape, const DxfForm& form, const DxfStyle& style,
                   DxfHandles& handles) {
    Body body(frame, form, style, handles);
    std::visit(body, shape);
    return body.finished();
}

DxfFrame frameOf(const DxfItems& record) {
    const DxfItems own = partsOf(record).front();
    DxfFrame frame;
    bool isInList = false;
    for (std::size_t i = 1; i < own.size(); ++i) {
        const DxfItem& item = own[i];
        const bool isList = item.code == kList;
        if (isList || isInList) {
            frame.head.push_back(item);
            isInList = isList ? item.value.starts_with('{') : isInList;
        } else if (item.code >= kFirstForeign) {
            frame.tail.push_back(item);
        } else if (item.code == 39) {
            frame.thickness = {item};
        } else if ((item.code == kClassMark && item.value == "AcDbEntity") ||
                   std::find(kCommon.begin(), kCommon.end(), item.code) != kCommon.end()) {
            frame.head.push_back(item);
        }
    }
    frame.height = ownNumber(own, 38, ownNumber(own, 30, 0.0));
    return frame;
}

DxfFrame newFrame(const Look& look, const DxfForm& form, const DxfStyle& style, DxfHandles& handles) {
    DxfFrame frame;
    if (form.hasHandles)
        frame.head.push_back(newItem(kHandle, handles.take(), style));
    if (!form.owner.empty())
        frame.head.push_back(newItem(kOwner, form.owner, style));
    if (form.hasMarks)
        frame.head.push_back(newItem(kClassMark, "AcDbEntity", style));
    frame.head.push_back(newItem(8, look.layer.empty() ? "0" : encodedDxfText(look.layer), style));
    if (!look.linetype.empty())
        frame.head.push_back(newItem(6, encodedDxfText(look.linetype), style));
    if (look.colour != Colour())
        frame.head.push_back(newItem(62, std::to_string(paletteNumber(look.colour)), style));
    if (form.isNewer && look.colour.kind == Colour::Kind::rgb)
        frame.head.push_back(newItem(420, std::to_string(look.colour.value), style));
    if (form.isNewer && look.weight != kWeightByLayer)
        frame.head.push_back(newItem(370, std::to_string(look.weight), style));
    if (!look.visible)
        frame.head.push_back(newItem(60, "1", style));
    return frame;
}

DxfItems copied(const DxfItems& record, DxfHandles& handles) {
    DxfItems copy = withoutLists(record);
    std::string formerHandle, handle;
    for (DxfItem& item : copy) {
        if (item.code == kHandle) {
            const std::string former = std::exchange(item.value, handles.take());
            if (handle.empty()) {
                formerHandle = former;
                handle = item.value;
            }
        } else if (item.code == kOwner && !formerHandle.empty() && item.value == formerHandle) {
            item.value = handle;
        }
    }
    return copy;
}

DxfItems splineData(const SplineShape& spline, double height, const DxfStyle& style) {
    DxfItems items;
    for (const double knot : spline.knots)
        items.push_back(newNumber(40, knot, style));
    for (const double weight : spline.weights)
        items.push_back(newNumber(41, weight, style));
    for (const Vec2 point : spline.control) {
        items.push_back(newNumber(10, point.x, style));
        items.push_back(newNumber(20, point.y, style));
        items.push_back(newNumber(30, height, style));
    }
    return items;
}

}  // namespace holdfast::formats
