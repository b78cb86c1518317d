#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "editing/commands/values/Properties.h"
#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

struct Row {
    const char* edit;
    const char* entity;
    Property property;
    int index;
    PropertyValue value;
};

constexpr double kDegree = 3.141592653589793 / 180.0;

const Row kRows[] = {
    {"set line start 1,2", "line", Property::start, 0, {.point = {1, 2}}},
    {"set line end y 3", "line", Property::end, 0, {.point = {4, 3}}},
    {"set ray start 1,2", "ray", Property::start, 0, {.point = {1, 2}}},
    {"set ray angle -30", "ray", Property::direction, 0, {.number = -30 * kDegree}},
    {"set ray angle 30", "ray", Property::direction, 0, {.number = 30 * kDegree}},
    {"set ray through 3,3", "ray", Property::direction, 0, {.number = 45 * kDegree}},
    {"set xline through -3,3", "xline", Property::direction, 0, {.number = 135 * kDegree}},
    {"set xline angle -60", "xline", Property::direction, 0, {.number = -60 * kDegree}},
    {"set xline start x 5", "xline", Property::start, 0, {.point = {5, 0}}},
    {"set circle centre 3,4", "circle", Property::centre, 0, {.point = {3, 4}}},
    {"set circle radius 5", "circle", Property::radius, 0, {.number = 5}},
    {"set circle diameter 5", "circle", Property::diameter, 0, {.number = 5}},
    {"set circle circumference 5", "circle", Property::circumference, 0, {.number = 5}},
    {"set circle area 5", "circle", Property::area, 0, {.number = 5}},
    {"set arc centre 3,4", "arc", Property::centre, 0, {.point = {3, 4}}},
    {"set arc radius 5", "arc", Property::radius, 0, {.number = 5}},
    {"set arc start_angle 20", "arc", Property::startAngle, 0, {.number = 20 * kDegree}},
    {"set arc end_angle 120", "arc", Property::endAngle, 0, {.number = 120 * kDegree}},
    {"set ellipse centre 3,4", "ellipse", Property::centre, 0, {.point = {3, 4}}},
    {"set ellipse major_radius 5", "ellipse", Property::majorRadius, 0, {.number = 5}},
    {"set ellipse minor_radius 1", "ellipse", Property::minorRadius, 0, {.number = 1}},
    {"set ellipse ratio 0.75", "ellipse", Property::ratio, 0, {.number = 0.75}},
    {"set oval centre 3,4", "oval", Property::centre, 0, {.point = {3, 4}}},
    {"set oval major_radius 5", "oval", Property::majorRadius, 0, {.number = 5}},
    {"set oval minor_radius 1", "oval", Property::minorRadius, 0, {.number = 1}},
    {"set oval start_angle 20", "oval", Property::startAngle, 0, {.number = 20 * kDegree}},
    {"set oval end_angle 120", "oval", Property::endAngle, 0, {.number = 120 * kDegree}},
    {"set point position 3,4", "point", Property::position, 0, {.point = {3, 4}}},
    {"set text position 3,4", "text", Property::position, 0, {.point = {3, 4}}},
    {"set text rotation 30", "text", Property::rotation, 0, {.number = 30 * kDegree}},
    {"set text height 5", "text", Property::height, 0, {.number = 5}},
    {"set mtext height 0.5", "mtext", Property::height, 0, {.number = 0.5}},
    {"set mtext position 3,4", "mtext", Property::position, 0, {.point = {3, 4}}},
    {"set mtext rotation -30", "mtext", Property::rotation, 0, {.number = -30 * kDegree}},
    {"set poly vertex 1 5,1", "poly", Property::vertex, 1, {.point = {5, 1}}},
    {"set spline control 1 3,5", "spline", Property::control, 1, {.point = {3, 5}}},
};

/// What every row has to come to, whoever moves the entity.
void expectValue(const Session& session, const Row& row) {
    const PropertyValue now = propertyOf(entityNamed(session.document(), row.entity).shape, row.property, row.index);
    if (row.value.number == 0.0) {
        EXPECT_NEAR(now.point.x, row.value.point.x, 1e-9) << row.edit;
        EXPECT_NEAR(now.point.y, row.value.point.y, 1e-9) << row.edit;
    } else {
        EXPECT_NEAR(now.number, row.value.number, 1e-9) << row.edit;
    }
}

