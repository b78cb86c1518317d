// Parameters, and dimensions that are calculated from them and from each other.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "document/checks/DocumentCheck.h"
#include "editing/text/Parse.h"
#include "formats/json/JsonReader.h"
#include "formats/json/JsonWriter.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// A rectangle of 40 by 20 with one corner at the origin; w is the length of its bottom, h that of its right side.
Document formulaPlate() {
    Document document = plateDrawing();
    document.constraints.push_back(dimensionOf("w", ConstraintType::distance, {{"bottom"}}, 40.0));
    document.constraints.push_back(dimensionOf("h", ConstraintType::distance, {{"right"}}, 20.0));
    return document;
}

void doAll(Session& session, const std::vector<std::string>& edits) {
    for (const std::string& edit : edits)
        EXPECT_EQ(errorOf(session, edit), "") << edit;
    checkDocument(session.document(), "drawing");
}

double valueOf(const Session& session, const std::string& id) {
    return constraintNamed(session.document(), id).value.value_or(std::nan(""));
}

/// "changed w 40 -> 43", ...
std::string fatesOf(const EditResult& result) {
    std::string text;
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        text += (text.empty() ? "" : "; ") + std::string(fateName(outcome.fate)) + " " + outcome.constraint + " " +
                outcome.reason;
    return text;
}

TEST(Formulas, GiveADimensionItsValue) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 80", "set w = width / 2 + 3 mm"});
    EXPECT_EQ(valueOf(session, "w"), 43.0);
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "width / 2 + 3 mm");
    EXPECT_NEAR(lineOf(session, "right").start.x, 43.0, 1e-9);
    EXPECT_EQ(session.document().parameters, (std::vector<Parameter>{{"width", "80", 80.0}}));
}

TEST(Formulas, AreNamedWhenTheirDimensionGoes) {
    for (const char* edit : {"chamfer bottom right by 2", "trim bottom at 35,0 by cut", "delete w"}) {
        Document document = formulaPlate();
        document.entities.push_back(lineEntity("cut", {30, -5}, {30, 5}));
        BareSession session(document);
        doAll(session, {"parameter width = 80", "set w = width / 2"});
        EXPECT_THAT(fatesOf(session.apply(edit)), ::testing::HasSubstr(", its formula width / 2 is gone")) << edit;
    }
}

TEST(Formulas, FollowAParameterInOneEditThatUndoTakesBack) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 80", "set w = width / 2", "set h = w / 4 + 10"});
    const Document before = session.document();
    const EditResult& result = session.apply("parameter width = 100");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(fatesOf(result), "changed w 40 -> 50 = width / 2; changed h 20 -> 22.5 = w / 4 + 10");
    EXPECT_NEAR(lineOf(session, "top").start.x, 50.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "top").start.y, 22.5, 1e-9);
    const Document after = session.document();
    doAll(session, {"undo"});
    EXPECT_EQ(session.document(), before);
    doAll(session, {"redo"});
    EXPECT_EQ(session.document(), after);
    EXPECT_EQ(session.original(), formulaPlate());
}

TEST(Formulas, FollowADimensionThatTheyName) {
    Session session(formulaPlate());
    doAll(session, {"set h = w / 2"});
    const EditResult& result = session.apply("set w 60");
    EXPECT_EQ(fatesOf(result), "changed w 40 -> 60; changed h 20 -> 30 = w / 2");
    EXPECT_NEAR(lineOf(session, "top").start.y, 30.0, 1e-9);
}

TEST(Formulas, FollowAMeasuredDimensionWhateverChangesIt) {
    Session session(formulaPlate());
    doAll(session, {"set w measured", "set h = w / 2", "drag right by 10,0"});
    EXPECT_NEAR(valueOf(session, "w"), 50.0, 1e-9);
    EXPECT_NEAR(valueOf(session, "h"), 25.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "top").start.y, 25.0, 1e-9);
}

