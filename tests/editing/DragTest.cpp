#include <gtest/gtest.h>

#include <cmath>

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

LineShape lineNamed(const Session& session, const std::string& id) {
    return std::get<LineShape>(entityNamed(session.document(), id).shape);
}

/// A crank that turns about the origin and a rod that hangs on it, both of fixed length.
Document crankDrawing() {
    Document document;
    document.name = "crank";
    document.entities = {lineEntity("crank", {0, 0}, {10, 0}), lineEntity("rod", {10, 0}, {30, 0})};
    document.constraints = {
        constraintOf("f0", ConstraintType::fixed, {{"crank", PlaceKind::start}}),
        constraintOf("c0", ConstraintType::coincident, {{"crank", PlaceKind::end}, {"rod", PlaceKind::start}}),
        constraintOf("d0", ConstraintType::distance, {{"crank"}}),
        constraintOf("d1", ConstraintType::distance, {{"rod"}})};
    document.constraints[2].value = 10.0;
    document.constraints[3].value = 20.0;
    return document;
}

TEST(DragEdit, OfFreeEntitiesMovesThem) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("g", {0, 0}, {10, 0}), shapeEntity("c", CircleShape{{1, 2}, 3})};
    Session session(document);
    EXPECT_EQ(session.apply("drag g c by 3,2").outcome.error, "");
    EXPECT_EQ(lineNamed(session, "g"), (LineShape{{3, 2}, {13, 2}}));
    EXPECT_EQ(entityNamed(session.document(), "c").shape, Shape(CircleShape{{4, 4}, 3}));
}

TEST(DragEdit, OfAGripOfAFreeEntityMovesThatPointOnly) {
    Document document;
    document.name = "free";
    const PolylineShape step{{{0, 0}, {10, 0}, {10, 10}}, {0, 0, 0}, {0, 0, 0}, false};
    document.entities = {lineEntity("g", {0, 0}, {10, 0}), shapeEntity("p", step)};
    Session session(document);
    EXPECT_EQ(session.apply("drag g.end by 3,2").outcome.error, "");
    EXPECT_EQ(lineNamed(session, "g"), (LineShape{{0, 0}, {13, 2}}));
    EXPECT_EQ(session.apply("drag p.segment:1.start by 1,-1").outcome.error, "");
    EXPECT_EQ(session.apply("drag p.segment:0.mid by 0,5").outcome.error, "");
    const auto& p = std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
    EXPECT_EQ(p.vertices, (std::vector<Vec2>{{0, 5}, {11, 4}, {10, 10}}));
}

TEST(DragEdit, SlidesAnEndOfAnEllipticalArcAlongTheEllipse) {
    Document document;
    document.name = "oval";
    document.entities = {shapeEntity("oval", EllipticalArcShape{{0, 0}, {4, 0}, 0.5, 0.0, 1.5707963267948966})};
    Session session(document);
    EXPECT_EQ(session.apply("drag oval.end by -4,-2").outcome.error, "");
    EXPECT_NEAR(std::get<EllipticalArcShape>(entityNamed(session.document(), "oval").shape).endParam, 3.141592653589793,
                1e-12);
    EXPECT_EQ(session.apply("drag oval.start by 1,-2").outcome.error, "");
    const auto& oval = std::get<EllipticalArcShape>(entityNamed(session.document(), "oval").shape);
    EXPECT_NEAR(oval.startParam, std::atan2(-2.0 / 2.0, 5.0 / 4.0), 1e-12);
    EXPECT_NEAR(oval.endParam, 3.141592653589793, 1e-12);
}

TEST(DragEdit, OfAnEntityTakesItsNeighboursAlong) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("drag left by 2,3").outcome.error, "");
    EXPECT_EQ(lineNamed(session, "left"), (LineShape{{2, 3}, {2, 8}}));
    EXPECT_NEAR(lineNamed(session, "base").start.x, 2.0, 1e-9);
    EXPECT_NEAR(lineNamed(session, "base").end.y, 3.0, 1e-9);
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3");
}

