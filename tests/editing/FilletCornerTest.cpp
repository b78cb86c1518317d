#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum ConstraintType;
using enum PlaceKind;

TEST(FilletCorner, RoundsItAndNamesTheLaterSegmentsAnew) {
    BareSession session(stair());
    EXPECT_EQ(session.apply("fillet p corner 1 radius 2").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 8,0^0.414214 10,2 10,10 20,10 20,20");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:2; c2 p.segment:3; c3 p.segment:4");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletCorner, TellsFromWhichSegmentToWhichAConstraintWent) {
    BareSession session(stair());
    const EditResult& result = session.apply("fillet p corner 2 radius 2");
    ASSERT_EQ(result.fates.constraints.size(), 2u);
    EXPECT_EQ(result.fates.constraints[0].constraint, "c2");
    EXPECT_EQ(result.fates.constraints[0].fate, ConstraintFate::rePointed);
    EXPECT_EQ(result.fates.constraints[0].moves, (std::vector<PlaceMove>{{{"p", segment, 2}, {"p", segment, 3}}}));
    EXPECT_EQ(result.fates.constraints[0].reason, "the segments of p are counted anew");
    EXPECT_EQ(result.fates.constraints[1].moves, (std::vector<PlaceMove>{{{"p", segment, 3}, {"p", segment, 4}}}));
}

TEST(FilletCorner, OfEveryCornerOfARectangleNamesEverySide) {
    const char* const expected[] = {
        "2,0 10,0 10,10 0,10 0,2^0.414214 closed / c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3",
        "0,0 8,0^0.414214 10,2 10,10 0,10 closed / c0 p.segment:0; c1 p.segment:2; c2 p.segment:3; c3 p.segment:4",
        "0,0 10,0 10,8^0.414214 8,10 0,10 closed / c0 p.segment:0; c1 p.segment:1; c2 p.segment:3; c3 p.segment:4",
        "0,0 10,0 10,10 2,10^0.414214 0,8 closed / c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:4"};
    for (int corner = 0; corner < 4; ++corner) {
        BareSession session(rectangle());
        EXPECT_EQ(session.apply("fillet p corner " + std::to_string(corner) + " radius 2").outcome.error, "");
        EXPECT_EQ(verticesOf(session, "p") + " / " + placesOf(session), expected[corner]) << corner;
        EXPECT_EQ(findings(session), "") << corner;
    }
}

TEST(FilletCorner, OneAfterTheOtherLeavesASlotWithAllItsConstraints) {
    BareSession session(rectangle());
    for (const char* edit : {"fillet p corner 3 radius 2", "fillet p corner 2 radius 2", "fillet p corner 1 radius 2",
                             "fillet p corner 0 radius 2"})
        EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
    EXPECT_EQ(verticesOf(session, "p"),
              "2,0 8,0^0.414214 10,2 10,8^0.414214 8,10 2,10^0.414214 0,8 0,2^0.414214 closed");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:2; c2 p.segment:4; c3 p.segment:6");
    EXPECT_EQ(findings(session), "");
}

TEST(FilletCorner, LosesWhatHeldAtTheCorner) {
    Document document = stair();
    document.entities.push_back(lineEntity("post", {10, 0}, {15, -5}));
    document.constraints.push_back(constraintOf("c4", coincident, {{"p", segmentEnd, 0}, {"post", start}}));
    BareSession session(document);
    const EditResult& result = session.apply("fillet p corner 1 radius 2");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:2; c2 p.segment:3; c3 p.segment:4");
    ASSERT_EQ(result.fates.constraints.size(), 4u);
    EXPECT_EQ(result.fates.constraints.back().reason, "the vertex of p at (10, 0) is gone");
}

