#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "formats/json/JsonReader.h"
#include "tests/editing/Shorthand.h"

// What a user sees follow an edit.
namespace holdfast::editing {
namespace {

double lengthOf(const LineShape& line) {
    return std::hypot(line.end.x - line.start.x, line.end.y - line.start.y);
}

Document twoLines(ConstraintType type) {
    Document document;
    document.name = "pair";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {0, 5}, {10, 5})};
    document.constraints = {constraintOf("c0", type, {{"a"}, {"b"}})};
    return document;
}

Document rectangle() {
    Document document;
    document.name = "rectangle";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 0}, {10, 5}),
                         lineEntity("c", {10, 5}, {0, 5}), lineEntity("d", {0, 5}, {0, 0})};
    const char* const sides[] = {"a", "b", "c", "d"};
    for (int i = 0; i < 4; ++i)
        document.constraints.push_back(
            constraintOf("c" + std::to_string(i), ConstraintType::coincident,
                         {{sides[i], PlaceKind::end}, {sides[(i + 1) % 4], PlaceKind::start}}));
    document.constraints.push_back(constraintOf("c4", ConstraintType::parallel, {{"a"}, {"c"}}));
    document.constraints.push_back(constraintOf("c5", ConstraintType::parallel, {{"b"}, {"d"}}));
    document.constraints.push_back(constraintOf("c6", ConstraintType::perpendicular, {{"a"}, {"b"}}));
    return document;
}

TEST(LeastSurpriseEdit, LeavesTheOtherEndOfALineThatIsSetWhereItIs) {
    for (const ConstraintType type : {ConstraintType::equal, ConstraintType::parallel}) {
        Session session(twoLines(type));
        EXPECT_EQ(session.apply("set a end 15,3").outcome.error, "");
        EXPECT_EQ(lineOf(session, "a").start, (Vec2{0, 0}));
        EXPECT_EQ(lineOf(session, "a").end, (Vec2{15, 3}));
    }
}

TEST(LeastSurpriseEdit, TurnsARectangleAlongWithOneOfItsSides) {
    for (const char* degrees : {"45", "90", "180", "270"}) {
        Session session(rectangle());
        EXPECT_EQ(session.apply("rotate a about 0,0 by " + std::string(degrees)).outcome.error, "") << degrees;
        EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 c4 c5 c6") << degrees;
        EXPECT_NEAR(lengthOf(lineOf(session, "b")), 5.0, 1e-8) << degrees;
        EXPECT_NEAR(lengthOf(lineOf(session, "c")), 10.0, 1e-8) << degrees;
    }
}

TEST(LeastSurpriseEdit, KeepsParallelAndPerpendicularThroughARightAngle) {
    for (const ConstraintType type : {ConstraintType::parallel, ConstraintType::equal})
        for (const char* degrees : {"30", "45", "90", "180"}) {
            Session session(twoLines(type));
            EXPECT_EQ(session.apply("rotate a about 4,0 by " + std::string(degrees)).outcome.error, "") << degrees;
            EXPECT_EQ(constraintIds(session.document()), "c0") << degrees;
            EXPECT_NEAR(lengthOf(lineOf(session, "b")), 10.0, 1e-8) << degrees;
        }
}

Document bracket() {
    std::ifstream in("examples/drawings/mounting-bracket.json");
    return formats::readJson(in, "mounting-bracket.json");
}

/// The entities of which a size is another than before.
std::string resized(const Session& session) {
    std::string names;
    for (const EntityOutcome& entity : session.report().entities)
        if (!entity.sizes.empty())
            names += (names.empty() ? "" : " ") + entity.entity;
    return names;
}

TEST(LeastSurpriseEdit, ChangesOneLengthForADimensionOnABracket) {
    for (const char* value : {"54", "10", "5"}) {
        Session session(bracket());
        EXPECT_EQ(session.apply("constrain distance base.end rib.end " + std::string(value)).outcome.error, "")
            << value;
        EXPECT_EQ(resized(session), "rib") << value;
    }
}

TEST(LeastSurpriseEdit, LeavesTheChamferOfABracketOnItsSide) {
    Session session(bracket());
    EXPECT_EQ(session.apply("constrain distance base 40").outcome.error, "");
    EXPECT_NEAR(lineOf(session, "chamfer").start.x, 20.0, 1e-7);
    EXPECT_NEAR(lineOf(session, "top").start.x, 30.0, 1e-7);
}

TEST(LeastSurpriseEdit, TakesABracketAlongInOneLongStrideOfADrag) {
    Session session(bracket());
    EXPECT_EQ(session.apply("delete c0 c18").outcome.error, "");
    const EditResult result = session.apply("drag base.end by 0,80");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(result.outcome.shortfall.by, 0.0);
    EXPECT_NEAR(lineOf(session, "base").end.y, 80.0, 1e-7);
    EXPECT_NEAR(lineOf(session, "top").end.y, 120.0, 1e-7);
    EXPECT_EQ(resized(session), "");
}

/// A short line that hangs on the end of something is pushed over itself on the way; it shifts in the end all the same.
TEST(LeastSurpriseEdit, ShiftsAShortLineThatHangsOnAPulledEnd) {
    Document document = twoLines(ConstraintType::coincident);
    document.entities[0].shape = SplineShape{.degree = 3,
                                             .control = {{20, 0}, {30, 0}, {36, 8}, {44, 20}},
                                             .knots = {0, 0, 0, 0, 1, 1, 1, 1},
                                             .weights = {}};
    document.entities[1].shape = LineShape{{44, 20}, {50, 29}};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"a", PlaceKind::end}, {"b", PlaceKind::start}})};
    Session session(document);
    EXPECT_EQ(session.apply("drag a.end by 10,8").outcome.error, "");
    EXPECT_NEAR(lineOf(session, "b").start.x, 54.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "b").end.x, 60.0, 1e-7);
    EXPECT_NEAR(lineOf(session, "b").end.y, 37.0, 1e-7);
}

TEST(LeastSurpriseEdit, IsNotStoppedByAPartThatContradictsItself) {
    Document document = twoLines(ConstraintType::equal);
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"a"}}),
                            constraintOf("c1", ConstraintType::vertical, {{"a"}})};
    document.constraints.push_back(constraintOf("c2", ConstraintType::horizontal, {{"b"}}));
    Session session(document);
    EXPECT_EQ(session.apply("set b start 0,6").outcome.error, "");
    EXPECT_EQ(lineOf(session, "a"), (LineShape{{0, 0}, {10, 0}}));
    EXPECT_NEAR(lineOf(session, "b").end.y, 6.0, 1e-12);
}

}  // namespace
}  // namespace holdfast::editing
