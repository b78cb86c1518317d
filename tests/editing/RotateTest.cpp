#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

TEST(RotateEdit, TurnsFreeEntitiesCounterClockwise) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("g", {1, 0}, {10, 0}), shapeEntity("a", ArcShape{{4, 0}, 2, 0.0, 1.0}),
                         shapeEntity("t", TextShape{{5, 0}, 0.0, 2.5, "here", false})};
    Session session(document);
    EXPECT_EQ(session.apply("rotate g a t about 0,0 by 90").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "g").shape, Shape(LineShape{{0, 1}, {0, 10}}));
    const auto& arc = std::get<ArcShape>(entityNamed(session.document(), "a").shape);
    EXPECT_EQ(arc.centre, (Vec2{0, 4}));
    EXPECT_DOUBLE_EQ(arc.startAngle, 1.5707963267948966);
    EXPECT_DOUBLE_EQ(arc.endAngle, 2.5707963267948966);
    EXPECT_DOUBLE_EQ(std::get<TextShape>(entityNamed(session.document(), "t").shape).rotation, 1.5707963267948966);
}

TEST(RotateEdit, TakesNeighboursAlongByTheAngleThatTheUserGave) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("rotate left about 0,0 by 90").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "left").shape, Shape(LineShape{{0, 0}, {-5, 0}}));
    EXPECT_EQ(entityNamed(after, "base").shape, Shape(LineShape{{0, 0}, {10, 0}}));
    EXPECT_EQ(constraintIds(after), "c0 c1 c2 c3");
}

/// Four lines and four arcs that run on into one another, and one radius that is given.
Document roundedRectangle() {
    Document document;
    document.name = "rounded";
    const double quarter = std::numbers::pi / 2.0;
    document.entities = {
        lineEntity("base", {5, 0}, {60, 0}),    shapeEntity("a", ArcShape{{60, 5}, 5, -quarter, 0.0}),
        lineEntity("right", {65, 5}, {65, 30}), shapeEntity("b", ArcShape{{60, 30}, 5, 0.0, quarter}),
        lineEntity("top", {60, 35}, {5, 35}),   shapeEntity("c", ArcShape{{5, 30}, 5, quarter, 2.0 * quarter}),
        lineEntity("left", {0, 30}, {0, 5}),    shapeEntity("d", ArcShape{{5, 5}, 5, 2.0 * quarter, 3.0 * quarter})};
    const std::size_t count = document.entities.size();
    for (std::size_t i = 0; i < count; ++i)
        document.constraints.push_back(constraintOf(
            "t" + std::to_string(i), ConstraintType::tangent,
            {{document.entities[i].id, PlaceKind::end}, {document.entities[(i + 1) % count].id, PlaceKind::start}}));
    for (const char* other : {"b", "c", "d"})
        document.constraints.push_back(constraintOf(std::string("e") + other, ConstraintType::equal, {{"a"}, {other}}));
    document.constraints.push_back(constraintOf("r", ConstraintType::radius, {{"a"}}));
    document.constraints.back().value = 5.0;
    return document;
}

TEST(RotateEdit, TurnsARoundedRectangleAlongWithOneOfItsLines) {
    for (const char* angle : {"60", "75", "90", "180", "270", "-100"})
        for (const char* centre : {"0,0", "32.5,0"}) {
            Session session(roundedRectangle());
            ASSERT_EQ(session.apply(std::string("rotate base about ") + centre + " by " + angle).outcome.error, "");
            const Document& after = session.document();
            EXPECT_EQ(after.constraints.size(), 12U) << angle;
            for (const char* arc : {"a", "b", "c", "d"}) {
                const auto& shape = std::get<ArcShape>(entityNamed(after, arc).shape);
                EXPECT_NEAR(shape.endAngle - shape.startAngle, std::numbers::pi / 2.0, 1e-9) << angle << ' ' << arc;
            }
            const auto& top = std::get<LineShape>(entityNamed(after, "top").shape);
            const auto& base = std::get<LineShape>(entityNamed(after, "base").shape);
            EXPECT_NEAR(norm(top.end - top.start), 55.0, 1e-8) << angle;
            EXPECT_NEAR(norm(top.end - base.start), 35.0, 1e-8) << angle;
        }
}

