// Constraints that are switched off, and on again.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "document/Names.h"
#include "formats/json/JsonReader.h"
#include "formats/json/JsonWriter.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// A rectangle of 40 by 20 with one corner at the origin, of which the width is given.
Document platedWidth() {
    Document document = plateDrawing();
    document.constraints.push_back(dimensionOf("w", ConstraintType::distance, {{"bottom"}}, 40.0));
    document.constraints.back().name = "width";
    return document;
}

std::string fateOf(const EditResult& result, const std::string& id) {
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        if (outcome.constraint == id)
            return std::string(fateName(outcome.fate)) + ": " + outcome.reason;
    return "-";
}

TEST(Suppress, LeavesTheConstraintInTheDrawingAndMovesNothing) {
    Session session(platedWidth());
    const EditResult& result = session.apply("suppress w v0");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), constraintIds(platedWidth()));
    EXPECT_FALSE(constraintNamed(session.document(), "w").active);
    EXPECT_FALSE(constraintNamed(session.document(), "v0").active);
    EXPECT_EQ(session.document().entities, platedWidth().entities);
    EXPECT_EQ(fateOf(result, "w"), "changed: it is switched off and holds nothing");
    EXPECT_EQ(result.fates.constraints.size(), 2u);
}

TEST(Suppress, LetsTheDrawingGo) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress width"), "");
    ASSERT_EQ(errorOf(session, "drag right by 5,0"), "");
    EXPECT_NEAR(lineOf(session, "right").start.x, 45.0, 1e-9);
    EXPECT_EQ(*constraintNamed(session.document(), "w").value, 40.0);
}

TEST(Suppress, IsOneStepToTakeBackAndToDoAgain) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress w h0 c1"), "");
    const Document off = session.document();
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(session.document(), platedWidth());
    EXPECT_EQ(errorOf(session, "drag right by 5,0"), "");
    EXPECT_NEAR(lineOf(session, "right").start.x, 40.0, 1e-9) << "it holds again";
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(errorOf(session, "suppress w h0 c1"), "");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(errorOf(session, "redo"), "");
    EXPECT_EQ(session.document(), off);
}

TEST(Suppress, IsCarriedByTheFile) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress w v1"), "");
    Session again(formats::readJson(formats::jsonText(session.document()), "plate"));
    EXPECT_EQ(again.document(), session.document());
    EXPECT_EQ(errorOf(again, "unsuppress w v1"), "");
    EXPECT_EQ(again.document().constraints, platedWidth().constraints);
}

TEST(Unsuppress, HoldsTheDrawingAgain) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress w"), "");
    ASSERT_EQ(errorOf(session, "drag right by 5,0"), "");
    const EditResult& result = session.apply("unsuppress w");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(fateOf(result, "w"), "changed: it is switched on again");
    EXPECT_NEAR(lineOf(session, "right").start.x, 40.0, 1e-9) << "its own value, not what it measured meanwhile";
    EXPECT_EQ(*constraintNamed(session.document(), "w").value, 40.0);
    EXPECT_EQ(errorOf(session, "drag right by 5,0"), "");
    EXPECT_NEAR(lineOf(session, "right").start.x, 40.0, 1e-9);
}

TEST(Unsuppress, TurnsWhatHasBeenTurnedBack) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress v0 h1"), "");
    ASSERT_EQ(errorOf(session, "drag right.end by 7,3"), "");
    ASSERT_GT(std::abs(lineOf(session, "right").end.x - lineOf(session, "right").start.x), 1.0);
    EXPECT_EQ(errorOf(session, "unsuppress v0 h1"), "");
    EXPECT_NEAR(lineOf(session, "right").end.x, lineOf(session, "right").start.x, 1e-9);
    EXPECT_NEAR(lineOf(session, "top").end.y, lineOf(session, "top").start.y, 1e-9);
}

TEST(Unsuppress, IsRefusedWithWhatItContradicts) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress w"), "");
    ASSERT_EQ(errorOf(session, "constrain distance bottom 50 as other"), "");
    const Document before = session.document();
    EXPECT_EQ(errorOf(session, "unsuppress w"),
              "w says 40, but it is 50, which follows from other (distance bottom, 50); delete or suppress one of them "
              "first");
    EXPECT_EQ(session.document(), before);
    Session upright(plateDrawing());
    ASSERT_EQ(errorOf(upright, "suppress h0 h1"), "");
    ASSERT_EQ(errorOf(upright, "constrain angle bottom left 60 as slant"), "");
    EXPECT_EQ(errorOf(upright, "unsuppress h0"),
              "the constraints do not allow h0 (horizontal bottom): v1 (vertical left), slant (angle bottom left, 60) "
              "stand in the way; delete one of them");
}