TEST(DragEdit, OfAGripBringsThePointToTheCursorAndKeepsTheConstraints) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("drag base.end by 3,2").outcome.error, "");
    const LineShape base = lineNamed(session, "base");
    EXPECT_NEAR(base.end.x, 13.0, 1e-9);
    EXPECT_NEAR(base.end.y, 2.0, 1e-9);
    EXPECT_NEAR(base.start.y, 2.0, 1e-9);
    EXPECT_NEAR(lineNamed(session, "right").start.x, 13.0, 1e-9);
}

TEST(DragEdit, YieldsWhereTheConstraintsForbidTheCursor) {
    Session session(crankDrawing());
    EXPECT_EQ(session.apply("drag crank.end by -10,20 steps 10").outcome.error, "");
    const LineShape crank = lineNamed(session, "crank"), rod = lineNamed(session, "rod");
    EXPECT_EQ(crank.start, (Vec2{0, 0}));
    EXPECT_NEAR(std::hypot(crank.end.x, crank.end.y), 10.0, 1e-8);
    EXPECT_NEAR(crank.end.x, 0.0, 0.01);  // the nearest that it can come to (0, 20)
    EXPECT_NEAR(crank.end.y, 10.0, 0.01);
    EXPECT_NEAR(std::hypot(rod.end.x - rod.start.x, rod.end.y - rod.start.y), 20.0, 1e-8);
}

TEST(DragEdit, InManyStepsComesToWhereOneStepDoes) {
    Session oneStep(frameDrawing()), manySteps(frameDrawing());
    oneStep.apply("drag right.end by 3,2");
    manySteps.apply("drag right.end by 3,2 steps 25");
    for (const char* id : {"base", "left", "right"}) {
        EXPECT_NEAR(lineNamed(oneStep, id).end.x, lineNamed(manySteps, id).end.x, 1e-9);
        EXPECT_NEAR(lineNamed(oneStep, id).end.y, lineNamed(manySteps, id).end.y, 1e-9);
    }
    EXPECT_NEAR(lineNamed(manySteps, "right").end.x, 13.0, 1e-9);
    EXPECT_NEAR(lineNamed(manySteps, "right").end.y, 7.0, 1e-9);
}

/// A level line that hangs on a fixed point, and one from its end that may turn.
Document levelDrawing() {
    Document document;
    document.name = "level";
    document.entities = {lineEntity("base", {0, 0}, {80, 0}), lineEntity("post", {80, 0}, {80, 40})};
    document.constraints = {
        constraintOf("f0", ConstraintType::fixed, {{"base", PlaceKind::start}}),
        constraintOf("h0", ConstraintType::horizontal, {{"base"}}),
        constraintOf("c0", ConstraintType::coincident, {{"base", PlaceKind::end}, {"post", PlaceKind::start}})};
    return document;
}

TEST(DragEdit, EndsWhereItWasAskedToInEveryDirectionThatIsFree) {
    for (const char* edit : {"drag base.end by 3,2", "drag base.end by 3,2 steps 30"}) {
        Session session(levelDrawing());
        EXPECT_EQ(session.apply(edit).outcome.error, "");
        EXPECT_NEAR(lineNamed(session, "base").end.x, 83.0, 1e-11) << edit;
        EXPECT_NEAR(lineNamed(session, "base").end.y, 0.0, 1e-11) << edit;
    }
}

TEST(DragEdit, LeadsACornerOfARectanglePastTheOppositeOne) {
    Document plate = plateDrawing();
    const Vec2 corners[] = {{0, 0}, {98, 0}, {98, 58.2}, {0, 58.2}};
    for (std::size_t i = 0; i < 4; ++i)
        plate.entities[i].shape = LineShape{corners[i], corners[(i + 1) % 4]};
    for (const char* edit : {"drag top.end by 0,-98", "drag top.end by 0,-60", "drag right.end by 5,-98",
                             "drag top.end by 0,-98 steps 20", "drag right.end by 5,-98 steps 200"}) {
        Session session(plate);
        const EditResult& result = session.apply(edit);
        EXPECT_EQ(result.outcome.error, "") << edit;
        EXPECT_EQ(result.outcome.shortfall.by, 0.0) << edit;
        EXPECT_LT(lineOf(session, "left").start.y, -1.0) << edit;
        EXPECT_EQ(lineOf(session, "left").end, (Vec2{0, 0})) << edit;
    }
}

