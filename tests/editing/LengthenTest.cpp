#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "geometry/curves/Lengths.h"
#include "geometry/curves/Parameters.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// One free curve of each kind that can be lengthened.
Document curvesDrawing() {
    Document document;
    document.name = "curves";
    SplineShape spline{3, false, {{0, 0}, {1, 4}, {5, 4}, {6, 1}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    document.entities = {lineEntity("line", {0, 0}, {3, 4}),
                         shapeEntity("arc", ArcShape{{0, 0}, 2, 0.0, 1.0}),
                         shapeEntity("oval", EllipticalArcShape{{0, 0}, {4, 0}, 0.5, 0.0, 1.0}),
                         shapeEntity("spline", spline),
                         shapeEntity("poly", PolylineShape{{{0, 0}, {4, 0}, {4, 3}}, {0, 0, 0}, {0, 0, 0}, false}),
                         shapeEntity("bent", PolylineShape{{{0, 0}, {4, 0}, {6, 0}}, {0, 1, 0}, {0, 0, 0}, false})};
    return document;
}

TEST(LengthenEdit, MakesEveryKindOfCurveLongerByTheLengthAtEitherEnd) {
    const Document document = curvesDrawing();
    for (const Entity& entity : document.entities) {
        for (const bool atStart : {true, false}) {
            for (const double by : {1.25, -0.75}) {
                Session session(document);
                const std::string edit =
                    "lengthen " + entity.id + (atStart ? " start by " : " end by ") + std::to_string(by);
                EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
                const Shape& after = entityNamed(session.document(), entity.id).shape;
                EXPECT_NEAR(lengthOf(after), lengthOf(entity.shape) + by, 1e-9) << edit;
                const auto kept = atStart ? &endPoint : &startPoint;
                EXPECT_NEAR(std::hypot((*kept)(after)->x - (*kept)(entity.shape)->x,
                                       (*kept)(after)->y - (*kept)(entity.shape)->y),
                            0.0, 1e-9)
                    << edit;
            }
        }
    }
}

TEST(LengthenEdit, ToATotalLengthCountsTheWholeCurve) {
    Session session(curvesDrawing());
    EXPECT_EQ(session.apply("lengthen line end to 10").outcome.error, "");
    const auto& line = std::get<LineShape>(entityNamed(session.document(), "line").shape);
    EXPECT_NEAR(line.end.x, 6.0, 1e-12);
    EXPECT_NEAR(line.end.y, 8.0, 1e-12);
    EXPECT_EQ(session.apply("lengthen poly end to 9").outcome.error, "");
    const auto& poly = std::get<PolylineShape>(entityNamed(session.document(), "poly").shape);
    EXPECT_EQ(poly.vertices.back(), (Vec2{4, 5}));
}

TEST(LengthenEdit, MovesWhatIsTiedToTheEndAndKeepsEqualLengths) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("lengthen left end by 2").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "left").shape, Shape(LineShape{{0, 0}, {0, 7}}));
    EXPECT_NEAR(lengthOf(entityNamed(session.document(), "right").shape), 7.0, 1e-9);
    EXPECT_EQ(session.apply("lengthen base end by 3").outcome.error, "");
    const auto& right = std::get<LineShape>(entityNamed(session.document(), "right").shape);
    EXPECT_NEAR(right.start.x, 13.0, 1e-9);
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3");
}

TEST(LengthenEdit, OfEveryConstrainedCurveTakesWhatIsTiedToItsEndAlong) {
    for (const char* id : {"line", "arc", "oval", "spline"}) {
        Document document = curvesDrawing();
        const Shape before = entityNamed(document, id).shape;
        const Vec2 end = *endPoint(before);
        document.entities.push_back(lineEntity("tail", end, {end.x + 10, end.y + 3}));
        document.constraints = {
            constraintOf("c0", ConstraintType::coincident, {{id, PlaceKind::end}, {"tail", PlaceKind::start}})};
        Session session(document);
        EXPECT_EQ(session.apply("lengthen " + std::string(id) + " end by 0.5").outcome.error, "") << id;
        const Shape& after = entityNamed(session.document(), id).shape;
        EXPECT_NEAR(lengthOf(after), lengthOf(before) + 0.5, 1e-8) << id;
        const auto& tail = std::get<LineShape>(entityNamed(session.document(), "tail").shape);
        EXPECT_NEAR(std::hypot(tail.start.x - endPoint(after)->x, tail.start.y - endPoint(after)->y), 0.0, 1e-8) << id;
        EXPECT_NEAR(std::hypot(tail.end.x - tail.start.x - 10, tail.end.y - tail.start.y - 3), 0.0, 1e-8) << id;
    }
}