// The centre deletes one coincidence of the segment behind the arc that it has not collected. That of the corner itself
// is collected, so that it takes the one at the far end of the segment, where nothing moved: the host puts it back.
TEST(FilletCorner, KeepsACoincidenceAtTheFarEndOfTheSegmentBehindIt) {
    Document document = stair();
    document.entities.push_back(lineEntity("post", {10, 10}, {5, 15}));
    document.constraints.insert(document.constraints.begin(),
                                constraintOf("far", coincident, {{"p", segmentEnd, 1}, {"post", start}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p corner 1 radius 2").outcome.error, "");
    EXPECT_EQ(placesOf(session),
              "far p.segment:2.end post.start; c0 p.segment:0; c1 p.segment:2; c2 p.segment:3; c3 "
              "p.segment:4");
}

TEST(FilletCorner, KeepsADimensionAwayFromTheCorner) {
    Document document = stair();
    Constraint gap = constraintOf("gap", distance, {{"p", segmentStart, 0}, {"p", segmentEnd, 3}});
    gap.value = 28.284271247461902;
    document.constraints.push_back(gap);
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p corner 2 radius 2").outcome.error, "");
    EXPECT_EQ(session.document().constraints.back().refs,
              (std::vector<Place>{{"p", segmentStart, 0}, {"p", segmentEnd, 4}}));
}

TEST(FilletCorner, BetweenAnArcAndALineTouchesBoth) {
    Document document;
    document.name = "bow";
    // Clockwise half a round over 0,0 - 10,0, then straight back.
    document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {2, 0}}, {-1, 0, 0}, {0, 0, 0}, false})};
    document.constraints = {constraintOf("c1", horizontal, {{"p", segment, 1}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet p corner 1 radius 1").outcome.error, "");
    const PolylineShape after = polylineOf(session, "p");
    ASSERT_EQ(after.vertices.size(), 4u);
    expectSmooth(after, 1);
    EXPECT_NEAR(radiusOfSegment(after, 0), 5.0, 1e-9);
    EXPECT_NEAR(radiusOfSegment(after, 1), 1.0, 1e-9);
    EXPECT_EQ(placesOf(session), "c1 p.segment:2");
}

TEST(FilletCorner, BetweenTwoArcsOfATwoSidedLensTouchesBoth) {
    for (int corner = 0; corner < 2; ++corner) {
        Document document;
        document.name = "lens";
        document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}}, {0.5, 0.5}, {0, 0}, true})};
        document.constraints = {constraintOf("c0", equal, {{"p", segment, 0}, {"p", segment, 1}})};
        BareSession session(document);
        EXPECT_EQ(session.apply("fillet p corner " + std::to_string(corner) + " radius 1").outcome.error, "");
        const PolylineShape after = polylineOf(session, "p");
        ASSERT_EQ(after.vertices.size(), 3u);
        expectSmooth(after, corner == 0 ? 2 : 1);
        EXPECT_EQ(placesOf(session), corner == 0 ? "c0 p.segment:0 p.segment:1" : "c0 p.segment:0 p.segment:2");
        EXPECT_EQ(findings(session), "");
    }
}

TEST(FilletCorner, WithRadiusZeroLeavesASharpCornerAsItIs) {
    for (const char* edit : {"fillet p corner 1 radius 0", "fillet p corner 0 radius 0"}) {
        BareSession session(rectangle());
        EXPECT_EQ(session.apply(edit).outcome.error, "");
        EXPECT_EQ(session.document().constraints, rectangle().constraints);
        EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 0,10 closed");
    }
}

TEST(FilletCorner, RefusesWithAReasonAndChangesNothing) {
    Document document = stair();
    document.entities.push_back(shapeEntity("q", PolylineShape{{{0, 30}, {9, 30}}, {0, 0}, {0, 0}, false}));
    document.entities.push_back(
        shapeEntity("r", PolylineShape{{{0, 40}, {9, 40}, {20, 40}}, {0, 0, 0}, {0, 0, 0}, false}));
    document.entities.push_back(lineEntity("post", {10, 0}, {15, -5}));
    const RefusedEdit rows[] = {
        {"fillet p corner 7 radius 1", "p has no corner 7; its corners are 1 to 3"},
        {"fillet p corner -1 radius 1", "p has no corner -1; its corners are 1 to 3"},
        {"fillet p corner 0 radius 1", "vertex 0 is an end of p, not a corner; its corners are 1 to 3"},
        {"fillet p corner 4 radius 1", "vertex 4 is an end of p, not a corner; its corners are 1 to 3"},
        {"fillet q corner 1 radius 1", "q has a single segment and no corner"},
        {"fillet r corner 0 radius 1", "vertex 0 is an end of r, not a corner; its only corner is 1"},
        {"fillet r corner 1 radius 1",
         "segment 0 of r and segment 1 of r run smoothly into each other in (9, 40); there is no corner to fillet"},
        {"fillet p corner 1 radius 11",
         "an arc of radius 11 does not fit between segment 0 of p and segment 1 of p; choose a smaller radius"},
        {"fillet p corner 1 radius 10",
         "a fillet of radius 10 would leave nothing of segment 0 of p; choose a smaller radius"},
        {"fillet p corner 1 radius 9.9999999",
         "the fillet would leave nothing of segment 0 of p; choose a smaller radius"},
        {"fillet p corner 1 radius -1",
         "edit \"fillet p corner 1 radius -1\", column 26: a radius cannot be negative; give 0 for a sharp corner, "
         "found \"-1\""},
        {"fillet post corner 1 radius 1", "post is no polyline; only polylines have corners and segments to fillet"},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
