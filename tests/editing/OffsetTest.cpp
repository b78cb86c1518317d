#include <gtest/gtest.h>

#include <numbers>

#include "document/Names.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

void expectLine(const Session& session, const std::string& name, const LineShape& expected) {
    const auto* line = std::get_if<LineShape>(&entityNamed(session.document(), name).shape);
    ASSERT_NE(line, nullptr) << name;
    EXPECT_LE(distance(line->start, expected.start), 1e-9) << name;
    EXPECT_LE(distance(line->end, expected.end), 1e-9) << name;
}

/// Four lines that meet end to end around a rectangle of 10 by 4, counter-clockwise.
Document frame() {
    Document document;
    document.name = "frame";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 0}, {10, 4}),
                         lineEntity("c", {10, 4}, {0, 4}), lineEntity("d", {0, 4}, {0, 0})};
    const char* names = "abcd";
    for (int i = 0; i < 4; ++i)
        document.constraints.push_back(constraintOf(
            "k" + std::to_string(i), ConstraintType::coincident,
            {{std::string(1, names[i]), PlaceKind::end}, {std::string(1, names[(i + 1) % 4]), PlaceKind::start}}));
    document.constraints.push_back(constraintOf("h", ConstraintType::horizontal, {{"a"}}));
    return document;
}

/// A line, a quarter circle of radius 3 that it runs smoothly into, and a line up from there.
Document bend() {
    Document document;
    document.name = "bend";
    document.entities = {lineEntity("a", {0, 0}, {7, 0}),
                         shapeEntity("r", ArcShape{{7, 3}, 3, 1.5 * std::numbers::pi, 2.0 * std::numbers::pi}),
                         lineEntity("b", {10, 3}, {10, 10})};
    return document;
}

std::string constraintsFrom(const Session& session, std::size_t first) {
    std::string text;
    const auto& constraints = session.document().constraints;
    for (std::size_t i = first; i < constraints.size(); ++i) {
        text += (text.empty() ? "" : "; ") + std::string(typeName(constraints[i].type));
        for (const Place& place : constraints[i].refs)
            text += " " + spokenPlace(place);
    }
    return text;
}

TEST(OffsetCurve, LiesToTheLeftOfALine) {
    Session session(frame());
    EXPECT_EQ(session.apply("offset a by 2").outcome.error, "");
    expectLine(session, "a_2", {{0, 2}, {10, 2}});
    EXPECT_EQ(session.apply("offset a by -2").outcome.error, "");
    expectLine(session, "a_3", {{0, -2}, {10, -2}});
}

TEST(OffsetCurve, WidensCirclesAndArcs) {
    Document document;
    document.name = "round";
    document.entities = {shapeEntity("hole", CircleShape{{1, 2}, 3}), shapeEntity("bow", ArcShape{{1, 2}, 3, 0.5, 2.0}),
                         shapeEntity("x", XlineShape{{0, 0}, {0, 1}}), shapeEntity("ray", RayShape{{1, 1}, {1, 0}})};
    Session session(document);
    EXPECT_EQ(session.apply("offset hole bow x ray by 2").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "hole_2").shape, Shape(CircleShape{{1, 2}, 5}));
    EXPECT_EQ(entityNamed(session.document(), "bow_2").shape, Shape(ArcShape{{1, 2}, 5, 0.5, 2.0}));
    EXPECT_EQ(entityNamed(session.document(), "x_2").shape, Shape(XlineShape{{-2, 0}, {0, 1}}));
    EXPECT_EQ(entityNamed(session.document(), "ray_2").shape, Shape(RayShape{{1, 3}, {1, 0}}));
    EXPECT_EQ(session.apply("offset hole by -1").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "hole_3").shape, Shape(CircleShape{{1, 2}, 2}));
}

TEST(OffsetChain, OfARingLiesOutsideWithMitredCorners) {
    Session session(frame());
    EXPECT_EQ(session.apply("offset a b c d by 1").outcome.error, "");
    expectLine(session, "a_2", {{-1, -1}, {11, -1}});
    expectLine(session, "b_2", {{11, -1}, {11, 5}});
    expectLine(session, "c_2", {{11, 5}, {-1, 5}});
    expectLine(session, "d_2", {{-1, 5}, {-1, -1}});
}

TEST(OffsetChain, InsideARingIsItsNegative) {
    Session session(frame());
    EXPECT_EQ(session.apply("offset a b c d by -1").outcome.error, "");
    expectLine(session, "a_2", {{1, 1}, {9, 1}});
    expectLine(session, "d_2", {{1, 3}, {1, 1}});
}

TEST(OffsetChain, RoundsOuterCornersAboutTheChainsOwn) {
    Session session(frame());
    EXPECT_EQ(session.apply("offset a b c d by 1 rounded").outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 12u);
    expectLine(session, "a_2", {{0, -1}, {10, -1}});
    const auto& corner = std::get<ArcShape>(session.document().entities[5].shape);
    EXPECT_LE(distance(corner.centre, {10, 0}), 1e-9);
    EXPECT_NEAR(corner.radius, 1.0, 1e-9);
    EXPECT_NEAR(corner.endAngle - corner.startAngle, std::numbers::pi / 2, 1e-9);
}

TEST(OffsetChain, IsTiedAsItsOriginalsAre) {
    Session session(frame());
    session.apply("offset a b c d by 1");
    EXPECT_EQ(constraintsFrom(session, 5),
              "coincident a_2.end b_2.start; coincident b_2.end c_2.start; coincident c_2.end d_2.start; "
              "coincident d_2.end a_2.start; horizontal a_2");
    EXPECT_TRUE(DocumentSketch(session.document()).diagnose().redundant.empty());
}

