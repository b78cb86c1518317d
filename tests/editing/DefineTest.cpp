// Drawings that are finished: what is missing, in which order, from which datum, and that nothing moves for it.

#include <gtest/gtest.h>

#include "document/Names.h"
#include "editing/EditContext.h"
#include "editing/Refusal.h"
#include "editing/define/Missing.h"
#include "editing/fates/Freedom.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

/// A plain plate of 40 by 20 with a hole, beside the origin.
Document plainPlate() {
    Document document;
    document.name = "plate";
    document.entities = {lineEntity("bottom", {10, 5}, {50, 5}), lineEntity("right", {50, 5}, {50, 25}),
                         lineEntity("top", {50, 25}, {10, 25}), lineEntity("left", {10, 25}, {10, 5}),
                         shapeEntity("hole", CircleShape{{20, 15}, 4})};
    return document;
}

/// "horizontal bottom, distance left 20": what a definition adds, a line each.
std::string added(const EditResult& result, const Document& document) {
    std::string list;
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        for (const Constraint& constraint : document.constraints)
            if (outcome.fate == ConstraintFate::added && outcome.constraint == constraint.id) {
                list += (list.empty() ? "" : ", ") + std::string(typeName(constraint.type));
                for (const Place& place : constraint.refs)
                    list += " " + spokenPlace(place);
                if (constraint.value)
                    list += " " + spoken(spokenValue(constraint.type, *constraint.value));
            }
    return list;
}

std::string addedBy(Session& session, const std::string& edit) {
    const EditResult& result = session.apply(edit);
    EXPECT_EQ(result.outcome.error, "");
    return added(result, session.document());
}

std::vector<Shape> shapesOf(const Document& document) {
    std::vector<Shape> shapes;
    for (const Entity& entity : withoutVertexNumbers(document).entities)
        shapes.push_back(entity.shape);
    return shapes;
}

std::string redundantIn(const Document& document) {
    std::string list;
    for (const auto& each : DocumentSketch(document).diagnose().redundant)
        list += spokenConstraint(document.constraints[each.constraint]) + " ";
    return list;
}

TEST(Define, AddsWhatHoldsAsDrawnBeforeDimensions) {
    Session session(plainPlate());
    EXPECT_EQ(addedBy(session, "define"),
              "coincident bottom.start left.end, coincident bottom.end right.start, coincident right.end top.start, "
              "coincident top.end left.start, horizontal bottom, horizontal top, vertical right, vertical left, "
              "fixed bottom.start, diameter hole 8, distance bottom 40, distance right 20, "
              "distance_x bottom.start hole.centre 10, distance_y bottom.start hole.centre 10");
    EXPECT_EQ(degreesOfFreedom(session.document()), 0);
    EXPECT_EQ(redundantIn(session.document()), "");
    EXPECT_EQ(shapesOf(session.document()), shapesOf(plainPlate()));
}

TEST(Define, HoldsTheDirectionOfASlantedText) {
    Document along;
    along.name = "label";
    along.entities = {lineEntity("slope", {0, 0}, {30, 40}),
                      shapeEntity("label", TextShape{{5, 20}, std::atan2(40.0, 30.0), 3, "A"}),
                      shapeEntity("across", TextShape{{9, 20}, std::atan2(-30.0, 40.0), 3, "B"})};
    Session session(along);
    const std::string list = addedBy(session, "define");
    EXPECT_NE(list.find("parallel slope label"), std::string::npos) << list;
    EXPECT_NE(list.find("perpendicular slope across"), std::string::npos) << list;
    EXPECT_EQ(degreesOfFreedom(session.document()), 0);
    EXPECT_EQ(redundantIn(session.document()), "");
    EXPECT_EQ(shapesOf(session.document()), shapesOf(along));
}

