#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "document/Names.h"
#include "editing/Refusal.h"
#include "host/model/HostAudit.h"
#include "host/model/entities/EntityAccess.h"
#include "host/model/state/HostAccess.h"
#include "hosting/Drawing.h"
#include "hosting/HostShapes.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {

/// A frame, a beam on a post and a bent wire, each with constraints, on which every command has something to do.
inline Document sweptDrawing() {
    Document document = frameDrawing();
    document.name = "swept";
    document.entities.push_back(lineEntity("cut", {7, -2}, {7, 2}));
    document.entities.push_back(lineEntity("wall", {20, -30}, {20, 30}));
    document.entities.push_back(lineEntity("post", {0, 15}, {0, 20}));
    document.entities.push_back(lineEntity("beam", {0, 20}, {10, 20}));
    document.entities.push_back(
        shapeEntity("wire", PolylineShape{{{0, -20}, {10, -20}, {10, -10}}, {0, 0, 0}, {1, 2, 3}, false}));
    document.constraints.push_back(
        constraintOf("c4", ConstraintType::coincident, {{"post", PlaceKind::end}, {"beam", PlaceKind::start}}));
    document.constraints.push_back(constraintOf("c5", ConstraintType::horizontal, {{"beam"}}));
    document.constraints.push_back(constraintOf("c6", ConstraintType::horizontal, {{"wire", PlaceKind::segment, 0}}));
    document.constraints.push_back(constraintOf("c7", ConstraintType::perpendicular,
                                                {{"wire", PlaceKind::segment, 0}, {"wire", PlaceKind::segment, 1}}));
    Constraint length = constraintOf("c8", ConstraintType::distance, {{"post"}});
    length.value = 5.0;
    document.constraints.push_back(length);
    return document;
}

/// One edit for each command, and some for their other ways.
inline const std::vector<std::string>& sweptEdits() {
    static const std::vector<std::string> edits = {"break base at 4,0 to 6,0",
                                                   "trim base at 9,0 by cut",
                                                   "extend beam end to wall",
                                                   "fillet base left radius 1",
                                                   "fillet wire corner 1 radius 2",
                                                   "fillet wire segments 0 1 radius 1",
                                                   "join base right",
                                                   "lengthen left end by 2",
                                                   "stretch window 9,-1 11,6 by 1,0",
                                                   "mirror beam about 0,0 1,0",
                                                   "mirror beam post about 15,0 15,1 keep",
                                                   "mirror post about wall keep",
                                                   "align right from 10,0 to 12,0",
                                                   "rotate post about 0,20 by 10",
                                                   "drag right.end by 1,1",
                                                   "set right end 10,7",
                                                   "set c8 7",
                                                   "set c8 measured",
                                                   "constrain vertical cut",
                                                   "constrain distance beam 12 as span",
                                                   "delete c5 c7",
                                                   "set c8 = 14 / 2",
                                                   "parameter depth = c8 / 2 + 1 mm",
                                                   "constrain distance beam as wide = c8 * 2",
                                                   "draw circle 3,3 radius 1 as hole",
                                                   "erase post",
                                                   "move right by 2,0",
                                                   "copy post beam by 0,30 times 2",
                                                   "scale post beam about 0,20 by 2",
                                                   "copy post beam by 0,30 times 2 linked",
                                                   "chamfer base left by 1 2",
                                                   "chamfer wire corner 1 by 2",
                                                   "offset base left by 1 rounded",
                                                   "explode wire"};
    return edits;
}

/// Everything that the host has of a drawing: shapes with identifiers and sense, dependencies, the network in its
/// order.
inline std::string hostText(Drawing& drawing) {
    std::string text;
    for (const std::string& name : drawing.names()) {
        const YxDbEntity& entity = drawing.entity(name);
        text += name + " " + std::string(typeName(drawing.shape(name))) +
                (isSeenFromBelow(entity) ? " from below, " : ", ") +
                std::to_string(HostAccess::reactors(entity).size()) + " dependencies";
        if (entity.isKindOf(YxDbPolyline::desc()))
            text += ", " + std::to_string(EntityAccess::lastFreshIdentifier(static_cast<const YxDbPolyline&>(entity)));
        text += "\n";
    }
    for (const YxGeomConstraint* constraint : HostAccess::constraints(drawing.group())) {
        text += std::string(constraint->isA()->name()) + " " + drawing.constraintId(constraint) +
                (HostAccess::isImplied(*constraint) ? " implied" : "") +
                (HostAccess::isInternal(*constraint) ? " internal" : "");
        for (const YxConstrainedGeometry* geometry : HostAccess::geometries(*constraint))
            text += " " + spokenPlace(drawing.placeOf(*geometry));
        text += "\n";
    }
    text += std::to_string(HostAccess::geometries(drawing.group()).size()) + " geometries, status " +
            std::to_string(static_cast<int>(HostAccess::status(drawing.group())));
    return text;
}

/// What is wrong with the host between two edits.
inline std::string hostFindings(Drawing& drawing) {
    std::string text;
    const std::vector<std::string>& misuses = drawing.process().misuses();
    for (const std::string& finding : auditHost(drawing.process()))
        if (std::find(misuses.begin(), misuses.end(), finding) == misuses.end())  // a host uses its objects as it likes
            text += finding + "\n";
    for (const std::string& finding : auditSegments(drawing.process()))
        text += finding + "\n";
    return text;
}

/// A session that has just been opened, to compare others with.
struct Untouched {
    Document document = sweptDrawing();
    std::string host;

    Untouched() {
        Session session(document);
        host = hostText(session.drawing());
    }

    /// The session is as this one, and the next edit works.
    void expectIn(Session& session) const {
        EXPECT_EQ(session.document(), document);
        EXPECT_EQ(hostText(session.drawing()), host);
        EXPECT_EQ(hostFindings(session.drawing()), "");
    }
};

inline void expectNextEditWorks(Session& session) {
    EXPECT_EQ(session.apply("break cut at 7,1").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "cut").shape, Shape(LineShape{{7, -2}, {7, 1}}));
}

}  // namespace holdfast::editing
