#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <numbers>

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

TEST(LeastSurpriseEdit, MakesTheOppositeSideAsShortAsTheEditAsks) {
    Session session(plateDrawing());
    EXPECT_EQ(session.apply("lengthen bottom end to 0.1").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), constraintIds(plateDrawing()));
    EXPECT_NEAR(lengthOf(lineOf(session, "top")), 0.1, 1e-9);
}

/// A shoulder of 3 with a neck below it, that ends in a step of 0.1 and a bend.
Document neck() {
    Document document;
    document.name = "neck";
    document.entities = {lineEntity("shoulder", {0, 0}, {3, 0}), lineEntity("neck", {3, 0}, {3, -7}),
                         lineEntity("step", {3, -7}, {2.9, -7}),
                         shapeEntity("bend", ArcShape{{2.9, -7.1}, 0.1, std::numbers::pi / 2, std::numbers::pi}),
                         lineEntity("shank", {2.8, -7.1}, {2.8, -8})};
    const auto tie = [&](const char* id, ConstraintType type, const char* a, const char* b) {
        document.constraints.push_back(constraintOf(id, type, {{a, PlaceKind::end}, {b, PlaceKind::start}}));
    };
    tie("c0", ConstraintType::coincident, "shoulder", "neck");
    tie("c1", ConstraintType::coincident, "neck", "step");
    tie("c2", ConstraintType::tangent, "step", "bend");
    tie("c3", ConstraintType::tangent, "bend", "shank");
    document.constraints.push_back(constraintOf("f", ConstraintType::fixed, {{"shoulder", PlaceKind::start}}));
    document.constraints.push_back(constraintOf("h0", ConstraintType::horizontal, {{"shoulder"}}));
    document.constraints.push_back(constraintOf("h1", ConstraintType::horizontal, {{"step"}}));
    document.constraints.push_back(constraintOf("v0", ConstraintType::vertical, {{"neck"}}));
    document.constraints.push_back(constraintOf("v1", ConstraintType::vertical, {{"shank"}}));
    return document;
}

TEST(LeastSurpriseEdit, TakesAShortStepAlongFartherThanItIsLong) {
    for (const char* edit : {"drag shank.end by 1,0", "move shank by 1,0", "lengthen shoulder end by 1"}) {
        Session session(neck());
        const EditResult& result = session.apply(edit);
        EXPECT_EQ(result.outcome.error, "") << edit;
        EXPECT_EQ(result.outcome.shortfall.by, 0.0) << edit;
        EXPECT_EQ(constraintIds(session.document()), constraintIds(neck())) << edit;
        EXPECT_NEAR(lengthOf(lineOf(session, "shoulder")), 4.0, 1e-9) << edit;
        EXPECT_NEAR(lengthOf(lineOf(session, "step")), 0.1, 1e-9) << edit;
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

ArcShape arcOf(const Session& session, const std::string& name) {
    return std::get<ArcShape>(entityNamed(session.document(), name).shape);
}

double sweepOf(const ArcShape& arc) {
    return arc.endAngle - arc.startAngle;
}

/// The hook at the end of a clip shifts with its right side; its inner arc could as well end on the other side.
TEST(LeastSurpriseEdit, LeavesTheHookOfAClipAsItIsWhenTheClipGrows) {
    for (const char* width : {"25", "33", "40", "60"}) {
        std::ifstream in("examples/drawings/battery-clip.json");
        Session session(formats::readJson(in, "battery-clip.json"));
        const ArcShape before = arcOf(session, "g19");
        EXPECT_EQ(session.apply("set c9 " + std::string(width)).outcome.error, "") << width;
        EXPECT_NEAR(arcOf(session, "g19").radius, before.radius, 1e-6) << width;
        EXPECT_NEAR(sweepOf(arcOf(session, "g19")), sweepOf(before), 1e-6) << width;
        EXPECT_NEAR(lengthOf(lineOf(session, "g20")), 1.5, 1e-5) << width;
        EXPECT_NEAR(arcOf(session, "g21").radius, 0.75, 1e-5) << width;
    }
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

/// Two lines with a bend between them.
Document bentPipe() {
    constexpr double right = std::numbers::pi / 2.0;
    Document document;
    document.name = "pipe";
    document.entities = {lineEntity("in", {0, 0}, {30, 0}), shapeEntity("bend", ArcShape{{30, 8}, 8, -right, 0.0}),
                         lineEntity("out", {38, 8}, {38, 40})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"in", PlaceKind::end}, {"bend", PlaceKind::start}}),
        constraintOf("c1", ConstraintType::tangent, {{"in"}, {"bend"}}),
        constraintOf("c2", ConstraintType::coincident, {{"bend", PlaceKind::end}, {"out", PlaceKind::start}}),
        constraintOf("c3", ConstraintType::tangent, {{"bend"}, {"out"}})};
    return document;
}

