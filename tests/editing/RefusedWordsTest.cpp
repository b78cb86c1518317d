// What refusals say: about the word that is wrong, and what to say instead.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// base and left from the origin, at right angles; rib slants across, low runs below base. L is the length of base.
Document slantedCorner() {
    Document document;
    document.name = "corner";
    document.entities = {lineEntity("base", {0, 0}, {40, 0}), lineEntity("left", {0, 0}, {0, 20}),
                         lineEntity("rib", {10, 0}, {0, 10}), lineEntity("low", {0, -5}, {40, -5})};
    document.constraints = {
        constraintOf("c1", ConstraintType::coincident, {{"base", PlaceKind::start}, {"left", PlaceKind::start}}),
        constraintOf("h", ConstraintType::horizontal, {{"base"}}),
        constraintOf("v", ConstraintType::vertical, {{"left"}}),
        dimensionOf("L", ConstraintType::distance, {{"base"}}, 40.0)};
    return document;
}

std::string refusalAt(const std::string& edit) {
    Session session(slantedCorner());
    const std::string error = session.apply(edit).outcome.error;
    if (!error.empty()) {
        EXPECT_EQ(session.document(), slantedCorner()) << edit;
    }
    return error;
}

TEST(RefusedWords, NameWhatLinesMustBeToHaveADistance) {
    EXPECT_EQ(refusalAt("constrain distance base rib 10"),
              "base and rib are not parallel and have no distance; constrain them parallel first, or name a point of "
              "one, such as rib.start");
    EXPECT_EQ(refusalAt("constrain distance base low 5"), "");
    EXPECT_EQ(refusalAt("constrain distance base rib.start 0"), "");
}

TEST(RefusedWords, SayThatALengthOfZeroMakesALineVanish) {
    const char* why = "with a length of 0 base would vanish; give a length above 0, or erase it";
    EXPECT_EQ(refusalAt("constrain distance base 0"), why);
    EXPECT_EQ(refusalAt("set L 0"), why);
}

TEST(RefusedWords, ListOnlyWhatCanBeDeleted) {
    const std::string error = refusalAt("constrain parallel base left as both");
    EXPECT_THAT(error, ::testing::HasSubstr("the constraints do not allow the new parallel base left: "));
    EXPECT_THAT(error, ::testing::HasSubstr("h (horizontal base)"));
    EXPECT_THAT(error, ::testing::Not(::testing::HasSubstr("both")));
    EXPECT_THAT(error, ::testing::Not(::testing::HasSubstr("another value")));
}

TEST(RefusedWords, TellWhatAnywayDidNotHold) {
    Session session(slantedCorner());
    const EditResult& result = session.apply("constrain angle base left 45 anyway as open");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_THAT(result.outcome.remarks,
                ::testing::ElementsAre("open measures 90 and does not hold the 45 that was asked for: the other "
                                       "constraints say what it is"));
}

TEST(RefusedWords, SayNothingWhereAnywayHoldsTheValue) {
    Session session(slantedCorner());
    EXPECT_THAT(session.apply("constrain angle base left 90 anyway as open").outcome.remarks, ::testing::IsEmpty());
}

TEST(RefusedWords, SpeakOfTheValueWhereANumberIsSpoilt) {
    const char* value = "expected the value, a number such as 2.5; with a unit it is a formula, such as = 5 mm";
    EXPECT_THAT(refusalAt("constrain distance base 5mm"), ::testing::HasSubstr(value));
    EXPECT_THAT(refusalAt("constrain distance base nan"), ::testing::HasSubstr(value));
    const char* ofL = "column 7: expected the value of L, a number such as 2.5, or \"driving\" or \"measured\"";
    EXPECT_THAT(refusalAt("set L nan"), ::testing::HasSubstr(ofL));
    EXPECT_THAT(refusalAt("set L 5mm"), ::testing::HasSubstr(ofL));
    EXPECT_THAT(refusalAt("set base nan"), ::testing::HasSubstr("expected a property of base"));
}