TEST(DragEdit, EndsOnTheNearestPointOfASlantedTrack) {
    Document document;
    document.name = "track";
    document.entities = {lineEntity("track", {0, 0}, {40, 30}), lineEntity("rod", {8, 6}, {8, 26})};
    document.entities.front().fixed = true;
    document.constraints = {constraintOf("p0", ConstraintType::pointOnCurve, {{"rod", PlaceKind::start}, {"track"}})};
    Session session(document);
    EXPECT_EQ(session.apply("drag rod.start by 10,0").outcome.error, "");
    EXPECT_NEAR(lineNamed(session, "rod").start.x, 14.4, 1e-10);  // (8, 6) and (10, 0) projected on (0.8, 0.6)
    EXPECT_NEAR(lineNamed(session, "rod").start.y, 10.8, 1e-10);
}

/// Half of a plate with teeth: pulled at its corner by least movement it stops at once, as the round at the other end
/// of its side would turn over. Where shapes are kept it comes nearly as far as it was asked to.
TEST(DragEdit, GoesAsFarAsItsWayLeadsWhereItFallsShort) {
    Document document;
    document.name = "teeth";
    document.entities = {
        lineEntity("g0", {-3.85, -0.231584227214512}, {-3.85, -4.5}),
        lineEntity("g2", {3.85, -4.5}, {3.85, -0.231584227214512}),
        lineEntity("g3", {-3.764703150280373, -0.19617049541638}, {-3.5, -0.46}),
        lineEntity("g4", {-3.5, -0.46}, {-3.070827463596264, -0.029406300560745}),
        lineEntity("g7", {-1.929172536403736, -0.029406300560745}, {-1.5, -0.46}),
        lineEntity("g9", {-0.929172536403736, -0.029406300560745}, {-0.5, -0.46}),
        lineEntity("g11", {0.070827463596264, -0.029406300560745}, {0.5, -0.46}),
        lineEntity("g13", {1.070827463596264, -0.029406300560745}, {1.5, -0.46}),
        lineEntity("g15", {2.070827463596264, -0.029406300560745}, {2.5, -0.46}),
        lineEntity("g17", {3.070827463596264, -0.029406300560745}, {3.5, -0.46}),
        lineEntity("g21", {-1.5, -0.46}, {-0.5, -0.46}),
        lineEntity("g22", {-0.5, -0.46}, {0.5, -0.46}),
        lineEntity("g23", {0.5, -0.46}, {1.5, -0.46}),
        lineEntity("g24", {1.5, -0.46}, {2.5, -0.46}),
        lineEntity("g25", {2.5, -0.46}, {3.5, -0.46}),
        shapeEntity("g32", ArcShape{{-2, -0.1}, 0.1, 0.783745200438529, 2.357847453151263}),
        shapeEntity("g33", ArcShape{{-3, -0.1}, 0.1, 0.783745200438529, 2.357847453151265}),
        shapeEntity("g34", ArcShape{{-3.8, -0.231584227214512}, 0.05, 0.787051126356368, 3.141592653589793}),
        lineEntity("g35", {-3, -0.1}, {-2, -0.1}),
        shapeEntity("axis", XlineShape{{0, 0}, {0, 1}})};
    document.entities.back().fixed = true;
    document.constraints = {
        constraintOf("c0", ConstraintType::vertical, {{"g0"}}),
        constraintOf("c4", ConstraintType::coincident, {{"g3", PlaceKind::end}, {"g4", PlaceKind::start}}),
        constraintOf("c18", ConstraintType::coincident, {{"g21", PlaceKind::start}, {"g7", PlaceKind::end}}),
        constraintOf("c19", ConstraintType::coincident, {{"g21", PlaceKind::end}, {"g9", PlaceKind::end}}),
        constraintOf("c21", ConstraintType::coincident, {{"g22", PlaceKind::start}, {"g9", PlaceKind::end}}),
        constraintOf("c22", ConstraintType::coincident, {{"g22", PlaceKind::end}, {"g11", PlaceKind::end}}),
        constraintOf("c24", ConstraintType::coincident, {{"g23", PlaceKind::start}, {"g11", PlaceKind::end}}),
        constraintOf("c25", ConstraintType::coincident, {{"g23", PlaceKind::end}, {"g13", PlaceKind::end}}),
        constraintOf("c26", ConstraintType::coincident, {{"g24", PlaceKind::start}, {"g13", PlaceKind::end}}),
        constraintOf("c27", ConstraintType::coincident, {{"g24", PlaceKind::end}, {"g15", PlaceKind::end}}),
        constraintOf("c28", ConstraintType::coincident, {{"g25", PlaceKind::start}, {"g15", PlaceKind::end}}),
        constraintOf("c29", ConstraintType::coincident, {{"g25", PlaceKind::end}, {"g17", PlaceKind::end}}),
        constraintOf("c44", ConstraintType::tangent, {{"g7", PlaceKind::start}, {"g32", PlaceKind::start}}),
        constraintOf("c47", ConstraintType::tangent, {{"g4", PlaceKind::end}, {"g33", PlaceKind::end}}),
        constraintOf("c55", ConstraintType::symmetric, {{"g3", PlaceKind::end}, {"g17", PlaceKind::end}, {"axis"}}),
        constraintOf("c78", ConstraintType::tangent, {{"g3", PlaceKind::start}, {"g34", PlaceKind::start}}),
        constraintOf("c79", ConstraintType::tangent, {{"g0", PlaceKind::start}, {"g34", PlaceKind::end}}),
        constraintOf("c80", ConstraintType::perpendicular, {{"g3"}, {"g4"}}),
        constraintOf("c85", ConstraintType::coincident, {{"g35", PlaceKind::start}, {"g33", PlaceKind::centre}}),
        constraintOf("c86", ConstraintType::coincident, {{"g35", PlaceKind::end}, {"g32", PlaceKind::centre}})};
    Session session(document);
    const EditResult& result = session.apply("drag g0.end by 4,0");
    ASSERT_EQ(result.outcome.error, "");
    EXPECT_GT(lineNamed(session, "g0").end.x, -0.85);
}

