#include "formats/json/JsonReader.h"

#include <array>
#include <istream>
#include <iterator>
#include <optional>
#include <utility>

#include "document/Names.h"
#include "document/checks/DocumentCheck.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/json/JsonEntities.h"
#include "formats/json/JsonLooks.h"

namespace holdfast::formats {
namespace {

constexpr std::string_view kDrawingFields[] = {"name",       "source", "license",  "units",       "plane",
                                               "parameters", "layers", "entities", "constraints", "constraint_numbers"};
constexpr std::string_view kParameterFields[] = {"name", "formula", "value"};
constexpr std::string_view kSourceFields[] = {"repository", "revision", "file", "sketch"};
constexpr std::string_view kUnitFields[] = {"length", "angle"};
constexpr std::string_view kPlaneFields[] = {"origin", "x_axis", "y_axis"};
constexpr std::string_view kConstraintFields[] = {"id",      "type",    "refs",   "members", "role",   "value",
                                                  "formula", "driving", "active", "name",    "implied"};
constexpr std::string_view kRefFields[] = {"entity", "point"};

std::string textOr(const JsonView& view, std::string_view key) {
    const auto member = view.find(key);
    return member ? member->text() : std::string();
}

Source readSource(const JsonView& view) {
    view.allowOnly(kSourceFields);
    return Source{textOr(view, "repository"), textOr(view, "revision"), textOr(view, "file"), textOr(view, "sketch")};
}

std::string readLengthUnit(const JsonView& view) {
    view.allowOnly(kUnitFields);
    const JsonView angle = view.at("angle");
    if (angle.text() != "rad")
        angle.failAs("\"rad\": angles of a drawing are radians");
    return view.at("length").text();
}

std::array<double, 3> readVector(const JsonView& view) {
    const std::vector<JsonView> items = view.list();
    if (items.size() != 3)
        view.failAs("a list of three numbers, [x, y, z]");
    return {items[0].number(), items[1].number(), items[2].number()};
}

Plane readPlane(const JsonView& view) {
    view.allowOnly(kPlaneFields);
    return Plane{readVector(view.at("origin")), readVector(view.at("x_axis")), readVector(view.at("y_axis"))};
}

Place readRef(const JsonView& view) {
    view.allowOnly(kRefFields);
    const JsonView point = view.at("point");
    const std::optional<Place> place = parsePlace(point.text());
    constexpr std::string_view words[] = {"whole", "start", "end", "mid", "centre", "control:i", "segment:i"};
    if (!place)
        point.failAs("a place: whole, start, end, mid, centre, control:i, segment:i or segment:i.start|end|mid|centre" +
                     suggestion(point.text(), words));
    return Place{view.at("entity").text(), place->kind, place->index};
}

ConstraintType readType(const JsonView& view) {
    const std::string name = view.text();
    const std::optional<ConstraintType> type = constraintTypeNamed(name);
    if (!type)
        view.failAs("a constraint type: " + oneOf(constraintTypeNames()) + suggestion(name, constraintTypeNames()));
    return *type;
}

std::vector<Place> readRefs(const JsonView& view, ConstraintType type) {
    const auto refs = type == ConstraintType::composite ? view.find("refs") : view.at("refs");
    std::vector<Place> places;
    if (!refs)
        return places;
    for (const JsonView& ref : refs->list())
        places.push_back(readRef(ref));
    return places;
}

std::vector<std::string> readMembers(const JsonView& view) {
    std::vector<std::string> members;
    const auto list = view.find("members");
    if (!list)
        return members;
    for (const JsonView& member : list->list())
        members.push_back(member.text());
    return members;
}

/// A dimension's switch stands on dimensions only; elsewhere it would be lost without a word.
void refuseDrivingBesideDimension(const JsonView& view, ConstraintType type) {
    if (!isDimension(type) && view.find("driving"))
        view.find("driving")->fail("\"driving\" on a constraint of type " + std::string(typeName(type)),
                                   "it on dimensions only; remove the field");
}

Constraint readConstraint(const JsonView& view) {
    const ConstraintType type = readType(view.at("type"));
    view.allowOnly(kConstraintFields);
    refuseDrivingBesideDimension(view, type);
    Constraint constraint;
    constraint.id = view.at("id").text();
    constraint.type = type;
    constraint.refs = readRefs(view, type);
    constraint.members = readMembers(view);
    constraint.role = textOr(view, "role");
    if (const auto value = view.find("value"))
        constraint.value = value->number();
    constraint.formula = textOr(view, "formula");
    constraint.driving = flagOr(view, "driving", true);
    constraint.active = flagOr(view, "active", true);
    constraint.name = textOr(view, "name");
    constraint.implied = flagOr(view, "implied", false);
    return constraint;
}

Parameter readParameter(const JsonView& view) {
    view.allowOnly(kParameterFields);
    return Parameter{view.at("name").text(), view.at("formula").text(), view.at("value").number()};
}

Document readDocument(const JsonView& view) {
    view.allowOnly(kDrawingFields);
    Document document;
    document.name = textOr(view, "name");
    if (const auto source = view.find("source"))
        document.source = readSource(*source);
    document.license = textOr(view, "license");
    document.lengthUnit = readLengthUnit(view.at("units"));
    if (const auto plane = view.find("plane"))
        document.plane = readPlane(*plane);
    if (const auto parameters = view.find("parameters"))
        for (const JsonView& parameter : parameters->list())
            document.parameters.push_back(readParameter(parameter));
    if (const auto layers = view.find("layers"))
        for (const JsonView& layer : layers->list())
            document.layers.push_back(readLayer(layer));
    if (const auto used = view.find("constraint_numbers")) {
        if (used->integer() < 0)
            used->failAs("a whole number, 0 or more");
        document.constraintNumbers = static_cast<std::size_t>(used->integer());
    }
    for (const JsonView& entity : view.at("entities").list())
        document.entities.push_back(readEntity(entity));
    for (const JsonView& constraint : view.at("constraints").list())
        document.constraints.push_back(readConstraint(constraint));
    return document;
}

/// The check knows the place of a fault, the tree its line.
void checkWithLines(const Document& document, const JsonNode& root, const std::string& fileName) {
    try {
        checkDocument(document, fileName);
    } catch (const DrawingError& error) {
        throw DrawingError(fileName, {error.place(), error.found(), error.expected()},
                           nodeNear(root, error.place()).line);
    }
}

/// The drawing, each entity and constraint read as soon as its text has been: the tree of a large file would take ten
/// times the memory of the drawing. Nothing when anything is wrong.
std::optional<Document> readPieceByPiece(std::string_view text, const std::string& fileName) {
    try {
        Document listed;
        const JsonNode root = parseJsonTree(text, fileName, [&](std::string_view list, const JsonNode& item) {
            if (list == "entities")
                listed.entities.push_back(readEntity(JsonView(item, fileName)));
            else if (list == "constraints")
                listed.constraints.push_back(readConstraint(JsonView(item, fileName)));
            else if (list == "parameters")
                listed.parameters.push_back(readParameter(JsonView(item, fileName)));
            else if (list == "layers")
                listed.layers.push_back(readLayer(JsonView(item, fileName)));
        });
        Document document = readDocument(JsonView(root, fileName));
        if (!document.entities.empty() || !document.constraints.empty() || !document.parameters.empty() ||
            !document.layers.empty())
            return std::nullopt;
        document.entities = std::move(listed.entities);
        document.constraints = std::move(listed.constraints);
        document.parameters = std::move(listed.parameters);
        document.layers = std::move(listed.layers);
        checkDocument(document, fileName);
        return document;
    } catch (const DrawingError&) {
        return std::nullopt;
    }
}

}  // namespace

/// What is wrong, and where, only the whole tree can tell.
Document readJson(std::string_view text, const std::string& fileName) {
    if (std::optional<Document> document = readPieceByPiece(text, fileName))
        return std::move(*document);
    const JsonNode root = parseJsonTree(text, fileName);
    Document document = readDocument(JsonView(root, fileName));
    checkWithLines(document, root, fileName);
    return document;
}

Document readJson(std::istream& in, const std::string& fileName) {
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad())
        throw DrawingError(fileName, {"", "a failure while reading", "a readable stream"});
    return readJson(text, fileName);
}

}  // namespace holdfast::formats
