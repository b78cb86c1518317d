#include <gtest/gtest.h>

#include "geometry/Angles.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum PlaceKind;

/// A polyline of two constrained segments between a line and an arc that touch its ends.
Document stepDrawing() {
    Document document;
    document.name = "step";
    const PolylineShape step{{{0, 0}, {10, 0}, {10, 10}}, {0, 0, 0}, {11, 12, 13}, false};
    document.entities = {shapeEntity("p", step), lineEntity("before", {-5, 0}, {0, 0}),
                         shapeEntity("behind", ArcShape{{8, 10}, 2, 0.0, 3.141592653589793})};
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"p", segment, 0}}),
                            constraintOf("c1", ConstraintType::vertical, {{"p", segment, 1}}),
                            constraintOf("c2", ConstraintType::coincident, {{"p", segmentStart, 0}, {"before", end}})};
    return document;
}

const PolylineShape& polylineNamed(const Session& session, const std::string& id) {
    return std::get<PolylineShape>(entityNamed(session.document(), id).shape);
}

TEST(JoinEdit, PutsLinesAndArcsAtBothEndsOfAPolyline) {
    Session session(stepDrawing());
    EXPECT_EQ(session.apply("join p before behind").outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 1u);
    const PolylineShape& joined = polylineNamed(session, "p");
    ASSERT_EQ(joined.vertices.size(), 5u);
    EXPECT_EQ(joined.vertices[0], (Vec2{-5, 0}));
    EXPECT_EQ(joined.vertices[3], (Vec2{10, 10}));
    EXPECT_NEAR(joined.vertices[4].x, 6.0, 1e-12);
    EXPECT_NEAR(joined.bulges[3], 1.0, 1e-12);
}

