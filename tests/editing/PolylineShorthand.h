#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "document/Names.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Geometry.h"
#include "host/model/HostAudit.h"
#include "hosting/Drawing.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {

/// A stair of four segments: horizontal, vertical, horizontal, vertical.
inline Document stair() {
    Document document;
    document.name = "stair";
    document.entities = {shapeEntity(
        "p", PolylineShape{{{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 20}}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, false})};
    for (int i = 0; i < 4; ++i)
        document.constraints.push_back(constraintOf("c" + std::to_string(i),
                                                    i % 2 == 0 ? ConstraintType::horizontal : ConstraintType::vertical,
                                                    {{"p", PlaceKind::segment, i}}));
    return document;
}

/// A closed polyline of side 10 whose sides carry a constraint each.
inline Document rectangle() {
    Document document = stair();
    document.name = "rectangle";
    document.entities = {
        shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {0, 0, 0, 0}, {0, 0, 0, 0}, true})};
    return document;
}

inline PolylineShape polylineOf(const Session& session, const std::string& id) {
    return std::get<PolylineShape>(entityNamed(session.document(), id).shape);
}

/// "0,0 8,0^0.414214 10,2 closed": the vertices, each with the bulge of the segment that it starts.
inline std::string verticesOf(const Session& session, const std::string& id) {
    const PolylineShape polyline = polylineOf(session, id);
    std::string text;
    for (std::size_t i = 0; i < polyline.vertices.size(); ++i) {
        // No sketch of these tests is finer than this; -0 is 0.
        const auto rounded = [](double value) { return std::round(value * 1e9) / 1e9 + 0.0; };
        char vertex[100];
        std::snprintf(vertex, sizeof vertex, "%s%.6g,%.6g", i == 0 ? "" : " ", rounded(polyline.vertices[i].x),
                      rounded(polyline.vertices[i].y));
        text += vertex;
        if (polyline.bulges[i] != 0.0) {
            std::snprintf(vertex, sizeof vertex, "^%.6g", polyline.bulges[i]);
            text += vertex;
        }
    }
    return text + (polyline.closed ? " closed" : "");
}

/// "c0 p.segment:0; c1 p.segment:2 g1.end": where the constraints of the drawing hold.
inline std::string placesOf(const Session& session) {
    std::string text;
    for (const Constraint& constraint : session.document().constraints) {
        text += (text.empty() ? "" : "; ") + constraint.id;
        for (const Place& place : constraint.refs)
            text += " " + place.entity + (place.kind == PlaceKind::whole ? "" : "." + placeText(place));
    }
    return text;
}

/// What is wrong with the network when the edited drawing is opened afresh; empty when nothing is. Ends the session:
/// the host process is one at a time.
inline std::string findings(const Session& session) {
    Drawing drawing(session.document());
    std::string text;
    for (const std::string& finding : auditNetwork(drawing.process()))
        text += finding + "; ";
    return text;
}

/// What is wrong with the network of the drawing as it is being edited.
inline std::string liveFindings(Session& session) {
    std::string text;
    for (const std::string& finding : auditHost(session.drawing().process()))
        text += finding + "; ";
    return text;
}

/// The segment leaves the one before it and runs into the one behind it without a corner.
inline void expectSmooth(const PolylineShape& polyline, std::size_t segment) {
    const auto direction = [&](double param) { return tangentAt(polyline, param); };
    const auto count = static_cast<double>(segmentCount(polyline));
    for (const double vertex : {static_cast<double>(segment), std::fmod(static_cast<double>(segment) + 1.0, count)}) {
        const double before = vertex == 0.0 ? count : vertex;
        EXPECT_NEAR(distance(direction(before - 1e-7), direction(vertex + 1e-7)), 0.0, 1e-5) << "at vertex " << vertex;
    }
}

inline double radiusOfSegment(const PolylineShape& polyline, std::size_t segment) {
    return std::get<ArcShape>(segmentCurve(polyline, segment)).radius;
}

}  // namespace holdfast::editing