TEST(SetEdit, GivesAFreeEntityEveryProperty) {
    for (const Row& row : kRows) {
        Session session(kindsDrawing());
        EXPECT_EQ(session.apply(row.edit).outcome.error, "") << row.edit;
        expectValue(session, row);
    }
}

TEST(SetEdit, GivesAConstrainedEntityEveryPropertyAndTakesWhatIsTiedToItAlong) {
    for (const Row& row : kRows) {
        Session session(heldDrawing());
        EXPECT_EQ(session.apply(row.edit).outcome.error, "") << row.edit;
        expectValue(session, row);
        EXPECT_EQ(session.document().constraints, heldDrawing().constraints) << row.edit;
    }
}

/// Two rims about one centre, and between them the rounded ends of the sector, which lie on the inner rim or end in it.
Document ringSector(bool endsInInnerRim) {
    constexpr double outer = 35.5, inner = 32.0, round = 10.0, pi = std::numbers::pi;
    const double farther = 2.0 * std::asin(0.5 * round / outer);
    const double nearer = std::acos((inner * inner + outer * outer - round * round) / (2.0 * inner * outer));
    const auto seen = [&](double radius, double angle) {
        return std::atan2(radius * std::sin(angle), outer - radius * std::cos(angle));
    };
    Document document;
    document.name = "sector";
    document.entities = {shapeEntity("outer", ArcShape{{0, 0}, outer, pi - farther, pi + farther}),
                         shapeEntity("inner", ArcShape{{0, 0}, inner, pi - nearer, pi + nearer}),
                         shapeEntity("low", ArcShape{{-outer, 0}, round, -seen(outer, farther), -seen(inner, nearer)}),
                         shapeEntity("high", ArcShape{{-outer, 0}, round, seen(inner, nearer), seen(outer, farther)})};
    const ConstraintType tie = endsInInnerRim ? ConstraintType::coincident : ConstraintType::pointOnCurve;
    const PlaceKind first = endsInInnerRim ? PlaceKind::start : PlaceKind::whole;
    const PlaceKind second = endsInInnerRim ? PlaceKind::end : PlaceKind::whole;
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"outer", PlaceKind::start}, {"high", PlaceKind::end}}),
        constraintOf("c1", ConstraintType::coincident, {{"outer", PlaceKind::end}, {"low", PlaceKind::start}}),
        constraintOf("c2", ConstraintType::concentric, {{"outer", PlaceKind::centre}, {"inner", PlaceKind::centre}}),
        constraintOf("c3", tie, {{"high", PlaceKind::start}, {"inner", first}}),
        constraintOf("c4", tie, {{"low", PlaceKind::end}, {"inner", second}}),
        constraintOf("c5", ConstraintType::concentric, {{"low", PlaceKind::centre}, {"high", PlaceKind::centre}}),
        constraintOf("c6", ConstraintType::equal, {{"low"}, {"high"}})};
    return document;
}

/// The ends lie on the inner rim, which a mark on an axis belongs to.
Document markedSector() {
    Document document = ringSector(false);
    document.entities.push_back(lineEntity("mark", {-31.5, 0}, {-32, 0}));
    document.entities.push_back(shapeEntity("axis", XlineShape{{0, 0}, {1, 0}}));
    document.entities.back().fixed = true;
    const Place end{"mark", PlaceKind::end};
    document.constraints.push_back(constraintOf("m0", ConstraintType::pointOnCurve, {end, {"inner"}}));
    document.constraints.push_back(constraintOf("m1", ConstraintType::horizontal, {{"mark"}}));
    document.constraints.push_back(constraintOf("m2", ConstraintType::pointOnCurve, {end, {"axis"}}));
    document.constraints.push_back(constraintOf("m3", ConstraintType::distance, {{"mark"}}));
    document.constraints.back().value = 0.5;
    return document;
}

double sweepOf(const Document& document, const char* name) {
    const auto arc = std::get<ArcShape>(entityNamed(document, name).shape);
    return arc.endAngle - arc.startAngle;
}

