// Dimensions that get another value, are added, measured and deleted.

#include <gtest/gtest.h>

#include <cmath>

#include "document/Names.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// A rectangle of 40 by 20 with one corner at the origin, of which both sides have a length.
Document plate() {
    Document document = plateDrawing();
    Constraint width = constraintOf("w", ConstraintType::distance, {{"bottom"}});
    width.value = 40.0;
    width.name = "width";
    document.constraints.push_back(width);
    return document;
}

TEST(SetDimension, MovesWhatHangsOnItAndNothingElse) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "set w 24"), "");
    EXPECT_EQ(*constraintNamed(session.document(), "w").value, 24.0);
    EXPECT_EQ(lineOf(session, "left"), (LineShape{{0, 20}, {0, 0}}));
    EXPECT_NEAR(lineOf(session, "right").start.x, 24.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "right").end.y, 20.0, 1e-9);
}

TEST(SetDimension, FindsItByTheNameThatItsAuthorGave) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "set width 30"), "");
    EXPECT_EQ(*constraintNamed(session.document(), "w").value, 30.0);
}

TEST(SetDimension, IsTakenBackByUndo) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "set w 24"), "");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(session.document(), plate());
}

TEST(SetDimension, TellsTheValueBeforeAndAfter) {
    Session session(plate());
    const EditResult& result = session.apply("set w 24");
    ASSERT_EQ(result.fates.constraints.size(), 1u);
    EXPECT_EQ(result.fates.constraints[0].fate, ConstraintFate::changed);
    EXPECT_EQ(result.fates.constraints[0].reason, "40 -> 24");
}

TEST(SetDimension, TakesAnglesInDegrees) {
    Document document;
    document.name = "angle";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {0, 0}, {10, 10})};
    document.constraints = {
        constraintOf("f", ConstraintType::fixed, {{"a"}}),
        constraintOf("c", ConstraintType::coincident, {{"a", PlaceKind::start}, {"b", PlaceKind::start}})};
    Session session(document);
    EXPECT_EQ(errorOf(session, "constrain angle a b as open"), "");
    EXPECT_NEAR(*constraintNamed(session.document(), "open").value, 0.7853981633974483, 1e-12);
    EXPECT_EQ(errorOf(session, "set open 30"), "");
    const LineShape b = lineOf(session, "b");
    const double dx = b.end.x - b.start.x, dy = b.end.y - b.start.y;
    EXPECT_NEAR(std::atan2(dy, dx), 0.5235987755982988, 1e-9);
    EXPECT_NEAR(std::hypot(dx, dy), std::sqrt(200.0), 1e-9);
}

TEST(SetDimension, IsRefusedWithWhatStandsInTheWay) {
    const RefusedEdit rows[] = {
        {"set w -3", "w cannot be -3.0; give a distance of 0 or more; distance_x and distance_y have signs"},
        {"set v 3", "edit \"set v 3\", column 5: the drawing has no constraint v, found \"v\"; did you mean \"f\"?"},
        {"set h0 3",
         "edit \"set h0 3\", column 5: h0 is no dimension (horizontal); only dimensions have values, found \"h0\""},
        {"set bottom 3",
         "edit \"set bottom 3\", column 5: bottom is an entity; say which property of it to set, or name a dimension, "
         "found \"bottom\""},
    };
    expectRefused(plate(), rows);
}

TEST(SetDriving, MeasuresAndDrivesAgain) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "set w measured"), "");
    EXPECT_FALSE(constraintNamed(session.document(), "w").driving);
    EXPECT_EQ(errorOf(session, "drag right by 5,0"), "");
    EXPECT_NEAR(*constraintNamed(session.document(), "w").value, 45.0, 1e-9);
    EXPECT_EQ(errorOf(session, "set w 50"), "w is measured and follows the drawing; say \"set w driving\" first");
    EXPECT_EQ(errorOf(session, "set w driving"), "");
    EXPECT_EQ(errorOf(session, "set w 50"), "");
    EXPECT_NEAR(lineOf(session, "top").start.x, 50.0, 1e-9);
}

TEST(Constrain, MovesTheDrawingAsLittleAsItTakes) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("a", {0, 0}, {10, 1}), lineEntity("b", {0, 5}, {10, 5})};
    Session session(document);
    EXPECT_EQ(errorOf(session, "constrain horizontal a as level"), "");
    EXPECT_EQ(constraintIds(session.document()), "level");
    const LineShape a = lineOf(session, "a");
    EXPECT_NEAR(a.start.y, a.end.y, 1e-9);
    EXPECT_EQ(lineOf(session, "b"), (LineShape{{0, 5}, {10, 5}}));
}