TEST(Formulas, NameDimensionsAsTheirAuthorsDo) {
    Document document = formulaPlate();
    document.constraints[9].name = "wall length";
    Session session(document);
    doAll(session, {"set h = \"wall length\" / 4"});
    EXPECT_EQ(valueOf(session, "h"), 10.0);
    doAll(session, {"set \"wall length\" 60"});
    EXPECT_EQ(valueOf(session, "h"), 15.0);
}

TEST(Formulas, TurnAnglesByDegrees) {
    Document document;
    document.name = "angle";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {0, 0}, {10, 10})};
    document.constraints = {
        constraintOf("f", ConstraintType::fixed, {{"a"}}),
        constraintOf("c", ConstraintType::coincident, {{"a", PlaceKind::start}, {"b", PlaceKind::start}})};
    Session session(document);
    doAll(session, {"parameter tilt = 20", "constrain angle a b as open", "set open = tilt + 10 deg"});
    EXPECT_NEAR(valueOf(session, "open"), 30.0 * 3.14159265358979 / 180.0, 1e-12);
    EXPECT_THAT(errorOf(session, "set open = 5 mm"),
                ::testing::HasSubstr("column 12: it comes to a length; open is an angle"));
}

TEST(Formulas, ComeWithANewDimension) {
    Document document = formulaPlate();
    document.constraints.pop_back();
    Session session(document);
    doAll(session, {"parameter width=80", "constrain distance right as tall = width / 4 + 5"});
    EXPECT_EQ(valueOf(session, "tall"), 25.0);
    EXPECT_EQ(constraintNamed(session.document(), "tall").formula, "width / 4 + 5");
    doAll(session, {"parameter width = 40"});
    EXPECT_EQ(valueOf(session, "tall"), 15.0);
}

TEST(Formulas, ArePointedAtWhereTheyAreWrong) {
    Document document = formulaPlate();
    document.parameters = {{"width", "80", 80.0}, {"none", "0", 0.0}};
    const RefusedEdit rows[] = {
        {"set w = widht / 2",
         "edit \"set w = widht / 2\", column 9: there is no parameter or dimension widht, found \"widht\"; did you "
         "mean \"width\"?"},
        {"set w = width/none", "edit \"set w = width/none\", column 14: division by zero"},
        {"set w = 3 deg", "edit \"set w = 3 deg\", column 9: it comes to an angle; w is a length, found \"3\""},
        {"set w = h * h", "edit \"set w = h * h\", column 9: it comes to an area; w is a length, found \"h\""},
        {"set w = h + 3 deg",
         "edit \"set w = h + 3 deg\", column 11: a length and an angle cannot be added, found \"+\""},
        {"set w = sqrt(h - 30)",
         "edit \"set w = sqrt(h - 30)\", column 9: sqrt has no value of a negative number "
         "(-10.0), found \"sqrt(h\""},
        {"set w = w + 1", "edit \"set w = w + 1\", column 9: w would be calculated from itself (w -> w), found \"w\""},
        {"set w = 1 +", "edit \"set w = 1 +\", column 12: expected a number or a name, but the formula ends there"},
        {"set w =",
         "edit \"set w =\": expected a formula behind \"=\", such as width / 2 + 3 mm, but the edit ends there"},
        {"set w = h - 20", "with a length of 0 bottom would vanish; give a length above 0, or erase it"},
        {"set w = h - 50", "w cannot be -30.0; give a distance of 0 or more; distance_x and distance_y have signs"},
        {"set h0 = 3",
         "edit \"set h0 = 3\", column 5: h0 is no dimension (horizontal); only dimensions have values, found \"h0\""},
        {"parameter width = width + 1",
         "edit \"parameter width = width + 1\", column 19: width would be calculated from itself (width -> width), "
         "found \"width\""},
        {"parameter mm = 3", "edit \"parameter mm = 3\", column 11: mm is a unit; choose another name, found \"mm\""},
        {"parameter w = 3",
         "edit \"parameter w = 3\", column 11: the drawing has a constraint w already; choose another name, found "
         "\"w\""},
        {"parameter top = 3",
         "edit \"parameter top = 3\", column 11: the drawing has an entity top already; choose another name, found "
         "\"top\""},
        {"parameter depth 3",
         "edit \"parameter depth 3\", column 17: expected \"=\" and a formula, such as = width / 2 + 3 mm, found "
         "\"3\""},
        {"set width 3",
         "edit \"set width 3\", column 5: width is a parameter; say \"parameter width = ...\", found "
         "\"width\""},
    };
    expectRefused(document, rows);
}