/// The inner rim would have to keep its radius until the rounded ends of the sector have come to nothing.
TEST(SetEdit, KeepsTheEndsOfARingSectorThatBecomesSmaller) {
    Session session(ringSector(true));
    EXPECT_EQ(errorOf(session, "set outer radius 17.75"), "");
    EXPECT_NEAR(sweepOf(session.document(), "low"), sweepOf(ringSector(true), "low"), 0.02);
    EXPECT_NEAR(std::get<ArcShape>(entityNamed(session.document(), "low").shape).radius, 10.0, 0.1);
}

/// A radius is asked for, and not that its arc comes to nothing.
TEST(SetEdit, OfARadiusLeavesSomethingOfTheArc) {
    Session session(markedSector());
    EXPECT_EQ(errorOf(session, "set outer radius 17.75"), "");
    EXPECT_GE(sweepOf(session.document(), "outer"), 0.01 * sweepOf(markedSector(), "outer"));
}

/// Beneath the arch of a hood the right jamb becomes shorter, and would run back on the curve that it continues before
/// the radius of the left one is reached; the arch can rise instead. It leans a little, as drawings of few digits do.
TEST(SetEdit, RaisesAnArchBeforeALineRunsBackOnTheArcThatItContinues) {
    constexpr double turn = 2 * std::numbers::pi, lean = 5e-6;
    const double foot = std::atan2(3.0, 4.0);
    Document hood;
    hood.name = "hood";
    hood.entities = {lineEntity("low", {-4, -3}, {4, -3}),
                     lineEntity("left", {-5, 0}, {-5, 2.5}),
                     lineEntity("right", {5, 0}, {5, 2.5 - 5 * lean}),
                     shapeEntity("leftBend", ArcShape{{0, 0}, 5, 0.5 * turn, 0.5 * turn + foot}),
                     shapeEntity("rightBend", ArcShape{{0, 0}, 5, turn - foot, turn}),
                     shapeEntity("arch", ArcShape{{0, 2.5}, 5, turn - lean, 1.5 * turn}),
                     shapeEntity("origin", PointShape{{0, 0}}),
                     shapeEntity("xAxis", XlineShape{{0, 0}, {1, 0}}),
                     shapeEntity("yAxis", XlineShape{{0, 0}, {0, 1}})};
    for (std::size_t axis = 6; axis < 9; ++axis)
        hood.entities[axis].fixed = true;
    const Place leftFoot{"left", PlaceKind::start}, rightFoot{"right", PlaceKind::start};
    hood.constraints = {
        constraintOf("c1", ConstraintType::vertical, {{"left"}}),
        constraintOf("c2", ConstraintType::vertical, {{"right"}}),
        constraintOf("c3", ConstraintType::coincident, {{"leftBend", PlaceKind::centre}, {"origin"}}),
        constraintOf("c4", ConstraintType::coincident, {{"leftBend", PlaceKind::end}, {"low", PlaceKind::start}}),
        constraintOf("c5", ConstraintType::coincident, {{"leftBend", PlaceKind::start}, leftFoot}),
        constraintOf("c6", ConstraintType::concentric,
                     {{"rightBend", PlaceKind::centre}, {"leftBend", PlaceKind::centre}}),
        constraintOf("c7", ConstraintType::coincident, {{"rightBend", PlaceKind::end}, rightFoot}),
        constraintOf("c8", ConstraintType::coincident, {{"rightBend", PlaceKind::start}, {"low", PlaceKind::end}}),
        constraintOf("c9", ConstraintType::pointOnCurve, {{"arch", PlaceKind::centre}, {"yAxis"}}),
        constraintOf("c10", ConstraintType::coincident, {{"arch", PlaceKind::end}, {"left", PlaceKind::end}}),
        constraintOf("c11", ConstraintType::coincident, {{"arch", PlaceKind::start}, {"right", PlaceKind::end}}),
        constraintOf("c12", ConstraintType::tangent, {{"left"}, {"arch"}}),
        constraintOf("c13", ConstraintType::pointOnCurve, {leftFoot, {"xAxis"}}),
        constraintOf("c14", ConstraintType::pointOnCurve, {rightFoot, {"xAxis"}})};
    Session session(hood);
    EXPECT_EQ(errorOf(session, "set leftBend radius 7.5"), "");
    const auto& right = std::get<LineShape>(entityNamed(session.document(), "right").shape);
    EXPECT_GT(right.end.y - right.start.y, 0.01 * 2.5);
}

