#include <gtest/gtest.h>

#include <algorithm>

#include "editing/Refusal.h"
#include "editing/fates/DeletionReasons.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

using enum ConstraintType;
using enum PlaceKind;

/// The reason of a constraint that an edit deleted; "-" for one that it did not.
std::string reasonOf(const EditResult& result, const std::string& id) {
    EXPECT_EQ(result.outcome.error, "");
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        if (outcome.constraint == id && outcome.fate == ConstraintFate::deleted)
            return outcome.reason;
    return "-";
}

Document drawingOf(std::vector<Entity> entities, std::vector<Constraint> constraints) {
    Document document;
    document.name = "scene";
    document.entities = std::move(entities);
    document.constraints = std::move(constraints);
    return document;
}

TEST(ReasonOfDeletion, OfADimensionIsWhatItMeasuresNow) {
    Document document = frameDrawing();
    document.constraints.push_back(dimensionOf("ten", distance, {{"base"}}, 10.0));
    BareSession session(document);
    EXPECT_EQ(reasonOf(session.apply("break base at 4,0"), "ten"), "it measures 4 now, not 10");
}

TEST(ReasonOfDeletion, OfARotationIsTheTurnAndNoChangeOfTheCurve) {
    Document document = drawingOf({lineEntity("k1", {0, 0}, {10, 0}), lineEntity("k2", {0, 5}, {10, 5})},
                                  {constraintOf("p", parallel, {{"k1"}, {"k2"}})});
    document.entities[1].fixed = true;
    BareSession session(document);
    EXPECT_EQ(reasonOf(session.apply("rotate k1 about 4,0 by 30"), "p"), "it does not hold after a turn by 30 degrees");
}

TEST(ReasonOfDeletion, OnASplineThatIsCutIsItsOtherNumberOfControlPoints) {
    const SplineShape curve{
        3, false, {{0, 0}, {2, 4}, {6, 4}, {8, 0}, {12, 0}, {14, 4}}, {0, 0, 0, 0, 1, 2, 3, 3, 3, 3}, {}};
    BareSession session(drawingOf(
        {shapeEntity("s", curve), shapeEntity("pin", PointShape{{0, 0}}), lineEntity("wall", {5, -9}, {5, 9})},
        {constraintOf("on", coincident, {{"s", start}, {"pin"}})}));
    EXPECT_EQ(reasonOf(session.apply("trim s at 14,4 by wall"), "on"), "s had 6 control points and has 4");
}

TEST(ReasonOfDeletion, OfWhatAnErasedCurveCarriedIsTheErasure) {
    Document document = drawingOf({lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 0}, {20, 0})},
                                  {constraintOf("c", coincident, {{"a", end}, {"b", start}})});
    Drawing drawing(document);
    DeletionReasons reasons;
    drawing.erase("b");
    reasons.noteDeleted(drawing);
    EXPECT_EQ(reasons.reasonOf("c"), "b was erased");
}

TEST(ReasonOfDeletion, DoesNotBlameAPointThatOnlyRoundingMoved) {
    Document document = frameDrawing();
    Drawing drawing(document);
    DeletionReasons reasons;
    reasons.noteEdited("base", "cut");
    drawing.write("base", LineShape{{0, 0}, {10, 1e-13}});
    drawing.removeConstraint("c1");
    reasons.noteDeleted(drawing);
    EXPECT_EQ(reasons.reasonOf("c1"), "base was cut");
}

TEST(ReasonOfDeletion, ByAnUndoIsThatTheDrawingIsAsItWas) {
    BareSession session(frameDrawing());
    session.apply("mirror base left about 0,20 10,20 keep");
    const EditResult& undone = session.apply("undo");
    ASSERT_FALSE(undone.fates.constraints.empty());
    for (const ConstraintOutcome& outcome : undone.fates.constraints)
        EXPECT_EQ(outcome.reason, "the drawing is as it was without it");
}

TEST(DimensionAfterBreak, StaysAtAnEndThatSlidAlongIt) {
    Document document = frameDrawing();
    document.constraints.push_back(dimensionOf("high", distanceY, {{"base", end}, {"left", end}}, 5.0));
    BareSession session(document);
    EXPECT_EQ(reasonOf(session.apply("break base at 4,0"), "high"), "-");
    EXPECT_EQ(session.document().constraints.back().id, "high");
    EXPECT_EQ(session.document().constraints.back().refs, document.constraints.back().refs);
}

TEST(DimensionAfterBreak, OfAnEndFromAParallelLineStays) {
    Document document = frameDrawing();
    document.entities.push_back(lineEntity("rail", {0, -3}, {20, -3}));
    document.constraints.insert(document.constraints.begin(),
                                dimensionOf("gap", distance, {{"base", end}, {"rail"}}, 3.0));
    BareSession session(document);
    EXPECT_EQ(reasonOf(session.apply("break base at 4,0"), "gap"), "-");
    EXPECT_EQ(constraintIds(session.document()), "gap c0 c2 c3");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), document);
}

TEST(DimensionAfterBreak, GoesWithTheEndThatItHeldOn) {
    Document document = frameDrawing();
    document.constraints.push_back(dimensionOf("wide", distanceX, {{"base", end}, {"left", end}}, -10.0));
    BareSession session(document);
    EXPECT_EQ(reasonOf(session.apply("break base at 4,0"), "wide"), "the end of base moved from (10, 0) to (4, 0)");
}

