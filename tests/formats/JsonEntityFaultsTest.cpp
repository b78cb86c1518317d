// Entities that a drawing file must not hold.

#include "tests/formats/FaultyDrawings.h"

namespace holdfast::formats {
namespace {

FaultyDrawing entityRow(const char* description, const std::string& entity, const char* place, const char* found,
                        const char* expected) {
    return {description, drawingText(entity), place, found, expected};
}

std::string spline(const std::string& fields) {
    return "{'id': 'g0', 'type': 'spline', " + fields + "}";
}

TEST(JsonEntity, IsRefusedWithoutItsFieldsAndTypes) {
    const FaultyDrawing rows[] = {
        entityRow("no type", "{'id': 'g0'}", "/entities/0", "no \"type\"", "the field \"type\""),
        entityRow("unknown type", "{'id': 'g0', 'type': 'cirlce'}", "/entities/0/type", "\"cirlce\"",
                  "did you mean \"circle\"?"),
        entityRow("type not a text", "{'id': 'g0', 'type': 1}", "/entities/0/type", "the number 1.0", "a text"),
        entityRow("not an object", "[1, 2]", "/entities/0", "a list of 2 items", "an object"),
        entityRow("no id", "{'type': 'point', 'position': [0, 0]}", "/entities/0", "no \"id\"", "\"id\""),
        entityRow("id not a text", "{'id': 1, 'type': 'point', 'position': [0, 0]}", "/entities/0/id", "1.0", "a text"),
        entityRow("empty id", "{'id': '', 'type': 'point', 'position': [0, 0]}", "/entities/0/id", "an empty id",
                  "letter"),
        entityRow("id twice",
                  "{'id': 'a', 'type': 'point', 'position': [0, 0]},\n{'id': 'a', 'type': 'point', 'position': [0, 0]}",
                  "/entities/1/id", "the id \"a\", which /entities/0 has already", "an id of its own"),
        entityRow("missing end", "{'id': 'g0', 'type': 'line', 'start': [0, 0]}", "/entities/0", "no \"end\"",
                  "\"end\""),
        entityRow("foreign field", "{'id': 'g0', 'type': 'line', 'start': [0, 0], 'end': [1, 1], 'radius': 1}",
                  "/entities/0", "the unknown field \"radius\"",
                  "start, end, construction, fixed, layer, colour, linetype, weight or visible"),
        entityRow("misspelt field", "{'id': 'g0', 'type': 'circle', 'center': [0, 0], 'radius': 1}", "/entities/0",
                  "\"center\"", "did you mean \"centre\"?"),
        entityRow("flag as a number", "{'id': 'g0', 'type': 'point', 'position': [0, 0], 'fixed': 1}",
                  "/entities/0/fixed", "the number 1.0", "true or false"),
        entityRow("point of three numbers", "{'id': 'g0', 'type': 'point', 'position': [0, 0, 0]}",
                  "/entities/0/position", "a list of 3 items", "[x, y]"),
        entityRow("point of texts", "{'id': 'g0', 'type': 'point', 'position': ['0', 0]}", "/entities/0/position/0",
                  "the text \"0\"", "a number"),
    };
    expectFaults(rows);
}

TEST(JsonEntity, IsRefusedForRadiiRatiosAnglesAndDirectionsOutOfRange) {
    const FaultyDrawing rows[] = {
        entityRow("radius 0", "{'id': 'g0', 'type': 'circle', 'centre': [0, 0], 'radius': 0}", "/entities/0/radius",
                  "0.0", "above 0"),
        entityRow("negative arc radius",
                  "{'id': 'g0', 'type': 'arc', 'centre': [0, 0], 'radius': -1, 'start_angle': 0, 'end_angle': 1}",
                  "/entities/0/radius", "-1.0", "above 0"),
        entityRow("arc that turns backwards",
                  "{'id': 'g0', 'type': 'arc', 'centre': [0, 0], 'radius': 1, 'start_angle': 2, 'end_angle': 1}",
                  "/entities/0/end_angle", "1.0", "add 2 pi"),
        entityRow("arc of no turn",
                  "{'id': 'g0', 'type': 'arc', 'centre': [0, 0], 'radius': 1, 'start_angle': 2, 'end_angle': 2}",
                  "/entities/0/end_angle", "2.0", "above start_angle"),
        entityRow("arc of more than a turn",
                  "{'id': 'g0', 'type': 'arc', 'centre': [0, 0], 'radius': 1, 'start_angle': 0, 'end_angle': 6.3}",
                  "/entities/0/end_angle", "6.3", "one full turn"),
        entityRow("major axis of no length",
                  "{'id': 'g0', 'type': 'ellipse', 'centre': [0, 0], 'major_axis': [0, 0], 'ratio': 0.5}",
                  "/entities/0/major_axis", "length 0", "points somewhere"),
        entityRow("ratio above 1",
                  "{'id': 'g0', 'type': 'ellipse', 'centre': [0, 0], 'major_axis': [1, 0], 'ratio': 1.5}",
                  "/entities/0/ratio", "1.5", "swap the axes"),
        entityRow("ratio 0", "{'id': 'g0', 'type': 'ellipse', 'centre': [0, 0], 'major_axis': [1, 0], 'ratio': 0}",
                  "/entities/0/ratio", "0.0", "at most 1"),
        entityRow("elliptical arc that turns backwards",
                  "{'id': 'g0', 'type': 'elliptical_arc', 'centre': [0, 0], 'major_axis': [1, 0], 'ratio': 0.5, "
                  "'start_param': 1, 'end_param': 0}",
                  "/entities/0/end_param", "0.0", "above start_param"),
        entityRow("xline without a direction", "{'id': 'g0', 'type': 'xline', 'point': [0, 0], 'direction': [0, 0]}",
                  "/entities/0/direction", "length 0", "points somewhere"),
        entityRow("ray without a direction", "{'id': 'g0', 'type': 'ray', 'point': [0, 0], 'direction': [0, -0.0]}",
                  "/entities/0/direction", "length 0", "points somewhere"),
        entityRow("text of no height",
                  "{'id': 'g0', 'type': 'text', 'position': [0, 0], 'rotation': 0, 'height': 0, 'text': 'a'}",
                  "/entities/0/height", "0.0", "above 0"),
        entityRow("mtext without text", "{'id': 'g0', 'type': 'mtext', 'position': [0, 0], 'rotation': 0, 'height': 1}",
                  "/entities/0", "no \"text\"", "\"text\""),
    };
    expectFaults(rows);
}

TEST(JsonEntity, IsRefusedForSplinesWhoseListsDoNotFit) {
    const std::string points = "'control': [[0, 0], [1, 0], [2, 1]]";
    const FaultyDrawing rows[] = {
        entityRow("degree 0", spline("'degree': 0, 'periodic': false, " + points + ", 'knots': [0, 0, 1, 1]"),
                  "/entities/0/degree", "0", "from 1 to 25"),
        entityRow("degree not whole", spline("'degree': 2.5, 'periodic': false, " + points + ", 'knots': []"),
                  "/entities/0/degree", "2.5", "a whole number"),
        entityRow("degree beyond int", spline("'degree': 99999999999, 'periodic': false, " + points + ", 'knots': []"),
                  "/entities/0/degree", "99999999999.0", "2147483648"),
        entityRow("too few control points", spline("'degree': 3, 'periodic': false, " + points + ", 'knots': []"),
                  "/entities/0/control", "3 control points", "at least 4 for degree 3"),
        entityRow("a knot missing", spline("'degree': 2, 'periodic': false, " + points + ", 'knots': [0, 0, 0, 1, 1]"),
                  "/entities/0/knots", "5 knots", "6: as many as"),
        entityRow("a knot that decreases",
                  spline("'degree': 2, 'periodic': false, " + points + ", 'knots': [0, 0, 0.5, 0.25, 1, 1]"),
                  "/entities/0/knots/3", "0.25", "the one before is 0.5"),
        entityRow("all knots equal",
                  spline("'degree': 2, 'periodic': false, " + points + ", 'knots': [1, 1, 1, 1, 1, 1]"),
                  "/entities/0/knots", "all knots equal", "an interval"),
        entityRow("no curve between the inner knots",
                  spline("'degree': 2, 'periodic': false, " + points + ", 'knots': [0, 0, 1, 1, 2, 2]"),
                  "/entities/0/knots", "no interval between the knots 2 and 3", "a curve of some length"),
        entityRow("a knot that breaks the curve",
                  spline("'degree': 1, 'periodic': false, 'control': [[0, 0], [1, 0], [2, 0], [3, 0], [4, 0]], "
                         "'knots': [0, 0, 1, 1, 1, 2, 2]"),
                  "/entities/0/knots/4", "the knot 1.0 more than 2 times", "at most that often"),
        entityRow(
            "weights missing",
            spline("'degree': 2, 'periodic': false, " + points + ", 'knots': [0, 0, 0, 1, 1, 1], 'weights': [1, 1]"),
            "/entities/0/weights", "2 weights", "3: one a control point"),
        entityRow(
            "weight 0",
            spline("'degree': 2, 'periodic': false, " + points + ", 'knots': [0, 0, 0, 1, 1, 1], 'weights': [1, 0, 1]"),
            "/entities/0/weights/1", "0.0", "a weight above 0"),
        entityRow("periodic, ends of different multiplicity",
                  spline("'degree': 2, 'periodic': true, " + points + ", 'knots': [0, 0, 1, 2]"), "/entities/0/knots",
                  "2 times and the last one 1 times", "equally often"),
        entityRow("periodic, a knot too many",
                  spline("'degree': 2, 'periodic': true, " + points + ", 'knots': [0, 1, 2, 3, 4]"),
                  "/entities/0/knots", "5 knots", "4: as many as control points + repeats"),
        entityRow("periodic, one knot", spline("'degree': 2, 'periodic': true, " + points + ", 'knots': [0]"),
                  "/entities/0/knots", "1 knots", "one period"),
        entityRow("periodic, a knot that breaks the curve",
                  spline("'degree': 1, 'periodic': true, " + points + ", 'knots': [0, 1, 1, 2]"), "/entities/0/knots/2",
                  "the knot 1.0 more than 1 time", "at most that often"),
    };
    expectFaults(rows);
}

TEST(JsonEntity, IsRefusedForPolylinesWhoseListsDoNotFit) {
    const auto polyline = [](const std::string& fields) { return "{'id': 'p0', 'type': 'polyline', " + fields + "}"; };
    const FaultyDrawing rows[] = {
        entityRow("one vertex", polyline("'vertices': [[0, 0]], 'closed': false"), "/entities/0/vertices", "1 vertex",
                  "at least two"),
        entityRow("no vertex", polyline("'vertices': [], 'closed': true"), "/entities/0/vertices", "0 vertices",
                  "at least two"),
        entityRow("a bulge missing", polyline("'vertices': [[0, 0], [1, 0]], 'bulges': [0], 'closed': false"),
                  "/entities/0/bulges", "1 bulges", "2: one a vertex"),
        entityRow("an identifier too many", polyline("'vertices': [[0, 0], [1, 0]], 'ids': [1, 2, 3], 'closed': false"),
                  "/entities/0/ids", "3 ids", "2: one a vertex"),
        entityRow("identifier twice",
                  polyline("'vertices': [[0, 0], [1, 0], [2, 0]], 'ids': [7, 0, 7], 'closed': false"),
                  "/entities/0/ids/2", "7 a second time", "once in a polyline"),
        entityRow("negative identifier", polyline("'vertices': [[0, 0], [1, 0]], 'ids': [-1, 0], 'closed': false"),
                  "/entities/0/ids/0", "-1", "or 0 for none"),
        entityRow("identifier not whole", polyline("'vertices': [[0, 0], [1, 0]], 'ids': [0.5, 0], 'closed': false"),
                  "/entities/0/ids/0", "0.5", "a whole number"),
        entityRow("closed missing", polyline("'vertices': [[0, 0], [1, 0]]"), "/entities/0", "no \"closed\"",
                  "\"closed\""),
        entityRow("vertices not points", polyline("'vertices': [0, 0], 'closed': false"), "/entities/0/vertices/0",
                  "the number 0.0", "[x, y]"),
    };
    expectFaults(rows);
}

}  // namespace
}  // namespace holdfast::formats
