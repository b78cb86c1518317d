#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

TEST(BreakEdit, LosesOnlyWhatHeldAtTheEndThatMoved) {
    BareSession session(frameDrawing());
    EXPECT_EQ(session.apply("break base at 4,0 to 6,0").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {4, 0}}));
    EXPECT_EQ(entityNamed(session.document(), "base_2").shape, Shape(LineShape{{6, 0}, {10, 0}}));
}

TEST(BreakEdit, CutsAtTheSamePlacesWhicheverPickComesFirst) {
    // A cut from 0.3 to 2: exchanged by sums, the second parameter would come out just below the vertex.
    Document document;
    document.name = "stairs";
    document.entities = {shapeEntity("p0", PolylineShape{.vertices = {{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 20}},
                                                         .bulges = {0, 0, 0, 0, 0},
                                                         .ids = {11, 12, 13, 14, 15}}),
                         lineEntity("g1", {20, 10}, {30, 10})};
    using enum PlaceKind;
    document.constraints = {constraintOf("h0", ConstraintType::horizontal, {{"p0", segment, 0}}),
                            constraintOf("v1", ConstraintType::vertical, {{"p0", segment, 1}}),
                            constraintOf("h2", ConstraintType::horizontal, {{"p0", segment, 2}}),
                            constraintOf("v3", ConstraintType::vertical, {{"p0", segment, 3}}),
                            constraintOf("c", ConstraintType::coincident, {{"g1", start}, {"p0", segmentStart, 3}})};
    BareSession forward(document), backward(document);
    EXPECT_EQ(forward.apply("break p0 at 3,0 to 10,10").outcome.error, "");
    EXPECT_EQ(backward.apply("break p0 at 10,10 to 3,0").outcome.error, "");
    EXPECT_EQ(constraintIds(forward.document()), "h0 h2 v3 c");
    EXPECT_EQ(backward.document(), forward.document());
}

TEST(BreakEdit, FromTheStartKeepsTheEntityForTheRest) {
    BareSession session(frameDrawing());
    EXPECT_EQ(session.apply("break base at 0,0 to 6,0").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c1 c2 c3");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{6, 0}, {10, 0}}));
    EXPECT_EQ(session.document().entities.size(), 3u);
}

TEST(BreakEdit, FromTheStartLeavesTheEntityConstrainedForTheNextEdit) {
    BareSession session(frameDrawing());
    session.apply("break base at 0,0 to 6,0");
    EXPECT_EQ(session.apply("break base at 8,0 to 10,0").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c2 c3");
}

TEST(BreakEdit, TellsWhyAConstraintWent) {
    BareSession session(frameDrawing());
    const EditResult& result = session.apply("break base at 4,0 to 10,0");
    ASSERT_EQ(result.fates.constraints.size(), 1u);
    EXPECT_EQ(result.fates.constraints[0].constraint, "c1");
    EXPECT_EQ(result.fates.constraints[0].reason, "the end of base moved from (10, 0) to (4, 0)");
}

TEST(BreakEdit, OfAConstructionLineSaysWhatBecameOfIt) {
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("guide", XlineShape{{0, 9}, {1, 0}}));
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"guide"}})};
    BareSession session(document);
    const EditResult& result = session.apply("break guide at 4,9");
    ASSERT_EQ(result.fates.constraints.size(), 1u);
    EXPECT_EQ(result.fates.constraints[0].reason, "guide was a construction line and became a ray");
}

