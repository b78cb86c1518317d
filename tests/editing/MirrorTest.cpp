#include <gtest/gtest.h>

#include <numbers>

#include "geometry/Angles.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

/// An arc with a line tied to either end, which lies free otherwise.
Document bowDrawing() {
    Document document;
    document.name = "bow";
    document.entities = {shapeEntity("bow", ArcShape{{5, 0}, 2, 0.0, 1.5707963267948966}),
                         lineEntity("low", {7, 0}, {12, 0}), lineEntity("high", {5, 2}, {5, 9})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"bow", PlaceKind::start}, {"low", PlaceKind::start}}),
        constraintOf("c1", ConstraintType::coincident, {{"bow", PlaceKind::end}, {"high", PlaceKind::start}})};
    return document;
}

TEST(MirrorEdit, ReflectsFreeEntitiesOfEveryKind) {
    Document document;
    document.name = "free";
    document.entities = {lineEntity("g", {1, 0}, {4, 2}), shapeEntity("c", CircleShape{{3, 1}, 1}),
                         shapeEntity("p", PointShape{{2, 2}}), shapeEntity("r", RayShape{{1, 1}, {1, 0}}),
                         shapeEntity("x", XlineShape{{1, 1}, {0, 1}})};
    Session session(document);
    EXPECT_EQ(session.apply("mirror g c p r x about 0,0 0,1").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "g").shape, Shape(LineShape{{-1, 0}, {-4, 2}}));
    EXPECT_EQ(entityNamed(session.document(), "c").shape, Shape(CircleShape{{-3, 1}, 1}));
    EXPECT_EQ(entityNamed(session.document(), "p").shape, Shape(PointShape{{-2, 2}}));
    EXPECT_EQ(entityNamed(session.document(), "r").shape, Shape(RayShape{{-1, 1}, {-1, 0}}));
    EXPECT_EQ(entityNamed(session.document(), "x").shape, Shape(XlineShape{{-1, 1}, {0, 1}}));
}

TEST(MirrorEdit, LeavesTheOriginalsWhenToldToKeepThem) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("mirror base left about 0,-1 1,-1 keep").outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 5u);
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {10, 0}}));
    EXPECT_EQ(session.document().entities[3].shape, Shape(LineShape{{0, -2}, {10, -2}}));
    EXPECT_EQ(session.document().entities[4].shape, Shape(LineShape{{0, -2}, {0, -7}}));
}

TEST(MirrorEdit, IsRefusedWhereANeighbourWouldBeLeftWithoutALength) {
    Document document = frameDrawing();
    document.entities[1].shape = LineShape{{0, 0}, {0, 9}};
    document.constraints.back() = constraintOf("f", ConstraintType::fixed, {{"right", PlaceKind::end}});
    Session session(document);
    EXPECT_EQ(errorOf(session, "mirror base about 0,2.49 1,2.49"),
              "the constraints cannot be solved after it: line right would shrink to next to nothing");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, entityNamed(document, "base").shape);
    EXPECT_EQ(errorOf(session, "mirror base about 0,2.4 1,2.4"), "");
}

TEST(MirrorCopy, CarriesTheConstraintsThatHoldAmongTheOriginals) {
    Session session(frameDrawing());
    session.apply("mirror base left about 0,-1 1,-1 keep");
    EXPECT_EQ(placesOf(session),
              "c0 base.start left.start; c1 base.end right.start; c2 base; c3 left right; "
              "k5 base_2.start left_2.start; k6 base_2");
    session.apply("drag base_2 by 0,-3");
    EXPECT_EQ(entityNamed(session.document(), "left_2").shape, Shape(LineShape{{0, -5}, {0, -10}}));
}

TEST(MirrorCopy, OfALevelLineIsUprightOrNeither) {
    struct Row {
        const char* edit;
        const char* constraints;
    };
    const Row rows[] = {{"mirror base about 0,0 0,1 keep", "c0 c1 c2 c3 k5 horizontal"},
                        {"mirror base about 0,0 1,1 keep", "c0 c1 c2 c3 k5 vertical"},
                        {"mirror base about 0,0 3,1 keep", "c0 c1 c2 c3"}};
    for (const Row& row : rows) {
        Session session(frameDrawing());
        EXPECT_EQ(session.apply(row.edit).outcome.error, "");
        const Constraint& last = session.document().constraints.back();
        const std::string type = last.id == "k5" ? " " + std::string(typeName(last.type)) : "";
        EXPECT_EQ(constraintIds(session.document()) + type, row.constraints) << row.edit;
    }
}