TEST(RotateEdit, FindsTheNetworkWhenAFreeEntityIsNamedFirst) {
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("mark", PointShape{{1, 0}}));
    Session session(document);
    EXPECT_EQ(session.apply("rotate mark right about 5,0 by 90").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "mark").shape, Shape(PointShape{{5, -4}}));
    EXPECT_EQ(entityNamed(after, "right").shape, Shape(LineShape{{5, 5}, {0, 5}}));
    const auto& base = std::get<LineShape>(entityNamed(after, "base").shape);
    EXPECT_NEAR(base.end.x, 5.0, 1e-9);
    EXPECT_NEAR(base.start.y, 5.0, 1e-9);
}

TEST(RotateEdit, ReleasesTheConstraintsThatTheAngleMakesFalse) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("rotate base left right about 0,0 by 30").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c3");
    const auto& base = std::get<LineShape>(entityNamed(session.document(), "base").shape);
    EXPECT_NEAR(base.end.x, 8.660254037844387, 1e-9);
    EXPECT_NEAR(base.end.y, 5.0, 1e-9);
}

TEST(RotateEdit, ReleasesWhatANeighbourCannotKeepThatHasToFollow) {
    Document document;
    document.name = "brace";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 0}, {10, 8}),
                         shapeEntity("p", PointShape{{10, 8}})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"a", PlaceKind::end}, {"b", PlaceKind::start}}),
        constraintOf("c1", ConstraintType::coincident, {{"b", PlaceKind::end}, {"p"}}),
        constraintOf("c2", ConstraintType::fixed, {{"p"}}),
        constraintOf("c3", ConstraintType::perpendicular, {{"a"}, {"b"}})};
    Session session(document);
    EXPECT_EQ(session.apply("rotate a about 0,0 by 30").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2");
    const auto& b = std::get<LineShape>(entityNamed(session.document(), "b").shape);
    EXPECT_NEAR(b.start.x, 8.660254037844387, 1e-9);
    EXPECT_NEAR(b.end.y, 8.0, 1e-9);
}

/// The other upright side hangs on the turned one by its level neighbours alone.
TEST(RotateEdit, ReleasesACornerOfARectangleRatherThanFlattenIt) {
    Document document = plateDrawing();
    std::erase_if(document.constraints, [](const Constraint& constraint) { return constraint.id == "f"; });
    Session session(document);
    EXPECT_EQ(session.apply("rotate right about 40,0 by 90.3").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3 h0 h1 v1");
    const LineShape left = lineOf(session, "left"), right = lineOf(session, "right");
    EXPECT_NEAR(distance(left.start, left.end), 20.0, 1e-8);
    EXPECT_NEAR(right.end.x, 40 - 20 * std::sin(90.3 * std::numbers::pi / 180), 1e-8);
}

TEST(RotateEdit, IsRefusedByAFixedConstraintOnWhatItTurns) {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"base"}}));
    document.constraints.push_back(constraintOf("f1", ConstraintType::fixed, {{"right", PlaceKind::end}}));
    const RefusedEdit rows[] = {
        {"rotate base about 0,0 by 20",
         "the constraints do not allow it: f0 (fixed base) stands in the way; delete one of them or choose another "
         "value"},
        {"rotate base right about 0,0 by 180",
         "the constraints do not allow it: f1 (fixed right.end) stands in the way; delete one of them or choose "
         "another value"},
        {"rotate base right about 10,5 by 90",
         "the constraints do not allow it: f0 (fixed base) stands in the way; delete one of them or choose another "
         "value"},
    };
    expectRefused(document, rows);
}