TEST(BreakEdit, OfACircleLeavesAnArcWithoutConstraints) {
    Document document;
    document.name = "disc";
    document.entities = {shapeEntity("disc", CircleShape{{0, 0}, 5}), shapeEntity("hole", CircleShape{{0, 0}, 2})};
    document.constraints = {
        constraintOf("c0", ConstraintType::concentric, {{"disc", PlaceKind::centre}, {"hole", PlaceKind::centre}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("break disc at 5,0 to 0,5").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "");
    EXPECT_TRUE(std::holds_alternative<ArcShape>(entityNamed(session.document(), "disc").shape));
}

TEST(BreakEdit, SendsPolylineDependenciesToTheRightPiece) {
    Document document;
    document.name = "stair";
    PolylineShape stair{{{0, 0}, {10, 0}, {10, 10}, {20, 10}, {20, 20}}, {0, 0, 0, 0, 0}, {11, 12, 13, 14, 15}, false};
    document.entities = {shapeEntity("p", stair)};
    using enum PlaceKind;
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"p", segment, 0}}),
                            constraintOf("c1", ConstraintType::vertical, {{"p", segment, 1}}),
                            constraintOf("c2", ConstraintType::horizontal, {{"p", segment, 2}}),
                            constraintOf("c3", ConstraintType::vertical, {{"p", segment, 3}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("break p at 5,0 to 15,10").outcome.error, "");
    const auto& first = std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
    const auto& second = std::get<PolylineShape>(entityNamed(session.document(), "p_2").shape);
    EXPECT_EQ(first.ids, (std::vector<int>{11, 12}));
    EXPECT_EQ(second.ids, (std::vector<int>{13, 14, 15}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3");
    EXPECT_EQ(session.document().constraints[1].refs[0], (Place{"p_2", segment, 0}));
    EXPECT_EQ(session.document().constraints[2].refs[0], (Place{"p_2", segment, 1}));
}

TEST(BreakEdit, AtAVertexKeepsTheSegmentsOnBothSides) {
    BareSession session(stair());
    EXPECT_EQ(session.apply("break p at 10,10").outcome.error, "");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p_2.segment:0; c3 p_2.segment:1");
    EXPECT_EQ(liveFindings(session), "");
    EXPECT_EQ(session.apply("drag p_2.segment:0.start by 3,0").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p") + " / " + verticesOf(session, "p_2"), "0,0 10,0 10,10 / 13,10 20,10 20,20");
    EXPECT_EQ(findings(session), "");
}

TEST(BreakEdit, FromTheStartOfAPolylineLeavesTheNetworkSound) {
    BareSession session(stair());
    EXPECT_EQ(session.apply("break p at 0,0 to 10,5").outcome.error, "");
    EXPECT_EQ(placesOf(session), "c1 p.segment:0; c2 p.segment:1; c3 p.segment:2");
    EXPECT_EQ(liveFindings(session) + findings(session), "");
}

TEST(BreakEdit, NextToAVertexIsAtTheVertex) {
    for (const char* edit : {"break p at 9.999995,0", "break p at 10,0", "break p at 10,0.000005"}) {
        BareSession session(stair());
        EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
        EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0") << edit;
        EXPECT_EQ(verticesOf(session, "p_2"), "10,0 10,10 20,10 20,20") << edit;
        EXPECT_EQ(findings(session), "") << edit;
    }
}

TEST(BreakEdit, LeavesAPolylineUntouchedWhoseVerticesOnlyGetIdentifiers) {
    Document document = stair();
    document.entities.push_back(lineEntity("far", {50, 0}, {60, 0}));
    BareSession session(document);
    const Fates& fates = session.apply("break far at 55,0").fates;
    ASSERT_EQ(fates.entities.size(), 2u);
    EXPECT_EQ(fates.entities[0].entity + " " + fates.entities[1].entity, "far far_2");
}

TEST(BreakEdit, TakesTheNearestPointAndTellsWhenItIsFar) {
    BareSession near(frameDrawing()), far(frameDrawing());
    EXPECT_TRUE(near.apply("break base at 4,0.009").outcome.remarks.empty());
    const EditResult& result = far.apply("break base at 4,3");
    EXPECT_EQ(result.outcome.error, "");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks[0], "took (4, 0) on base for the point (4, 3), which is 3 away");
    EXPECT_EQ(near.document(), far.document());
    EXPECT_EQ(lineOf(far, "base").end, (Vec2{4, 0}));
}

TEST(BreakEdit, RefusesWithAReasonAndChangesNothing) {
    const RefusedEdit rows[] = {
        {"break base at 4,30", "the point (4, 30) is not on base; its nearest point is (4, 0)"},
        {"break base at 0,0 to 10,0", "nothing of base would be left; erase it instead, or cut less"},
        {"break bse at 4,0",
         "edit \"break bse at 4,0\", column 7: the drawing has no entity bse, found \"bse\"; did you mean \"base\"?"},
        {"break base at 10,0", "nothing is cut at (10, 0), an end of base; give a point between its ends"},
        {"break dot at 0,0", "dot is no curve; only curves can be broken"},
    };
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("dot", PointShape{{0, 0}}));
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