TEST(Define, TellsWhyForEachConstraint) {
    Session session(plainPlate());
    session.apply("define");
    const auto& fates = session.results().back().fates.constraints;
    ASSERT_EQ(fates.size(), 14u);
    EXPECT_EQ(fates[4].reason, "it holds as drawn");
    EXPECT_EQ(fates[8].reason, "the datum, from which the rest is measured");
    EXPECT_EQ(fates[10].reason, "its value as it stands");
    EXPECT_EQ(fates[12].reason, "where it lies from the datum bottom.start, as it stands");
}

TEST(Define, IsTakenBackByUndo) {
    Session session(plainPlate());
    session.apply("define");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), plainPlate());
}

TEST(Define, SaysWhenNothingIsMissing) {
    Session session(plainPlate());
    session.apply("define");
    const EditResult& again = session.apply("define");
    EXPECT_TRUE(again.outcome.done());
    EXPECT_TRUE(again.fates.constraints.empty());
    ASSERT_EQ(again.outcome.remarks.size(), 1u);
    EXPECT_EQ(again.outcome.remarks[0], "nothing was missing: all of it is fully determined already");
}

TEST(Define, MeasuresFromReferenceGeometryWhereThereIsSome) {
    Document document = plainPlate();
    document.entities.push_back(shapeEntity("origin", PointShape{{0, 0}}));
    document.entities.back().fixed = true;
    document.entities.erase(document.entities.begin(), document.entities.begin() + 4);
    Session session(document);
    EXPECT_EQ(addedBy(session, "define"),
              "diameter hole 8, distance_x origin hole.centre 20, distance_y origin hole.centre 15");
}

TEST(Define, TakesTheFreedomOfTheNamedEntitiesOnly) {
    Session session(plainPlate());
    EXPECT_EQ(addedBy(session, "define hole"), "fixed hole.centre, diameter hole 8");
    EXPECT_EQ(degreesOfFreedom(session.document()), 16);
    EXPECT_EQ(addedBy(session, "define bottom"),
              "horizontal bottom, distance bottom 40, distance_x bottom.start hole.centre 10, "
              "distance_y bottom.start hole.centre 10");
    EXPECT_EQ(degreesOfFreedom(session.document()), 12);
}

TEST(Define, MeasuresFromAPointThatIsHeldOnAnEntityThatIsNot) {
    Document document = plainPlate();
    document.constraints = {constraintOf("f", ConstraintType::fixed, {{"bottom", PlaceKind::start}})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define hole"),
              "diameter hole 8, distance_x bottom.start hole.centre 10, distance_y bottom.start hole.centre 10");
}

TEST(Define, AddsOnlyTheHalfThatIsMissing) {
    Document document;
    document.entities = {lineEntity("a", {0, 0}, {10, 5}), lineEntity("b", {20, 10}, {30, 15})};
    document.constraints = {constraintOf("p", ConstraintType::parallel, {{"a"}, {"b"}})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define"),
              "point_on_curve b.start a, equal a b, fixed a.start, distance a 11.1803, "
              "angle a 26.5651, distance_x a.start b.start 20");
    EXPECT_EQ(redundantIn(session.document()), "");
}

TEST(Define, SeesPairsThatAreSymmetricAboutAReferenceLine) {
    Document document;
    document.entities = {shapeEntity("axis", XlineShape{{0, 0}, {0, 1}}), shapeEntity("a", PointShape{{-3, 2}}),
                         shapeEntity("b", PointShape{{3, 2}})};
    document.entities[0].fixed = true;
    Session session(document);
    EXPECT_EQ(addedBy(session, "define"), "symmetric b a axis, distance_x a axis.start 3, distance_y axis.start a 2");
}

TEST(Define, PutsAnEndOnTheCurveThatItTouches) {
    Document document;
    document.entities = {lineEntity("base", {0, 0}, {40, 0}), lineEntity("rib", {15, 0}, {15, 20})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define"),
              "horizontal base, vertical rib, point_on_curve rib.start base, fixed base.start, distance base 40, "
              "distance rib 20, distance_x base.start rib.start 15");
}

