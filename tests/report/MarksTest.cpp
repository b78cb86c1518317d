#include "report/marks/Marks.h"

#include <gtest/gtest.h>

#include "tests/report/Samples.h"

namespace holdfast::report {

namespace {

using test::at;
using test::constraint;
using test::dimension;
using test::line;
using enum ConstraintType;
using enum PlaceKind;

class Marks : public ::testing::Test {
protected:
    std::vector<Mark> of(std::vector<Constraint> constraints) {
        m_drawing.constraints = std::move(constraints);
        const Frame frame = frameAround(windowOf(m_drawing), 800.0, 0.3, 1.0);
        return marksOf(m_drawing, EntityIndex(m_drawing), frame, m_tones);
    }
    Vec2 onlyAnchor(Constraint each) {
        const std::vector<Mark> marks = of({std::move(each)});
        EXPECT_EQ(marks.size(), 1u);
        return marks.empty() ? Vec2{-999, -999} : marks[0].anchor;
    }

    Document m_drawing = [] {
        Document drawing;
        drawing.entities = {line("a", {0, 0}, {10, 0}),
                            line("b", {0, 0}, {0, 8}),
                            line("c", {10, 6}, {2, 6}),
                            {.id = "o", .shape = CircleShape{{5, 3}, 3}},
                            {.id = "k", .shape = ArcShape{{5, 8}, 2, 0, kPi}},
                            {.id = "p", .shape = PolylineShape{{{0, 0}, {4, 0}, {4, 4}}, {0, 0, 0}, {1, 2, 3}, false}}};
        return drawing;
    }();
    std::unordered_map<std::string, MarkTone> m_tones;
};

TEST_F(Marks, StandAtThePlaceThatTheConstraintNames) {
    EXPECT_EQ(onlyAnchor(constraint("c", coincident, {at("a", end), at("c", start)})), (Vec2{10, 0}));
    EXPECT_EQ(onlyAnchor(constraint("c", concentric, {at("o", centre), at("k", centre)})), (Vec2{5, 3}));
    EXPECT_EQ(onlyAnchor(constraint("c", horizontal, {at("a")})), (Vec2{5, 0}));
    EXPECT_EQ(onlyAnchor(constraint("c", vertical, {at("a", start), at("b", end)})), (Vec2{0, 4}));
    EXPECT_EQ(onlyAnchor(constraint("c", symmetric, {at("a", end), at("b", end), at("c")})), (Vec2{5, 4}));
    EXPECT_EQ(onlyAnchor(constraint("c", fixed, {at("p", segmentEnd, 1)})), (Vec2{4, 4}));
}

TEST_F(Marks, StandAtTheCornerOfPerpendicularLinesThatMeet) {
    EXPECT_EQ(onlyAnchor(constraint("c", perpendicular, {at("a"), at("b")})), (Vec2{0, 0}));
    EXPECT_EQ(of({constraint("c", perpendicular, {at("b"), at("c")})}).size(), 2u);  // they meet nowhere near c
}

TEST_F(Marks, StandWhereALineTouchesACircle) {
    const Vec2 point = onlyAnchor(constraint("c", tangent, {at("c"), at("o")}));
    EXPECT_NEAR(norm(point - Vec2{5, 6}), 0.0, 1e-9);
}

TEST_F(Marks, StandAtBothCurvesThatAreEqualOrParallel) {
    const std::vector<Mark> marks = of({constraint("c", parallel, {at("a"), at("c")})});
    ASSERT_EQ(marks.size(), 2u);
    EXPECT_EQ(marks[0].anchor, (Vec2{5, 0}));
    EXPECT_EQ(marks[1].anchor, (Vec2{6, 6}));
}

TEST_F(Marks, ShareOneSignForTheSameKindAtOnePlace) {
    const std::vector<Mark> marks =
        of({constraint("c1", equal, {at("a"), at("b")}), constraint("c2", equal, {at("a"), at("c")})});
    ASSERT_EQ(marks.size(), 3u);
    EXPECT_EQ(marks[0].constraints, (std::vector<std::string>{"c1", "c2"}));
}

TEST_F(Marks, NeverShareASignBetweenTones) {
    m_tones = {{"c2", MarkTone::deleted}};
    const std::vector<Mark> marks =
        of({constraint("c1", horizontal, {at("a")}), constraint("c2", horizontal, {at("a")})});
    ASSERT_EQ(marks.size(), 2u);
    EXPECT_EQ(marks[1].tone, MarkTone::deleted);
}

TEST_F(Marks, OfEllipseHelpersShowOnlyWhenTheyChange) {
    const Constraint helper = constraint("c", internal, {at("a"), at("o")});
    EXPECT_TRUE(of({helper}).empty());
    m_tones = {{"c", MarkTone::deleted}};
    EXPECT_EQ(of({helper}).size(), 1u);
}

TEST_F(Marks, OfConstraintsWithoutTheirEntitiesAreLeftOut) {
    EXPECT_TRUE(of({constraint("c", coincident, {at("gone", end)}), constraint("d", composite, {})}).empty());
}

TEST_F(Marks, OfACompositeStandAtItsFirstMember) {
    Constraint whole = constraint("c2", g2Smooth, {});
    whole.members = {"c1"};
    const std::vector<Mark> marks = of({constraint("c1", coincident, {at("a", end)}), whole});
    ASSERT_EQ(marks.size(), 2u);
    EXPECT_EQ(marks[1].anchor, (Vec2{10, 0}));
}

TEST_F(Marks, OfDimensionsCarryTheValueAsADrawingShowsIt) {
    EXPECT_EQ(of({dimension("c", distance, {at("a")}, 10.0)})[0].text, "10");
    EXPECT_EQ(of({dimension("c", radius, {at("o")}, 3.125)})[0].text, "R 3.125");
    EXPECT_EQ(of({dimension("c", diameter, {at("o")}, 6)})[0].text, "\u2300 6");
    EXPECT_EQ(of({dimension("c", angle, {at("a"), at("b")}, kPi / 2)})[0].text, "90\u00B0");
    Constraint measured = dimension("c", distanceX, {at("b", start), at("a", end)}, -10.0);
    measured.driving = false;
    EXPECT_EQ(of({measured})[0].text, "(10)");
}

TEST_F(Marks, OfALengthKnowBothItsEndsAndItsDirection) {
    const std::vector<Mark> marks = of({dimension("c", distanceY, {at("a", end), at("c", end)}, 6)});
    ASSERT_TRUE(marks[0].measured.has_value());
    EXPECT_EQ(marks[0].measured->from, (Vec2{10, 0}));
    EXPECT_EQ(marks[0].measured->to, (Vec2{2, 6}));
    EXPECT_EQ(marks[0].measured->along, (Vec2{0, 1}));
}

TEST_F(Marks, OfAGapReachFromTheLineToTheNearestPointOfTheCircle) {
    const std::vector<Mark> marks = of({dimension("c", distance, {at("b"), at("o")}, 2)});
    ASSERT_TRUE(marks[0].measured.has_value());
    EXPECT_NEAR(norm(marks[0].measured->from - Vec2{0, 3}), 0.0, 1e-9);
    EXPECT_NEAR(norm(marks[0].measured->to - Vec2{2, 3}), 0.0, 1e-9);
}

TEST_F(Marks, OfAGapBetweenLinesReachFromTheFirstToTheMiddleOfTheSecond) {
    m_drawing.entities.push_back(line("slanted", {1, 2}, {5, 6}));
    m_drawing.entities.push_back({.id = "axis", .shape = XlineShape{{3, 5}, {1, 1}}});
    const struct {
        const char* second;
        Vec2 from, to;
    } rows[] = {{"c", {6, 0}, {6, 6}}, {"slanted", {3, 0}, {3, 4}}, {"axis", {3, 0}, {3, 5}}};
    for (const auto& row : rows) {
        const std::vector<Mark> marks = of({dimension("c", distance, {at("a"), at(row.second)}, row.to.y)});
        ASSERT_TRUE(marks[0].measured.has_value());
        EXPECT_NEAR(norm(marks[0].measured->from - row.from), 0.0, 1e-9) << row.second;
        EXPECT_NEAR(norm(marks[0].measured->to - row.to), 0.0, 1e-9) << row.second;
    }
}

TEST_F(Marks, OfAGapBetweenNestedCirclesStandWhereItIsNarrow) {
    m_drawing.entities.push_back({.id = "around", .shape = CircleShape{{6, 3}, 5}});
    for (const auto& pair : {std::vector<Place>{at("o"), at("around")}, std::vector<Place>{at("around"), at("o")}}) {
        const std::vector<Mark> marks = of({dimension("c", distance, pair, 1)});
        EXPECT_NEAR(norm(marks[0].anchor - Vec2{1.5, 3}), 0.0, 1e-9);
    }
}

TEST_F(Marks, OfAnAngleOpenFromTheFirstLineCounterClockwise) {
    const std::vector<Mark> marks = of({dimension("c", angle, {at("a"), at("b")}, kPi / 2)});
    ASSERT_TRUE(marks[0].opening.has_value());
    EXPECT_EQ(marks[0].anchor, (Vec2{0, 0}));
    EXPECT_NEAR(marks[0].opening->startAngle, 0.0, 1e-12);
    EXPECT_NEAR(marks[0].opening->endAngle, kPi / 2, 1e-12);
    const std::vector<Mark> large = of({dimension("c", angle, {at("b"), at("a")}, 3 * kPi / 2)});
    EXPECT_NEAR(large[0].opening->endAngle - large[0].opening->startAngle, 3 * kPi / 2, 1e-12) << "on its own side";
}

}  // namespace
}  // namespace holdfast::report
