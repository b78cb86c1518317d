#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum ConstraintType;
using enum PlaceKind;

/// Up, over and back down in five segments.
Document arch() {
    Document document = stair();
    document.name = "arch";
    document.entities = {shapeEntity(
        "p",
        PolylineShape{
            {{0, 0}, {0, 10}, {5, 12}, {10, 12}, {15, 10}, {5, 0}}, {0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}, false})};
    document.constraints = {
        constraintOf("c0", vertical, {{"p", segment, 0}}), constraintOf("c1", fixed, {{"p", segment, 1}}),
        constraintOf("c2", horizontal, {{"p", segment, 2}}), constraintOf("c3", fixed, {{"p", segment, 3}}),
        constraintOf("c4", fixed, {{"p", segment, 4}})};
    return document;
}

/// A hexagon, counter-clockwise from the left end of its floor.
Document hexagon() {
    Document document = arch();
    document.name = "hexagon";
    document.entities = {shapeEntity(
        "p", PolylineShape{
                 {{1, 0}, {10, 0}, {15, 8}, {10, 16}, {0, 16}, {0, 8}}, {0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}, true})};
    document.constraints = {
        constraintOf("c0", horizontal, {{"p", segment, 0}}), constraintOf("c1", fixed, {{"p", segment, 1}}),
        constraintOf("c2", fixed, {{"p", segment, 2}}),      constraintOf("c3", horizontal, {{"p", segment, 3}}),
        constraintOf("c4", vertical, {{"p", segment, 4}}),   constraintOf("c5", fixed, {{"p", segment, 5}})};
    return document;
}