TEST(RotateEdit, TurnsWhatIsFixedAboutTheFixedPlace) {
    Document document;
    document.name = "wheel";
    document.entities = {shapeEntity("rim", ArcShape{{3, 4}, 2, 0.0, 1.0}), lineEntity("spoke", {3, 4}, {5, 4})};
    document.constraints = {constraintOf("f0", ConstraintType::fixed, {{"rim"}}),
                            constraintOf("f1", ConstraintType::fixed, {{"spoke", PlaceKind::start}})};
    Session session(document);
    EXPECT_EQ(session.apply("rotate rim spoke about 3,4 by 90").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "f0 f1");
    EXPECT_EQ(entityNamed(session.document(), "spoke").shape, Shape(LineShape{{3, 4}, {3, 6}}));
}

TEST(RotateEdit, LetsGoOfNeighboursThatCannotFollow) {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"base", PlaceKind::start}}));
    document.constraints.push_back(constraintOf("f1", ConstraintType::fixed, {{"base", PlaceKind::end}}));
    Session session(document);
    EXPECT_EQ(session.apply("rotate left about 0,-5 by 90").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c1 c2 c3 f0 f1");
    EXPECT_EQ(entityNamed(session.document(), "left").shape, Shape(LineShape{{-5, -5}, {-10, -5}}));
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {10, 0}}));
}

TEST(RotateEdit, LetsGoOfALinkageThatReachesToOtherAnglesOnly) {
    Document document;
    document.name = "linkage";
    document.entities = {lineEntity("crank", {0, 0}, {0, 5}), lineEntity("rod", {0, 5}, {-3, 9}),
                         lineEntity("arm", {-3, 9}, {-6, 5})};
    const auto five = [](const std::string& id, const std::string& name) {
        Constraint length = constraintOf(id, ConstraintType::distance, {{name}});
        length.value = 5.0;
        return length;
    };
    document.constraints = {
        constraintOf("tie", ConstraintType::coincident, {{"crank", PlaceKind::end}, {"rod", PlaceKind::start}}),
        constraintOf("knee", ConstraintType::coincident, {{"rod", PlaceKind::end}, {"arm", PlaceKind::start}}),
        constraintOf("pin", ConstraintType::fixed, {{"arm", PlaceKind::end}}), five("r5", "rod"), five("a5", "arm")};
    Session session(document);
    EXPECT_EQ(session.apply("rotate crank about 0,0 by 60").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "tie knee pin r5 a5");
    EXPECT_EQ(session.apply("rotate crank about 0,0 by -180").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "knee pin r5 a5");
}

TEST(HalfTurn, KeepsSignedMeasuresAmongTheTurned) {
    for (const char* edit : {"rotate base left about 0,0 by 180", "align base left from 0,0 1,0 to 0,0 -1,0"}) {
        Document document = frameDrawing();
        Constraint across =
            constraintOf("x", ConstraintType::distanceX, {{"left", PlaceKind::end}, {"base", PlaceKind::end}});
        across.value = 10.0;
        Constraint upright = constraintOf("d", ConstraintType::angle, {{"left"}});
        upright.value = 1.5707963267948966;
        document.constraints = {across, upright, document.constraints[0]};
        Session session(document);
        EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
        EXPECT_EQ(constraintIds(session.document()), "x d c0") << edit;
        EXPECT_EQ(session.document().constraints[0].value, -10.0) << edit;
        EXPECT_NEAR(session.document().constraints[1].value.value(), -1.5707963267948966, 1e-12) << edit;
        EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {-10, 0}})) << edit;
    }
}

TEST(RotateEdit, ByAFullTurnLeavesEverythingInPlace) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("rotate base left right about 3,7 by 360").outcome.error, "");
    EXPECT_EQ(session.document(), frameDrawing());
}

}  // namespace
}  // namespace holdfast::editing
