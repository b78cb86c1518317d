// Constraints that a drawing file must not hold.

#include "tests/formats/FaultyDrawings.h"

namespace holdfast::formats {
namespace {

const std::string kEntities =
    "{'id': 'line1', 'type': 'line', 'start': [0, 0], 'end': [1, 0]},"
    "{'id': 'line2', 'type': 'line', 'start': [0, 1], 'end': [1, 1]},"
    "{'id': 'arc1', 'type': 'arc', 'centre': [0, 0], 'radius': 1, 'start_angle': 0, 'end_angle': 1},"
    "{'id': 'circle1', 'type': 'circle', 'centre': [0, 0], 'radius': 1},"
    "{'id': 'ellipse1', 'type': 'ellipse', 'centre': [0, 0], 'major_axis': [2, 0], 'ratio': 0.5},"
    "{'id': 'spline1', 'type': 'spline', 'degree': 1, 'periodic': false, 'control': [[0, 0], [1, 1]], "
    "'knots': [0, 0, 1, 1]},"
    "{'id': 'ring', 'type': 'spline', 'degree': 2, 'periodic': true, 'control': [[0, 0], [1, 0], [0, 1]], "
    "'knots': [0, 1, 2, 3]},"
    "{'id': 'point1', 'type': 'point', 'position': [0, 0]},"
    "{'id': 'axis', 'type': 'xline', 'point': [0, 0], 'direction': [1, 0]},"
    "{'id': 'poly', 'type': 'polyline', 'vertices': [[0, 0], [1, 0], [1, 1]], 'bulges': [0, 1, 0], 'closed': false},"
    "{'id': 'note', 'type': 'text', 'position': [0, 0], 'rotation': 0, 'height': 1, 'text': 'a'}";

FaultyDrawing constraintRow(const char* description, const std::string& constraints, const char* place,
                            const char* found, const char* expected) {
    return {description, drawingText(kEntities, constraints), place, found, expected};
}

/// A constraint c0 of a type, its refs written "line1.start circle1", more fields behind.
std::string constraint(const std::string& type, const std::string& refs, const std::string& fields = "") {
    std::string list;
    std::size_t at = 0;
    while (at < refs.size()) {
        const std::size_t end = std::min(refs.find(' ', at), refs.size());
        const std::string ref = refs.substr(at, end - at);
        const std::size_t dot = ref.find('.');
        const std::string place = dot == std::string::npos ? "whole" : ref.substr(dot + 1);
        list += (list.empty() ? "" : ", ") + ("{'entity': '" + ref.substr(0, dot) + "', 'point': '" + place + "'}");
        at = end + 1;
    }
    return "{'id': 'c0', 'type': '" + type + "', 'refs': [" + list + "]" + fields + "}";
}

TEST(JsonConstraint, IsRefusedWithoutItsFieldsAndTypes) {
    const FaultyDrawing rows[] = {
        constraintRow("no type", "{'id': 'c0', 'refs': []}", "/constraints/0", "no \"type\"", "\"type\""),
        constraintRow("unknown type", constraint("paralell", "line1 line2"), "/constraints/0/type", "\"paralell\"",
                      "did you mean \"parallel\"?"),
        constraintRow("no id", "{'type': 'horizontal', 'refs': []}", "/constraints/0", "no \"id\"", "\"id\""),
        constraintRow("id twice", constraint("horizontal", "line1") + ",\n" + constraint("horizontal", "line2"),
                      "/constraints/1/id", "the id \"c0\", which /constraints/0 has already", "its own"),
        constraintRow("no refs", "{'id': 'c0', 'type': 'horizontal'}", "/constraints/0", "no \"refs\"", "\"refs\""),
        constraintRow("misspelt field", constraint("radius", "arc1", ", 'vlaue': 1"), "/constraints/0", "\"vlaue\"",
                      "did you mean \"value\"?"),
        constraintRow("ref without a place", "{'id': 'c0', 'type': 'fixed', 'refs': [{'entity': 'line1'}]}",
                      "/constraints/0/refs/0", "no \"point\"", "\"point\""),
        constraintRow("ref without an entity", "{'id': 'c0', 'type': 'fixed', 'refs': [{'point': 'whole'}]}",
                      "/constraints/0/refs/0", "no \"entity\"", "\"entity\""),
        constraintRow("ref as a text", "{'id': 'c0', 'type': 'fixed', 'refs': ['line1']}", "/constraints/0/refs/0",
                      "the text \"line1\"", "an object"),
        constraintRow("value as a text", constraint("radius", "arc1", ", 'value': '5'"), "/constraints/0/value",
                      "the text \"5\"", "a number"),
    };
    expectFaults(rows);
}

TEST(JsonConstraint, IsRefusedForReferencesThatLeadNowhere) {
    const FaultyDrawing rows[] = {
        constraintRow("unknown entity", constraint("horizontal", "lien1"), "/constraints/0/refs/0/entity",
                      "the id \"lien1\", which no entity has", "did you mean \"line1\"?"),
        constraintRow("unknown entity, nothing near", constraint("horizontal", "xyzzyxyzzy"),
                      "/constraints/0/refs/0/entity", "\"xyzzyxyzzy\"", "the id of an entity"),
        constraintRow("unknown place", constraint("fixed", "line1.middle"), "/constraints/0/refs/0/point",
                      "the text \"middle\"", "segment:i.start|end|mid|centre"),
        constraintRow("misspelt place", constraint("fixed", "arc1.center"), "/constraints/0/refs/0/point", "\"center\"",
                      "did you mean \"centre\"?"),
        constraintRow("centre of a line", constraint("fixed", "line1.centre"), "/constraints/0/refs/0/point",
                      "the place \"centre\", which the line \"line1\" does not have", "whole, start, end or mid"),
        constraintRow("start of a circle", constraint("fixed", "circle1.start"), "/constraints/0/refs/0/point",
                      "circle", "whole or centre"),
        constraintRow("start of a point", constraint("fixed", "point1.start"), "/constraints/0/refs/0/point", "point",
                      "whole"),
        constraintRow("end of an ellipse", constraint("fixed", "ellipse1.end"), "/constraints/0/refs/0/point",
                      "ellipse", "whole or centre"),
        constraintRow("control point past the last", constraint("fixed", "spline1.control:2"),
                      "/constraints/0/refs/0/point", "control:2", "control:0 to control:1"),
        constraintRow("negative control point", constraint("fixed", "spline1.control:-1"),
                      "/constraints/0/refs/0/point", "\"control:-1\"", "a place"),
        constraintRow("start of a periodic spline", constraint("fixed", "ring.start"), "/constraints/0/refs/0/point",
                      "spline", "whole or control:0 to control:2"),
        constraintRow("segment past the last", constraint("fixed", "poly.segment:2"), "/constraints/0/refs/0/point",
                      "segment:2", "segment:0 to segment:1"),
        constraintRow("centre of a straight segment", constraint("fixed", "poly.segment:0.centre"),
                      "/constraints/0/refs/0/point", "segment:0.centre", "(an arc) .centre"),
        constraintRow("start of a polyline", constraint("fixed", "poly.start"), "/constraints/0/refs/0/point",
                      "polyline", "segment:0"),
        constraintRow("segment of a line", constraint("fixed", "line1.segment:0"), "/constraints/0/refs/0/point",
                      "line", "start, end or mid"),
        constraintRow("end of a text", constraint("fixed", "note.end"), "/constraints/0/refs/0/point", "text",
                      "whole or start"),
        constraintRow("the same place twice", constraint("coincident", "line1.start line1.start"),
                      "/constraints/0/refs/1", "start of line \"line1\" a second time", "different places"),
    };
    expectFaults(rows);
}

TEST(JsonConstraint, IsRefusedBetweenEntitiesThatItCannotHoldBetween) {
    const FaultyDrawing rows[] = {
        constraintRow("coincident curves", constraint("coincident", "line1 line2"), "/constraints/0/refs",
                      "coincident of line \"line1\", line \"line2\"", "two points"),
        constraintRow("coincident of three", constraint("coincident", "line1.start line2.start point1"),
                      "/constraints/0/refs", "coincident of", "two points"),
        constraintRow("coincident of none", constraint("coincident", ""), "/constraints/0/refs",
                      "coincident without refs", "two points"),
        constraintRow("concentric ends", constraint("concentric", "line1.start arc1.centre"), "/constraints/0/refs",
                      "concentric of start of line", "two centre points"),
        constraintRow("point on a point", constraint("point_on_curve", "point1 line1.start"), "/constraints/0/refs",
                      "point_on_curve of", "a whole curve"),
        constraintRow("horizontal circle", constraint("horizontal", "circle1"), "/constraints/0/refs",
                      "horizontal of circle", "one whole line or text, or two points"),
        constraintRow("vertical polyline", constraint("vertical", "poly"), "/constraints/0/refs",
                      "vertical of polyline", "one whole line"),
        constraintRow("parallel circle", constraint("parallel", "line1 circle1"), "/constraints/0/refs", "parallel of",
                      "two whole lines"),
        constraintRow("perpendicular circles", constraint("perpendicular", "circle1 arc1"), "/constraints/0/refs",
                      "perpendicular of", "a whole line and a circle"),
        constraintRow("collinear arc", constraint("collinear", "line1 poly.segment:1"), "/constraints/0/refs",
                      "segment:1 of polyline \"poly\"", "two whole lines"),
        constraintRow("tangent lines", constraint("tangent", "line1 line2"), "/constraints/0/refs", "tangent of",
                      "a line and a bent one"),
        constraintRow("tangent splines", constraint("tangent", "spline1 ring"), "/constraints/0/refs",
                      "tangent of spline", "two whole curves that can touch"),
        constraintRow("line equal to a circle", constraint("equal", "line1 circle1"), "/constraints/0/refs", "equal of",
                      "two bounded lines"),
        constraintRow("equal unbounded lines", constraint("equal", "line1 axis"), "/constraints/0/refs",
                      "xline \"axis\"", "two bounded lines"),
        constraintRow("symmetric about a circle", constraint("symmetric", "line1.start line2.start circle1"),
                      "/constraints/0/refs", "symmetric of", "a line or point to mirror at"),
        constraintRow("middle of a circle", constraint("midpoint", "point1 circle1"), "/constraints/0/refs",
                      "midpoint of", "a whole bounded line"),
        constraintRow("helper of a circle", constraint("internal", "line1 circle1", ", 'role': 'focus1'"),
                      "/constraints/0/refs", "internal of", "the ellipse"),
        constraintRow("distance of a line and an ellipse", constraint("distance", "line1 ellipse1", ", 'value': 1"),
                      "/constraints/0/refs", "distance of", "two of points, lines and circles"),
        constraintRow("distance of a circle", constraint("distance", "circle1", ", 'value': 1"), "/constraints/0/refs",
                      "distance of circle", "one bounded line or arc"),
        constraintRow("distance_x of a line", constraint("distance_x", "line1", ", 'value': 1"), "/constraints/0/refs",
                      "distance_x of", "two points"),
        constraintRow("radius of a line", constraint("radius", "line1", ", 'value': 1"), "/constraints/0/refs",
                      "radius of line \"line1\"", "one whole circle or arc"),
        constraintRow("diameter of an ellipse", constraint("diameter", "ellipse1", ", 'value': 1"),
                      "/constraints/0/refs", "diameter of ellipse", "one whole circle or arc"),
        constraintRow("angle of circles", constraint("angle", "circle1 arc1", ", 'value': 1"), "/constraints/0/refs",
                      "angle of", "two lines"),
        constraintRow("end of an xline as a point", constraint("coincident", "axis.end point1"), "/constraints/0/refs",
                      "end of xline", "two points"),
        constraintRow("smooth joint without a spline", constraint("g2_smooth", "line1.end arc1.start"),
                      "/constraints/0/refs", "g2_smooth of", "one of them a spline's"),
    };
    expectFaults(rows);
}

TEST(JsonConstraint, IsRefusedForValuesRolesAndSwitchesThatDoNotFit) {
    const FaultyDrawing rows[] = {
        constraintRow("dimension without a value", constraint("radius", "arc1"), "/constraints/0",
                      "the dimension \"c0\" of type radius without a value", "the field \"value\""),
        constraintRow("value of a relation", constraint("horizontal", "line1", ", 'value': 1"), "/constraints/0/value",
                      "a value on a constraint of type horizontal", "dimensions only"),
        constraintRow("negative distance", constraint("distance", "line1", ", 'value': -1"), "/constraints/0/value",
                      "-1.0", "0 or more"),
        constraintRow("radius 0", constraint("radius", "arc1", ", 'value': 0"), "/constraints/0/value", "0.0",
                      "above 0"),
        constraintRow("negative diameter", constraint("diameter", "arc1", ", 'value': -3"), "/constraints/0/value",
                      "-3.0", "above 0"),
        constraintRow("driving relation", constraint("horizontal", "line1", ", 'driving': true"),
                      "/constraints/0/driving", "\"driving\" on a constraint of type horizontal", "remove the field"),
        constraintRow("role of a relation", constraint("horizontal", "line1", ", 'role': 'focus1'"),
                      "/constraints/0/role", "a role on a constraint of type horizontal", "internal constraints only"),
        constraintRow("internal without a role", constraint("internal", "line1 ellipse1"), "/constraints/0", "no role",
                      "major_diameter, minor_diameter, focus1 or focus2"),
        constraintRow("misspelt role", constraint("internal", "line1 ellipse1", ", 'role': 'major_diametre'"),
                      "/constraints/0/role", "\"major_diametre\"", "did you mean \"major_diameter\"?"),
        constraintRow("a line as a focus", constraint("internal", "line1 ellipse1", ", 'role': 'focus1'"),
                      "/constraints/0/role", "\"focus1\" for line", "for a line"),
        constraintRow("a point as a diameter", constraint("internal", "point1 ellipse1", ", 'role': 'major_diameter'"),
                      "/constraints/0/role", "\"major_diameter\" for point", "for a point"),
    };
    expectFaults(rows);
}

TEST(JsonConstraint, IsRefusedForOwnershipThatDoesNotHold) {
    const std::string level = "{'id': 'c1', 'type': 'horizontal', 'refs': [{'entity': 'line1', 'point': 'whole'}]},\n";
    const auto owner = [](const std::string& id, const std::string& members) {
        return "{'id': '" + id + "', 'type': 'composite', 'members': [" + members + "]}";
    };
    const FaultyDrawing rows[] = {
        constraintRow("owner of nothing", "{'id': 'c0', 'type': 'composite'}", "/constraints/0",
                      "a composite without members", "\"members\""),
        constraintRow("unknown member", level + owner("c2", "'c3'"), "/constraints/1/members/0",
                      "the id \"c3\", which no constraint has", "did you mean"),
        constraintRow("a member twice", level + owner("c2", "'c1', 'c1'"), "/constraints/1/members/1",
                      "the member \"c1\", which \"c2\" owns already", "one owner"),
        constraintRow("two owners", level + owner("c2", "'c1'") + ",\n" + owner("c3", "'c1'"),
                      "/constraints/2/members/0", "which \"c2\" owns already", "one owner"),
        constraintRow("its own member", owner("c2", "'c2'"), "/constraints/0/members", "\"c2\" as a member of itself",
                      "do not own their owner"),
        constraintRow("a ring of owners", owner("c2", "'c3'") + ",\n" + owner("c3", "'c2'"), "/constraints/0/members",
                      "\"c2\" as a member of itself through \"c3\"", "do not own their owner"),
        constraintRow("members of a plain relation", level + constraint("vertical", "line2", ", 'members': ['c1']"),
                      "/constraints/1/members", "members of a constraint of type vertical", "composite and g2_smooth"),
        constraintRow("refs of a composite", constraint("composite", "line1 line2", ", 'members': ['c1']"),
                      "/constraints/0/refs", "composite of line", "no refs of its own"),
    };
    expectFaults(rows);
}

}  // namespace
}  // namespace holdfast::formats
