#include <gtest/gtest.h>

#include "document/Names.h"
#include "geometry/Angles.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum PlaceKind;

/// A slot with one rounded end: two level sides of 10, a half circle of radius 2 that runs counter-clockwise, and an
/// open left side.
Document bentDrawing() {
    Document document;
    document.name = "hook";
    document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {10, 4}, {0, 4}}, {0, 1, 0, 0}, {}, false}),
                         lineEntity("base", {0, 0}, {0, -5}), shapeEntity("pin", PointShape{{10, 2}})};
    std::get<PolylineShape>(document.entities[0].shape).ids.assign(4, 0);
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"p", segment, 0}}),
                            constraintOf("c1", ConstraintType::coincident, {{"p", segmentStart, 0}, {"base", start}}),
                            constraintOf("c2", ConstraintType::coincident, {{"p", segmentCentre, 1}, {"pin"}}),
                            constraintOf("c3", ConstraintType::parallel, {{"p", segment, 0}, {"p", segment, 2}})};
    Constraint radius = constraintOf("c4", ConstraintType::radius, {{"p", segment, 1}});
    radius.value = 2.0;
    document.constraints.push_back(radius);
    return document;
}

std::string kindsAdded(const EditResult& result, const Document& document) {
    std::string kinds;
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        if (outcome.fate == ConstraintFate::added)
            for (const Constraint& constraint : document.constraints)
                if (constraint.id == outcome.constraint) {
                    kinds += (kinds.empty() ? "" : "; ") + std::string(typeName(constraint.type));
                    for (const Place& place : constraint.refs)
                        kinds += " " + spokenPlace(place);
                }
    return kinds;
}

TEST(ExplodeEdit, MakesALineOrAnArcOfEachSegment) {
    Session session(bentDrawing());
    EXPECT_EQ(session.apply("explode p").outcome.error, "");
    EXPECT_EQ(session.document().entities.size(), 5u);
    EXPECT_EQ(entityNamed(session.document(), "p_2").shape, Shape(LineShape{{0, 0}, {10, 0}}));
    const auto& arc = std::get<ArcShape>(entityNamed(session.document(), "p_3").shape);
    EXPECT_LE(distance(arc.centre, {10, 2}), 1e-12);
    EXPECT_NEAR(arc.radius, 2.0, 1e-12);
    EXPECT_EQ(entityNamed(session.document(), "p_4").shape, Shape(LineShape{{10, 4}, {0, 4}}));
}

TEST(ExplodeEdit, CarriesEachConstraintToItsPieceUnderItsId) {
    Session session(bentDrawing());
    const EditResult& result = session.apply("explode p");
    const auto& constraints = session.document().constraints;
    ASSERT_GE(constraints.size(), 5u);
    std::string places;
    for (const Constraint& constraint : constraints)
        if (constraint.id[0] == 'c') {
            places += constraint.id;
            for (const Place& place : constraint.refs)
                places += " " + spokenPlace(place);
            places += "; ";
        }
    EXPECT_EQ(places, "c0 p_2; c1 p_2.start base.start; c2 p_3.centre pin; c3 p_2 p_4; c4 p_3; ");
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        if (outcome.constraint == "c4") {
            EXPECT_EQ(outcome.fate, ConstraintFate::rePointed);
            EXPECT_EQ(outcome.reason, "that part of p is p_3 now");
        }
}

TEST(ExplodeEdit, TiesNeighboursAndSmoothOnesAsTangents) {
    Session session(bentDrawing());
    const EditResult& result = session.apply("explode p");
    EXPECT_EQ(kindsAdded(result, session.document()),
              "coincident p_2.end p_3.start; coincident p_3.end p_4.start; tangent p_2 p_3; tangent p_3 p_4");
    EXPECT_TRUE(DocumentSketch(session.document()).diagnose().redundant.empty());
}

TEST(ExplodeEdit, KnowsTheEndsOfClockwiseArcs) {
    Document document = bentDrawing();
    std::get<PolylineShape>(document.entities[0].shape).bulges[1] = -1.0;
    document.constraints.push_back(
        constraintOf("c5", ConstraintType::vertical, {{"p", segmentStart, 1}, {"p", segmentEnd, 1}}));
    Session session(document);
    EXPECT_EQ(session.apply("explode p").outcome.error, "");
    for (const Constraint& constraint : session.document().constraints)
        if (constraint.id == "c5") {
            EXPECT_EQ(constraint.refs, (std::vector<Place>{{"p_3", end}, {"p_3", start}}));
        }
    for (const double miss : DocumentSketch(session.document()).shortfalls())
        EXPECT_LE(miss, 1e-9);
}

TEST(ExplodeEdit, ClosesARingByItsLastCoincidence) {
    Session session(rectangle());
    const EditResult& result = session.apply("explode p");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(kindsAdded(result, session.document()),
              "coincident p_2.end p_3.start; coincident p_3.end p_4.start; coincident p_4.end p_5.start; "
              "coincident p_5.end p_2.start");
    EXPECT_TRUE(DocumentSketch(session.document()).diagnose().redundant.empty());
    EXPECT_EQ(session.apply("drag p_2 by 0,-3").outcome.error, "");
    EXPECT_NEAR(std::get<LineShape>(entityNamed(session.document(), "p_5").shape).end.y, -3.0, 1e-9);
}

TEST(ExplodeEdit, PassesOverSegmentsWithoutALength) {
    Document document;
    document.name = "doubled";
    document.entities = {
        shapeEntity("p", PolylineShape{{{0, 0}, {5, 0}, {5, 0}, {5, 5}}, {0, 0, 0, 0}, {0, 0, 0, 0}, false})};
    Session session(document);
    const EditResult& result = session.apply("explode p");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(session.document().entities.size(), 2u);
    EXPECT_EQ(kindsAdded(result, session.document()), "coincident p_2.end p_3.start");
}

TEST(ExplodeEdit, IsUndoneAndJoinedAgain) {
    Session session(bentDrawing());
    session.apply("explode p");
    EXPECT_EQ(session.apply("join p_2 p_3 p_4").outcome.error, "");
    EXPECT_EQ(session.document().constraints.size(), 5u + 2u);  // the tangencies are said now
    session.apply("undo");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(withoutVertexNumbers(session.document()), bentDrawing());
}

TEST(ExplodeEdit, SaysWhatIsWrong) {
    const RefusedEdit rows[] = {
        {"explode base", "base is no polyline; only polylines and block references can be exploded"},
        {"explode q", "edit \"explode q\", column 9: the drawing has no entity q, found \"q\"; did you mean \"p\"?"},
        {"explode p p", "p is named twice; name each entity once"},
        {"explode", "edit \"explode\": expected an entity, but the edit ends there"},
    };
    expectRefused(bentDrawing(), rows);
}

}  // namespace
}  // namespace holdfast::editing