TEST(MirrorCopy, StartsWhereItsArcEnds) {
    Session session(bowDrawing());
    session.apply("mirror bow low high about 0,0 0,1 keep");
    EXPECT_EQ(placesOf(session),
              "c0 bow.start low.start; c1 bow.end high.start; k3 bow_2.end low_2.start; k4 bow_2.start high_2.start");
}

TEST(MirrorCopy, TakesSignedMeasuresTheOtherWayRound) {
    Document document = frameDrawing();
    using enum ConstraintType;
    document.constraints = {
        valued(constraintOf("x", distanceX, {{"base", PlaceKind::start}, {"base", PlaceKind::end}}), 10),
        valued(constraintOf("a", angle, {{"base"}, {"left"}}), kQuarterTurn),
        valued(constraintOf("d", angle, {{"base"}}), 0), constraintOf("held", fixed, {{"base"}})};
    Session session(document);
    EXPECT_EQ(session.apply("mirror base left about 0,0 0,1 keep").outcome.error, "");
    EXPECT_EQ(placesOf(session),
              "x base.start base.end; a base left; d base; held base; "
              "k5 base_2.end base_2.start; k6 left_2 base_2; k7 base_2");
    EXPECT_EQ(session.document().constraints[4].value, 10.0);
    EXPECT_NEAR(std::abs(session.document().constraints[6].value.value()), std::numbers::pi, 1e-12);
}

TEST(MirrorEdit, TurnsTheSignsOfMeasuresAmongTheReflected) {
    Document document = frameDrawing();
    using enum ConstraintType;
    document.constraints.push_back(
        valued(constraintOf("x", distanceX, {{"left", PlaceKind::start}, {"right", PlaceKind::end}}), 10));
    document.constraints.push_back(valued(constraintOf("a", angle, {{"base"}, {"left"}}), kQuarterTurn));
    document.constraints.push_back(valued(constraintOf("d", angle, {{"left"}}), kQuarterTurn));
    Session session(document);
    EXPECT_EQ(session.apply("mirror base left right about 0,0 0,1").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 x a d");
    EXPECT_EQ(session.document().constraints[4].value, -10.0);
    EXPECT_EQ(session.document().constraints[5].value, -kQuarterTurn);
    EXPECT_NEAR(session.document().constraints[6].value.value(), kQuarterTurn, 1e-12);
    EXPECT_EQ(entityNamed(session.document(), "right").shape, Shape(LineShape{{-10, 0}, {-10, 5}}));
}

TEST(MirrorEdit, IsRefusedByAFixedConstraintOnWhatItReflects) {
    Document document = frameDrawing();
    document.constraints.push_back(constraintOf("f0", ConstraintType::fixed, {{"left"}}));
    const RefusedEdit rows[] = {
        {"mirror base left about 3,0 3,1",
         "the constraints do not allow it: f0 (fixed left) stands in the way; delete one of them or choose another "
         "value"},
    };
    expectRefused(document, rows);
}

TEST(MirrorEdit, ReflectsWhatIsFixedWhereItStaysInPlace) {
    Document document;
    document.name = "held";
    document.entities = {shapeEntity("oval", EllipseShape{{5, 0}, {2, 0}, 0.5}), lineEntity("base", {0, 0}, {10, 0}),
                         shapeEntity("wave", SplineShape{1, false, {{0, 1}, {9, 1}}, {0, 0, 1, 1}, {}}),
                         shapeEntity("axis", XlineShape{{5, 7}, {0, 1}})};
    document.constraints = {
        constraintOf("f0", ConstraintType::fixed, {{"oval"}}), constraintOf("f1", ConstraintType::fixed, {{"base"}}),
        constraintOf("f2", ConstraintType::fixed, {{"wave"}}), constraintOf("f3", ConstraintType::fixed, {{"axis"}})};
    Session session(document);
    EXPECT_EQ(session.apply("mirror oval base axis about 5,0 5,1").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "f0 f1 f2 f3");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{10, 0}, {0, 0}}));
    EXPECT_NE(session.apply("mirror wave about 5,0 5,1").outcome.error.find("f2 (fixed wave)"), std::string::npos);
}