/// The lower line has no length where the corner comes to the axis. A drag that goes over it ends where several do.
TEST(DragEdit, GoesOverAPlaceWhereALineHasNoLengthAsSeveralDo) {
    Document document;
    document.name = "comb";
    document.entities = {
        lineEntity("g0", {-3.85, -0.231584227214512}, {-3.85, -4.5}),
        lineEntity("g1", {-3.85, -4.5}, {3.85, -4.5}),
        lineEntity("g2", {3.85, -4.5}, {3.85, -0.231584227214512}),
        lineEntity("g4", {-3.5, -0.46}, {-3.07082746359626, -0.0294063005607447}),
        lineEntity("g16", {2.5, -0.46}, {2.92917253640374, -0.0294063005607448}),
        lineEntity("g17", {3.07082746359626, -0.0294063005607448}, {3.5, -0.46}),
        lineEntity("g18", {3.5, -0.46}, {3.76470315028037, -0.19617049541638}),
        shapeEntity("g26", ArcShape{{3.8, -0.231584227214512}, 0.0499999999999997, 1e-16, 2.35454152723343}),
        shapeEntity("g34", ArcShape{{-3.8, -0.231584227214512}, 0.05, 0.787051126356368, 3.14159265358979}),
        shapeEntity("axis", XlineShape{{0, 0}, {0, 1}})};
    document.entities.back().fixed = true;
    document.constraints = {
        constraintOf("c1", ConstraintType::coincident, {{"g0", PlaceKind::end}, {"g1", PlaceKind::start}}),
        constraintOf("c2", ConstraintType::coincident, {{"g1", PlaceKind::end}, {"g2", PlaceKind::start}}),
        constraintOf("c3", ConstraintType::vertical, {{"g2"}}),
        constraintOf("c11", ConstraintType::coincident, {{"g17", PlaceKind::end}, {"g18", PlaceKind::start}}),
        constraintOf("c32", ConstraintType::tangent, {{"g18", PlaceKind::end}, {"g26", PlaceKind::end}}),
        constraintOf("c33", ConstraintType::tangent, {{"g2", PlaceKind::end}, {"g26", PlaceKind::start}}),
        constraintOf("c49", ConstraintType::symmetric, {{"g0", PlaceKind::end}, {"g1", PlaceKind::end}, {"axis"}}),
        constraintOf("c79", ConstraintType::tangent, {{"g0", PlaceKind::start}, {"g34", PlaceKind::end}}),
        constraintOf("c81", ConstraintType::symmetric,
                     {{"g26", PlaceKind::centre}, {"g34", PlaceKind::centre}, {"axis"}})};
    Session session(document);
    const std::optional<Glimpse> before = session.glimpse("drag g0.end by 0.3,0");
    const std::optional<Glimpse> over = session.glimpse("drag g0.end by 4.27,0");
    ASSERT_TRUE(before && over);
    EXPECT_EQ(session.glimpse("drag g0.end by 0.3,0")->entities, before->entities) << "a hand that comes back";
    const EditResult& result = session.apply("drag g0.end by 4.27,0");
    ASSERT_EQ(result.outcome.error, "");
    EXPECT_EQ(result.outcome.shortfall, Shortfall{});
    for (const Entity& entity : over->entities)
        EXPECT_EQ(session.drawing().shape(entity.id), entity.shape) << "as it was seen before: " << entity.id;
    EXPECT_NEAR(lineNamed(session, "g0").end.x, 0.42, 1e-9);
}

