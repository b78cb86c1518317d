#include "document/checks/ConstraintCheck.h"

#include <gtest/gtest.h>

#include <sstream>

#include "document/Names.h"
#include "tests/formats/DrawingText.h"

namespace holdfast::document {

using namespace formats;
namespace {

Document everyKind() {
    return drawing(
        "{'id': 'l', 'type': 'line', 'start': [0, 0], 'end': [1, 0]},"
        "{'id': 'k', 'type': 'line', 'start': [0, 1], 'end': [1, 1]},"
        "{'id': 'a', 'type': 'arc', 'centre': [0, 0], 'radius': 1, 'start_angle': 0, 'end_angle': 1},"
        "{'id': 'c', 'type': 'circle', 'centre': [0, 0], 'radius': 1},"
        "{'id': 'e', 'type': 'ellipse', 'centre': [0, 0], 'major_axis': [2, 0], 'ratio': 0.5},"
        "{'id': 'ea', 'type': 'elliptical_arc', 'centre': [0, 0], 'major_axis': [2, 0], 'ratio': 0.5, "
        "'start_param': 0, 'end_param': 1},"
        "{'id': 's', 'type': 'spline', 'degree': 1, 'periodic': false, 'control': [[0, 0], [1, 1]], "
        "'knots': [0, 0, 1, 1]},"
        "{'id': 'p', 'type': 'point', 'position': [0, 0]},"
        "{'id': 'x', 'type': 'xline', 'point': [0, 0], 'direction': [1, 0]},"
        "{'id': 'r', 'type': 'ray', 'point': [0, 0], 'direction': [1, 0]},"
        "{'id': 'w', 'type': 'polyline', 'vertices': [[0, 0], [1, 0], [1, 1]], 'bulges': [0, 1, 0], 'closed': false},"
        "{'id': 't', 'type': 'text', 'position': [0, 0], 'rotation': 0, 'height': 1, 'text': 'a'}");
}

/// "l.start p" as places.
std::vector<Place> places(const std::string& text) {
    std::vector<Place> list;
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        const std::size_t dot = word.find('.');
        Place place = parsePlace(dot == std::string::npos ? "whole" : word.substr(dot + 1)).value();
        place.entity = word.substr(0, dot);
        list.push_back(place);
    }
    return list;
}

TEST(ConstraintKinds, HoldBetweenThePlacesThatTheyAreMadeFor) {
    const Document document = everyKind();
    const EntityIndex entities(document);
    const struct {
        const char* type;
        const char* refs;
    } rows[] = {
        {"coincident", "l.start p"},
        {"coincident", "s.control:1 w.segment:0.end"},
        {"coincident", "t.start r.start"},
        {"coincident", "x.start l.mid"},
        {"concentric", "a.centre c.centre"},
        {"concentric", "w.segment:1.centre e.centre"},
        {"point_on_curve", "p l"},
        {"point_on_curve", "l.end x"},
        {"point_on_curve", "a.centre c"},
        {"point_on_curve", "p s"},
        {"point_on_curve", "p w.segment:1"},
        {"fixed", "l"},
        {"fixed", "l.start"},
        {"fixed", "w"},
        {"fixed", "t"},
        {"horizontal", "l"},
        {"horizontal", "w.segment:0"},
        {"horizontal", "t"},
        {"horizontal", "l.start a.centre"},
        {"vertical", "x"},
        {"vertical", "p e.centre"},
        {"parallel", "l w.segment:0"},
        {"parallel", "l t"},
        {"perpendicular", "l x"},
        {"perpendicular", "a l"},
        {"perpendicular", "l c"},
        {"perpendicular", "l.end a.start"},
        {"perpendicular", "l.end a"},
        {"perpendicular", "ea l p"},
        {"collinear", "l x"},
        {"collinear", "w.segment:0 r"},
        {"tangent", "l a"},
        {"tangent", "c l"},
        {"tangent", "a c"},
        {"tangent", "e s"},
        {"tangent", "s l"},
        {"tangent", "l.end a.start"},
        {"tangent", "w.segment:0.end s.start"},
        {"tangent", "l.end c"},
        {"tangent", "a ea a.start"},
        {"tangent", "r.start a.end"},
        {"equal", "l k"},
        {"equal", "l w.segment:0"},
        {"equal", "a c"},
        {"equal", "w.segment:1 a"},
        {"equal", "e ea"},
        {"symmetric", "l.start k.start x"},
        {"symmetric", "l.start k.start p"},
        {"symmetric", "l k x"},
        {"symmetric", "a c l"},
        {"midpoint", "p l"},
        {"midpoint", "c.centre w.segment:0"},
        {"internal", "l e"},
        {"internal", "p ea"},
        {"g2_smooth", "s.end a.start"},
        {"g2_smooth", "l.end s.start"},
        {"distance", "l"},
        {"distance", "a"},
        {"distance", "l.start p"},
        {"distance", "p l"},
        {"distance", "l p"},
        {"distance", "p c"},
        {"distance", "c l"},
        {"distance", "a c"},
        {"distance_x", "l.start a.centre"},
        {"distance_y", "p s.end"},
        {"radius", "c"},
        {"radius", "w.segment:1"},
        {"diameter", "a"},
        {"angle", "l"},
        {"angle", "a"},
        {"angle", "l.end k.start"},
        {"angle", "x.end l.end"},
        {"angle", "l a a.start"},
        {"angle", "w.segment:0.end l"},
    };
    for (const auto& row : rows) {
        const auto type = constraintTypeNamed(row.type);
        ASSERT_TRUE(type) << row.type;
        EXPECT_TRUE(canHold(*type, places(row.refs), entities)) << row.type << " " << row.refs;
    }
}

TEST(ConstraintKinds, DoNotHoldBetweenOthers) {
    const Document document = everyKind();
    const EntityIndex entities(document);
    const struct {
        const char* type;
        const char* refs;
    } rows[] = {
        {"coincident", "l.start x.end"},
        {"concentric", "a.centre p"},
        {"point_on_curve", "l p"},
        {"point_on_curve", "p w"},
        {"horizontal", "a"},
        {"horizontal", "l k"},
        {"parallel", "l"},
        {"perpendicular", "t c"},
        {"collinear", "t l"},
        {"tangent", "l x"},
        {"tangent", "l.mid a"},
        {"tangent", "p a"},
        {"equal", "l r"},
        {"equal", "e c"},
        {"equal", "s s"},
        {"symmetric", "l.start k.start"},
        {"symmetric", "l a x"},
        {"midpoint", "p a"},
        {"internal", "l c"},
        {"internal", "c e"},
        {"g2_smooth", "s l"},
        {"distance", "e"},
        {"distance", "l x"},
        {"distance", "p e"},
        {"distance_x", "l"},
        {"radius", "e"},
        {"angle", "c"},
        {"angle", "a l"},
        {"angle", "l a"},
        {"composite", "l"},
    };
    for (const auto& row : rows)
        EXPECT_FALSE(canHold(constraintTypeNamed(row.type).value(), places(row.refs), entities))
            << row.type << " " << row.refs;
}

}  // namespace
}  // namespace holdfast::document