TEST(Unsuppress, TellsWhatIsRedundant) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress w"), "");
    ASSERT_EQ(errorOf(session, "constrain distance bottom 40 as other"), "");
    const EditResult& result = session.apply("unsuppress w");
    EXPECT_EQ(result.outcome.error, "");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks.front(),
              "w says what follows already from other (distance bottom, 40): it is redundant");
}

TEST(Unsuppress, GivesADimensionWhatItsFormulaSaysNow) {
    Document document = platedWidth();
    document.parameters = {{"side", "40", 40.0}};
    document.constraints.back().formula = "side";
    Session session(document);
    ASSERT_EQ(errorOf(session, "suppress w"), "");
    ASSERT_EQ(errorOf(session, "parameter side = 30"), "");
    EXPECT_NEAR(lineOf(session, "right").start.x, 40.0, 1e-9) << "nothing follows what is switched off";
    EXPECT_EQ(errorOf(session, "unsuppress w"), "");
    EXPECT_NEAR(lineOf(session, "right").start.x, 30.0, 1e-9);
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "side");
}

TEST(Unsuppress, MeasuresAgainWhatWasMeasured) {
    Document document = platedWidth();
    document.constraints.back().driving = false;
    Session session(document);
    ASSERT_EQ(errorOf(session, "suppress w"), "");
    ASSERT_EQ(errorOf(session, "drag right by 5,0"), "");
    EXPECT_EQ(errorOf(session, "unsuppress w"), "");
    EXPECT_NEAR(*constraintNamed(session.document(), "w").value, 45.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "right").start.x, 45.0, 1e-9);
}

TEST(Suppress, TakesACompositeWithItsMembers) {
    Document document = plateDrawing();
    document.constraints.push_back(constraintOf("box", ConstraintType::composite, {}));
    document.constraints.back().members = {"h0", "v0"};
    Session session(document);
    ASSERT_EQ(errorOf(session, "suppress box"), "");
    for (const char* id : {"box", "h0", "v0"})
        EXPECT_FALSE(constraintNamed(session.document(), id).active) << id;
    ASSERT_EQ(errorOf(session, "drag right.end by 7,0"), "");
    ASSERT_EQ(errorOf(session, "drag right.start by 3,0"), "");
    EXPECT_EQ(errorOf(session, "unsuppress box"), "");
    EXPECT_EQ(constraintNamed(session.document(), "box").members, document.constraints.back().members);
    EXPECT_NEAR(lineOf(session, "right").end.x, lineOf(session, "right").start.x, 1e-9);
    EXPECT_EQ(errorOf(session, "suppress h0"),
              "edit \"suppress h0\", column 10: h0 belongs to box, which goes as a whole; name that, found \"h0\"");
    EXPECT_EQ(errorOf(session, "suppress box"), "");
    EXPECT_EQ(errorOf(session, "delete box"), "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 f h1 v1");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(errorOf(session, "unsuppress box"), "");
}

TEST(Suppress, GoesWithTheEntityThatItIsOn) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress w"), "");
    const Document off = session.document();
    ASSERT_EQ(errorOf(session, "erase bottom"), "");
    EXPECT_EQ(constraintNamed(session.document(), "w").id, "");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(session.document(), off);
    EXPECT_EQ(errorOf(session, "unsuppress w"), "");
    EXPECT_EQ(session.document(), platedWidth());
}

TEST(Suppress, IsRefusedInWords) {
    Document document = platedWidth();
    document.constraints.back().active = false;
    const RefusedEdit rows[] = {
        {"suppress w", "w is switched off already"},
        {"unsuppress h0", "h0 is switched on already"},
        {"suppress h0 h0", "h0 is named twice; name each constraint once"},
        {"suppress bottom",
         "edit \"suppress bottom\", column 10: bottom is an entity, not a constraint; \"erase\" takes entities, found "
         "\"bottom\""},
        {"suppress h9",
         "edit \"suppress h9\", column 10: the drawing has no constraint h9, found \"h9\"; did you mean \"h0\"?"},
        {"set w 30", "edit \"set w 30\", column 5: w is switched off; say \"unsuppress w\" first, found \"w\""},
    };
    expectRefused(document, rows);
}

TEST(Suppress, IsNotTiedAgainByWhatFollows) {
    Session session(platedWidth());
    ASSERT_EQ(errorOf(session, "suppress c0 w"), "");
    ASSERT_EQ(errorOf(session, "drag bottom.end by -4,0"), "");
    ASSERT_EQ(errorOf(session, "extend bottom end to right"), "");
    const auto isTie = [](const Constraint& each) {
        return each.active && each.type == ConstraintType::coincident && each.refs.size() == 2 &&
               ((each.refs[0].entity == "bottom" && each.refs[1].entity == "right") ||
                (each.refs[0].entity == "right" && each.refs[1].entity == "bottom"));
    };
    const std::vector<Constraint>& now = session.document().constraints;
    EXPECT_EQ(std::count_if(now.begin(), now.end(), isTie), 0);
}

}  // namespace
}  // namespace holdfast::editing