/// The base has no length where it goes over the axis, and the way ends short of all that was asked; a drag from there
/// goes on.
TEST(DragEdit, GoesOnWhereItsWayHasEnded) {
    Document document;
    document.name = "teeth";
    document.entities = {lineEntity("g0", {-2.85, -0.0250000019264838}, {-2.85, -3.2}),
                         lineEntity("g1", {-2.85, -3.2}, {2.85, -3.2}),
                         lineEntity("g2", {2.85, -3.2}, {2.85, -0.0249999981025435}),
                         lineEntity("g13", {1.2363190427919506, -0.0156353796663421}, {1.5999999999999999, -0.4}),
                         lineEntity("g14", {1.5999999999999999, -0.4}, {1.9636809572080494, -0.015635379666342}),
                         lineEntity("g15", {2.0363190427919506, -0.015635379666342}, {2.4, -0.4}),
                         lineEntity("g16", {2.4, -0.4}, {2.8076486442185633, -0.0070019319771816}),
                         lineEntity("g18", {1.5999999999999999, -0.4}, {0.7999999999999999, -0.4}),
                         lineEntity("g19", {0.7999999999999999, -0.4}, {0, -0.4}),
                         shapeEntity("g34", ArcShape{{-2.825, -0.025}, 0.025, 0.8036907926016836, 3.141592730649144}),
                         shapeEntity("g35", ArcShape{{2.825, -0.025}, 0.025, 7.58982651e-08, 2.3379016855450865}),
                         shapeEntity("axis", XlineShape{{0, 0}, {0, 1}})};
    document.entities.back().fixed = true;
    document.constraints = {
        constraintOf("c0", ConstraintType::vertical, {{"g0"}}),
        constraintOf("c1", ConstraintType::coincident, {{"g0", PlaceKind::end}, {"g1", PlaceKind::start}}),
        constraintOf("c2", ConstraintType::coincident, {{"g1", PlaceKind::end}, {"g2", PlaceKind::start}}),
        constraintOf("c3", ConstraintType::vertical, {{"g2"}}),
        constraintOf("c4", ConstraintType::symmetric, {{"g0", PlaceKind::end}, {"g1", PlaceKind::end}, {"axis"}}),
        constraintOf("c12", ConstraintType::coincident, {{"g13", PlaceKind::end}, {"g14", PlaceKind::start}}),
        constraintOf("c13", ConstraintType::coincident, {{"g15", PlaceKind::end}, {"g16", PlaceKind::start}}),
        constraintOf("c17", ConstraintType::coincident, {{"g18", PlaceKind::start}, {"g13", PlaceKind::end}}),
        constraintOf("c57", ConstraintType::equal, {{"g14"}, {"g15"}}),
        constraintOf("c72", ConstraintType::equal, {{"g19"}, {"g18"}}),
        constraintOf("c78", ConstraintType::coincident, {{"g34", PlaceKind::end}, {"g0", PlaceKind::start}}),
        constraintOf("c80", ConstraintType::coincident, {{"g35", PlaceKind::end}, {"g16", PlaceKind::end}}),
        constraintOf("c81", ConstraintType::coincident, {{"g35", PlaceKind::start}, {"g2", PlaceKind::end}}),
        constraintOf("c83", ConstraintType::equal, {{"g35"}, {"g34"}}),
        constraintOf("c84", ConstraintType::tangent, {{"g0"}, {"g34"}}),
        constraintOf("c86", ConstraintType::tangent, {{"g35"}, {"g16"}}),
        constraintOf("c87", ConstraintType::symmetric,
                     {{"g35", PlaceKind::centre}, {"g34", PlaceKind::centre}, {"axis"}})};
    Session session(document);
    const EditResult& result = session.apply("drag g0.end by 3.175,0");
    ASSERT_EQ(result.outcome.error, "");
    EXPECT_EQ(result.outcome.shortfall, Shortfall{});
    EXPECT_NEAR(lineNamed(session, "g0").end.x, 0.325, 1e-9);
}