TEST(LengthenEdit, OfAnArcTurnsTheLineThatTouchesItsEnd) {
    Document document;
    document.name = "crook";
    document.entities = {shapeEntity("bow", ArcShape{{0, 0}, 2, 0.0, 1.5707963267948966}),
                         lineEntity("stem", {0, 2}, {-8, 2})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"bow", PlaceKind::end}, {"stem", PlaceKind::start}}),
        constraintOf("c1", ConstraintType::tangent, {{"bow"}, {"stem"}})};
    Session session(document);
    EXPECT_EQ(session.apply("lengthen bow end by 1").outcome.error, "");
    const auto& bow = std::get<ArcShape>(entityNamed(session.document(), "bow").shape);
    EXPECT_NEAR(bow.endAngle, 2.0707963267948966, 1e-9);
    const auto& stem = std::get<LineShape>(entityNamed(session.document(), "stem").shape);
    EXPECT_NEAR(std::atan2(stem.end.y - stem.start.y, stem.end.x - stem.start.x),
                bow.endAngle + 1.5707963267948966 - 6.283185307179586, 1e-8);
}

TEST(LengthenEdit, OfAConstrainedPolylineMovesItsLastVertex) {
    Document document = curvesDrawing();
    document.entities[4] = shapeEntity("poly", PolylineShape{{{0, 0}, {4, 0}, {4, 3}}, {0, 0, 0}, {1, 2, 3}, false});
    document.entities.push_back(lineEntity("tail", {4, 3}, {9, 3}));
    document.constraints = {constraintOf("c0", ConstraintType::vertical, {{"poly", PlaceKind::segment, 1}}),
                            constraintOf("c1", ConstraintType::coincident,
                                         {{"poly", PlaceKind::segmentEnd, 1}, {"tail", PlaceKind::start}})};
    Session session(document);
    EXPECT_EQ(session.apply("lengthen poly end by 2").outcome.error, "");
    const auto& poly = std::get<PolylineShape>(entityNamed(session.document(), "poly").shape);
    EXPECT_EQ(poly.vertices.back(), (Vec2{4, 5}));
    EXPECT_EQ(poly.ids, (std::vector<int>{1, 2, 3}));
    EXPECT_NEAR(std::get<LineShape>(entityNamed(session.document(), "tail").shape).start.y, 5.0, 1e-9);
}

/// Its corners can only move outwards, not along a side: the hexagon grows about its centre.
TEST(LengthenEdit, OfASideOfAHexagonAboutAFixedCentreMakesAllOfThemLonger) {
    Document document;
    document.name = "nut";
    document.entities = {shapeEntity("rim", CircleShape{{0, 0}, 4}), shapeEntity("o", PointShape{{0, 0}})};
    document.entities.back().fixed = true;
    document.constraints = {constraintOf("middle", ConstraintType::coincident, {{"rim", PlaceKind::centre}, {"o"}})};
    constexpr int sides = 6;
    const auto corner = [](int i) {
        const double angle = i * std::numbers::pi / 3;
        return Vec2{4 * std::cos(angle), 4 * std::sin(angle)};
    };
    const auto side = [](int i) { return "g" + std::to_string(i % sides); };
    for (int i = 0; i < sides; ++i) {
        const std::string number = std::to_string(i);
        document.entities.push_back(lineEntity(side(i), corner(i), corner(i + 1)));
        document.constraints.push_back(constraintOf("joint" + number, ConstraintType::coincident,
                                                    {{side(i), PlaceKind::end}, {side(i + 1), PlaceKind::start}}));
        document.constraints.push_back(
            constraintOf("on" + number, ConstraintType::pointOnCurve, {{side(i), PlaceKind::end}, {"rim"}}));
        if (i > 0)
            document.constraints.push_back(constraintOf("equal" + number, ConstraintType::equal, {{"g0"}, {side(i)}}));
    }
    document.constraints.push_back(constraintOf("level", ConstraintType::horizontal, {{"g1"}}));
    Session session(document);
    EXPECT_EQ(errorOf(session, "lengthen g0 end by 2"), "");
    for (int i = 0; i < sides; ++i)
        EXPECT_NEAR(lengthOf(entityNamed(session.document(), side(i)).shape), 6.0, 1e-9) << i;
    EXPECT_NEAR(std::get<CircleShape>(entityNamed(session.document(), "rim").shape).radius, 6.0, 1e-9);
}

