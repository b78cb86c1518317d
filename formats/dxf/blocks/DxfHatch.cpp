#include "formats/dxf/blocks/DxfHatch.h"

#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "document/checks/ShapeCheck.h"
#include "formats/dxf/DxfText.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"

namespace holdfast::formats {
namespace {

/// Groups of a hatch mean what they do by what stands before them: they are taken one after the other.
class OutlineReader {
public:
    explicit OutlineReader(const DxfEntity& hatch) : m_hatch(hatch) {}

    Block read() {
        if (const DxfGroup* pattern = m_hatch.find(2))
            m_block.name = decodedDxfText(pattern->value, m_hatch.source->codePage());
        while (m_next < m_hatch.groups.size() && m_hatch.groups[m_next].code != 91)
            ++m_next;
        for (int paths = count(91); paths > 0; --paths)
            readPath();
        return std::move(m_block);
    }

private:
    bool nextIs(int code) const { return m_next < m_hatch.groups.size() && m_hatch.groups[m_next].code == code; }

    const DxfGroup& take(int code) {
        if (!nextIs(code))
            m_hatch.fail(m_next == m_hatch.groups.size()
                             ? "the end of a HATCH"
                             : "group " + std::to_string(m_hatch.groups[m_next].code) + " in a HATCH",
                         "group " + std::to_string(code));
        return m_hatch.groups[m_next++];
    }
    double number(int code) { return m_hatch.source->number(take(code)); }
    double number(int code, double otherwise) { return nextIs(code) ? number(code) : otherwise; }
    int count(int code) { return m_hatch.source->integer(take(code)); }
    int count(int code, int otherwise) { return nextIs(code) ? count(code) : otherwise; }
    Vec2 point(int code) {
        const double x = number(code);
        return {x, number(code + 10)};
    }

    void add(Shape shape) {
        if (!faultIn(shape))
            m_block.parts.push_back({std::move(shape)});
    }

    void readPath() {
        constexpr unsigned polylineFlag = 2;
        if ((static_cast<unsigned>(count(92)) & polylineFlag) != 0)
            readPolyline();
        else
            for (int edges = count(93); edges > 0; --edges)
                readEdge(count(72));
        for (int sources = count(97, 0); sources > 0; --sources)
            take(330);
    }

    void readPolyline() {
        PolylineShape polyline;
        const bool hasBulges = count(72) != 0;
        polyline.closed = count(73) != 0;
        for (int vertices = count(93); vertices > 0; --vertices) {
            polyline.vertices.push_back(point(10));
            polyline.bulges.push_back(hasBulges ? number(42, 0.0) : 0.0);
            polyline.ids.push_back(0);
        }
        if (!polyline.closed && !polyline.bulges.empty())
            polyline.bulges.back() = 0.0;
        if (polyline.vertices.size() > 1)
            add(std::move(polyline));
    }

    void readEdge(int kind) {
        switch (kind) {
            case 1:
                return readLine();
            case 2:
                return readArc();
            case 3:
                return readEllipticalArc();
            case 4:
                return readSpline();
            default:
                m_hatch.fail("an edge of kind " + std::to_string(kind) + " in a HATCH",
                             "1 for a line, 2 for an arc, 3 for a part of an ellipse or 4 for a spline");
        }
    }

    void readLine() {
        const Vec2 start = point(10);
        add(LineShape{start, point(11)});
    }

    struct Sweep {
        double start, length;  // radians
        bool isWhole() const { return length >= kTurn - kSameDirection; }
    };

    /// Of an edge that runs clockwise the angles are measured that way, too.
    Sweep sweep() {
        double start = number(50), end = number(51);
        if (count(73, 1) == 0)
            start = -std::exchange(end, -start);
        double degrees = std::fmod(end - start, 360.0);
        if (degrees <= 0.0)
            degrees += 360.0;
        return {inRadians(start), inRadians(degrees)};
    }

    void readArc() {
        const Vec2 centre = point(10);
        const double radius = number(40);
        const Sweep swept = sweep();
        if (swept.isWhole())
            add(CircleShape{centre, radius});
        else
            add(ArcShape{centre, radius, swept.start, swept.start + swept.length});
    }

    /// An angle from the major axis as the parameter there; whole turns stay.
    static double paramAt(double angle, double ratio) {
        const double turns = kTurn * std::floor(angle / kTurn + 0.5);
        return turns + std::atan2(std::sin(angle - turns) / ratio, std::cos(angle - turns));
    }

    void readEllipticalArc() {
        const Vec2 centre = point(10), major = point(11);
        const double ratio = std::abs(number(40));
        const Sweep swept = sweep();
        if (!(ratio > 0.0))
            return;
        if (swept.isWhole())
            return add(EllipseShape{centre, major, ratio});
        const double first = paramAt(swept.start, ratio);
        double last = paramAt(swept.start + swept.length, ratio);
        last += last <= first ? kTurn : 0.0;
        add(EllipticalArcShape{centre, major, ratio, first, last});
    }

    void readSpline() {
        SplineShape spline;
        spline.degree = count(94);
        const bool isRational = count(73, 0) != 0;
        count(74, 0);
        const int knots = count(95), points = count(96);
        for (int i = 0; i < knots; ++i)
            spline.knots.push_back(number(40));
        for (int i = 0; i < points; ++i) {
            spline.control.push_back(point(10));
            if (const double weight = number(42, 1.0); isRational)
                spline.weights.push_back(weight);
        }
        // What it was fitted to, with the directions at its ends. The number of the path's sources has the same code,
        // and stands behind this one where both are there.
        if (nextIs(97) && (hasFitPoints() || hasAnotherCount()))
            for (int fits = count(97); fits > 0; --fits)
                point(11);
        for (const int tangent : {12, 13})
            if (nextIs(tangent))
                point(tangent);
        add(std::move(spline));
    }

    bool isBehind(int code) const {
        return m_next + 1 < m_hatch.groups.size() && m_hatch.groups[m_next + 1].code == code;
    }
    bool hasFitPoints() const { return isBehind(11); }
    /// Another edge or path, or the number of sources, comes behind this number.
    bool hasAnotherCount() const { return isBehind(97) || isBehind(72) || isBehind(12); }

    const DxfEntity& m_hatch;
    std::size_t m_next = 0;
    Block m_block;
};

}  // namespace

Block readDxfHatch(const DxfEntity& hatch) {
    return OutlineReader(hatch).read();
}

}  // namespace holdfast::formats
