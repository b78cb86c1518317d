#include "formats/dxf/DxfWriter.h"

#include <cmath>
#include <span>
#include <string_view>
#include <utility>

#include "document/checks/DocumentCheck.h"
#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "formats/dxf/DxfText.h"
#include "formats/dxf/Flatten.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

std::string_view layerOf(const Entity& entity) {
    if (entity.fixed)
        return "REFERENCE";
    return entity.construction ? "CONSTRUCTION" : "0";
}

class Writer {
public:
    Writer(DxfOutput& output, const Entity& entity) : m_output(output), m_entity(entity) {}

    void operator()(const LineShape& line) const {
        begin("LINE");
        point(10, line.start);
        point(11, line.end);
    }
    void operator()(const ArcShape& arc) const {
        begin("ARC");
        point(10, arc.centre);
        number(40, arc.radius);
        number(50, inDegrees(arc.startAngle));
        number(51, inDegrees(arc.endAngle));
    }
    void operator()(const CircleShape& circle) const {
        begin("CIRCLE");
        point(10, circle.centre);
        number(40, circle.radius);
    }
    void operator()(const PointShape& shape) const {
        begin("POINT");
        point(10, shape.position);
    }
    void operator()(const EllipseShape& ellipse) const {
        std::vector<Vec2> points = flattened(ellipse, m_output.tolerance);
        points.pop_back();
        flat(points, true);
    }
    void operator()(const EllipticalArcShape& arc) const { flat(flattened(arc, m_output.tolerance), false); }
    void operator()(const SplineShape& spline) const {
        std::vector<Vec2> points = flattened(spline, m_output.tolerance);
        if (spline.periodic)
            points.pop_back();
        flat(points, spline.periodic);
    }
    void operator()(const XlineShape&) const { note(DxfLoss::leftOut, 0); }
    void operator()(const RayShape&) const { note(DxfLoss::leftOut, 0); }
    void operator()(const PolylineShape& shape) const { polyline(shape.vertices, shape.bulges, shape.closed); }
    void operator()(const TextShape& shape) const {
        if (shape.multiline)
            paragraph(shape);
        else
            line(shape, shape.position, shape.text);
    }

private:
    void group(int code, std::string_view value) const {
        std::string& text = m_output.text;
        const std::string digits = std::to_string(code);
        text.append(digits.size() < 3 ? 3 - digits.size() : 0, ' ').append(digits).append("\n");
        text.append(value).append("\n");
    }
    void begin(std::string_view name) const {
        group(0, name);
        group(8, layerOf(m_entity));
    }
    void number(int code, double value) const { group(code, numberText(value)); }
    void point(int code, Vec2 value) const {
        number(code, value.x);
        number(code + 10, value.y);
        number(code + 20, 0.0);
    }
    void note(DxfLoss loss, std::size_t pieces) const { m_output.notes.push_back({m_entity.id, loss, pieces}); }

    void flat(std::span<const Vec2> points, bool closed) const {
        note(DxfLoss::flattened, closed ? points.size() : points.size() - 1);
        polyline(points, std::vector<double>(points.size(), 0.0), closed);
    }

    void polyline(std::span<const Vec2> vertices, std::span<const double> bulges, bool closed) const {
        begin("POLYLINE");
        group(66, "1");
        point(10, {0.0, 0.0});
        group(70, closed ? "1" : "0");
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            begin("VERTEX");
            point(10, vertices[i]);
            if (bulges[i] != 0.0)
                number(42, bulges[i]);
        }
        begin("SEQEND");
    }

    void line(const TextShape& shape, Vec2 position, std::string_view text) const {
        begin("TEXT");
        point(10, position);
        number(40, shape.height);
        group(1, encodedDxfText(text));
        number(50, inDegrees(shape.rotation));
    }

    /// A paragraph hangs from its top left corner; baselines lie 5/3 of the text height apart.
    void paragraph(const TextShape& shape) const {
        const Vec2 down{std::sin(shape.rotation), -std::cos(shape.rotation)};
        std::size_t count = 0;
        std::string_view rest = shape.text;
        for (bool more = true; more; ++count) {
            const std::size_t end = rest.find('\n');
            const double drop = shape.height * (1.0 + static_cast<double>(count) * 5.0 / 3.0);
            line(shape, {shape.position.x + drop * down.x, shape.position.y + drop * down.y}, rest.substr(0, end));
            more = end != std::string_view::npos;
            rest.remove_prefix(more ? end + 1 : rest.size());
        }
        note(DxfLoss::split, count);
    }

    DxfOutput& m_output;
    const Entity& m_entity;
};

}  // namespace

DxfOutput dxfText(const Document& document, double tolerance) {
    const std::string name = document.name.empty() ? "drawing" : document.name;
    if (!(tolerance > 0.0) || !std::isfinite(tolerance))
        throw DrawingError(name, {"", "a tolerance that is not above 0", "how far flattened curves may deviate"});
    checkDocument(document, name);
    DxfOutput output;
    output.tolerance = tolerance;
    output.lostConstraints = document.constraints.size();
    output.lostParameters = document.parameters.size();
    output.text = "  0\nSECTION\n  2\nENTITIES\n";
    for (const Entity& entity : document.entities)
        std::visit(Writer(output, entity), entity.shape);
    output.text += "  0\nENDSEC\n  0\nEOF\n";
    return output;
}

}  // namespace holdfast::formats