TEST(LengthenEdit, IsRefusedByTheConstraintsThatFixTheLength) {
    Document document = frameDrawing();
    Constraint length = constraintOf("d0", ConstraintType::distance, {{"left"}});
    length.value = 5.0;
    document.constraints.push_back(length);
    Session session(document);
    const std::string error = session.apply("lengthen left end by 2").outcome.error;
    EXPECT_NE(error.find("d0"), std::string::npos) << error;
    EXPECT_EQ(session.document(), document);
}

TEST(LengthenEdit, RefusesWithAReasonAndChangesNothing) {
    Document document = curvesDrawing();
    document.entities.push_back(shapeEntity("disc", CircleShape{{0, 0}, 1}));
    document.entities.push_back(shapeEntity("beam", RayShape{{0, 0}, {1, 0}}));
    document.entities.push_back(shapeEntity("dot", PointShape{{0, 0}}));
    const RefusedEdit rows[] = {
        {"lengthen line end by -5", "nothing of line would be left, it is only 5 long"},
        {"lengthen poly end by -3", "the outermost segment of poly is only 3 long; trim it to take more away"},
        {"lengthen arc end by 12", "arc would become a full turn or more; lengthen it by less"},
        {"lengthen disc end by 1", "disc is closed and has no end to move; break it first"},
        {"lengthen beam start by 1", "beam has no length, as it is unbounded; break it first"},
        {"lengthen dot end to 1", "dot is no curve; only curves can be lengthened"},
        {"lengthen line middle by 1",
         "edit \"lengthen line middle by 1\", column 15: expected the end to move (start or end), found \"middle\""},
    };
    expectRefused(document, rows);
}

/// On the way of the whole edit the small arcs at the rim give way until one would turn over; in a few shorter edits
/// they are carried along.
TEST(LengthenEdit, GoesAllTheWayThatShorterOnesGo) {
    Document rim;
    rim.name = "rim";
    rim.entities = {
        lineEntity("g0", {-0.5000000000000007, 19.993749023132207}, {-0.5000000000000007, 20.999999981613303}),
        shapeEntity("g1", ArcShape{{0, 21}, 0.5, 6.2831853005377285, 9.424777997542774}),
        lineEntity("g2", {0.5, 20.99999999667907}, {0.5, 19.993749023132203}),
        lineEntity("g4", {-0.5000000000000007, 19.993749023132207}, {0, 0}),
        shapeEntity("g6",
                    ArcShape{{0.8999999999999995, 19.993749000623048}, 0.4, 3.1415925973169068, 6.193217958338638}),
        shapeEntity("g8", ArcShape{{0, 0}, 20, 1.4394440480634687, 1.5058315265804183}),
        shapeEntity("origin", PointShape{{0, 0}})};
    rim.entities.back().fixed = true;
    rim.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"g2", PlaceKind::start}, {"g1", PlaceKind::start}}),
        constraintOf("c4", ConstraintType::tangent, {{"g2"}, {"g1"}}),
        constraintOf("c6", ConstraintType::coincident, {{"g4", PlaceKind::start}, {"g0", PlaceKind::start}}),
        constraintOf("c7", ConstraintType::coincident, {{"g0", PlaceKind::end}, {"g1", PlaceKind::end}}),
        constraintOf("c8", ConstraintType::tangent, {{"g0"}, {"g1"}}),
        constraintOf("c9", ConstraintType::vertical, {{"g0"}}),
        constraintOf("c12", ConstraintType::coincident, {{"g6", PlaceKind::start}, {"g2", PlaceKind::end}}),
        constraintOf("c17", ConstraintType::coincident, {{"g8", PlaceKind::centre}, {"g4", PlaceKind::end}}),
        constraintOf("c18", ConstraintType::coincident, {{"g8", PlaceKind::end}, {"g6", PlaceKind::end}}),
        constraintOf("c22", ConstraintType::coincident, {{"g4", PlaceKind::end}, {"origin"}})};
    Session session(rim);
    EXPECT_EQ(session.apply("lengthen g4 end by 40").outcome.error, "");
    const auto& spoke = std::get<LineShape>(entityNamed(session.document(), "g4").shape);
    EXPECT_NEAR(distance(spoke.start, spoke.end), 60.0, 1e-3);
    const auto& nose = std::get<ArcShape>(entityNamed(session.document(), "g1").shape);
    EXPECT_GT(nose.radius, 0.01 * 0.5);
}

}  // namespace
}  // namespace holdfast::editing
