#include "workbench/evaluator/FigureFromDocument.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "workbench/evaluator/Solve.h"

namespace holdfast {
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

TEST(FigureFromDocument, ChangesNothingInADrawingThatDidNotMove) {
    Document document = everyShape();
    const Document before = document;
    applyFigure(figureFrom(document), document);
    EXPECT_EQ(document, before);
}

TEST(FigureFromDocument, KeepsTheEndOfAnArcBehindItsStart) {
    // The end goes half a turn, nearly, ahead of where it was: three quarters of a turn instead of one.
    Document document;
    document.entities = {{"arc", ArcShape{{0, 0}, 1, 0.0, std::numbers::pi / 2}}};
    Figure figure = figureFrom(document);
    const double end = -std::numbers::pi / 2 + 1e-3;
    figure.values[5] = std::cos(end);
    figure.values[6] = std::sin(end);
    applyFigure(figure, document);
    EXPECT_NEAR(std::get<ArcShape>(document.entities[0].shape).endAngle, end + 2 * std::numbers::pi, 1e-12);
}

TEST(FigureFromDocument, WritesEveryShapeBack) {
    Document document = everyShape();
    Figure figure = figureFrom(document);
    for (double& value : figure.values)
        value += 1e-3;
    applyFigure(figure, document);
    const Figure again = figureFrom(document);
    ASSERT_EQ(again.values.size(), figure.values.size());
    for (std::size_t i = 0; i < figure.values.size(); ++i)
        EXPECT_NEAR(again.values[i], figure.values[i], 2e-3) << i;
    EXPECT_EQ(std::get<LineShape>(document.entities[0].shape).end, (Vec2{5.001, 1.001}));
    EXPECT_EQ(std::get<TextShape>(document.entities[10].shape).text, "plate");
}

TEST(FigureFromDocument, KeepsTheTurnsOfAnArcsAngles) {
    Document document;
    document.entities = {{"a", ArcShape{{0, 0}, 5, 6.0, 8.5}}};
    Figure figure = figureFrom(document);
    figure.values[0] += 1.0;
    figure.values[3] += 1.0;
    figure.values[5] += 1.0;
    applyFigure(figure, document);
    const auto& arc = std::get<ArcShape>(document.entities[0].shape);
    EXPECT_NEAR(arc.startAngle, 6.0, 1e-12);
    EXPECT_NEAR(arc.endAngle, 8.5, 1e-12);
}

TEST(FigureFromDocument, SolvesADrawingAndWritesTheResult) {
    Document document;
    document.entities = {{"a", LineShape{{0, 0}, {5, 1}}}, {"b", CircleShape{{9, 2}, 3}}};
    document.constraints = {constraint(ConstraintType::horizontal, {whole("a")}),
                            constraint(ConstraintType::radius, {whole("b")}, 4.0)};
    Figure figure = figureFrom(document);
    ASSERT_TRUE(solve(figure, {}).isSolved());
    applyFigure(figure, document);
    EXPECT_EQ(std::get<LineShape>(document.entities[0].shape).start.y, 0.5);
    EXPECT_EQ(std::get<CircleShape>(document.entities[1].shape).radius, 4.0);
}

TEST(FigureFromDocument, LetsMeasuredDimensionsFollow) {
    Document document;
    document.entities = {{"b", CircleShape{{9, 2}, 3}}};
    document.constraints = {constraint(ConstraintType::radius, {whole("b")}, 4.0),
                            constraint(ConstraintType::diameter, {whole("b")}, 6.0)};
    document.constraints[1].driving = false;
    Figure figure = figureFrom(document);
    ASSERT_TRUE(solve(figure, {}).isSolved());
    applyFigure(figure, document);
    EXPECT_EQ(document.constraints[1].value, 8.0);
    EXPECT_EQ(document.constraints[0].value, 4.0);
}

TEST(FigureFromDocument, SaysWhichElementAConstraintMisses) {
    Document document;
    document.constraints = {constraint(ConstraintType::horizontal, {whole("ghost")})};
    try {
        figureFrom(document);
        FAIL() << "nobody complained";
    } catch (const FigureError& error) {
        EXPECT_STREQ(error.what(), "constraint c: there is no element ghost");
    }
}

TEST(FigureFromDocument, RefusesShapesThatAreNone) {
    Figure figure;
    EXPECT_THROW(figure.addCircle("c", {0, 0}, -1.0), FigureError);
    EXPECT_THROW(figure.addArc("a", {{0, 0}, 0.0, 0.0, 1.0}), FigureError);
    EXPECT_THROW(figure.addPolyline("w", {{{0, 0}}, {0.0}, {0}, false}), FigureError);
    EXPECT_THROW(figure.addSpline("s", {3, false, {{0, 0}}, {0, 1}, {}}), FigureError);
    EXPECT_TRUE(figure.entities.empty());
}

}  // namespace
}  // namespace holdfast