TEST(MirrorEdit, TellsThatTheEndsOfAnArcHaveChangedPlaces) {
    Session session(bowDrawing());
    const EditResult& result = session.apply("mirror bow low high about 0,0 0,1");
    ASSERT_EQ(result.fates.constraints.size(), 2u);
    EXPECT_EQ(result.fates.constraints[0].reason, "start and end of bow have changed places");
}

TEST(MirrorEdit, OfOneEntityTakesItsNeighboursAlong) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("mirror left about 3,0 3,1").outcome.error, "");
    const Document& after = session.document();
    EXPECT_EQ(entityNamed(after, "left").shape, Shape(LineShape{{6, 0}, {6, 5}}));
    EXPECT_NEAR(std::get<LineShape>(entityNamed(after, "base").shape).start.x, 6.0, 1e-9);
    const auto& right =
        std::get<LineShape>(entityNamed(after, "right").shape);  // shifts, so that base keeps its length
    EXPECT_NEAR(right.start.x, 16.0, 1e-9);
    EXPECT_NEAR(right.end.x, 16.0, 1e-9);
    EXPECT_EQ(constraintIds(after), "c0 c1 c2 c3");
}

TEST(MirrorEdit, OfAnArcKeepsConstraintsAtTheSamePointsOfIt) {
    Session session(bowDrawing());
    EXPECT_EQ(session.apply("mirror bow low high about 0,0 0,1").outcome.error, "");
    const Document& after = session.document();
    const auto& bow = std::get<ArcShape>(entityNamed(after, "bow").shape);
    EXPECT_NEAR(bow.centre.x, -5.0, 1e-9);
    EXPECT_NEAR(bow.startAngle, 1.5707963267948966, 1e-9);
    EXPECT_NEAR(bow.endAngle, 3.141592653589793, 1e-9);
    // Counter-clockwise the arc starts where it ended before.
    EXPECT_EQ(after.constraints[0].refs[0], (Place{"bow", PlaceKind::end}));
    EXPECT_EQ(after.constraints[1].refs[0], (Place{"bow", PlaceKind::start}));
    EXPECT_EQ(entityNamed(after, "low").shape, Shape(LineShape{{-7, 0}, {-12, 0}}));
}

TEST(MirrorEdit, LeavesAnArcThatFurtherEditsUnderstand) {
    BareSession session(bowDrawing());
    session.apply("mirror bow low high about 0,0 0,1");
    EXPECT_EQ(session.apply("break bow at -6.414213562373095,1.414213562373095").outcome.error, "");
    const auto& first = std::get<ArcShape>(entityNamed(session.document(), "bow").shape);
    EXPECT_NEAR(first.endAngle, 2.356194490192345, 1e-9);
    // The end that stayed keeps its constraint, the other one's goes.
    EXPECT_EQ(constraintIds(session.document()), "c1");
}

TEST(MirrorEdit, IsUndoneToTheLastBit) {
    Session session(bowDrawing());
    session.apply("mirror bow about 0,0 0.3,1");
    ASSERT_NE(session.document(), bowDrawing());
    session.apply("undo");
    EXPECT_EQ(session.document(), bowDrawing());
}

TEST(MirrorEdit, IsRefusedWhereAConstraintDoesNotHoldInTheReflection) {
    Session session(frameDrawing());
    const std::string error = session.apply("mirror base left right about 0,0 3,1").outcome.error;
    EXPECT_NE(error.find("c2 (horizontal base)"), std::string::npos) << error;
    EXPECT_EQ(session.document(), frameDrawing());
}

TEST(MirrorEdit, RefusesALineOfOnePoint) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("mirror base about 1,1 1,1").outcome.error,
              "\"mirror base about 1,1 1,1\" is not possible: the points of the mirror line are one point; give two "
              "different ones");
    EXPECT_EQ(session.document(), frameDrawing());
}

}  // namespace
}  // namespace holdfast::editing