TEST(FilletSegments, RoundsAwayTheSegmentBetweenThem) {
    BareSession session(arch());
    EXPECT_EQ(session.apply("fillet p segments 0 2 radius 1").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 0,11^-0.414214 1,12 10,12 15,10 5,0");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletSegments, RoundsAwaySeveralSegmentsBetweenThem) {
    BareSession session(arch());
    EXPECT_EQ(session.apply("fillet p segments 0 3 radius 1").outcome.error, "");
    ASSERT_EQ(polylineOf(session, "p").vertices.size(), 5u);
    expectSmooth(polylineOf(session, "p"), 1);
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c3 p.segment:2; c4 p.segment:3");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletSegments, TellThatTheSegmentThatTheArcReplacesWasCutAway) {
    BareSession session(arch());
    const EditResult& result = session.apply("fillet p segments 0 2 radius 1");
    ASSERT_EQ(result.fates.constraints.size(), 1u);
    EXPECT_EQ(result.fates.constraints[0].reason, "p.segment:1 was cut away");
}

TEST(FilletSegments, TellThatTheSegmentBetweenThemWasCutAway) {
    BareSession session(arch());
    const EditResult& result = session.apply("fillet p segments 1 3 radius 0");
    ASSERT_EQ(result.fates.constraints.size(), 3u);
    EXPECT_EQ(result.fates.constraints[0].constraint, "c2");
    EXPECT_EQ(result.fates.constraints[0].reason, "p.segment:2 was cut away");
    EXPECT_EQ(result.fates.constraints[1].moves, (std::vector<PlaceMove>{{{"p", segment, 3}, {"p", segment, 2}}}));
    EXPECT_EQ(result.fates.constraints[2].moves, (std::vector<PlaceMove>{{{"p", segment, 4}, {"p", segment, 3}}}));
}

TEST(FilletSegments, LeadsBothToASharpCornerWithRadiusZero) {
    BareSession session(arch());
    EXPECT_EQ(session.apply("fillet p segments 0 2 radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 0,12 10,12 15,10 5,0");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c2 p.segment:1; c3 p.segment:2; c4 p.segment:3");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletSegments, MeansTheSameInEitherOrderOnAnOpenPolyline) {
    BareSession there(arch()), back(arch());
    there.apply("fillet p segments 1 3 radius 1");
    EXPECT_EQ(back.apply("fillet p segments 3 1 radius 1").outcome.error, "");
    EXPECT_EQ(there.document(), back.document());
}

TEST(FilletSegments, OfNeighboursIsTheFilletOfTheirCorner) {
    BareSession corner(arch()), segments(arch()), closing(rectangle()), wrapped(rectangle());
    corner.apply("fillet p corner 3 radius 1");
    EXPECT_EQ(segments.apply("fillet p segments 2 3 radius 1").outcome.error, "");
    EXPECT_EQ(corner.document(), segments.document());
    closing.apply("fillet p corner 0 radius 1");
    EXPECT_EQ(wrapped.apply("fillet p segments 3 0 radius 1").outcome.error, "");
    EXPECT_EQ(closing.document(), wrapped.document());
}

// In a sharp corner the centre compares the second segment by the numbers of its vertices before the ones between went:
// it takes the far end for moved and deletes what held there.
TEST(FilletSegments, InASharpCornerLoseACoincidenceAtTheFarEndOfTheSecond) {
    Document document = arch();
    document.entities.push_back(lineEntity("post", {10, 12}, {10, 20}));
    document.constraints.push_back(constraintOf("far", coincident, {{"p", segmentEnd, 2}, {"post", start}}));
    BareSession arc(document), sharp(document);
    EXPECT_EQ(arc.apply("fillet p segments 0 2 radius 1").outcome.error, "");
    EXPECT_EQ(placesOf(arc),
              "c0 p.segment:0; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4; far p.segment:2.end post.start");
    EXPECT_EQ(sharp.apply("fillet p segments 0 2 radius 0").outcome.error, "");
    EXPECT_EQ(placesOf(sharp), "c0 p.segment:0; c2 p.segment:1; c3 p.segment:2; c4 p.segment:3");
}

// Numbers beyond the vertices that are left read as the origin, so that a segment which started there passes for still,
// and the centre keeps what holds at it. The host judges it anew.
TEST(FilletSegments, InASharpCornerLoseACoincidenceThatHeldInTheOrigin) {
    Document document;
    document.name = "origin";
    document.entities = {
        shapeEntity(
            "p",
            PolylineShape{{{-10, -10}, {-10, 5}, {-5, 8}, {0, 0}, {10, 0}}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, false}),
        lineEntity("post", {0, 0}, {5, -9})};
    document.constraints = {constraintOf("c0", coincident, {{"p", segmentStart, 3}, {"post", start}})};
    BareSession session(document);
    const EditResult& result = session.apply("fillet p segments 0 3 radius 0");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "-10,-10 -10,0 10,0");
    EXPECT_EQ(placesOf(session), "");
    ASSERT_EQ(result.fates.constraints.size(), 1u);
    EXPECT_EQ(result.fates.constraints.front().reason, "the vertex of p at (0, 0) is gone");
}

TEST(FilletSegments, FromTheLastToTheFirstCloseThePolyline) {
    BareSession session(arch());
    EXPECT_EQ(session.apply("fillet p segments 4 0 radius 1").outcome.error, "");
    const PolylineShape after = polylineOf(session, "p");
    EXPECT_TRUE(after.closed);
    ASSERT_EQ(after.vertices.size(), 6u);
    expectSmooth(after, 5);
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletSegments, FromTheLastToTheFirstMeetInASharpCorner) {
    BareSession session(arch());
    EXPECT_EQ(session.apply("fillet p segments 4 0 radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,-5 0,10 5,12 10,12 15,10 closed");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletSegments, OfAClosedPolylineLoseWhatLiesBetweenThemInItsDirection) {
    BareSession arc(hexagon()), sharp(hexagon());
    EXPECT_EQ(arc.apply("fillet p segments 0 2 radius 2").outcome.error, "");
    ASSERT_EQ(polylineOf(arc, "p").vertices.size(), 6u);
    expectSmooth(polylineOf(arc, "p"), 1);
    EXPECT_EQ(placesOf(arc), "c0 p.segment:0; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4; c5 p.segment:5");
    EXPECT_EQ(sharp.apply("fillet p segments 0 2 radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(sharp, "p"), "1,0 20,0 10,16 0,16 0,8 closed");
    EXPECT_EQ(placesOf(sharp), "c0 p.segment:0; c2 p.segment:1; c3 p.segment:2; c4 p.segment:3; c5 p.segment:4");
    EXPECT_EQ(findings(arc) + findings(sharp), "");
}

TEST(FilletSegments, OfAClosedPolylineLoseWhatLiesOverItsSeam) {
    BareSession arc(hexagon()), sharp(hexagon());
    EXPECT_EQ(arc.apply("fillet p segments 4 0 radius 2").outcome.error, "");
    EXPECT_EQ(verticesOf(arc, "p"), "2,0 10,0 15,8 10,16 0,16 0,2^0.414214 closed");
    EXPECT_EQ(placesOf(arc), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4");
    EXPECT_EQ(sharp.apply("fillet p segments 4 0 radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(sharp, "p"), "0,0 10,0 15,8 10,16 0,16 closed");
    EXPECT_EQ(placesOf(sharp), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3; c4 p.segment:4");
    EXPECT_EQ(findings(arc) + findings(sharp), "");
}

TEST(FilletSegments, OfAClosedPolylineAreCountedFromTheArcWhenItsFirstVerticesGo) {
    BareSession arc(hexagon()), sharp(hexagon());
    EXPECT_EQ(arc.apply("fillet p segments 4 1 radius 2").outcome.error, "");
    ASSERT_EQ(polylineOf(arc, "p").vertices.size(), 5u);
    expectSmooth(polylineOf(arc, "p"), 4);
    EXPECT_EQ(placesOf(arc), "c1 p.segment:0; c2 p.segment:1; c3 p.segment:2; c4 p.segment:3");
    EXPECT_EQ(sharp.apply("fillet p segments 4 1 radius 0").outcome.error, "");
    EXPECT_EQ(verticesOf(sharp, "p"), "0,-16 15,8 10,16 0,16 closed");
    EXPECT_EQ(placesOf(sharp), "c1 p.segment:0; c2 p.segment:1; c3 p.segment:2; c4 p.segment:3");
    EXPECT_EQ(findings(arc) + findings(sharp), "");
}

TEST(FilletSegments, OfArcsAreJoinedByATangentArc) {
    Document document;
    document.name = "wave";
    document.entities = {
        shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {12, 0}, {22, 0}}, {-0.6, 0, -0.6, 0}, {0, 0, 0, 0}, false})};
    document.constraints = {constraintOf("c0", equal, {{"p", segment, 0}, {"p", segment, 2}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p segments 0 2 radius 2").outcome.error, "");
    const PolylineShape after = polylineOf(session, "p");
    ASSERT_EQ(after.vertices.size(), 4u);
    expectSmooth(after, 1);
    EXPECT_GT(after.bulges[1], 0.0);
    EXPECT_NEAR(radiusOfSegment(after, 0), radiusOfSegment(after, 2), 1e-9);
    EXPECT_EQ(placesOf(session), "c0 p.segment:0 p.segment:2");
}

TEST(FilletSegments, RefuseWithAReasonAndChangeNothing) {
    Document document = arch();
    document.entities.push_back(shapeEntity("q", PolylineShape{{{0, 30}, {9, 30}}, {0, 0}, {0, 0}, false}));
    document.entities.push_back(
        shapeEntity("u", PolylineShape{{{0, 50}, {0, 40}, {9, 40}, {9, 50}}, {0, 0, 0, 0}, {0, 0, 0, 0}, false}));
    document.entities.push_back(shapeEntity("h", hexagon().entities[0].shape));
    const RefusedEdit rows[] = {
        {"fillet p segments 0 5 radius 1", "p has no segment 5; its segments are 0 to 4"},
        {"fillet q segments 1 0 radius 1", "q has no segment 1; its only segment is 0"},
        {"fillet p segments 1 1 radius 1", "a segment cannot be filleted with itself; name two segments of p"},
        {"fillet u segments 0 2 radius 0",
         "segment 0 of u and segment 2 of u are parallel; only a half circle joins them, with radius 4.5"},
        {"fillet u segments 0 2 radius 3",
         "segment 0 of u and segment 2 of u are parallel; only a half circle joins them, with radius 4.5"},
        {"fillet h segments 4 1 radius 200",
         "a fillet of radius 200 would leave nothing of segment 4 of h; choose a smaller radius"},
        {"fillet p segments 0 4 radius 0",
         "a sharp corner there would leave nothing of segment 0 of p; choose other curves or points"},
        {"fillet p segments 0 radius 15",
         "edit \"fillet p segments 0 radius 15\", column 21: expected the number of the segment to which the arc "
         "leads, a number such as 2.5, found \"radius\""},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