TEST(Formulas, TellInWhoseFormulaAFaultIs) {
    Session session(formulaPlate());
    doAll(session, {"parameter gap = 4", "set w = 160 / gap"});
    EXPECT_EQ(errorOf(session, "parameter gap = 0"), "the formula of w, \"160 / gap\", column 5: division by zero");
    EXPECT_EQ(errorOf(session, "parameter gap = 2 deg"),
              "the formula of w, \"160 / gap\", column 1: it comes to an angle to the power of -1; w is a length");
    EXPECT_EQ(errorOf(session, "parameter gap = w"),
              "the formula of w, \"160 / gap\", column 7: gap would be calculated from itself (gap -> w -> gap)");
    EXPECT_EQ(session.document().parameters, (std::vector<Parameter>{{"gap", "4", 4.0}}));
}

TEST(Formulas, AreRefusedWhereTheConstraintsDoNotLetThem) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 40", "set w = width"});
    EXPECT_EQ(errorOf(session, "constrain distance top anyway as t"), "");
    EXPECT_FALSE(constraintNamed(session.document(), "t").driving);
    const Document before = session.document();
    EXPECT_EQ(errorOf(session, "set t = width"), "t is measured and follows the drawing; say \"set t driving\" first");
    EXPECT_EQ(errorOf(session, "parameter width = -4"),
              "w cannot be -4.0; give a distance of 0 or more; distance_x and distance_y have signs");
    EXPECT_EQ(session.document(), before);
}

TEST(Formulas, GiveWayToANumber) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 80", "set w = width / 2"});
    const EditResult& result = session.apply("set w 24");
    EXPECT_EQ(fatesOf(result), "changed w 40 -> 24, its formula width / 2 is gone");
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "");
    doAll(session, {"set w = width / 4", "set w = 30"});
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "");
    EXPECT_EQ(valueOf(session, "w"), 30.0);
}

TEST(Formulas, GoWhenTheirDimensionIsMeasured) {
    Session session(formulaPlate());
    doAll(session, {"set w = h * 2"});
    EXPECT_EQ(fatesOf(session.apply("set w measured")), "changed w it is measured now, its formula h * 2 is gone");
    doAll(session, {"set w driving"});
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "");
}

TEST(Formulas, LeaveTheirValueBehindWhenWhatTheyNameIsDeleted) {
    Session session(formulaPlate());
    doAll(session, {"set w = h * 2", "parameter double = h * 2", "parameter half = double / 4"});
    const EditResult& result = session.apply("delete h");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(fatesOf(result),
              "changed w its formula h * 2 named h, which is gone; 40 stays as a plain number; "
              "deleted h deleted as asked");
    EXPECT_THAT(result.outcome.remarks,
                ::testing::ElementsAre("double is 40 mm from now on: its formula h * 2 named h, which is gone"));
    EXPECT_EQ(session.document().parameters,
              (std::vector<Parameter>{{"double", "40 mm", 40.0}, {"half", "double / 4", 10.0}}));
    checkDocument(session.document(), "drawing");
}

