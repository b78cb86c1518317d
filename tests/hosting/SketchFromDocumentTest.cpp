#include "hosting/evaluator/SketchFromDocument.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "solver/src/solving/Solve.h"

namespace holdfast::hosting {
namespace {

Place whole(const char* id) {
    return {id, PlaceKind::whole, 0};
}

Constraint constraint(ConstraintType type, std::vector<Place> refs, std::optional<double> value = {}) {
    Constraint result;
    result.id = "c";
    result.type = type;
    result.refs = std::move(refs);
    result.value = value;
    return result;
}

Document everyShape() {
    Document document;
    document.entities = {
        {"line", LineShape{{0, 0}, {5, 1}}},
        {"arc", ArcShape{{3, 1}, 5, 6.0, 8.5}},
        {"circle", CircleShape{{9, 2}, 3}},
        {"ellipse", EllipseShape{{2, 7}, {6, 1}, 0.5}},
        {"earc", EllipticalArcShape{{2, 7}, {6, 1}, 0.5, -1.0, 4.0}},
        {"spline", SplineShape{2, false, {{0, 0}, {2, 5}, {6, 4}}, {0, 0, 0, 1, 1, 1}, {1, 2, 1}}},
        {"point", PointShape{{1, 2}}},
        {"xline", XlineShape{{1, 1}, {3, 4}}},
        {"ray", RayShape{{1, 1}, {-3, 4}}},
        {"polyline", PolylineShape{{{0, 0}, {5, 0}, {9, 4}}, {0.0, -0.5, 0.3}, {1, 2, 0}, true}},
        {"text", TextShape{{4, 4}, 0.3, 2.5, "plate", false}},
    };
    return document;
}

TEST(SketchFromDocument, ChangesNothingInADrawingThatDidNotMove) {
    Document document = everyShape();
    const Document before = document;
    applySketch(sketchFrom(document), document);
    EXPECT_EQ(document, before);
}

TEST(SketchFromDocument, KeepsTheEndOfAnArcBehindItsStart) {
    // The end goes half a turn, nearly, ahead of where it was: three quarters of a turn instead of one.
    Document document;
    document.entities = {{"arc", ArcShape{{0, 0}, 1, 0.0, std::numbers::pi / 2}}};
    SketchData sketch = sketchFrom(document);
    const double end = -std::numbers::pi / 2 + 1e-3;
    sketch.values[5] = std::cos(end);
    sketch.values[6] = std::sin(end);
    applySketch(sketch, document);
    EXPECT_NEAR(std::get<ArcShape>(document.entities[0].shape).endAngle, end + 2 * std::numbers::pi, 1e-12);
}

TEST(SketchFromDocument, WritesEveryShapeBack) {
    Document document = everyShape();
    SketchData sketch = sketchFrom(document);
    for (double& value : sketch.values)
        value += 1e-3;
    applySketch(sketch, document);
    const SketchData again = sketchFrom(document);
    ASSERT_EQ(again.values.size(), sketch.values.size());
    for (std::size_t i = 0; i < sketch.values.size(); ++i)
        EXPECT_NEAR(again.values[i], sketch.values[i], 2e-3) << i;
    EXPECT_EQ(std::get<LineShape>(document.entities[0].shape).end, (Vec2{5.001, 1.001}));
    EXPECT_EQ(std::get<TextShape>(document.entities[10].shape).text, "plate");
}

TEST(SketchFromDocument, KeepsTheTurnsOfAnArcsAngles) {
    Document document;
    document.entities = {{"a", ArcShape{{0, 0}, 5, 6.0, 8.5}}};
    SketchData sketch = sketchFrom(document);
    sketch.values[0] += 1.0;
    sketch.values[3] += 1.0;
    sketch.values[5] += 1.0;
    applySketch(sketch, document);
    const auto& arc = std::get<ArcShape>(document.entities[0].shape);
    EXPECT_NEAR(arc.startAngle, 6.0, 1e-12);
    EXPECT_NEAR(arc.endAngle, 8.5, 1e-12);
}

TEST(SketchFromDocument, SolvesADrawingAndWritesTheResult) {
    Document document;
    document.entities = {{"a", LineShape{{0, 0}, {5, 1}}}, {"b", CircleShape{{9, 2}, 3}}};
    document.constraints = {constraint(ConstraintType::horizontal, {whole("a")}),
                            constraint(ConstraintType::radius, {whole("b")}, 4.0)};
    SketchData sketch = sketchFrom(document);
    ASSERT_TRUE(solve(sketch, {}).isSolved());
    applySketch(sketch, document);
    EXPECT_EQ(std::get<LineShape>(document.entities[0].shape).start.y, 0.5);
    EXPECT_EQ(std::get<CircleShape>(document.entities[1].shape).radius, 4.0);
}

TEST(SketchFromDocument, LetsMeasuredDimensionsFollow) {
    Document document;
    document.entities = {{"b", CircleShape{{9, 2}, 3}}};
    document.constraints = {constraint(ConstraintType::radius, {whole("b")}, 4.0),
                            constraint(ConstraintType::diameter, {whole("b")}, 6.0)};
    document.constraints[1].driving = false;
    SketchData sketch = sketchFrom(document);
    ASSERT_TRUE(solve(sketch, {}).isSolved());
    applySketch(sketch, document);
    EXPECT_EQ(document.constraints[1].value, 8.0);
    EXPECT_EQ(document.constraints[0].value, 4.0);
}

TEST(SketchFromDocument, SaysWhichElementAConstraintMisses) {
    Document document;
    document.constraints = {constraint(ConstraintType::horizontal, {whole("ghost")})};
    try {
        sketchFrom(document);
        FAIL() << "nobody complained";
    } catch (const SketchError& error) {
        EXPECT_STREQ(error.what(), "constraint c: there is no element ghost");
    }
}

TEST(SketchFromDocument, RefusesShapesThatAreNone) {
    SketchData sketch;
    EXPECT_THROW(sketch.addCircle("c", {0, 0}, -1.0), SketchError);
    EXPECT_THROW(sketch.addArc("a", {{0, 0}, 0.0, 0.0, 1.0}), SketchError);
    EXPECT_THROW(sketch.addPolyline("w", {{{0, 0}}, {0.0}, {0}, false}), SketchError);
    EXPECT_THROW(sketch.addSpline("s", {3, false, {{0, 0}}, {0, 1}, {}}), SketchError);
    EXPECT_TRUE(sketch.entities.empty());
}

}  // namespace
}  // namespace holdfast::hosting
