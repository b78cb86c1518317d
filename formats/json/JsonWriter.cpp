#include "formats/json/JsonWriter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "document/Names.h"
#include "document/checks/DocumentCheck.h"
#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "document/text/Utf8.h"
#include "formats/json/JsonLooks.h"

namespace holdfast::formats {
namespace {

/// Stands for itself between quotes.
bool isPlain(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code >= 0x20 && code != 0x7f && c != '"' && c != '\\';
}

void appendEscaped(std::string& out, char c) {
    constexpr std::string_view hex = "0123456789abcdef";
    switch (c) {
        case '"':
            out += "\\\"";
            return;
        case '\\':
            out += "\\\\";
            return;
        case '\n':
            out += "\\n";
            return;
        case '\r':
            out += "\\r";
            return;
        case '\t':
            out += "\\t";
            return;
        default:
            break;
    }
    const auto code = static_cast<unsigned char>(c);
    out.append("\\u00").append(1, hex[code >> 4U]).append(1, hex[code & 15U]);
}

void append(std::string& out, std::string_view text) {
    out += '"';
    while (!text.empty()) {
        const auto plain = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) - text.begin());
        out.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (!text.empty()) {
            appendEscaped(out, text.front());
            text.remove_prefix(1);
        }
    }
    out += '"';
}

void append(std::string& out, double value) {
    appendNumber(out, value);
}
void append(std::string& out, int value) {
    out += std::to_string(value);
}
void append(std::string& out, Vec2 point) {
    out += '[';
    append(out, point.x);
    out += ", ";
    append(out, point.y);
    out += ']';
}
void append(std::string& out, const Place& place) {
    out += "{\"entity\": ";
    append(out, place.entity);
    out += ", \"point\": ";
    append(out, placeText(place));
    out += '}';
}

template <class Item>
void appendList(std::string& out, std::span<const Item> items) {
    out += '[';
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0)
            out += ", ";
        append(out, items[i]);
    }
    out += ']';
}

/// One object on one line; members appear in the order of the calls.
class ObjectLine {
public:
    explicit ObjectLine(std::string& out) : m_out(out) { m_out += '{'; }
    ObjectLine(const ObjectLine&) = delete;
    ObjectLine& operator=(const ObjectLine&) = delete;
    ~ObjectLine() { m_out += '}'; }

    template <class Value>
    void member(std::string_view key, const Value& value) {
        name(key);
        append(m_out, value);
    }
    void member(std::string_view key, const std::string& value) { member(key, std::string_view(value)); }
    void flag(std::string_view key, bool value) {
        name(key);
        m_out += value ? "true" : "false";
    }
    template <class Item>
    void list(std::string_view key, const std::vector<Item>& items) {
        name(key);
        appendList<Item>(m_out, items);
    }
    template <class Value>
    void memberUnlessEmpty(std::string_view key, const Value& value) {
        if (!value.empty())
            member(key, value);
    }

private:
    void name(std::string_view key) {
        if (m_hasMembers)
            m_out += ", ";
        m_hasMembers = true;
        append(m_out, key);
        m_out += ": ";
    }

    std::string& m_out;
    bool m_hasMembers = false;
};

struct FieldWriter {
    void operator()(const LineShape& line) const {
        object.member("start", line.start);
        object.member("end", line.end);
    }
    void operator()(const ArcShape& arc) const {
        object.member("centre", arc.centre);
        object.member("radius", arc.radius);
        object.member("start_angle", arc.startAngle);
        object.member("end_angle", arc.endAngle);
    }
    void operator()(const CircleShape& circle) const {
        object.member("centre", circle.centre);
        object.member("radius", circle.radius);
    }
    void operator()(const EllipseShape& ellipse) const {
        object.member("centre", ellipse.centre);
        object.member("major_axis", ellipse.majorAxis);
        object.member("ratio", ellipse.ratio);
    }
    void operator()(const EllipticalArcShape& arc) const {
        (*this)(EllipseShape{arc.centre, arc.majorAxis, arc.ratio});
        object.member("start_param", arc.startParam);
        object.member("end_param", arc.endParam);
    }
    void operator()(const SplineShape& spline) const {
        object.member("degree", spline.degree);
        object.flag("periodic", spline.periodic);
        object.list("control", spline.control);
        object.list("knots", spline.knots);
        if (!spline.weights.empty())
            object.list("weights", spline.weights);
    }
    void operator()(const PointShape& point) const { object.member("position", point.position); }
    void operator()(const XlineShape& xline) const {
        object.member("point", xline.point);
        object.member("direction", xline.direction);
    }
    void operator()(const RayShape& ray) const { (*this)(XlineShape{ray.point, ray.direction}); }
    void operator()(const PolylineShape& polyline) const {
        object.list("vertices", polyline.vertices);
        object.list("bulges", polyline.bulges);
        object.list("ids", polyline.ids);
        object.flag("closed", polyline.closed);
    }
    void operator()(const TextShape& text) const {
        object.member("position", text.position);
        object.member("rotation", text.rotation);
        object.member("height", text.height);
        object.member("text", text.text);
    }

    ObjectLine& object;
};

void appendColour(ObjectLine& object, const Colour& colour) {
    if (colour.kind == Colour::Kind::index)
        object.member("colour", static_cast<int>(colour.value));
    else
        object.member("colour", colourText(colour));
}

void appendWeight(ObjectLine& object, int weight) {
    constexpr double weightsInUnit = 100.0;
    if (const std::string_view text = weightText(weight); !text.empty())
        object.member("weight", text);
    else
        object.member("weight", weight / weightsInUnit);
}

