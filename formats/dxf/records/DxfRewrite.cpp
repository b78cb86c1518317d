#include "formats/dxf/records/DxfRewrite.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

#include "document/text/NumberText.h"
#include "formats/dxf/DxfCodes.h"
#include "formats/dxf/DxfText.h"
#include "formats/dxf/records/DxfBodies.h"
#include "formats/dxf/records/DxfPolylines.h"
#include "geometry/Angles.h"
#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

/// Angles in a file run from 0 to 360 degrees, or from -180 to 180 where the one that stood there was negative.
double degreesLike(double radians, double former) {
    constexpr double turn = 360.0;
    const double angle = radians - kTurn * std::floor(radians / kTurn);
    if (former >= 0.0 || angle <= kPi)
        return degreesOf(angle);
    const double turned = degreesOf(angle - kTurn), less = degreesOf(angle) - turn;
    return numberText(less).size() < numberText(turned).size() ? less : turned;  // they differ by rounding at most
}

class Rewriter {
public:
    Rewriter(DxfItems& record, const Shape& before, DxfHandles& handles)
        : m_record(record), m_before(before), m_handles(handles), m_style(styleOf(record)) {}

    void operator()(const LineShape& now) {
        point(10, now.start);
        point(11, now.end);
    }
    void operator()(const PointShape& now) { point(10, now.position); }
    void operator()(const XlineShape& now) {
        point(10, now.point);
        direction(std::get<XlineShape>(m_before).direction, now.direction);
    }
    void operator()(const RayShape& now) {
        point(10, now.point);
        direction(std::get<RayShape>(m_before).direction, now.direction);
    }
    void operator()(const CircleShape& now) {
        point(10, turned(now.centre));
        number(40, now.radius);
    }
    void operator()(const ArcShape& now) {
        const ArcShape& before = std::get<ArcShape>(m_before);
        point(10, turned(now.centre));
        number(40, now.radius);
        const bool down = looksDown(m_record);
        if (now.startAngle != before.startAngle)
            angle(down ? 51 : 50, down ? kPi - now.startAngle : now.startAngle);
        if (now.endAngle != before.endAngle)
            angle(down ? 50 : 51, down ? kPi - now.endAngle : now.endAngle);
    }
    void operator()(const EllipseShape& now) { ellipse({now.centre, now.majorAxis, now.ratio, 0.0, kTurn}); }
    void operator()(const EllipticalArcShape& now) { ellipse(now); }
    void operator()(const SplineShape& now) { spline(std::get<SplineShape>(m_before), now); }
    void operator()(const PolylineShape& now) {
        rewritePolyline(m_record, std::get<PolylineShape>(m_before), now, m_handles);
    }
    void operator()(const TextShape& now) { text(std::get<TextShape>(m_before), now); }

private:
    Vec2 turned(Vec2 point) const { return looksDown(m_record) ? Vec2{-point.x, point.y} : point; }

    /// Behind the last of its own groups with another code where there is none of this one yet.
    void number(int code, double value, int behind = 0) {
        const auto found = findOwn(m_record, code);
        if (!found)
            return add(newNumber(code, value, m_style), behind);
        if (ownNumber(m_record, code, 0.0) != value)
            m_record[*found].value = numberLike(value, m_record[*found].value);
    }
    void add(DxfItem item, int behind) {
        std::size_t at = 0;
        for (const std::size_t i : ownGroups(m_record))
            at = behind == 0 || m_record[i].code == behind ? i : at;
        m_record.insert(m_record.begin() + static_cast<std::ptrdiff_t>(at + 1), std::move(item));
    }
    void point(int code, Vec2 value) {
        number(code, value.x);
        number(code + 10, value.y, code);
    }

    void direction(Vec2 before, Vec2 now) {
        if (before == now)
            return;
        const double length = std::hypot(now.x, now.y);  // files say directions with the length 1
        point(11, {now.x / length, now.y / length});
    }

    void angle(int code, double radians) { number(code, degreesLike(radians, ownNumber(m_record, code, 0.0)), 40); }