TEST(Define, FinishesEveryKindOfEntity) {
    for (const Document& document : {kindsDrawing(), heldDrawing()}) {
        Session session(document);
        const EditResult& result = session.apply("define");
        EXPECT_EQ(result.outcome.error, "");
        EXPECT_TRUE(result.outcome.remarks.empty());
        EXPECT_EQ(degreesOfFreedom(session.document()), 0);
        EXPECT_EQ(redundantIn(session.document()), "");
        EXPECT_EQ(shapesOf(session.document()), shapesOf(document));
    }
}

TEST(Define, FinishesEveryKindOfEntityAlone) {
    for (const Entity& entity : kindsDrawing().entities) {
        Document document;
        document.entities = {entity};
        Session session(document);
        EXPECT_EQ(session.apply("define").outcome.error, "");
        EXPECT_EQ(degreesOfFreedom(session.document()), 0) << entity.id;
        EXPECT_EQ(redundantIn(session.document()), "") << entity.id;
    }
}

TEST(Define, FinishesLinesThatMaySlideAlongThemselves) {
    Document document;
    document.entities = {lineEntity("level", {0, 0}, {10, 0}), lineEntity("upright", {20, 3}, {20, 9})};
    document.constraints = {constraintOf("f", ConstraintType::fixed, {{"level"}}),
                            constraintOf("g", ConstraintType::fixed, {{"upright"}})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define"),
              "distance level 10, distance upright 6, distance_x level.start upright.start 20, "
              "distance_y level.start upright.start 3");
    EXPECT_EQ(redundantIn(session.document()), "");
}

TEST(Define, LeavesValuesAsTheyStand) {
    Document document;
    document.entities = {shapeEntity("hole", CircleShape{{0, 0}, 2.123456789012})};
    Session session(document);
    session.apply("define");
    EXPECT_EQ(shapesOf(session.document()), shapesOf(document));
    EXPECT_DOUBLE_EQ(*session.document().constraints[1].value, 2.0 * 2.123456789012);
}

TEST(Define, SaysAValuePlainlyWhereThatIsWhatItIs) {
    Document document;
    document.entities = {lineEntity("a", {0.1, 0.2}, {0.1 + 0.7, 0.2 + 0.1 + 0.1})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define"), "fixed a.start, distance a 0.728011, angle a 15.9454");
    document.entities = {lineEntity("a", {0.1, 0.2}, {0.1 + 0.2, 0.2})};
    Session level(document);
    level.apply("define");
    EXPECT_EQ(*level.document().constraints.back().value, 0.2);
}

TEST(Define, LeadsDimensionsToRoundValuesOnRequest) {
    Document document;
    document.entities = {lineEntity("a", {0, 0}, {10.04, 0}), shapeEntity("hole", CircleShape{{4.96, 3.03}, 1.01})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define rounded 1"),
              "horizontal a, fixed a.start, diameter hole 2, distance a 10, distance_x a.start hole.centre 5, "
              "distance_y a.start hole.centre 3");
    EXPECT_EQ(std::get<LineShape>(session.document().entities[0].shape).end, (Vec2{10, 0}));
    EXPECT_NEAR(std::get<CircleShape>(session.document().entities[1].shape).radius, 1.0, 1e-9);
}

TEST(Define, KeepsADimensionThatRoundingWouldMakeNothing) {
    Document document;
    document.entities = {shapeEntity("hole", CircleShape{{4, 3}, 0.02})};
    Session session(document);
    EXPECT_EQ(addedBy(session, "define rounded 0"), "fixed hole.centre, diameter hole 0.04");
}

TEST(Define, LeavesAloneWhatDoesNotHold) {
    Document document = plainPlate();
    document.entities.push_back(lineEntity("skew", {60, 0}, {70, 3}));
    document.constraints = {constraintOf("h", ConstraintType::horizontal, {{"skew"}})};
    Session session(document);
    const EditResult& result = session.apply("define");
    EXPECT_EQ(result.outcome.error, "");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks[0], "skew hangs on constraints that do not hold; nothing was added there");
    EXPECT_EQ(shapesOf(session.document()), shapesOf(document));
}

