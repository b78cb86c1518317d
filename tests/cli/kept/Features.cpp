#include "tests/cli/kept/Features.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "document/Names.h"
#include "document/Places.h"
#include "editing/fates/Fates.h"
#include "tests/formats/DrawingText.h"

namespace holdfast::cli::kept {
namespace {

using namespace document;

constexpr const char* kYes = "yes";
/// What files of six digits leave of a number of the drawings here, which are some tens in size.
constexpr double kSame = 1e-5;

std::string listOf(const std::set<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string spelt(std::string name) {
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

// Entities.

/// The same up to a shift: pictures begin at the corner of the page.
bool isAlike(const Shape& a, const Shape& b) {
    const std::vector<Vec2> ours = editing::definingPoints(a), theirs = editing::definingPoints(b);
    if (typeName(a) != typeName(b) || ours.size() != theirs.size())
        return false;
    for (std::size_t i = 0; i < ours.size(); ++i)
        if (distance(ours[i], theirs[i]) > kSame &&
            distance(ours[i] - ours.front(), theirs[i] - theirs.front()) > kSame)
            return false;
    const auto *text = std::get_if<TextShape>(&a), *other = std::get_if<TextShape>(&b);
    return text == nullptr || (text->text == other->text && std::abs(text->height - other->height) <= kSame &&
                               std::abs(text->rotation - other->rotation) <= kSame);
}

/// Not the axes and the origin that a form adds.
std::vector<const Entity*> drawnIn(const Document& drawing) {
    std::vector<const Entity*> drawn;
    for (const Entity& entity : drawing.entities)
        if (entity.id != "origin" && !entity.id.ends_with("_axis"))
            drawn.push_back(&entity);
    return drawn;
}

Feature entity(std::string name, const std::string& json) {
    Document drawing = formats::drawing("{'id': 'g0', " + json + "}");
    const Shape shape = drawing.entities.front().shape;
    return {std::move(name), std::move(drawing), "", [shape](const Document& back) -> std::string {
                const std::vector<const Entity*> drawn = drawnIn(back);
                if (drawn.size() == 1 && isAlike(drawn.front()->shape, shape))
                    return kYes;
                std::set<std::string> kinds;
                for (const Entity* each : drawn)
                    kinds.insert(spelt(std::string(typeName(each->shape))));
                return listOf(kinds);
            }};
}

void addEntities(std::vector<Feature>& all) {
    all.push_back(entity("line", "'type': 'line', 'start': [0, 0], 'end': [10, 5]"));
    all.push_back(entity("circle", "'type': 'circle', 'centre': [1, 2], 'radius': 3"));
    all.push_back(entity("arc", "'type': 'arc', 'centre': [1, 2], 'radius': 3, 'start_angle': 0.5, 'end_angle': 2"));
    all.push_back(entity("ellipse", "'type': 'ellipse', 'centre': [1, 2], 'major_axis': [5, 1], 'ratio': 0.5"));
    all.push_back(entity("elliptical arc",
                         "'type': 'elliptical_arc', 'centre': [1, 2], 'major_axis': [5, 1], "
                         "'ratio': 0.5, 'start_param': 0.5, 'end_param': 2"));
    const std::string control = "'control': [[0, 0], [3, 6], [7, 6], [10, 0]], ";
    all.push_back(entity("spline of degree 3", "'type': 'spline', 'degree': 3, 'periodic': false, " + control +
                                                   "'knots': [0, 0, 0, 0, 1, 1, 1, 1]"));
    all.push_back(entity("spline of degree 2", "'type': 'spline', 'degree': 2, 'periodic': false, " + control +
                                                   "'knots': [0, 0, 0, 0.5, 1, 1, 1]"));
    all.push_back(entity("spline with weights", "'type': 'spline', 'degree': 3, 'periodic': false, " + control +
                                                    "'knots': [0, 0, 0, 0, 1, 1, 1, 1], 'weights': [1, 2, 1, 1]"));
    all.push_back(entity("point", "'type': 'point', 'position': [1, 2]"));
    all.push_back(entity("polyline",
                         "'type': 'polyline', 'vertices': [[0, 0], [10, 0], [10, 5]], 'bulges': [0, 0.5, "
                         "0], 'ids': [0, 0, 0], 'closed': false"));
    all.push_back(entity("ray", "'type': 'ray', 'point': [0, 0], 'direction': [1, 0]"));
    all.push_back(entity("xline", "'type': 'xline', 'point': [0, 0], 'direction': [1, 0]"));
    all.push_back(entity("text", "'type': 'text', 'position': [1, 2], 'rotation': 0.5, 'height': 2.5, 'text': 'one'"));
    all.push_back(
        entity("paragraph", "'type': 'mtext', 'position': [1, 2], 'rotation': 0, 'height': 2.5, 'text': 'one\\ntwo'"));
}

// What an entity or a drawing has besides.

Feature fact(std::string name, const std::function<void(Document& drawing)>& give,
             const std::function<bool(const Document& drawing)>& has, std::string groups = {}) {
    Document drawing = formats::drawing("{'id': 'g0', 'type': 'line', 'start': [0, 0], 'end': [10, 5]}");
    give(drawing);
    return {std::move(name), std::move(drawing), std::move(groups),
            [has](const Document& back) { return std::string(has(back) ? kYes : ""); }};
}

Feature look(std::string name, const Look& look, std::string groups) {
    Feature feature = fact(
        std::move(name), [look](Document& drawing) { drawing.entities.front().look = SharedLook(look); }, {},
        std::move(groups));
    feature.found = [look](const Document& back) -> std::string {
        const std::vector<const Entity*> drawn = drawnIn(back);
        if (std::any_of(drawn.begin(), drawn.end(), [&](const Entity* each) { return *each->look == look; }))
            return kYes;
        const bool isColoured =
            std::any_of(drawn.begin(), drawn.end(), [](const Entity* each) { return each->look->colour != Colour(); });
        return isColoured ? "another colour" : "";
    };
    return feature;
}

/// A form without helper geometry may have a layer for it.
Feature drawnAs(std::string name, bool Entity::*what) {
    Feature feature = fact(std::move(name), [what](Document& drawing) { drawing.entities.front().*what = true; }, {});
    feature.found = [what](const Document& back) -> std::string {
        const std::vector<const Entity*> drawn = drawnIn(back);
        if (std::any_of(drawn.begin(), drawn.end(), [what](const Entity* each) { return each->*what; }))
            return kYes;
        const bool hasLayer =
            std::any_of(drawn.begin(), drawn.end(), [](const Entity* each) { return !each->look->layer.empty(); });
        return hasLayer ? "a layer" : "";
    };
    return feature;
}

void addFacts(std::vector<Feature>& all) {
    all.push_back(drawnAs("construction", &Entity::construction));
    all.push_back(drawnAs("fixed entity", &Entity::fixed));
    all.push_back(look("layer", {.layer = "Cut"}, "8 Cut"));
    all.push_back(look("colour by number", {.colour = {Colour::Kind::index, 1}}, "62 1"));
    all.push_back(look("colour in red, green, blue", {.colour = {Colour::Kind::rgb, 0x1A2B3C}}, "420 1715004"));
    all.push_back(look("line type", {.linetype = "DASHED"}, "6 DASHED"));
    all.push_back(look("width", {.weight = 35}, "370 35"));
    all.push_back(look("invisible", {.visible = false}, "60 1"));
    all.push_back(fact(
        "table of layers", [](Document& d) { d.layers.push_back({.name = "Cut", .isFrozen = true}); },
        [](const Document& back) {
            return std::any_of(back.layers.begin(), back.layers.end(),
                               [](const Layer& layer) { return layer.name == "Cut" && layer.isFrozen; });
        },
        "8 0"));
    all.push_back(fact(
        "parameters",
        [](Document& d) {
            d.parameters.push_back({"width", "80", 80.0});
        },
        [](const Document& back) { return back.parameters.size() == 1; }));
    all.push_back(fact(
        "unit of length", [](Document& d) { d.lengthUnit = "in"; },
        [](const Document& back) { return back.lengthUnit == "in"; }, "8 0"));
    all.push_back(fact(
        "plane in space",
        [](Document& d) {
            d.plane = Plane{.origin = {0.0, 0.0, 5.0}};
        },
        [](const Document& back) { return back.plane.has_value(); }));
    all.push_back(fact(
        "block reference",
        [](Document& d) {
            const Shape line = LineShape{{0, 0}, {1, 1}};
            const Block block{.name = "PLUG", .parts = {{line}}};
            d.references.push_back({.id = "insert:0", .block = SharedBlock(block)});
        },
        [](const Document& back) { return !back.references.empty(); }, "8 0"));
}

// Constraints.

struct Holding {
    const char *name, *refs, *more = "";
};

constexpr const char* kNetwork =
    "{'id': 'along', 'type': 'line', 'start': [0, 0], 'end': [10, 0]},"
    "{'id': 'up', 'type': 'line', 'start': [10, 0], 'end': [10, 10]},"
    "{'id': 'above', 'type': 'line', 'start': [0, 5], 'end': [10, 5]},"
    "{'id': 'beyond', 'type': 'line', 'start': [20, 0], 'end': [25, 0]},"
    "{'id': 'mirror', 'type': 'line', 'start': [5, -5], 'end': [5, -1]},"
    "{'id': 'dot', 'type': 'point', 'position': [5, 0]},"
    "{'id': 'hole', 'type': 'circle', 'centre': [5, 5], 'radius': 5},"
    "{'id': 'ring', 'type': 'circle', 'centre': [5, 5], 'radius': 8},"
    "{'id': 'bend', 'type': 'arc', 'centre': [0, 5], 'radius': 5, 'start_angle': 1.5707963267948966, "
    "'end_angle': 4.71238898038469},"
    "{'id': 'oval', 'type': 'ellipse', 'centre': [50, 0], 'major_axis': [5, 0], 'ratio': 0.5},"
    "{'id': 'axis', 'type': 'line', 'start': [45, 0], 'end': [55, 0], 'construction': true},"
    "{'id': 'wave', 'type': 'spline', 'degree': 3, 'periodic': false, 'control': [[10, 0], [13, 0], [16, 0], [19, 4]], "
    "'knots': [0, 0, 0, 0, 1, 1, 1, 1]}";

std::string refsJson(const std::string& refs) {
    std::string text;
    for (std::size_t begin = 0; begin < refs.size();) {
        const std::size_t end = std::min(refs.find(' ', begin), refs.size());
        const std::string ref = refs.substr(begin, end - begin);
        const std::size_t dot = ref.find('.');
        text += std::string(text.empty() ? "" : ", ") + "{'entity': '" + ref.substr(0, dot) + "', 'point': '" +
                (dot == std::string::npos ? "whole" : ref.substr(dot + 1)) + "'}";
        begin = end + 1;
    }
    return text;
}

/// The entities that it names and no others.
Document networkOf(const std::string& type, const Holding& row) {
    Document drawing = formats::drawing(
        kNetwork, "{'id': 'c0', 'type': '" + type + "', 'refs': [" + refsJson(row.refs) + "]" + row.more + "}");
    std::erase_if(drawing.entities, [&](const Entity& entity) {
        const std::vector<std::string> named = entitiesOf(drawing.constraints.front());
        return std::find(named.begin(), named.end(), entity.id) == named.end();
    });
    return drawing;
}

bool isSame(const Constraint& a, const Constraint& b) {
    const bool hasValue = !a.value || (b.value && std::abs(std::abs(*a.value) - std::abs(*b.value)) <= kSame);
    return a.type == b.type && hasValue && a.driving == b.driving && a.active == b.active && a.role == b.role &&
           a.name == b.name;
}

Feature constraint(const std::string& type, const Holding& row) {
    Document drawing = networkOf(type, row);
    const Constraint held = drawing.constraints.front();
    return {row.name, std::move(drawing), "", [held](const Document& back) -> std::string {
                const std::vector<Constraint>& all = back.constraints;
                if (std::any_of(all.begin(), all.end(), [&](const Constraint& each) { return isSame(held, each); }))
                    return kYes;
                std::set<std::string> kinds;
                for (const Constraint& each : all)
                    if (each.type != held.type)  // or else what it has besides is gone
                        kinds.insert(spelt(std::string(typeName(each.type))));
                return listOf(kinds);
            }};
}

void addConstraints(std::vector<Feature>& all) {
    const std::pair<const char*, Holding> rows[] = {
        {"coincident", {"coincident", "along.end up.start"}},
        {"concentric", {"concentric", "hole.centre ring.centre"}},
        {"point_on_curve", {"point on curve", "dot along"}},
        {"fixed", {"fixed point", "along.start"}},
        {"fixed", {"fixed circle", "hole"}},
        {"horizontal", {"horizontal", "along"}},
        {"vertical", {"vertical", "up"}},
        {"parallel", {"parallel", "along above"}},
        {"perpendicular", {"perpendicular", "along up"}},
        {"collinear", {"collinear", "along beyond"}},
        {"tangent", {"tangent ends", "along.start bend.end"}},
        {"tangent", {"tangent curves", "along hole"}},
        {"equal", {"equal", "along up"}},
        {"symmetric", {"symmetric", "along.start along.end mirror"}},
        {"midpoint", {"midpoint", "dot along"}},
        {"internal", {"helper of an ellipse", "axis oval", ", 'role': 'major_diameter'"}},
        {"g2_smooth", {"smooth joint", "wave.start along.end"}},
        {"distance", {"length", "along", ", 'value': 10"}},
        {"distance", {"distance of points", "along.start up.end", ", 'value': 14.142135623730951"}},
        {"distance", {"distance of a point and a line", "above.start along", ", 'value': 5"}},
        {"distance", {"distance of lines", "along above", ", 'value': 5"}},
        {"distance", {"length of an arc", "bend", ", 'value': 15.707963267948966"}},
        {"distance_x", {"distance in x", "along.start up.end", ", 'value': 10"}},
        {"distance_y", {"distance in y", "along.start up.end", ", 'value': 10"}},
        {"radius", {"radius", "hole", ", 'value': 5"}},
        {"diameter", {"diameter", "hole", ", 'value': 10"}},
        {"angle", {"angle", "along up", ", 'value': 1.5707963267948966"}},
        {"radius", {"measured dimension", "hole", ", 'value': 5, 'driving': false"}},
        {"radius", {"inactive constraint", "hole", ", 'value': 5, 'active': false"}},
        {"radius", {"name of a dimension", "hole", ", 'value': 5, 'name': 'size'"}},
    };
    for (const auto& [type, row] : rows)
        all.push_back(constraint(type, row));
}

/// Of a radius that is half a length.
Feature formula() {
    Document drawing = formats::drawing(
        kNetwork,
        "{'id': 'c0', 'type': 'distance', 'refs': [{'entity': 'along', 'point': 'whole'}], 'value': 10, 'name': "
        "'long'},"
        "{'id': 'c1', 'type': 'radius', 'refs': [{'entity': 'hole', 'point': 'whole'}], 'value': 5, 'formula': 'long / "
        "2'}");
    std::erase_if(drawing.entities, [](const Entity& entity) { return entity.id != "along" && entity.id != "hole"; });
    return {"formula", std::move(drawing), "", [](const Document& back) {
                const auto has = [](const Constraint& each) { return !each.formula.empty(); };
                return std::string(std::any_of(back.constraints.begin(), back.constraints.end(), has) ? kYes : "");
            }};
}

}  // namespace

std::vector<Feature> features() {
    std::vector<Feature> all;
    addEntities(all);
    addFacts(all);
    addConstraints(all);
    all.push_back(formula());
    return all;
}

}  // namespace holdfast::cli::kept