    static EllipticalArcShape whole(const Shape& shape) {
        if (const auto* ellipse = std::get_if<EllipseShape>(&shape))
            return {ellipse->centre, ellipse->majorAxis, ellipse->ratio, 0.0, kTurn};
        return std::get<EllipticalArcShape>(shape);
    }

    void ellipse(const EllipticalArcShape& now) {
        const EllipticalArcShape before = whole(m_before);
        point(10, now.centre);
        // Where the file has the axes the other way round, its numbers are others than those that were read.
        const bool isSwapped = std::abs(ownNumber(m_record, 40, 1.0)) > 1.0;
        if (isSwapped || now.majorAxis != before.majorAxis)
            point(11, now.majorAxis);
        if (isSwapped || now.ratio != before.ratio)
            number(40, now.ratio, 21);
        if (!isSwapped && now.startParam == before.startParam && now.endParam == before.endParam)
            return;
        const bool down = looksDown(m_record);
        number(41, down ? -now.endParam : now.startParam, 40);
        number(42, down ? -now.startParam : now.endParam, 41);
    }

    void spline(const SplineShape& before, const SplineShape& now) {
        drop({11, 21, 31, 12, 22, 32, 13, 23, 33});  // what it was fitted to
        if (const auto fitted = findOwn(m_record, 74))
            m_record[*fitted].value.assign(1, '0');
        if (findOwn(m_record, 10) && before.degree == now.degree && before.control.size() == now.control.size() &&
            before.knots.size() == now.knots.size() && before.weights.size() == now.weights.size())
            return renumber(now);
        rebuild(now);
    }

    void drop(std::initializer_list<int> codes) {
        std::vector<bool> goes(m_record.size(), false);
        for (const std::size_t i : ownGroups(m_record))
            goes[i] = std::find(codes.begin(), codes.end(), m_record[i].code) != codes.end();
        DxfItems kept;
        for (std::size_t i = 0; i < m_record.size(); ++i)
            if (!goes[i])
                kept.push_back(std::move(m_record[i]));
        m_record = std::move(kept);
    }

    void renumber(const SplineShape& now) {
        std::size_t knot = 0, weight = 0, x = 0, y = 0;
        for (const std::size_t i : ownGroups(m_record)) {
            DxfItem& item = m_record[i];
            if (item.code == 40)
                setValue(item, now.knots[knot++]);
            else if (item.code == 41 && !now.weights.empty())
                setValue(item, now.weights[weight++]);
            else if (item.code == 10)
                setValue(item, now.control[x++].x);
            else if (item.code == 20)
                setValue(item, now.control[y++].y);
        }
    }

    static void setValue(DxfItem& item, double value) {
        if (ownNumber({item}, item.code, 0.0) != value)
            item.value = numberLike(value, item.value);
    }

    void count(int code, std::size_t value, int behind) {
        if (const auto found = findOwn(m_record, code))
            m_record[*found].value = std::to_string(value);
        else
            add(newItem(code, std::to_string(value), m_style), behind);
    }

    void rebuild(const SplineShape& now) {
        constexpr unsigned closedFlag = 1, rationalFlag = 4, planarFlag = 8;
        const double height = ownNumber(m_record, 30, 0.0);
        const auto flags = static_cast<unsigned>(ownNumber(m_record, 70, planarFlag)) & planarFlag;
        drop({40, 41, 10, 20, 30});
        count(70,
              flags | (now.weights.empty() ? 0 : rationalFlag) | (splineStart(now) == splineEnd(now) ? closedFlag : 0),
              0);
        count(71, static_cast<std::size_t>(now.degree), 70);
        count(72, now.knots.size(), 71);
        count(73, now.control.size(), 72);
        const auto behindCounts = [this] {
            std::size_t at = 0;
            for (const std::size_t i : ownGroups(m_record))
                if (const int code = m_record[i].code; (code >= 42 && code <= 44) || (code >= 70 && code <= 74))
                    at = i;
            return m_record.begin() + static_cast<std::ptrdiff_t>(at + 1);
        };
        const DxfItems data = splineData(now, height, m_style);
        m_record.insert(behindCounts(), data.begin(), data.end());
    }