/// The base would have no length on its way over the axis, and the arc that the wall is tangent to turns over there.
TEST(DragEdit, GoesAllTheWayThatShorterOnesGo) {
    Document document;
    document.name = "wall";
    document.entities = {lineEntity("g0", {-4, -0.08}, {-4, -4.5}), lineEntity("g1", {-4, -4.5}, {4, -4.5}),
                         shapeEntity("g34", ArcShape{{-3.95, -0.08}, 0.05, 0.7845418936762839, 3.141592653589793}),
                         shapeEntity("axis", XlineShape{{0, 0}, {0, 1}})};
    document.entities.back().fixed = true;
    document.constraints = {
        constraintOf("c0", ConstraintType::vertical, {{"g0"}}),
        constraintOf("c1", ConstraintType::coincident, {{"g0", PlaceKind::end}, {"g1", PlaceKind::start}}),
        constraintOf("c49", ConstraintType::symmetric, {{"g0", PlaceKind::end}, {"g1", PlaceKind::end}, {"axis"}}),
        constraintOf("c79", ConstraintType::tangent, {{"g0", PlaceKind::start}, {"g34", PlaceKind::end}})};
    Session session(document);
    const EditResult& result = session.apply("drag g0.end by 4.42,0");
    ASSERT_EQ(result.outcome.error, "");
    EXPECT_EQ(result.outcome.shortfall, Shortfall{});
    EXPECT_NEAR(lineNamed(session, "g0").end.x, 0.42, 1e-9);
    EXPECT_NEAR(std::get<ArcShape>(session.drawing().shape("g34")).radius, 0.05, 0.05);
}

TEST(DragEdit, TellsByHowMuchItFallsShortAndWhatHoldsItBack) {
    Session session(levelDrawing());
    const EditOutcome outcome = session.apply("drag base.end by 3,2").outcome;
    EXPECT_NEAR(outcome.shortfall.by, 2.0, 1e-9);
    EXPECT_EQ(outcome.shortfall.heldBackBy, (std::vector<std::string>{"f0", "h0"}));
    EXPECT_EQ(outcome.remarks, (std::vector<std::string>{"ends 2 short of what was asked, held back by f0 (fixed "
                                                         "base.start), h0 (horizontal base)"}));
    EXPECT_EQ(session.apply("drag base.end by 3,0").outcome.shortfall, Shortfall{});
}