TEST(Define, IsRefusedForNamesThatItDoesNotKnow) {
    const RefusedEdit rows[] = {
        {"define holes",
         "edit \"define holes\", column 8: the drawing has no entity holes, found \"holes\"; did you mean \"hole\"?"},
        {"define hole hole", "hole is named twice; name each entity once"},
        {"define rounded 12",
         "edit \"define rounded 12\", column 16: dimensions are rounded to 0 to 9 decimals, found \"12\""},
        {"define hole rounded", "edit \"define hole rounded\": expected how many decimals, but the edit ends there"}};
    expectRefused(plainPlate(), rows);
}

TEST(Missing, IsTheSameThatDefineAdds) {
    const Missing missing = missingIn(plainPlate());
    EXPECT_EQ(missing.constraints.size(), 14u);
    EXPECT_TRUE(missing.stillFree.empty());
}

/// The arc of an ellipse between two ends, with its longest diameter, which nearly but not quite begins in its start.
/// That the diameter's end lies on a side, too, leaves nothing else that would not be said twice.
TEST(Missing, LeavesOutARelationThatIsInTheWayOfDimensions) {
    Document document;
    document.entities = {
        lineEntity("right", {18.5, -564.0}, {20.499999999964107, -615.5}),
        lineEntity("left", {-18.5, -564.0}, {-20.500000000003286, -615.5}),
        shapeEntity("arc", EllipticalArcShape{{0.0, -564.0000001516179},
                                              {18.5, -1.51617786e-07},
                                              0.8108108190063721,
                                              2.02157189e-08,
                                              3.1415926535897967}),
        lineEntity("diameter", {18.5, -564.0000003032358}, {-18.5, -564.0}),
        shapeEntity("origin", PointShape{{0.0, 0.0}}),
        shapeEntity("axis", XlineShape{{0.0, 0.0}, {0.0, 1.0}}),
    };
    document.entities[4].fixed = document.entities[5].fixed = true;
    document.constraints = {
        {.id = "c0", .type = ConstraintType::internal, .refs = {{"diameter"}, {"arc"}}, .role = "major_diameter"},
        {.id = "c1", .type = ConstraintType::pointOnCurve, .refs = {{"arc", PlaceKind::centre}, {"axis"}}},
        {.id = "c2",
         .type = ConstraintType::coincident,
         .refs = {{"arc", PlaceKind::start}, {"right", PlaceKind::start}}},
        {.id = "c3", .type = ConstraintType::coincident, .refs = {{"arc", PlaceKind::end}, {"left", PlaceKind::start}}},
        {.id = "c4",
         .type = ConstraintType::symmetric,
         .refs = {{"right", PlaceKind::start}, {"left", PlaceKind::start}, {"axis"}}},
    };
    Session session(document);
    EXPECT_EQ(session.apply("define").outcome.error, "");
    EXPECT_EQ(degreesOfFreedom(session.document()), 0);
    EXPECT_EQ(redundantIn(session.document()), "");
    EXPECT_EQ(shapesOf(session.document()), shapesOf(document));
}

/// Twice as many holes take about twice as long; a solve for each candidate would take four times.
TEST(Missing, IsFoundInOnePassForManyEntities) {
    Document document;
    for (int i = 0; i < 2000; ++i)
        document.entities.push_back(shapeEntity(
            "h" + std::to_string(i), CircleShape{{10.0 * (i % 50) + 0.01 * i, 10.0 * (i / 50)}, 1.0 + 0.001 * i}));
    const Missing missing = missingIn(document);
    EXPECT_EQ(missing.stillFree, std::vector<std::string>());
    EXPECT_GE(missing.constraints.size(), 3u * 2000u - 1u);
    EXPECT_LE(missing.constraints.size(), 3u * 2000u);
}

}  // namespace
}  // namespace holdfast::editing