    /// The columns of a paragraph say once more where it stands.
    void dropEmbedded() {
        const auto begins = [](const DxfItem& item) { return item.code == kEmbedded; };
        const auto ends = [](const DxfItem& item) { return item.code >= kFirstForeign; };
        const auto first = std::find_if(m_record.begin(), m_record.end(), begins);
        m_record.erase(first, std::find_if(first, m_record.end(), ends));
    }

    void text(const TextShape& before, const TextShape& now) {
        if (now.multiline)
            dropEmbedded();
        // A text that is aligned at another point has that one moved with it.
        if (!now.multiline && findOwn(m_record, 11))
            point(11, turned(moved(turned({ownNumber(m_record, 11, 0.0), ownNumber(m_record, 21, 0.0)}), before, now)));
        point(10, now.multiline ? now.position : turned(now.position));
        number(40, now.height);
        if (now.multiline && findOwn(m_record, 41) && now.height != before.height)
            number(41, ownNumber(m_record, 41, 0.0) * now.height / before.height);
        if (now.rotation != before.rotation)
            rotation(now);
        if (now.text != before.text)
            words(now);
    }

    static Vec2 moved(Vec2 point, const TextShape& before, const TextShape& now) {
        const double turn = now.rotation - before.rotation, scale = now.height / before.height;
        const Vec2 arm{point.x - before.position.x, point.y - before.position.y};
        const double c = scale * std::cos(turn), s = scale * std::sin(turn);
        return {now.position.x + c * arm.x - s * arm.y, now.position.y + s * arm.x + c * arm.y};
    }

    void rotation(const TextShape& now) {
        if (now.multiline && findOwn(m_record, 11))
            return point(11, {std::cos(now.rotation), std::sin(now.rotation)});
        const bool down = !now.multiline && looksDown(m_record);
        number(50, degreesLike(down ? kPi - now.rotation : now.rotation, ownNumber(m_record, 50, 0.0)), 1);
    }

    void words(const TextShape& now) {
        drop({3});
        m_record[*findOwn(m_record, 1)].value =
            now.multiline ? encodedDxfParagraph(now.text) : encodedDxfText(now.text);
    }

    DxfItems& m_record;
    const Shape& m_before;
    DxfHandles& m_handles;
    DxfStyle m_style;
};

}  // namespace

bool canHold(std::string_view name, const Shape& shape) {
    struct Names {
        std::string_view operator()(const LineShape&) const { return "LINE"; }
        std::string_view operator()(const ArcShape&) const { return "ARC"; }
        std::string_view operator()(const CircleShape&) const { return "CIRCLE"; }
        std::string_view operator()(const EllipseShape&) const { return "ELLIPSE"; }
        std::string_view operator()(const EllipticalArcShape&) const { return "ELLIPSE"; }
        std::string_view operator()(const SplineShape& s) const { return s.periodic ? "" : "SPLINE"; }
        std::string_view operator()(const PointShape&) const { return "POINT"; }
        std::string_view operator()(const XlineShape&) const { return "XLINE"; }
        std::string_view operator()(const RayShape&) const { return "RAY"; }
        std::string_view operator()(const PolylineShape&) const { return "LWPOLYLINE"; }
        std::string_view operator()(const TextShape& s) const { return s.multiline ? "MTEXT" : "TEXT"; }
    };
    return name == std::visit(Names(), shape) || (name == "POLYLINE" && std::holds_alternative<PolylineShape>(shape));
}

void rewrite(DxfItems& record, const Shape& before, const Shape& now, DxfHandles& handles) {
    std::visit(Rewriter(record, before, handles), now);
}

double degreesOf(double radians) {
    const double degrees = radians * 180.0 / kPi;
    for (const int digits : {15, 16}) {  // a double has 15 to 17
        std::array<char, 32> text{};
        const auto end =
            std::to_chars(text.data(), text.data() + text.size(), degrees, std::chars_format::general, digits).ptr;
        double shorter = degrees;
        std::from_chars(text.data(), end, shorter);
        if (shorter * kPi / 180.0 == radians)
            return shorter;
    }
    return degrees;
}

}  // namespace holdfast::formats