TEST(LeastSurpriseEdit, LeavesABendAsItIsWhenALineAtItIsDraggedFar) {
    for (const char* edit : {"drag in by -20,10", "drag in by 15,-20", "drag out by -20,10", "drag in.end by -20,10"}) {
        Session session(bentPipe());
        EXPECT_EQ(session.apply(edit).outcome.error, "");
        const auto& bend = std::get<ArcShape>(entityNamed(session.document(), "bend").shape);
        EXPECT_NEAR(bend.radius, 8.0, 1e-8) << edit;
    }
}

/// The hand of a clock: two sides in a mirror, and a round tip that is tangent to one of them and reaches the axis.
Document clockHand() {
    const double slope = std::atan2(0.125, 18.0), tip = 1.0 / std::cos(slope);
    const Vec2 middle{20.0 - tip * std::sin(slope), 0.0};
    Document document;
    document.name = "hand";
    document.entities = {
        lineEntity("back", {2, 1.125}, {2, -1.125}),
        lineEntity("upper", {2, 1.125}, {20, 1.0}),
        lineEntity("lower", {2, -1.125}, {20, -1.0}),
        shapeEntity("tip", ArcShape{middle, tip, slope - std::numbers::pi / 2.0, std::numbers::pi / 2.0 - slope}),
        shapeEntity("nose", PointShape{{middle.x + tip, 0}}),
        shapeEntity("axis", XlineShape{{0, 0}, {1, 0}})};
    document.entities.back().fixed = true;
    using enum PlaceKind;
    document.constraints = {constraintOf("c0", ConstraintType::symmetric, {{"back", start}, {"back", end}, {"axis"}}),
                            constraintOf("c1", ConstraintType::coincident, {{"upper", start}, {"back", start}}),
                            constraintOf("c2", ConstraintType::coincident, {{"lower", start}, {"back", end}}),
                            constraintOf("c3", ConstraintType::symmetric, {{"upper", end}, {"lower", end}, {"axis"}}),
                            constraintOf("c4", ConstraintType::coincident, {{"tip", end}, {"upper", end}}),
                            constraintOf("c5", ConstraintType::coincident, {{"tip", start}, {"lower", end}}),
                            constraintOf("c6", ConstraintType::tangent, {{"tip"}, {"upper"}}),
                            constraintOf("c7", ConstraintType::pointOnCurve, {{"nose"}, {"tip"}}),
                            constraintOf("c8", ConstraintType::pointOnCurve, {{"nose"}, {"axis"}})};
    return document;
}