TEST(DragEdit, KeepsWhatHeldInADrawingThatContradictsItselfAndTellsTheRest) {
    Document document = levelDrawing();  // with two lengths for one line
    document.constraints.push_back(constraintOf("d80", ConstraintType::distance, {{"base"}}));
    document.constraints.push_back(constraintOf("d90", ConstraintType::distance, {{"base"}}));
    document.constraints.push_back(constraintOf("d40", ConstraintType::distance, {{"post"}}));
    document.constraints[3].value = 80.0;
    document.constraints[4].value = 90.0;
    document.constraints[5].value = 40.0;
    Session session(document);
    const EditOutcome outcome = session.apply("drag post.end by -10,-20").outcome;
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.shortfall.leftAlone, (std::vector<std::string>{"d90"}));
    EXPECT_EQ(outcome.remarks.back(), "did not hold before and is left as it was: d90 (distance base, 90)");
    const LineShape base = lineNamed(session, "base"), post = lineNamed(session, "post");
    EXPECT_NEAR(base.end.x, 80.0, 1e-9);
    EXPECT_NEAR(base.end.y, 0.0, 1e-9);
    EXPECT_NEAR(std::hypot(post.end.x - post.start.x, post.end.y - post.start.y), 40.0, 1e-8);
    EXPECT_LT(post.end.y, 40.0);
}

TEST(DragEdit, OfAConstrainedArcEndKeepsTheArcThroughItsOtherConstraints) {
    Document document;
    document.name = "bow";
    document.entities = {shapeEntity("bow", ArcShape{{0, 0}, 5, 0.0, 1.5707963267948966}),
                         lineEntity("low", {5, 0}, {9, 0})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"bow", PlaceKind::start}, {"low", PlaceKind::start}}),
        constraintOf("f0", ConstraintType::fixed, {{"low"}}),
        constraintOf("f1", ConstraintType::fixed, {{"bow", PlaceKind::start}})};
    Session session(document);
    EXPECT_EQ(session.apply("drag bow.end by 1,1").outcome.error, "");
    const auto& bow = std::get<ArcShape>(entityNamed(session.document(), "bow").shape);
    EXPECT_NEAR(bow.centre.x + bow.radius * std::cos(bow.endAngle), 1.0, 1e-7);
    EXPECT_NEAR(bow.centre.y + bow.radius * std::sin(bow.endAngle), 6.0, 1e-7);
    EXPECT_NEAR(bow.centre.x + bow.radius * std::cos(bow.startAngle), 5.0, 1e-7);
}

TEST(DragEdit, MovesFreeEntitiesAlongWithConstrainedOnes) {
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("mark", PointShape{{1, 1}}));
    Session session(document);
    EXPECT_EQ(session.apply("drag mark base left right by 1,1").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "mark").shape, Shape(PointShape{{2, 2}}));
    EXPECT_EQ(lineNamed(session, "base"), (LineShape{{1, 1}, {11, 1}}));
}

TEST(DragEdit, IsUndoneToTheLastBit) {
    Session session(crankDrawing());
    session.apply("drag rod.end by -7,3");
    ASSERT_NE(session.document(), crankDrawing());
    session.apply("undo");
    EXPECT_EQ(session.document(), crankDrawing());
}

TEST(DragEdit, TakesTheWholeEntityAlsoByThatWord) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("drag base.whole by 0,2").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 2}, {10, 2}}));
}

TEST(DragEdit, RefusesWithAReasonAndChangesNothing) {
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("beam", RayShape{{10, 5}, {1, 0}}));
    document.constraints.push_back(
        constraintOf("c4", ConstraintType::coincident, {{"beam", PlaceKind::start}, {"right", PlaceKind::end}}));
    document.entities.push_back(shapeEntity("bow", ArcShape{{0, 0}, 2, 0.0, 1.0}));
    document.entities.push_back(shapeEntity("dot", PointShape{{3, 3}}));
    const RefusedEdit rows[] = {
        {"drag base.centre by 1,1", "base.centre has no grip to drag; base can be dragged whole, start, end or mid"},
        {"drag bow.mid by 1,1", "bow.mid has no grip to drag; bow can be dragged whole, start, end or centre"},
        {"drag dot.start by 1,1", "dot.start has no grip to drag; dot can be dragged whole"},
        {"drag basis.end by 1,1",
         "edit \"drag basis.end by 1,1\", column 6: the drawing has no entity basis, found \"basis.end\""},
        {"drag beam.end by 1,1",
         "beam is constrained and cannot be turned by a drag; use \"set beam through\" with a point that it is to "
         "pass"},
        {"drag base by 1,1 steps 0",
         "edit \"drag base by 1,1 steps 0\", column 24: a drag takes 1 to 1000 steps, found \"0\""},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