TEST(RefusedWords, SayWhatSplinesCirclesAndPolylinesTake) {
    EXPECT_EQ(refusalAt("draw spline 0,0 1,1 degree 0"), "the degree of a spline is 1 or more, not 0");
    EXPECT_EQ(refusalAt("draw spline 0,0 1,1 degree 3"), "a spline of degree 3 takes 4 control points or more");
    EXPECT_EQ(refusalAt("draw spline 1,1 1,1 1,1 1,1"),
              "a spline needs different control points; all of them are (1, 1)");
    EXPECT_EQ(refusalAt("draw polyline 0,0 5,0 5,0 9,9"),
              "vertex 2 of the polyline is where vertex 1 is, at (5, 0); give each corner once");
    EXPECT_EQ(refusalAt("draw polyline 0,0 5,0 9,9 0,0 closed"),
              "vertex 0 of the polyline is where vertex 3 is, at (0, 0); give each corner once");
    EXPECT_EQ(refusalAt("draw polyline 0,0 5,0 9,9 0,0"), "");
    EXPECT_EQ(
        refusalAt("draw circle 0,0 radius 1e400"),
        "edit \"draw circle 0,0 radius 1e400\", column 24: expected the radius, a number of less than 1e308, found "
        "\"1e400\"");
}

TEST(RefusedWords, TakeANameBeforeConstruction) {
    Session session(slantedCorner());
    EXPECT_EQ(session.apply("draw point 5,5 as p construction").outcome.error, "");
    EXPECT_TRUE(entityNamed(session.document(), "p").construction);
}

TEST(RefusedWords, LimitHowFarADrawingReaches) {
    const char* why =
        " would reach farther than 1e+12 mm, where numbers have no digits left for what is near; choose "
        "smaller values";
    EXPECT_EQ(refusalAt("draw circle 0,0 radius 1e300"), std::string("circle1") + why);
    EXPECT_EQ(refusalAt("draw point 1e300,0 as p"), std::string("p") + why);
    EXPECT_EQ(refusalAt("lengthen low end by 1e300"), std::string("low") + why);
}

TEST(RefusedWords, KeepNewNamesApart) {
    EXPECT_EQ(refusalAt("draw point 1,1 as a.end"),
              "edit \"draw point 1,1 as a.end\", column 19: a dot parts an entity "
              "from its places; choose a name without one, found \"a.end\"");
    EXPECT_THAT(refusalAt("draw point 1,1 as L"), ::testing::HasSubstr("the drawing has a constraint L already"));
    EXPECT_THAT(refusalAt("constrain vertical rib as base"),
                ::testing::HasSubstr("the drawing has an entity base already"));
    EXPECT_THAT(refusalAt("constrain vertical rib as a.b"),
                ::testing::HasSubstr("a dot parts an entity from its places"));
}

TEST(RefusedWords, LeadFromEraseToDeleteAndBack) {
    EXPECT_EQ(refusalAt("erase c1"),
              "edit \"erase c1\", column 7: c1 is a constraint, not an entity; \"delete\" takes it, "
              "found \"c1\"");
    EXPECT_EQ(refusalAt("delete rib"),
              "edit \"delete rib\", column 8: rib is an entity, not a constraint; \"erase\" takes "
              "entities, found \"rib\"");
}

TEST(RefusedWords, KnowTheVerbsOfOtherPrograms) {
    EXPECT_THAT(refusalAt("brake base at 4,0"), ::testing::HasSubstr("found \"brake\"; did you mean \"break\"?"));
    EXPECT_THAT(refusalAt("remove base"),
                ::testing::HasSubstr("did you mean \"erase\" for entities or \"delete\" for constraints?"));
    EXPECT_THAT(refusalAt("dimension base 5"),
                ::testing::HasSubstr("did you mean \"constrain\" with a kind such as distance, radius or angle?"));
}

}  // namespace
}  // namespace holdfast::editing