/// The end is far away for one stride: the other one stays on the way there, too.
TEST(LeastSurpriseEdit, LengthensALineThreefoldWithoutItsOtherEnd) {
    Session session(clockHand());
    EXPECT_EQ(session.apply("lengthen upper end by 36").outcome.error, "");
    EXPECT_EQ(lineOf(session, "upper").start, (Vec2{2, 1.125}));
    EXPECT_NEAR(lengthOf(lineOf(session, "upper")), std::hypot(18.0, 0.125) + 36.0, 1e-8);
    EXPECT_EQ(lineOf(session, "back"), (LineShape{{2, 1.125}, {2, -1.125}}));
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

/// A button: a side and two flanges, two arcs whose centres lie opposite each other, and a face that runs on from both.
Document button() {
    Document document;
    document.name = "button";
    const double quarter = std::numbers::pi / 2.0;
    document.entities = {lineEntity("side", {-19, 9}, {-19, -9}),
                         lineEntity("low", {-19, -9}, {-2, -9}),
                         lineEntity("high", {-19, 9}, {-2, 9}),
                         shapeEntity("top", ArcShape{{-2, 8}, 1, 0.0, quarter}),
                         lineEntity("face", {-1, 8}, {-1, -8}),
                         shapeEntity("foot", ArcShape{{-2, -8}, 1, -quarter, 0.0}),
                         shapeEntity("x_axis", XlineShape{{0, 0}, {1, 0}})};
    document.entities.back().fixed = true;
    using enum PlaceKind;
    document.constraints = {
        constraintOf("c0", ConstraintType::vertical, {{"side"}}),
        constraintOf("c1", ConstraintType::coincident, {{"low", start}, {"side", end}}),
        constraintOf("c2", ConstraintType::horizontal, {{"low"}}),
        constraintOf("c3", ConstraintType::coincident, {{"high", start}, {"side", start}}),
        constraintOf("c4", ConstraintType::horizontal, {{"high"}}),
        constraintOf("c5", ConstraintType::tangent, {{"high", end}, {"top", end}}),
        constraintOf("c6", ConstraintType::tangent, {{"foot", start}, {"low", end}}),
        constraintOf("c7", ConstraintType::tangent, {{"face", end}, {"foot", end}}),
        constraintOf("c8", ConstraintType::tangent, {{"face", start}, {"top", start}}),
        constraintOf("c9", ConstraintType::symmetric, {{"top", centre}, {"foot", centre}, {"x_axis"}})};
    return document;
}

TEST(LeastSurpriseEdit, LetsOneRadiusGrowWhereAnotherOneCannotShrink) {
    for (const char* by : {"1", "4", "9"}) {
        Session session(button());
        EXPECT_EQ(session.apply(std::string("lengthen side end by ") + by).outcome.error, "");
        const Document& after = session.document();
        EXPECT_EQ(after.constraints.size(), 10U);
        EXPECT_EQ(lineOf(session, "side").start, (Vec2{-19, 9})) << by;
        EXPECT_NEAR(std::get<ArcShape>(entityNamed(after, "top").shape).radius, 1.0, 1e-6) << by;
        EXPECT_NEAR(std::get<ArcShape>(entityNamed(after, "foot").shape).radius, 1.0 + std::stod(by), 1e-6) << by;
    }
}

/// The edge of a lid above a base line: a land, a bend down to a small toe, a floor, and the same way up again.
Document lid() {
    constexpr double eighth = std::numbers::pi / 4;
    const double q = std::sqrt(0.5), crestX = -17 + 2 * q, crestY = 55 + 2 * q, floor = crestY - 2 + 0.3 * q - 0.3;
    const Vec2 toe{crestX + 2 + 0.3 * q, floor + 0.3}, heel{toe.x + 26, toe.y};
    const Vec2 foot{heel.x + 0.3 * q, heel.y - 0.3 * q}, brow{foot.x + 2, foot.y + 2};
    Document document;
    document.name = "lid";
    document.entities = {lineEntity("base", {-40, -57}, {40, -57}),
                         lineEntity("land", {-40, 57}, {-17, 57}),
                         shapeEntity("crest", ArcShape{{-17, 55}, 2, eighth, 2 * eighth}),
                         lineEntity("fall", {crestX, crestY}, {crestX + 2, crestY - 2}),
                         shapeEntity("toe", ArcShape{toe, 0.3, 5 * eighth, 6 * eighth}),
                         lineEntity("floor", {toe.x, floor}, {heel.x, floor}),
                         shapeEntity("heel", ArcShape{heel, 0.3, 6 * eighth, 7 * eighth}),
                         lineEntity("rise", foot, brow),
                         shapeEntity("brow", ArcShape{{brow.x + 2 * q, brow.y - 2 * q}, 2, 2 * eighth, 3 * eighth}),
                         shapeEntity("corner", ArcShape{{40, 55}, 2, 0, 2 * eighth})};
    const PlaceKind start = PlaceKind::start, end = PlaceKind::end;
    document.constraints = {
        constraintOf("c0", ConstraintType::horizontal, {{"base"}}),
        constraintOf("c1", ConstraintType::horizontal, {{"land"}}),
        constraintOf("c2", ConstraintType::horizontal, {{"floor"}}),
        constraintOf("c3", ConstraintType::tangent, {{"land", end}, {"crest", end}}),
        constraintOf("c4", ConstraintType::tangent, {{"fall", start}, {"crest", start}}),
        constraintOf("c5", ConstraintType::tangent, {{"fall", end}, {"toe", start}}),
        constraintOf("c6", ConstraintType::tangent, {{"floor", start}, {"toe", end}}),
        constraintOf("c7", ConstraintType::tangent, {{"floor", end}, {"heel", start}}),
        constraintOf("c8", ConstraintType::tangent, {{"rise", start}, {"heel", end}}),
        constraintOf("c9", ConstraintType::tangent, {{"rise", end}, {"brow", end}}),
        constraintOf("c10", ConstraintType::equal, {{"corner"}, {"brow"}}),
        dimensionOf("c11", ConstraintType::distanceY, {{"base", start}, {"land", start}}, 114),
        dimensionOf("c12", ConstraintType::distanceY, {{"floor", start}, {"land", end}}, 57 - floor)};
    return document;
}

TEST(LeastSurpriseEdit, CarriesSmallArcsAlongHoweverFarADimensionIsLed) {
    for (const char* to : {"113", "180", "228", "300", "5000"}) {
        Session session(lid());
        EXPECT_EQ(session.apply(std::string("set c11 ") + to).outcome.error, "") << to;
        const Document before = lid(), &after = session.document();
        EXPECT_EQ(after.constraints.size(), 13U) << to;
        for (const char* id : {"crest", "toe", "heel", "brow", "corner"}) {
            const auto& was = std::get<ArcShape>(entityNamed(before, id).shape);
            const auto& is = std::get<ArcShape>(entityNamed(after, id).shape);
            EXPECT_NEAR(is.radius, was.radius, 1e-6) << id << " at " << to;
            EXPECT_NEAR(is.endAngle - is.startAngle, was.endAngle - was.startAngle, 1e-6) << id << " at " << to;
        }
        for (const char* id : {"base", "land", "fall", "floor", "rise"})
            EXPECT_NEAR(lengthOf(lineOf(session, id)), lengthOf(std::get<LineShape>(entityNamed(before, id).shape)),
                        1e-6)
                << id << " at " << to;
    }
}

/// A nose over a chord of 18, that an upright line 4 beside the chord touches.
Document nose() {
    const double half = 2.0 * std::atan(4.0 / 9.0), radius = 9.0 / std::sin(half);
    Document document;
    document.name = "nose";
    document.entities = {lineEntity("chord", {0, -9}, {0, 9}), lineEntity("tip", {4, -50}, {4, 50}),
                         shapeEntity("round", ArcShape{{4 - radius, 0}, radius, -half, half})};
    const PlaceKind start = PlaceKind::start, end = PlaceKind::end;
    document.constraints = {constraintOf("c0", ConstraintType::fixed, {{"chord", start}}),
                            constraintOf("c1", ConstraintType::fixed, {{"chord", end}}),
                            constraintOf("c2", ConstraintType::coincident, {{"round", start}, {"chord", start}}),
                            constraintOf("c3", ConstraintType::coincident, {{"round", end}, {"chord", end}}),
                            constraintOf("c4", ConstraintType::vertical, {{"tip"}}),
                            constraintOf("c5", ConstraintType::tangent, {{"round"}, {"tip"}}),
                            dimensionOf("c6", ConstraintType::distanceX, {{"chord", start}, {"tip", start}}, 4)};
    return document;
}

TEST(LeastSurpriseEdit, LetsASweepGrowByMoreThanHalfATurn) {
    for (const double to : {5.0, 25.0, 60.0, 600.0}) {
        Session session(nose());
        EXPECT_EQ(session.apply("set c6 " + std::to_string(to)).outcome.error, "") << to;
        const auto& arc = std::get<ArcShape>(entityNamed(session.document(), "round").shape);
        EXPECT_NEAR(arc.radius, (81 + to * to) / (2 * to), 1e-6) << to;
        EXPECT_NEAR(arc.endAngle - arc.startAngle, 4 * std::atan(to / 9), 1e-6) << to;
    }
}

}  // namespace
}  // namespace holdfast::editing