TEST(SetEdit, IsRefusedByTheConstraintsInItsWay) {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"left", PlaceKind::start}}));
    Session session(document);
    const std::string error = session.apply("set base end 12,3").outcome.error;
    EXPECT_NE(error.find("c2 (horizontal base)"), std::string::npos) << error;
    EXPECT_EQ(session.document(), document);
}

TEST(SetEdit, LetsAFixedLineSlideAlongItselfOnly) {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"base"}}));
    Session session(document);
    EXPECT_EQ(session.apply("set base end 12,1").outcome.error,
              "base carries a fixed constraint, so its points can only slide along it; give a point on its line, or "
              "delete the constraint");
    EXPECT_EQ(session.apply("set base end 12,0").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {12, 0}}));
}

TEST(SetEdit, TurnsARayClockwiseWhereItCannotTurnTheOtherWay) {
    // The ray from the origin passes through p, which is 4 away from a fixed point below it.
    Document document;
    document.name = "crank";
    document.entities = {shapeEntity("r", RayShape{{0, 0}, {10, -2}}), shapeEntity("p", PointShape{{10, -2}}),
                         shapeEntity("hub", PointShape{{10, -6}})};
    Constraint arm = constraintOf("arm", ConstraintType::distance, {{"p"}, {"hub"}});
    arm.value = 4.0;
    document.constraints = {constraintOf("on", ConstraintType::pointOnCurve, {{"p"}, {"r"}}),
                            constraintOf("base", ConstraintType::fixed, {{"r", PlaceKind::start}}),
                            constraintOf("still", ConstraintType::fixed, {{"hub"}}), arm};
    Session session(document);
    EXPECT_EQ(session.apply("set r angle -45").outcome.error, "");
    const auto& ray = std::get<RayShape>(entityNamed(session.document(), "r").shape);
    EXPECT_NEAR(std::atan2(ray.direction.y, ray.direction.x), -std::numbers::pi / 4, 1e-9);
    const Vec2 p = std::get<PointShape>(entityNamed(session.document(), "p").shape).position;
    EXPECT_NEAR(p.x + p.y, 0.0, 1e-7);
    EXPECT_NEAR(std::hypot(p.x - 10, p.y + 6), 4.0, 1e-7);
}

TEST(SetEdit, IsUndoneToTheLastBit) {
    Session session(frameDrawing());
    session.apply("set left end 1,7");
    ASSERT_NE(session.document(), frameDrawing());
    session.apply("undo");
    EXPECT_EQ(session.document(), frameDrawing());
}

TEST(SetEdit, TellsTheDirectionOfAConstructionLineAsAPointFromItsBase) {
    Document document;
    document.name = "guide";
    document.entities = {shapeEntity("guide", XlineShape{{3, 7}, {1, 0}})};
    document.constraints = {constraintOf("c0", ConstraintType::fixed, {{"guide"}})};
    Session session(document);
    EXPECT_EQ(session.apply("set guide angle 180").outcome.error, "");
    EXPECT_NE(session.apply("set guide angle 10").outcome.error.find("guide carries a fixed constraint"),
              std::string::npos);
}

TEST(SetEdit, RefusesWithAReasonAndChangesNothing) {
    const RefusedEdit rows[] = {
        {"set circle radius -3",
         "nothing proper would be left of circle: its radius would be -3.0; it takes a radius above 0"},
        {"set line end 0,0",
         "nothing proper would be left of line: line: start and end are the same point; give two different ones"},
        {"set text height 0",
         "nothing proper would be left of text: its height would be 0.0; it takes a height above 0"},
        {"set circle radus 3",
         "edit \"set circle radus 3\", column 12: expected a property of circle (centre, radius, diameter, "
         "circumference or area), found \"radus\"; did you mean \"radius\"?"},
        {"set poly vertex 3 1,1",
         "edit \"set poly vertex 3 1,1\", column 17: expected a number from 0 to 2, found \"3\""},
        {"set line start 3",
         "edit \"set line start 3\", column 16: expected the new point, a point such as 4,0.5 "
         "without spaces, found \"3\""},
    };
    expectRefused(kindsDrawing(), rows);
}

}  // namespace
}  // namespace holdfast::editing