TEST(Constrain, KeepsTheLengthOfWhatItTurns) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("a", {0, 0}, {3, 4})};
    Session session(document);
    EXPECT_EQ(errorOf(session, "constrain horizontal a"), "");
    const LineShape a = lineOf(session, "a");
    EXPECT_NEAR(std::abs(a.end.x - a.start.x), 5.0, 1e-9);
}

TEST(Constrain, TakesADimensionAtWhatItMeasuresWhereNoValueIsGiven) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "constrain distance right as height"), "");
    EXPECT_EQ(*constraintNamed(session.document(), "height").value, 20.0);
    EXPECT_EQ(session.document().entities, plate().entities);
}

TEST(Constrain, LeadsADimensionToItsValue) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "constrain distance right 35 as height"), "");
    EXPECT_NEAR(lineOf(session, "top").end.y, 35.0, 1e-9);
}

TEST(Constrain, TellsALengthWithoutASignTheWayItIsDrawn) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "constrain distance_y top.start bottom.start 25 as height"), "");
    const Constraint& height = constraintNamed(session.document(), "height");
    EXPECT_EQ(*height.value, 25.0);
    EXPECT_EQ(spokenPlace(height.refs.front()), "bottom.start");
    EXPECT_NEAR(lineOf(session, "top").start.y, 25.0, 1e-9);
}

TEST(Constrain, IsRefusedWhereItFollowsAlready) {
    const RefusedEdit rows[] = {
        {"constrain parallel bottom top",
         "this parallel follows already from h0 (horizontal bottom), h1 (horizontal top); it would be redundant, "
         "nothing was added"},
        {"constrain distance top 60",
         "this distance is 40 and follows already from c0 (coincident bottom.end right.start), c1 (coincident "
         "right.end "
         "top.start), c2 (coincident top.end left.start), c3 (coincident left.end bottom.start), h0 (horizontal "
         "bottom), v0 (vertical right), h1 (horizontal top), v1 (vertical left), w (distance bottom, 40); add "
         "\"anyway\" for a dimension that measures, or delete one of them first"},
    };
    expectRefused(plate(), rows);
}

TEST(Constrain, IsRefusedBetweenPlacesThatMayNotMove) {
    Document document;
    document.name = "datum";
    document.entities = {shapeEntity("p", PointShape{{0, 0}}), shapeEntity("q", PointShape{{5, 0}})};
    for (Entity& entity : document.entities)
        entity.fixed = true;
    const RefusedEdit rows[] = {
        {"constrain distance p q",
         "this distance is 5 and holds already, between what may not move; add \"anyway\" for a dimension that "
         "measures"},
        {"constrain horizontal p q",
         "this horizontal holds already, between what may not move; it would be redundant, nothing was added"},
    };
    expectRefused(document, rows);
}

TEST(Delete, PointsToErase) {
    const RefusedEdit rows[] = {{"delete top",
                                 "edit \"delete top\", column 8: top is an entity, not a constraint; \"erase\" takes "
                                 "entities, found \"top\""}};
    expectRefused(plate(), rows);
}

TEST(Constrain, MeasuresAnywayWhatFollowsAlready) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "constrain distance top 60 anyway as also"), "");
    EXPECT_FALSE(constraintNamed(session.document(), "also").driving);
    EXPECT_EQ(*constraintNamed(session.document(), "also").value, 40.0);
}

TEST(Constrain, IsRefusedWhereItContradicts) {
    Session session(plate());
    EXPECT_EQ(errorOf(session, "constrain vertical bottom as v"),
              "the constraints do not allow the new vertical bottom: h0 (horizontal bottom) stands in the way; delete "
              "it");
    EXPECT_EQ(session.document(), plate());
}

TEST(Constrain, SaysWhatAKindTakes) {
    const RefusedEdit rows[] = {
        {"constrain horizontal",
         "edit \"constrain horizontal\": expected a place to constrain, but the edit ends there"},
        {"constrain distance_x 6",
         "edit \"constrain distance_x 6\", column 22: the drawing has no entity 6, found \"6\""},
        {"constrain radius bottom 3", "found radius of line \"bottom\"; expected radius takes one whole circle or arc"},
        {"constrain horizontal bottm",
         "edit \"constrain horizontal bottm\", column 22: the drawing has no entity bottm, found \"bottm\"; did you "
         "mean "
         "\"bottom\"?"},
        {"constrain horizontl bottom",
         "edit \"constrain horizontl bottom\", column 11: expected a kind of constraint (coincident, concentric, "
         "point_on_curve, fixed, horizontal, vertical, parallel, perpendicular, collinear, tangent, equal, symmetric, "
         "midpoint, g2_smooth, distance, distance_x, distance_y, radius, diameter or angle), found \"horizontl\"; did "
         "you mean \"horizontal\"?"},
        {"constrain horizontal bottom anyway", "horizontal is no dimension: it takes neither a value nor \"anyway\""},
    };
    expectRefused(plate(), rows);
}