TEST(ExtendSplineWithFixedPoints, ReleasesThoseThatMoved) {
    const SplineShape curve{3, false, {{0, 0}, {5, 5}, {10, -5}, {15, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    Document document =
        drawingOf({shapeEntity("s", curve), lineEntity("b", {20, -20}, {20, 40})},
                  {constraintOf("f0", fixed, {{"s", start}}), constraintOf("f1", fixed, {{"s", control, 1}}),
                   constraintOf("f2", fixed, {{"s", control, 2}})});
    BareSession session(document);
    const EditResult& result = session.apply("extend s end to b");
    EXPECT_EQ(reasonOf(result, "f0"), "-");
    EXPECT_EQ(reasonOf(result, "f1"), "s.control:1 moved from (5, 5) to (6.66667, 6.66667)");
    EXPECT_NE(reasonOf(result, "f2"), "-");
}

/// A line that runs into an arc, and a polyline whose middle corners are straight: to the last bit, or but for what six
/// digits leave.
Document smoothDrawing() {
    return drawingOf(
        {lineEntity("c", {0, 30}, {10, 30}), shapeEntity("d", ArcShape{{10, 35}, 5, -1.5707963267948966, 0}),
         shapeEntity(
             "p",
             PolylineShape{
                 {{0, 60}, {10, 60}, {20, 60}, {30, 60.00000004}, {30, 70}}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, false})},
        {});
}

TEST(SmoothJoint, HasNoCornerToFillet) {
    const RefusedEdit rows[] = {
        {"fillet c d radius 0", "c and d run smoothly into each other in (10, 30); there is no corner to fillet"},
        {"fillet p corner 1 radius 0",
         "segment 0 of p and segment 1 of p run smoothly into each other in (10, 60); there is no corner to fillet"},
        {"fillet p corner 2 radius 0.5",
         "segment 1 of p and segment 2 of p run smoothly into each other in (20, 60); there is no corner to fillet"},
        {"fillet p corner 2 radius 0",
         "segment 1 of p and segment 2 of p run smoothly into each other in (20, 60); there is no corner to fillet"}};
    expectRefused(smoothDrawing(), rows);
    BareSession session(smoothDrawing());
    EXPECT_EQ(session.apply("fillet p corner 3 radius 0").outcome.error, "");
}

Document boxDrawing() {
    Document document = drawingOf(
        {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 0}, {10, 5}), lineEntity("far", {0, 9}, {10, 9})},
        {constraintOf("ab", coincident, {{"a", end}, {"b", start}}), constraintOf("h1", horizontal, {{"a"}}),
         constraintOf("v1", vertical, {{"b"}}), constraintOf("h2", horizontal, {{"far"}}),
         constraintOf("box", composite, {})});
    document.constraints.back().members = {"h1", "v1", "h2"};
    return document;
}

TEST(JoinOfComposite, KeepsItWithAllItsMembers) {
    BareSession session(boxDrawing());
    const EditResult& result = session.apply("join a b");
    EXPECT_EQ(reasonOf(result, "ab"), "it ties a vertex of a_2 to itself");
    for (const char* id : {"h1", "v1", "h2", "box"})
        EXPECT_EQ(reasonOf(result, id), "-") << id;
    const std::vector<Constraint>& left = session.document().constraints;
    const auto box = std::find_if(left.begin(), left.end(), [](const Constraint& each) { return each.id == "box"; });
    ASSERT_NE(box, left.end());
    EXPECT_EQ(box->members, (std::vector<std::string>{"h1", "v1", "h2"}));
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), boxDrawing());
}

TEST(JoinOfComposite, TellsWhichOfItsMembersIsGone) {
    Document document = boxDrawing();
    document.constraints.back().members.push_back("ab");
    BareSession session(document);
    const EditResult& result = session.apply("join a b");
    EXPECT_EQ(reasonOf(result, "box"), "its member ab is gone");
    for (const char* id : {"h1", "v1", "h2"})
        EXPECT_EQ(reasonOf(result, id), "-") << id;
}

/// A smaller step of what is determined is no more possible than the whole.
TEST(Refusal, SaysThatAnEntityIsDeterminedInsteadOfAdvisingASmallerStep) {
    Document document = plateDrawing();
    document.constraints.push_back(dimensionOf("width", distance, {{"bottom"}}, 40));
    Evaluation found;
    found.solved = false;
    found.worst = "h1";
    ASSERT_TRUE(isUnexplained(found));
    const std::vector<std::string> determined = determinedAmong(document, {"bottom", "left"});
    EXPECT_EQ(determined, std::vector<std::string>{"bottom"});
    EXPECT_EQ(
        refusalOf(found, document, {"bottom"}, {}, determined),
        "the solver found no way to keep the constraints, worst h1 (horizontal top): bottom is fully determined by "
        "them; delete one of them or change a dimension");
    EXPECT_EQ(
        refusalOf(found, document, {"left"}),
        "the solver found no way to keep the constraints, worst h1 (horizontal top); try a smaller step or delete "
        "a constraint");
}

}  // namespace
}  // namespace holdfast::editing