TEST(JoinEdit, KeepsConstraintsOnTheSegmentsThatTheyWereOn) {
    Session session(stepDrawing());
    session.apply("join p before behind");
    EXPECT_EQ(polylineNamed(session, "p").ids, (std::vector<int>{0, 11, 12, 13, 0}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c1");
    EXPECT_EQ(session.document().constraints[0].refs[0], (Place{"p", segment, 1}));
    EXPECT_EQ(session.document().constraints[1].refs[0], (Place{"p", segment, 2}));
}

TEST(JoinEdit, LetsAConstrainedPolylineTakeUpAFreeOneInWhateverOrder) {
    Document document = stepDrawing();
    document.entities.push_back(
        shapeEntity("q", PolylineShape{{{10, 20}, {15, 15}, {10, 10}}, {0.5, 0, 0}, {0, 0, 0}, false}));
    Session session(document);
    EXPECT_EQ(session.apply("join q p").outcome.error, "");
    const PolylineShape& joined = polylineNamed(session, "p");
    EXPECT_EQ(joined.vertices, (std::vector<Vec2>{{0, 0}, {10, 0}, {10, 10}, {15, 15}, {10, 20}}));
    EXPECT_EQ(joined.bulges, (std::vector<double>{0, 0, 0, -0.5, 0}));
    EXPECT_EQ(joined.ids, (std::vector<int>{11, 12, 13, 0, 0}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2");
}

TEST(JoinEdit, OfTwoConstrainedPolylinesKeepsTheConstraintsOfBoth) {
    Document document = stepDrawing();
    document.entities.push_back(
        shapeEntity("q", PolylineShape{{{10, 10}, {20, 10}, {20, 30}}, {0, 0, 0}, {5, 6, 7}, false}));
    document.constraints.push_back(constraintOf("c3", ConstraintType::horizontal, {{"q", segment, 0}}));
    document.constraints.push_back(
        constraintOf("c4", ConstraintType::perpendicular, {{"p", segment, 0}, {"q", segment, 1}}));
    Session session(document);
    EXPECT_EQ(session.apply("join p q").outcome.error, "");
    EXPECT_EQ(polylineNamed(session, "p").vertices.size(), 5u);
    EXPECT_EQ(
        placesOf(session),
        "c0 p.segment:0; c1 p.segment:1; c2 p.segment:0.start before.end; c3 p.segment:2; c4 p.segment:0 p.segment:3");
    EXPECT_EQ(session.apply("set p vertex 2 12,12").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 12,0 12,12 20,12 20,30");
    EXPECT_EQ(findings(session), "");
}

TEST(JoinEdit, CarriesConstraintsOverToSegmentsThatRunTheOtherWay) {
    Document document;
    document.name = "hook";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 8}, {10, 0}),
                         shapeEntity("arc", ArcShape{{13, 8}, 3, 0.0, 3.141592653589793}),
                         shapeEntity("low", PointShape{{0, 0}}), shapeEntity("pin", PointShape{{16, 8}})};
    document.constraints = {constraintOf("c0", ConstraintType::coincident, {{"a", end}, {"b", end}}),
                            constraintOf("c1", ConstraintType::vertical, {{"b"}}),
                            constraintOf("c2", ConstraintType::coincident, {{"arc", start}, {"pin"}}),
                            constraintOf("c3", ConstraintType::coincident, {{"low"}, {"a", start}}),
                            constraintOf("c4", ConstraintType::tangent, {{"b", start}, {"arc", end}}),
                            constraintOf("c5", ConstraintType::angle, {{"b"}})};
    document.constraints.back().value = -1.5707963267948966;
    Session session(document);
    EXPECT_EQ(session.apply("join a b arc").outcome.error, "");
    EXPECT_EQ(placesOf(session),
              "c1 a_2.segment:1; c2 a_2.segment:2.end pin; c3 low a_2.segment:0.start; "
              "c4 a_2.segment:1.end a_2.segment:2.start; c5 a_2.segment:1.end");
    EXPECT_EQ(liveFindings(session) + findings(session), "");
}

TEST(JoinEdit, CountsTheSegmentsBehindThoseThatCameBefore) {
    Document document = stepDrawing();
    document.entities.push_back(
        shapeEntity("q", PolylineShape{{{-5, 0}, {-9, 4}, {-9, 9}}, {0, 0, 0}, {0, 0, 0}, false}));
    document.constraints.push_back(constraintOf("c3", ConstraintType::vertical, {{"q", segment, 1}}));
    document.constraints.push_back(constraintOf("c4", ConstraintType::horizontal, {{"before"}}));
    document.constraints.push_back(constraintOf("c5", ConstraintType::parallel, {{"before"}, {"p", segment, 0}}));
    Session session(document);
    EXPECT_EQ(session.apply("join p before q").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "-9,9 -9,4 -5,0 0,0 10,0 10,10");
    EXPECT_EQ(placesOf(session),
              "c0 p.segment:3; c1 p.segment:4; c3 p.segment:0; c4 p.segment:2; c5 p.segment:2 p.segment:3");
}

TEST(JoinEdit, ClosesARingOfPieces) {
    Document document = stepDrawing();
    document.entities[2] = lineEntity("behind", {10, 10}, {-5, 10});
    document.entities.push_back(lineEntity("side", {-5, 10}, {-5, 0}));
    Session session(document);
    EXPECT_EQ(session.apply("join p behind side before").outcome.error, "");
    const PolylineShape& ring = polylineNamed(session, "p");
    EXPECT_TRUE(ring.closed);
    EXPECT_EQ(ring.vertices, (std::vector<Vec2>{{0, 0}, {10, 0}, {10, 10}, {-5, 10}, {-5, 0}}));
    EXPECT_EQ(ring.ids, (std::vector<int>{11, 12, 13, 0, 0}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c1");
}

TEST(JoinEdit, MakesANewPolylineOfLines) {
    Document document;
    document.name = "lines";
    document.entities = {lineEntity("b", {5, 5}, {5, 0}), lineEntity("a", {0, 0}, {5, 0}),
                         lineEntity("c", {5, 5}, {9, 9})};
    Session session(document);
    EXPECT_EQ(session.apply("join a b c").outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 1u);
    const auto& joined = std::get<PolylineShape>(session.document().entities[0].shape);
    EXPECT_EQ(joined.vertices, (std::vector<Vec2>{{0, 0}, {5, 0}, {5, 5}, {9, 9}}));
}

TEST(JoinEdit, OfManyLinesFindsThemInAnyOrder) {
    Document document;
    document.name = "zigzag";
    std::string edit = "join";
    for (int i = 0; i < 40; ++i) {
        const int at = (i * 7) % 40;
        const Vec2 from{double(at), at % 2 == 0 ? 0.0 : 1.0}, to{double(at + 1), at % 2 == 0 ? 1.0 : 0.0};
        const std::string name = "g" + std::to_string(i);
        document.entities.push_back(i % 3 == 0 ? lineEntity(name, to, from) : lineEntity(name, from, to));
        edit += " " + name;
    }
    Session session(document);
    EXPECT_EQ(session.apply(edit).outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 1u);
    EXPECT_EQ(std::get<PolylineShape>(session.document().entities[0].shape).vertices.size(), 41u);
}

TEST(JoinEdit, IsUndoneToTheLastBit) {
    Session session(stepDrawing());
    session.apply("join p before behind");
    session.apply("undo");
    EXPECT_EQ(session.document(), stepDrawing());
}

TEST(JoinEdit, RefusesWithAReasonAndChangesNothing) {
    Document document = stepDrawing();
    document.entities.push_back(lineEntity("far", {50, 50}, {60, 60}));
    document.entities.push_back(shapeEntity("disc", CircleShape{{0, 0}, 1}));
    document.entities.push_back(
        shapeEntity("ring", PolylineShape{{{0, 0}, {1, 0}, {1, 1}}, {0, 0, 0}, {0, 0, 0}, true}));
    document.entities.push_back(shapeEntity("round", ArcShape{{1, 0}, 1, 0, kTurn}));
    const RefusedEdit rows[] = {
        {"join p round", "round goes all the way round, which no segment of a polyline can; break it first"},
        {"join p", "it takes two entities to join; name the ones that p is joined with"},
        {"join p far",
         "neither (50, 50) nor (60, 60), the ends of far, is an open end of what is joined; extend or drag it there "
         "first"},
        {"join p disc", "disc is no line, arc or polyline; only these can be joined"},
        {"join p ring", "ring is closed already; break it first"},
    };
    expectRefused(document, rows);
}

TEST(JoinEdit, TakesSwitchedOffConstraintsOnErasedEntitiesAlong) {
    Document document = frameDrawing();
    document.constraints[2].active = false;  // base horizontal
    document.constraints[3].active = false;  // left and right equal
    Session session(document);
    EXPECT_EQ(session.apply("join left base").outcome.error, "");
    for (const Constraint& constraint : session.document().constraints)
        for (const Place& place : constraint.refs)
            EXPECT_EQ(entityNamed(session.document(), place.entity).id, place.entity) << constraint.id;
    EXPECT_EQ(constraintIds(session.document()).find("c2"), std::string::npos);
}

}  // namespace
}  // namespace holdfast::editing