void appendLook(ObjectLine& object, const Look& look) {
    object.memberUnlessEmpty("layer", look.layer);
    if (look.colour != Colour())
        appendColour(object, look.colour);
    object.memberUnlessEmpty("linetype", look.linetype);
    if (look.weight != kWeightByLayer)
        appendWeight(object, look.weight);
    if (!look.visible)
        object.flag("visible", false);
}

void append(std::string& out, const Entity& entity) {
    ObjectLine object(out);
    object.member("id", entity.id);
    object.member("type", typeName(entity.shape));
    std::visit(FieldWriter{object}, entity.shape);
    if (entity.construction)
        object.flag("construction", true);
    if (entity.fixed)
        object.flag("fixed", true);
    if (!entity.look.isUsual())
        appendLook(object, *entity.look);
}

void append(std::string& out, const Layer& layer) {
    ObjectLine object(out);
    object.member("name", layer.name);
    appendColour(object, layer.colour);
    object.memberUnlessEmpty("linetype", layer.linetype);
    if (layer.weight != kWeightDefault)
        appendWeight(object, layer.weight);
    for (const auto& [name, is] :
         {std::pair("off", layer.isOff), {"frozen", layer.isFrozen}, {"locked", layer.isLocked}})
        if (is)
            object.flag(name, true);
}

void append(std::string& out, const Constraint& constraint) {
    ObjectLine object(out);
    object.member("id", constraint.id);
    object.member("type", typeName(constraint.type));
    if (constraint.type != ConstraintType::composite)
        object.list("refs", constraint.refs);
    if (!constraint.members.empty())
        object.list("members", constraint.members);
    object.memberUnlessEmpty("role", constraint.role);
    if (constraint.value)
        object.member("value", *constraint.value);
    object.memberUnlessEmpty("formula", constraint.formula);
    if (!constraint.driving)
        object.flag("driving", false);
    if (!constraint.active)
        object.flag("active", false);
    object.memberUnlessEmpty("name", constraint.name);
    if (constraint.implied)
        object.flag("implied", true);
}

void append(std::string& out, const Parameter& parameter) {
    ObjectLine object(out);
    object.member("name", parameter.name);
    object.member("formula", parameter.formula);
    object.member("value", parameter.value);
}

void append(std::string& out, const Source& source) {
    ObjectLine object(out);
    object.memberUnlessEmpty("repository", source.repository);
    object.memberUnlessEmpty("revision", source.revision);
    object.memberUnlessEmpty("file", source.file);
    object.memberUnlessEmpty("sketch", source.sketch);
}

void append(std::string& out, const Plane& plane) {
    ObjectLine object(out);
    object.list("origin", std::vector<double>(plane.origin.begin(), plane.origin.end()));
    object.list("x_axis", std::vector<double>(plane.xAxis.begin(), plane.xAxis.end()));
    object.list("y_axis", std::vector<double>(plane.yAxis.begin(), plane.yAxis.end()));
}

template <class Value>
void appendHead(std::string& out, std::string_view key, const Value& value) {
    out.append("\"").append(key).append("\": ");
    append(out, value);
    out += ",\n";
}

/// A text that goes on its way whenever there is a piece of it.
class Pieces {
public:
    explicit Pieces(const std::function<void(std::string_view)>& put) : m_put(put) { text.reserve(2 * kPiece); }

    std::string text;

    /// At the end of a line: no character is cut in two.
    void endLine() {
        if (text.size() >= kPiece)
            send();
    }
    void send() {
        refuseBrokenText(text);
        m_put(text);
        text.clear();
    }

private:
    static constexpr std::size_t kPiece = 1U << 16U;  // large for one write, small beside any drawing
    static void refuseBrokenText(const std::string& text) {
        if (!isUtf8(text))
            throw DrawingError("drawing", {"", "a text that is not UTF-8", "texts in UTF-8"});
    }

    const std::function<void(std::string_view)>& m_put;
};

template <class Item>
void appendLines(Pieces& pieces, std::string_view key, const std::vector<Item>& items) {
    pieces.text.append("\"").append(key).append("\": [\n");
    for (std::size_t i = 0; i < items.size(); ++i) {
        append(pieces.text, items[i]);
        pieces.text += i + 1 < items.size() ? ",\n" : "\n";
        pieces.endLine();
    }
    pieces.text += ']';
}

}  // namespace

void writeJson(const Document& document, const std::function<void(std::string_view piece)>& put) {
    checkDocument(document, document.name.empty() ? "drawing" : document.name);
    Pieces pieces(put);
    std::string& out = pieces.text;
    out = "{\n";
    if (!document.name.empty())
        appendHead(out, "name", std::string_view(document.name));
    if (document.source)
        appendHead(out, "source", *document.source);
    if (!document.license.empty())
        appendHead(out, "license", std::string_view(document.license));
    out += "\"units\": {\"length\": ";
    append(out, std::string_view(document.lengthUnit));
    out += ", \"angle\": \"rad\"},\n";
    if (document.plane)
        appendHead(out, "plane", *document.plane);
    if (!document.parameters.empty()) {
        appendLines(pieces, "parameters", document.parameters);
        out += ",\n";
    }
    if (!document.layers.empty()) {
        appendLines(pieces, "layers", document.layers);
        out += ",\n";
    }
    appendLines(pieces, "entities", document.entities);
    out += ",\n";
    appendLines(pieces, "constraints", document.constraints);
    if (document.constraintNumbers > 0)
        out += ",\n\"constraint_numbers\": " + std::to_string(document.constraintNumbers);
    out += "\n}\n";
    pieces.send();
}

std::string jsonText(const Document& document) {
    std::string text;
    writeJson(document, [&](std::string_view piece) { text += piece; });
    return text;
}

void writeJson(const Document& document, std::ostream& out) {
    out << jsonText(document);
}

}  // namespace holdfast::formats
