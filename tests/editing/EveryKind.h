#pragma once

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {

/// A free entity of every kind, each named after its kind.
inline Document kindsDrawing() {
    Document document;
    document.name = "kinds";
    const SplineShape spline{2, false, {{0, 0}, {2, 4}, {6, 0}}, {0, 0, 0, 1, 1, 1}, {}};
    document.entities = {lineEntity("line", {0, 0}, {4, 0}),
                         shapeEntity("ray", RayShape{{0, 0}, {1, 0}}),
                         shapeEntity("xline", XlineShape{{0, 0}, {1, 0}}),
                         shapeEntity("circle", CircleShape{{0, 0}, 2}),
                         shapeEntity("arc", ArcShape{{0, 0}, 2, 0.0, 1.0}),
                         shapeEntity("ellipse", EllipseShape{{0, 0}, {4, 0}, 0.5}),
                         shapeEntity("oval", EllipticalArcShape{{0, 0}, {4, 0}, 0.5, 0.0, 1.0}),
                         shapeEntity("point", PointShape{{0, 0}}),
                         shapeEntity("text", TextShape{{0, 0}, 0.0, 2.5, "one", false}),
                         shapeEntity("mtext", TextShape{{0, 0}, 0.0, 2.5, "two", true}),
                         shapeEntity("poly", PolylineShape{{{0, 0}, {4, 0}, {4, 4}}, {0, 0, 0}, {1, 2, 3}, false}),
                         shapeEntity("spline", spline)};
    return document;
}

/// The same with a point tied to each entity, and a line to each text that is parallel to it.
inline Document heldDrawing() {
    Document document = kindsDrawing();
    const auto tie = [&](const std::string& id, const Place& place, Vec2 at) {
        document.entities.push_back(shapeEntity("at_" + id, PointShape{at}));
        document.constraints.push_back(constraintOf("c_" + id, ConstraintType::coincident, {place, {"at_" + id}}));
    };
    for (const char* id : {"line", "ray", "xline", "text", "mtext"})
        tie(id, {id, PlaceKind::start}, {0, 0});
    for (const char* id : {"circle", "arc", "ellipse", "oval"})
        tie(id, {id, PlaceKind::centre}, {0, 0});
    tie("point", {"point"}, {0, 0});
    tie("poly", {"poly", PlaceKind::segmentStart, 1}, {4, 0});
    tie("spline", {"spline", PlaceKind::control, 1}, {2, 4});
    for (const char* id : {"text", "mtext"}) {
        document.entities.push_back(lineEntity(std::string("along_") + id, {0, 20}, {9, 20}));
        document.constraints.push_back(
            constraintOf(std::string("d_") + id, ConstraintType::parallel, {{id}, {std::string("along_") + id}}));
    }
    return document;
}

}  // namespace holdfast::editing