TEST(Delete, TakesConstraintsAndMovesNothing) {
    Session session(plate());
    const EditResult& result = session.apply("delete w h0");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 f v0 h1 v1");
    EXPECT_EQ(session.document().entities, plate().entities);
    EXPECT_EQ(result.fates.constraints.at(0).reason, "deleted as asked");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(session.document(), plate());
}

TEST(Delete, TakesWhatIsSwitchedOffToo) {
    Document document = plate();
    document.constraints.back().active = false;
    Session session(document);
    EXPECT_EQ(errorOf(session, "delete w"), "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 f h0 v0 h1 v1");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(session.document(), document);
}

TEST(Erase, TakesTheConstraintsOnTheEntityAlong) {
    Session session(plate());
    const EditResult& result = session.apply("erase top");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c3 f h0 v0 v1 w");
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        EXPECT_EQ(outcome.reason, "top was erased");
    EXPECT_EQ(errorOf(session, "undo"), "");
    EXPECT_EQ(session.document(), plate());
}

TEST(Draw, AddsEveryKindOfEntity) {
    Document document;
    document.name = "empty";
    Session session(document);
    const struct {
        const char* edit;
        const char* name;
        Shape shape;
    } rows[] = {
        {"draw line 0,0 10,0 as rib", "rib", LineShape{{0, 0}, {10, 0}}},
        {"draw circle 5,5 radius 2", "circle1", CircleShape{{5, 5}, 2}},
        {"draw arc centre 0,0 from 2,0 to 0,5 as a", "a", ArcShape{{0, 0}, 2, 0, std::atan2(1.0, 0.0)}},
        {"draw polyline 0,0 10,0 bulge 1 10,5 closed as p", "p",
         PolylineShape{{{0, 0}, {10, 0}, {10, 5}}, {0, 1, 0}, {0, 0, 0}, true}},
        {"draw point 3,4 as q", "q", PointShape{{3, 4}}},
        {"draw ellipse 0,0 major 4,0 ratio 0.5 as e", "e", EllipseShape{{0, 0}, {4, 0}, 0.5}},
        {"draw spline 0,0 1,2 3,2 4,0 as s", "s",
         SplineShape{3, false, {{0, 0}, {1, 2}, {3, 2}, {4, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}}},
        {"draw ray 0,0 through 2,0 as r", "r", RayShape{{0, 0}, {1, 0}}},
        {"draw xline 0,0 through 0,3 as x", "x", XlineShape{{0, 0}, {0, 1}}},
        {"draw text \"A b\" at 1,1 height 3 as t", "t", TextShape{{1, 1}, 0, 3, "A b", false}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(errorOf(session, row.edit), "");
        EXPECT_EQ(entityNamed(session.document(), row.name).shape, row.shape) << row.edit;
    }
    EXPECT_EQ(errorOf(session, "draw line 0,0 1,1 construction as help"), "");
    EXPECT_TRUE(entityNamed(session.document(), "help").construction);
}

TEST(Draw, IsRefusedForWhatIsNoShapeAndForATakenName) {
    const RefusedEdit rows[] = {
        {"draw line 0,0 1,1 as top",
         "edit \"draw line 0,0 1,1 as top\", column 22: the drawing has an entity top already; choose another name, "
         "found \"top\""},
        {"draw spline 0,0 1,1 2,2", "a spline of degree 3 takes 4 control points or more"},
        {"draw arc centre 0,0 from 0,0 to 1,1", "an arc cannot begin or end in its centre; give other points"},
        {"draw ray 1,1 through 1,1", "a line without an end needs two different points"},
    };
    expectRefused(plate(), rows);
    for (const char* edit : {"draw line 1,1 1,1", "draw circle 0,0 radius 0", "draw circle 0,0 radius -1",
                             "draw ellipse 0,0 major 0,0 ratio 1", "draw ellipse 0,0 major 1,0 ratio 2",
                             "draw text \"\" at 0,0 height 0"}) {
        Session session(plate());
        EXPECT_NE(session.apply(edit).outcome.error, "") << edit;
        EXPECT_EQ(session.document(), plate()) << edit;
    }
}

TEST(Draw, GoesOnToBeConstrainedAndEdited) {
    Document document;
    document.name = "empty";
    Session session(document);
    for (const char* edit : {"draw line 0,0 10,0 as a", "draw line 10,0 10,6 as b",
                             "constrain coincident a.end b.start", "constrain horizontal a", "constrain vertical b",
                             "constrain distance a 12", "fillet a b radius 2", "undo", "erase b", "undo"})
        EXPECT_EQ(errorOf(session, edit), "") << edit;
    EXPECT_NEAR(lineOf(session, "b").start.x, lineOf(session, "a").end.x, 1e-9);
    EXPECT_EQ(session.document().constraints.size(), 4u);
}

}  // namespace
}  // namespace holdfast::editing
