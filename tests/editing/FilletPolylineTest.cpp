#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum ConstraintType;
using enum PlaceKind;

/// The stair and a beam over its upper end, whose far end is tied to a post.
Document stairUnderBeam() {
    Document document = stair();
    document.entities.push_back(lineEntity("beam", {21, 22}, {40, 22}));
    document.entities.push_back(lineEntity("post", {40, 22}, {40, 0}));
    document.constraints.push_back(constraintOf("b0", coincident, {{"beam", start}, {"p", segmentEnd, 3}}));
    document.constraints.push_back(constraintOf("b1", coincident, {{"beam", end}, {"post", start}}));
    document.constraints.push_back(constraintOf("b2", horizontal, {{"beam"}}));
    return document;
}

TEST(FilletPolylineWithCurve, CutsBothAndKeepsThemApart) {
    BareSession session(stairUnderBeam());
    EXPECT_EQ(session.apply("fillet p beam radius 2").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,20");
    EXPECT_EQ(entityNamed(session.document(), "beam").shape, Shape(LineShape{{22, 22}, {40, 22}}));
    EXPECT_EQ(placesOf(session),
              "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; b1 beam.end post.start; b2 beam");
    EXPECT_EQ(findings(session), "");
    ASSERT_EQ(session.document().entities.size(), 4u);
    const auto& arc = std::get<ArcShape>(session.document().entities.back().shape);
    EXPECT_NEAR(norm(arc.centre - Vec2{22, 20}), 0.0, 1e-9);
}

TEST(FilletPolylineWithCurve, TakesThePolylineAndTheCurveInEitherOrder) {
    BareSession there(stairUnderBeam()), back(stairUnderBeam());
    there.apply("fillet p beam radius 1");
    EXPECT_EQ(back.apply("fillet beam p radius 1").outcome.error, "");
    EXPECT_EQ(there.document(), back.document());
}

TEST(FilletPolylineWithCurve, RemovesTheVerticesBehindAPickedSegment) {
    BareSession session(stairUnderBeam());
    EXPECT_EQ(session.apply("fillet p beam radius 2 at 10,5 30,22").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,20");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; b1 beam.end post.start; b2 beam");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletPolylineWithCurve, RemovesTheVerticesBeforeAPickedSegment) {
    Document document = stair();
    document.entities.push_back(lineEntity("keel", {12, -5}, {40, -5}));
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p keel radius 2 at 10,9 30,-5").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "10,-3 10,10 20,10 20,20");
    EXPECT_EQ(placesOf(session), "c1 p.segment:0; c2 p.segment:1; c3 p.segment:2");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletPolylineWithCurve, TellsWhichSegmentsWereCutAway) {
    BareSession session(stairUnderBeam());
    const EditResult& result = session.apply("fillet p beam radius 2 at 10,5 30,22");
    ASSERT_EQ(result.fates.constraints.size(), 3u);
    EXPECT_EQ(result.fates.constraints[0].constraint, "c2");
    EXPECT_EQ(result.fates.constraints[0].reason, "p.segment:2 was cut away");
}

TEST(FilletPolylineWithCurve, TakesTheEndOfThePolylineNearerToTheCurve) {
    Document document = stair();
    document.entities.push_back(lineEntity("wall", {-3, 2}, {-3, 30}));
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p wall radius 2").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "-1,0 10,0 10,10 20,10 20,20");
    EXPECT_EQ(entityNamed(session.document(), "wall").shape, Shape(LineShape{{-3, 2}, {-3, 30}}));
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3");
}

TEST(FilletPolylineWithCurve, WithRadiusZeroLeadsBothToTheirCorner) {
    BareSession session(stairUnderBeam());
    EXPECT_EQ(session.apply("fillet p beam radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,22");
    EXPECT_EQ(entityNamed(session.document(), "beam").shape, Shape(LineShape{{20, 22}, {40, 22}}));
    EXPECT_EQ(session.document().entities.size(), 3u);
}

TEST(FilletPolylineWithCurve, LeavesACircleWholeAndBendsAnArcSegment) {
    Document document;
    document.name = "hook";
    document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {20, 0}}, {0, -0.5, 0}, {0, 0, 0}, false}),
                         shapeEntity("disc", CircleShape{{28, 0}, 5})};
    document.constraints = {constraintOf("c0", horizontal, {{"p", segment, 0}}),
                            constraintOf("c1", tangent, {{"p", segment, 0}, {"p", segment, 1}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p disc radius 2").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "disc").shape, Shape(CircleShape{{28, 0}, 5}));
    const PolylineShape after = polylineOf(session, "p");
    ASSERT_EQ(after.vertices.size(), 3u);
    EXPECT_NEAR(radiusOfSegment(after, 1), 6.25, 1e-9);
    EXPECT_LT(after.bulges[1], 0.0);
    const auto& arc = std::get<ArcShape>(session.document().entities.back().shape);
    EXPECT_NEAR(nearestOn(arc, after.vertices.back()).distance, 0.0, 1e-9);
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:0 p.segment:1");
}

TEST(FilletPolylineWithCurve, MovesTheBaseOfARay) {
    Document document = stair();
    document.entities.push_back(shapeEntity("beam", RayShape{{21, 22}, {1, 0}}));
    document.constraints.push_back(constraintOf("level", horizontal, {{"beam"}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p beam radius 2").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "beam").shape, Shape(RayShape{{22, 22}, {1, 0}}));
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; level beam");
}

TEST(FilletPolylineWithCurve, ReplacesARayThatGetsASecondEnd) {
    Document document = stair();
    document.entities.push_back(shapeEntity("beam", RayShape{{0, 22}, {1, 0}}));
    document.constraints.push_back(constraintOf("level", horizontal, {{"beam"}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p beam radius 2 at 20,15 5,22").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,20");
    EXPECT_EQ(entityNamed(session.document(), "beam_2").shape, Shape(LineShape{{0, 22}, {18, 22}}));
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletPolylineWithCurve, RefusesWithAReasonAndChangesNothing) {
    Document document = stairUnderBeam();
    document.entities.push_back(shapeEntity("q", rectangle().entities[0].shape));
    const RefusedEdit rows[] = {
        {"fillet q beam radius 1",
         "q is closed and has no end to fillet; fillet one of its corners, or break it first"},
        {"fillet p post radius 1",
         "segment 3 of p and post are parallel; only a half circle joins them, with radius 10"},
        {"fillet p beam radius 30",
         "a fillet of radius 30 would leave nothing of segment 3 of p; choose a smaller radius"},
        {"fillet p beam radius 15",
         "a fillet of radius 15 would leave nothing of segment 3 of p; choose a smaller radius"},
        {"fillet p p radius 1", "name two segments or a corner to fillet p with itself"},
    };
    expectRefused(document, rows);
}

/// The stair and a second one, whose near end is at the given place.
Document twoStairs(bool turnFirst, bool turnSecond) {
    Document document = stair();
    document.name = "stairs";
    document.entities.push_back(
        shapeEntity("q", PolylineShape{{{22, 24}, {30, 24}, {30, 34}, {40, 34}}, {0, 0, 0, 0}, {0, 0, 0, 0}, false}));
    for (int i = 0; i < 3; ++i)
        document.constraints.push_back(
            constraintOf("d" + std::to_string(i), i % 2 == 0 ? horizontal : vertical, {{"q", segment, i}}));
    const auto turn = [&](std::size_t entity, int count) {
        auto& shape = document.entities[entity].shape;
        shape = reversedPolyline(std::get<PolylineShape>(shape));
        for (Constraint& constraint : document.constraints)
            for (Place& place : constraint.refs)
                if (place.entity == document.entities[entity].id)
                    place.index = count - 1 - place.index;
    };
    if (turnFirst)
        turn(0, 4);
    if (turnSecond)
        turn(1, 3);
    return document;
}

TEST(FilletTwoPolylines, JoinsThemByAnArcHoweverTheyRun) {
    for (const bool turnFirst : {false, true})
        for (const bool turnSecond : {false, true}) {
            BareSession session(twoStairs(turnFirst, turnSecond));
            EXPECT_EQ(session.apply("fillet p q radius 2").outcome.error, "");
            EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,22^-0.414214 22,24 30,24 30,34 40,34");
            EXPECT_EQ(placesOf(session),
                      "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; "
                      "d0 p.segment:5; d1 p.segment:6; d2 p.segment:7")
                << turnFirst << turnSecond;
            EXPECT_EQ(session.document().entities.size(), 1u);
            EXPECT_EQ(findings(session), "");
        }
}

TEST(FilletTwoPolylines, WithRadiusZeroShareTheCornerHoweverTheyRun) {
    for (const bool turnFirst : {false, true})
        for (const bool turnSecond : {false, true}) {
            BareSession session(twoStairs(turnFirst, turnSecond));
            EXPECT_EQ(session.apply("fillet p q radius 0").outcome.error, "");
            EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,24 30,24 30,34 40,34");
            EXPECT_EQ(placesOf(session),
                      "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; "
                      "d0 p.segment:4; d1 p.segment:5; d2 p.segment:6")
                << turnFirst << turnSecond;
            EXPECT_EQ(findings(session), "");
        }
}

TEST(FilletTwoPolylines, KeepsPlacesAtTheEndsOfTurnedSegmentsWhereTheyWere) {
    for (const bool turnFirst : {false, true})
        for (const bool turnSecond : {false, true}) {
            Document document = twoStairs(turnFirst, turnSecond);
            document.entities.push_back(lineEntity("low", {10, 0}, {5, -5}));
            document.entities.push_back(lineEntity("high", {30, 34}, {25, 40}));
            document.constraints = {
                constraintOf("e0", coincident,
                             {{"low", start}, {"p", turnFirst ? segmentStart : segmentEnd, turnFirst ? 3 : 0}}),
                constraintOf("e1", coincident,
                             {{"high", start}, {"q", turnSecond ? segmentEnd : segmentStart, turnSecond ? 0 : 2}})};
            BareSession session(document);
            EXPECT_EQ(session.apply("fillet p q radius 2").outcome.error, "");
            EXPECT_EQ(placesOf(session), "e0 low.start p.segment:0.end; e1 high.start p.segment:7.start");
            EXPECT_EQ(findings(session), "");
        }
}

TEST(FilletTwoPolylines, RemovesTheVerticesBeyondPickedSegments) {
    BareSession session(twoStairs(false, false));
    EXPECT_EQ(session.apply("fillet p q radius 2 at 10,5 30,30").outcome.error,
              "segment 1 of p and segment 1 of q are parallel; only a half circle joins them, with radius 10");
    EXPECT_EQ(session.apply("fillet p q radius 2 at 10,5 39,34").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,32^-0.414214 12,34 40,34");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; d2 p.segment:3");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletTwoPolylines, TellsThatConstraintsWentToTheOtherPolyline) {
    BareSession session(twoStairs(false, false));
    const EditResult& result = session.apply("fillet p q radius 2");
    ASSERT_EQ(result.fates.constraints.size(), 3u);
    EXPECT_EQ(result.fates.constraints[0].moves, (std::vector<PlaceMove>{{{"q", segment, 0}, {"p", segment, 5}}}));
    EXPECT_EQ(result.fates.constraints[0].reason, "q became part of p");
}

// The segments of a turned polyline are found by the points at which they end, the first vertex there counting. The
// second polyline comes back to a point of its own, so that a segment is taken for the one that ends there first.
TEST(FilletTwoPolylines, PointsATurnedSegmentAtTheFirstVertexThatLiesWhereItEnded) {
    Document document;
    document.name = "loop";
    document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}}, {0, 0}, {0, 0}, false}),
                         shapeEntity("q", PolylineShape{{{30, 9}, {20, 5}, {30, 2}, {20, 5}, {13, 5}, {13, 2}},
                                                        {0, 0, 0, 0, 0, 0},
                                                        {0, 0, 0, 0, 0, 0},
                                                        false})};
    document.constraints = {constraintOf("c0", fixed, {{"p", segment, 0}}),
                            constraintOf("d0", fixed, {{"q", segment, 0}}),
                            constraintOf("d2", fixed, {{"q", segment, 2}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p q radius 1").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 12,0^0.414214 13,1 13,5 20,5 30,2 20,5 30,9");
    // d0 held on the segment from 20,5 to 30,9, which is segment 6 now.
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; d0 p.segment:4; d2 p.segment:4");
}

TEST(FilletTwoPolylines, InASharpCornerAFirstWithoutConstraintsIsTakenInByTheSecond) {
    Document document = twoStairs(false, false);
    std::erase_if(document.constraints, [](const Constraint& constraint) { return constraint.id[0] == 'c'; });
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p q radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "q"), "40,34 30,34 30,24 20,24 20,10 10,10 10,0 0,0");
    EXPECT_EQ(placesOf(session), "d0 q.segment:2; d1 q.segment:1; d2 q.segment:0");
}

TEST(FilletTwoPolylines, WithoutAnyConstraintsAreJoined) {
    Document document = twoStairs(false, false);
    document.constraints.clear();
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p q radius 2").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,22^-0.414214 22,24 30,24 30,34 40,34");
}

}  // namespace
}  // namespace holdfast::editing