TEST(OffsetChain, HasRoundedCornersTangentAtBothEnds) {
    Session session(frame());
    session.apply("offset a b by 1 rounded");
    session.apply("undo");
    EXPECT_EQ(session.apply("offset a b by -1 rounded").outcome.error, "");
    EXPECT_EQ(constraintsFrom(session, 5),
              "horizontal a_2; coincident a_2.end a_3.start; coincident a_3.end b_2.start; tangent a_2 a_3; "
              "tangent a_3 b_2");
}

TEST(OffsetChain, RunsOnSmoothlyWhereTheChainDoes) {
    Session session(bend());
    EXPECT_EQ(session.apply("offset a r b by 1").outcome.error, "");
    expectLine(session, "a_2", {{0, 1}, {7, 1}});
    const auto& arc = std::get<ArcShape>(entityNamed(session.document(), "r_2").shape);
    EXPECT_LE(distance(arc.centre, {7, 3}), 1e-9);
    EXPECT_NEAR(arc.radius, 2.0, 1e-9);
    expectLine(session, "b_2", {{9, 3}, {9, 10}});
    EXPECT_EQ(constraintsFrom(session, 0),
              "coincident a_2.end r_2.start; coincident r_2.end b_2.start; tangent a_2 r_2; tangent r_2 b_2");
}

TEST(OffsetChain, TellsAnArcWhoseRadiusTheDistanceTakesUp) {
    Session session(bend());
    const EditResult& result = session.apply("offset a r b by 4");
    EXPECT_EQ(result.outcome.error, "");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks[0], "nothing lies beside r at this distance; its neighbours meet instead");
    expectLine(session, "a_2", {{0, 4}, {6, 4}});
    expectLine(session, "b_2", {{6, 4}, {6, 10}});
}

TEST(OffsetChain, GoesAgainstLinesThatAreDrawnTheOtherWay) {
    Document document = frame();
    document.entities[1].shape = LineShape{{10, 4}, {10, 0}};
    document.constraints.clear();
    Session session(document);
    EXPECT_EQ(session.apply("offset a b by 1").outcome.error, "");
    expectLine(session, "a_2", {{0, 1}, {9, 1}});
    expectLine(session, "b_2", {{9, 4}, {9, 1}});
}

TEST(OffsetPolyline, IsAPolylineWithItsConstraints) {
    Session session(rectangle());
    EXPECT_EQ(session.apply("offset p by 2").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p_2"), "-2,-2 12,-2 12,12 -2,12 closed");
    EXPECT_EQ(session.document().constraints.size(), 8u);
    EXPECT_EQ(session.apply("offset p by 2 rounded").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p_3"),
              "0,-2 10,-2^0.414214 12,0 12,10^0.414214 10,12 0,12^0.414214 -2,10 -2,0^0.414214 closed");
}

TEST(OffsetPolyline, ThatIsOpenLiesToTheLeftOfItsWay) {
    Session session(stair());
    EXPECT_EQ(session.apply("offset p by 1").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p_2"), "0,1 9,1 9,11 19,11 19,20");
}

TEST(OffsetPolyline, LosesAShortSideWhoseNeighboursMeetBeforeIt) {
    Document document;
    document.name = "cut";
    document.entities = {shapeEntity(
        "p", PolylineShape{{{1, 0}, {20, 0}, {20, 20}, {0, 20}, {0, 1}}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, true})};
    Session session(document);
    const EditResult& result = session.apply("offset p by -5");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p_2"), "5,5 15,5 15,15 5,15 closed");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks[0],
              "nothing lies beside segment 4 of p at this distance; its neighbours meet instead");
}

TEST(OffsetEdit, IsTakenBackByUndo) {
    Session session(frame());
    session.apply("offset a b c d by 1 rounded");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), frame());
}

TEST(OffsetEdit, SaysWhatIsWrong) {
    Document document = frame();
    document.entities.push_back(shapeEntity("hole", CircleShape{{5, 20}, 1}));
    document.entities.push_back(shapeEntity("egg", EllipseShape{{0, 30}, {4, 0}, 0.5}));
    document.entities.push_back(shapeEntity("pin", PointShape{{0, 40}}));
    document.entities.push_back(lineEntity("e", {10, 0}, {20, -5}));
    document.entities.push_back(
        shapeEntity("u", PolylineShape{{{0, 60}, {0, 50}, {3, 50}, {3, 60}}, {0, 0, 0, 0}, {0, 0, 0, 0}, false}));
    const RefusedEdit rows[] = {
        {"offset a by 0",
         "edit \"offset a by 0\", column 13: an offset by 0 would lie on the curve itself; give another distance, "
         "found "
         "\"0\""},
        {"offset hole by -1",
         "at a distance of -1 nothing would be left of hole, whose radius is 1; give a smaller one"},
        {"offset egg by 1",
         "what lies at a distance from egg is no ellipse; lines, arcs, circles, polylines, rays and xlines can be "
         "offset"},
        {"offset pin by 1", "pin is no curve; only curves have an offset"},
        {"offset a b c d by -3",
         "a has no offset by -3: at this distance its parts near (10, 2) come past each other; give a smaller one"},
        {"offset a b e by 1",
         "more than two of the curves meet at (10, 0), which is no chain; offset them one after the other"},
        {"offset a a by 1", "a is named twice; name each entity once"},
        {"offset hloe by 1",
         "edit \"offset hloe by 1\", column 8: the drawing has no entity hloe, found \"hloe\"; did you mean \"hole\"?"},
    };
    expectRefused(document, rows);
    Session session(document);
    EXPECT_NE(session.apply("offset u by 2").outcome.error, "");
    EXPECT_EQ(session.document(), document);
}

}  // namespace
}  // namespace holdfast::editing
