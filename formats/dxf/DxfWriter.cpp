#include "formats/dxf/DxfWriter.h"

#include <cmath>
#include <string_view>
#include <utility>

#include "document/checks/DocumentCheck.h"
#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "formats/LostFacts.h"
#include "formats/dxf/DxfLooks.h"
#include "formats/dxf/DxfText.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

std::string layerNameOf(const Entity& entity) {
    if (!entity.look->layer.empty())
        return encodedDxfText(entity.look->layer);
    if (entity.fixed)
        return "REFERENCE";
    return entity.construction ? "CONSTRUCTION" : "0";
}

void appendGroup(std::string& text, int code, std::string_view value) {
    const std::string digits = std::to_string(code);
    text.append(digits.size() < 3 ? 3 - digits.size() : 0, ' ').append(digits).append("\n");
    text.append(value).append("\n");
}

/// The table of layers. Line types would need a table of their own.
void appendLayers(std::string& text, const std::vector<Layer>& layers) {
    constexpr unsigned frozenFlag = 1, lockedFlag = 4;
    if (layers.empty())
        return;
    for (const auto& [code, value] : {std::pair(0, "SECTION"), {2, "TABLES"}, {0, "TABLE"}, {2, "LAYER"}})
        appendGroup(text, code, value);
    appendGroup(text, 70, std::to_string(layers.size()));
    for (const Layer& layer : layers) {
        appendGroup(text, 0, "LAYER");
        appendGroup(text, 2, encodedDxfText(layer.name));
        appendGroup(text, 70, std::to_string((layer.isFrozen ? frozenFlag : 0) | (layer.isLocked ? lockedFlag : 0)));
        appendGroup(text, 62, (layer.isOff ? "-" : "") + std::to_string(paletteNumber(layer.colour)));
        appendGroup(text, 6, "CONTINUOUS");
    }
    appendGroup(text, 0, "ENDTAB");
    appendGroup(text, 0, "ENDSEC");
}

class Writer {
public:
    Writer(DxfOutput& output, const Entity& entity)
        : m_output(output), m_entity(entity), m_layer(layerNameOf(entity)) {}

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
    void operator()(const PolylineShape& shape) const {
        begin("POLYLINE");
        group(66, "1");
        point(10, {0.0, 0.0});
        group(70, shape.closed ? "1" : "0");
        for (std::size_t i = 0; i < shape.vertices.size(); ++i) {
            begin("VERTEX");
            point(10, shape.vertices[i]);
            if (shape.bulges[i] != 0.0)
                number(42, shape.bulges[i]);
        }
        begin("SEQEND");
    }
    void operator()(const TextShape& shape) const {
        begin("TEXT");
        point(10, shape.position);
        number(40, shape.height);
        group(1, encodedDxfText(shape.text));
        number(50, inDegrees(shape.rotation));
    }
    /// What the old form has no name for is not among what it is given.
    template <class Newer>
    void operator()(const Newer&) const {}

private:
    void group(int code, std::string_view value) const { appendGroup(m_output.text, code, value); }
    void begin(std::string_view name) const {
        group(0, name);
        group(8, m_layer);
        if (m_entity.look->colour != Colour())
            group(62, std::to_string(paletteNumber(m_entity.look->colour)));
    }
    void number(int code, double value) const { group(code, numberText(value)); }
    void point(int code, Vec2 value) const {
        number(code, value.x);
        number(code + 10, value.y);
        number(code + 20, 0.0);
    }

    DxfOutput& m_output;
    const Entity& m_entity;
    std::string m_layer;
};

void write(const Entity& entity, DxfOutput& output) {
    const OldForm form = oldForm(entity.shape, output.tolerance);
    if (form.loss)
        output.notes.push_back({entity.id, *form.loss, form.pieces});
    for (const Shape& shape : form.shapes)
        std::visit(Writer(output, entity), shape);
}

}  // namespace

void checkForDxf(const Document& document, double tolerance) {
    const std::string name = document.name.empty() ? "drawing" : document.name;
    if (!(tolerance > 0.0) || !std::isfinite(tolerance))
        throw DrawingError(name, {"", "a tolerance that is not above 0", "how far flattened curves may deviate"});
    checkDocument(document, name);
}

DxfOutput dxfText(const Document& document, double tolerance) {
    checkForDxf(document, tolerance);
    DxfOutput output;
    output.tolerance = tolerance;
    output.lostConstraints = document.constraints.size();
    output.lostParameters = document.parameters.size();
    output.lostReferences = document.references.size();
    // Helper geometry and fixed references have layers of their own.
    output.lostFacts = lostFacts(document, {Fact::construction, Fact::fixedEntities, Fact::layers, Fact::colours});
    appendLayers(output.text, document.layers);
    output.text += "  0\nSECTION\n  2\nENTITIES\n";
    for (const Entity& entity : document.entities)
        write(entity, output);
    output.text += "  0\nENDSEC\n  0\nEOF\n";
    return output;
}

}  // namespace holdfast::formats