TEST(Formulas, StayWhenATieKeepsWhatTheyName) {
    Session session(formulaPlate());
    doAll(session, {"set w = h * 2", "break right at 40,5 to 40,8"});
    EXPECT_EQ(constraintNamed(session.document(), "h").id, "h");
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "h * 2");
    doAll(session, {"set h 25"});
    EXPECT_EQ(valueOf(session, "w"), 50.0);
}

TEST(Formulas, LeaveTheirValueBehindWhenACutTakesWhatTheyName) {
    BareSession session(formulaPlate());
    doAll(session, {"set w = h * 2", "break right at 40,5 to 40,8"});
    EXPECT_EQ(constraintNamed(session.document(), "h").id, "");
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "");
    EXPECT_EQ(valueOf(session, "w"), 40.0);
}

TEST(Parameters, AreDeletedWhereNoFormulaUsesThem) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 80", "parameter spare = 3", "set w = width / 2", "delete spare"});
    EXPECT_EQ(errorOf(session, "delete width"),
              "width is used by w (= width / 2); give these other formulas or numbers first");
    doAll(session, {"delete width w"});
    EXPECT_TRUE(session.document().parameters.empty());
    doAll(session, {"undo"});
    EXPECT_EQ(session.document().parameters.size(), 1u);
    EXPECT_EQ(constraintNamed(session.document(), "w").formula, "width / 2");
}

TEST(Parameters, AreNoNamesForAnythingElse) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 80"});
    EXPECT_THAT(errorOf(session, "draw point 1,1 as width"),
                ::testing::HasSubstr("the drawing has a parameter width already; choose another name"));
    EXPECT_THAT(errorOf(session, "constrain vertical left as width"),
                ::testing::HasSubstr("the drawing has a parameter width already; choose another name"));
}

TEST(Formulas, ComeBackFromAFileAsTheyWereWritten) {
    Session session(formulaPlate());
    doAll(session, {"parameter width = 80", "parameter edge = width / 2 + 3 mm", "set w = edge"});
    const Document& document = session.document();
    const std::string text = formats::jsonText(document);
    EXPECT_EQ(formats::readJson(text, "plate.json"), document);
    EXPECT_THAT(text, ::testing::HasSubstr(
                          "\"parameters\": [\n{\"name\": \"width\", \"formula\": \"80\", \"value\": 80.0},\n"));
    EXPECT_THAT(text, ::testing::HasSubstr("\"value\": 43.0, \"formula\": \"edge\""));
}

TEST(Formulas, AreSaidAndWrittenAsText) {
    for (const char* text : {"set w = width / 2 + 3 mm", "parameter width = 80", "set \"a b\" = \"c d\" * 2",
                             "constrain distance bottom as x = width", "constrain radius g5 anyway = r / 2"})
        EXPECT_EQ(toText(parse(text)), text);
    EXPECT_EQ(toText(parse("set w=width/2")), "set w = width/2");
    EXPECT_EQ(toText(parse("parameter  width =80 ")), "parameter width = 80");
    EXPECT_EQ(toText(SetFormula{"a=b", Sourced<std::string>(std::string("1"))}), "set \"a=b\" = 1");
}

TEST(Formulas, MirrorWithTheSenseOfTheirDimension) {
    Document document;
    document.name = "angle";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {0, 0}, {0, 10})};
    document.constraints = {
        constraintOf("c", ConstraintType::coincident, {{"a", PlaceKind::start}, {"b", PlaceKind::start}}),
        dimensionOf("turn", ConstraintType::angle, {{"a"}, {"b"}}, 3.14159265358979323846 / 2.0)};
    Session session(document);
    doAll(session, {"parameter open = 90 deg", "set turn = open", "mirror a b about 0,0 1,0"});
    EXPECT_EQ(constraintNamed(session.document(), "turn").formula, "-(open)");
    doAll(session, {"parameter open = 60 deg"});
    EXPECT_NEAR(valueOf(session, "turn"), -3.14159265358979323846 / 3.0, 1e-12);
}

}  // namespace
}  // namespace holdfast::editing
