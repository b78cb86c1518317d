// Cuts of closed polylines, which leave one open polyline.

#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

/// The polyline and the places of the constraints after an edit of the rectangle.
std::string afterEdit(const std::string& edit, Document document = rectangle()) {
    BareSession session(std::move(document));
    EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
    EXPECT_EQ(liveFindings(session) + findings(session), "") << edit;
    EXPECT_FALSE(polylineOf(session, "p").closed) << edit;
    return verticesOf(session, "p") + " / " + placesOf(session);
}

TEST(RingBreak, AtAVertexOpensItThere) {
    EXPECT_EQ(afterEdit("break p at 0,0"),
              "0,0 10,0 10,10 0,10 0,0 / c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3");
    EXPECT_EQ(afterEdit("break p at 10,10"),
              "10,10 0,10 0,0 10,0 10,10 / c0 p.segment:2; c1 p.segment:3; c2 p.segment:0; c3 p.segment:1");
}

TEST(RingBreak, InsideASegmentLeavesItsConstraintsOnThePartBeforeThePoint) {
    EXPECT_EQ(afterEdit("break p at 10,4"),
              "10,4 10,10 0,10 0,0 10,0 10,4 / c0 p.segment:3; c1 p.segment:4; c2 p.segment:1; c3 p.segment:2");
}

TEST(RingBreak, TakesThePartFromTheFirstPointOnToTheSecond) {
    EXPECT_EQ(afterEdit("break p at 10,4 to 10,7"),
              "10,7 10,10 0,10 0,0 10,0 10,4 / c0 p.segment:3; c1 p.segment:4; c2 p.segment:1; c3 p.segment:2");
    EXPECT_EQ(afterEdit("break p at 10,7 to 10,4"), "10,4 10,7 / c1 p.segment:0");
}

TEST(RingBreak, AcrossVertexZeroIsLikeAnyOther) {
    EXPECT_EQ(afterEdit("break p at 0,4 to 6,0"),
              "6,0 10,0 10,10 0,10 0,4 / c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3");
    EXPECT_EQ(afterEdit("break p at 10,4 to 6,10"),
              "6,10 0,10 0,0 10,0 10,4 / c0 p.segment:2; c1 p.segment:3; c2 p.segment:0; c3 p.segment:1");
}

TEST(RingBreak, BetweenVerticesTakesWholeSegments) {
    EXPECT_EQ(afterEdit("break p at 10,10 to 0,0"), "0,0 10,0 10,10 / c0 p.segment:0; c1 p.segment:1");
    EXPECT_EQ(afterEdit("break p at 0,0 to 10,0"),
              "10,0 10,10 0,10 0,0 / c1 p.segment:0; c2 p.segment:1; c3 p.segment:2");
}

TEST(RingBreak, InsideAnArcSegmentKeepsItsCircle) {
    Document document = rectangle();
    std::get<PolylineShape>(document.entities[0].shape).bulges = {0, 1, 0, 0};
    document.constraints = {
        constraintOf("c0", ConstraintType::equal, {{"p", PlaceKind::segment, 0}, {"p", PlaceKind::segment, 2}})};
    EXPECT_EQ(afterEdit("break p at 15,5", document),
              "15,5^0.414214 10,10 0,10 0,0 10,0^0.414214 15,5 / c0 p.segment:3 p.segment:1");
}

TEST(RingBreak, OfTwoArcsLeavesThePartsOfBoth) {
    Document document;
    document.name = "disc";
    document.entities = {shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}}, {1, 1}, {0, 0}, true})};
    document.constraints = {
        constraintOf("c0", ConstraintType::equal, {{"p", PlaceKind::segment, 0}, {"p", PlaceKind::segment, 1}})};
    EXPECT_EQ(afterEdit("break p at 5,-5 to 5,5", document),
              "5,5^0.414214 0,0^0.414214 5,-5 / c0 p.segment:1 p.segment:0");
    EXPECT_EQ(afterEdit("break p at 10,0", document), "10,0^1 0,0^1 10,0 / c0 p.segment:1 p.segment:0");
}

TEST(RingBreak, LetsTheEndsGoApart) {
    for (const char* edit : {"break p at 0,0", "break p at 0,5"}) {
        BareSession session(rectangle());
        session.apply(edit);
        const std::string end = std::to_string(polylineOf(session, "p").vertices.size() - 1);
        EXPECT_EQ(session.apply("set p vertex " + end + " y -3").outcome.error, "") << edit;
        const PolylineShape open = polylineOf(session, "p");
        EXPECT_GT(geometry::distance(open.vertices.front(), open.vertices.back()), 2.0) << edit;
    }
}

TEST(RingBreak, IsUndoneToTheLastBit) {
    BareSession session(rectangle());
    session.apply("break p at 0,4 to 6,0");
    session.apply("undo");
    EXPECT_EQ(session.document(), rectangle());
}

TEST(RingTrim, TellsWhichVertexIsGone) {
    Document document = rectangle();
    document.entities.push_back(lineEntity("low", {-5, 3}, {15, 3}));
    document.entities.push_back(shapeEntity("pin", PointShape{{10, 10}}));
    document.constraints = {constraintOf("c0", ConstraintType::coincident, {{"p", PlaceKind::segmentEnd, 1}, {"pin"}})};
    BareSession session(document);
    const EditResult& result = session.apply("trim p at 10,7 by low");
    EXPECT_EQ(verticesOf(session, "p"), "0,3 0,0 10,0 10,3");
    ASSERT_EQ(result.fates.constraints.size(), 1u);
    EXPECT_EQ(result.fates.constraints[0].reason, "the vertex of p at (10, 10) is gone");
}

TEST(RingTrim, LeavesOnePolylineWithItsConstraints) {
    Document document = rectangle();
    document.entities.push_back(lineEntity("low", {-5, 3}, {15, 3}));
    document.entities.push_back(lineEntity("side", {3, -5}, {3, 15}));
    EXPECT_EQ(afterEdit("trim p at 10,0 by low side", document),
              "10,3 10,10 0,10 0,0 3,0 / c0 p.segment:3; c1 p.segment:0; c2 p.segment:1; c3 p.segment:2");
    EXPECT_EQ(afterEdit("trim p at 0,0 by low side", document),
              "3,0 10,0 10,10 0,10 0,3 / c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3");
}

}  // namespace
}  // namespace holdfast::editing
