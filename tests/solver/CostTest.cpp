#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>

#include "Sketch.h"

// What an edit may cost, counted in unknowns and rows gone through, so that the same holds on every machine.
namespace holdfast::solver::detail {

namespace {

/// Round holes as they come from drawings that know no arcs: halves of polygons with corners to three digits, which two
/// more lines close. Their sides are parallel and as long as each other, from hole to hole as well.
class PolygonHoles {
public:
    PolygonHoles(int holes, int sides) : m_sides(sides), m_half(sides / 2), m_sketch("") {
        for (int hole = 0; hole < holes; ++hole)
            draw(hole);
        m_sketch.sketch.takeReference();
    }

    /// Turns the line between the halves of the first hole about a point in the drawing.
    SolveResult turnFirstLine(double angle) {
        SolveRequest request{.edited = {m_sketch.numbers.at("x0")}, .keepsShapes = true, .namesConflicts = false};
        for (const char* place : {"x0.segment:0.start", "x0.segment:0.end"}) {
            const Vec2 p = m_sketch.at(place);
            const double x = p.x - kCentre, y = p.y - kCentre, c = std::cos(angle), s = std::sin(angle);
            request.targets.push_back({m_sketch.valueOf(place), kCentre + c * x - s * y});
            request.targets.push_back({m_sketch.valueOf(place) + 1, kCentre + s * x + c * y});
        }
        return solve(m_sketch.sketch, request);
    }

    double worstViolation() const { return m_sketch.worstViolation(); }

private:
    void draw(int hole) {
        const std::string number = std::to_string(hole);
        addLine("a" + number, hole, 0, m_half);
        addLine("x" + number, hole, m_half - 1, 2);
        addLine("b" + number, hole, m_half, m_half);
        addLine("y" + number, hole, m_sides - 1, 2);
        const std::string last = ".segment:" + std::to_string(m_half - 2) + ".end";
        constrain("coincident", "a" + number + last, "x" + number + ".segment:0.start");
        constrain("coincident", "b" + number + ".segment:0.start", "x" + number + ".segment:0.end");
        constrain("coincident", "b" + number + last, "y" + number + ".segment:0.start");
        constrain("coincident", "a" + number + ".segment:0.start", "y" + number + ".segment:0.end");
        for (int i = 0; i < m_sides; ++i) {
            if (i > 0)
                constrain("equal", side(hole, i - 1), side(hole, i));
            if (i < m_half)
                constrain("parallel", side(hole, i), side(hole, i + m_half));
            if (hole > 0)
                constrain("parallel", side(hole - 1, i), side(hole, i));
        }
        if (hole > 0)
            constrain("equal", side(hole - 1, 0), side(hole, 0));
    }

    void addLine(const std::string& name, int hole, int first, int corners) {
        std::string text = "polyline " + name;
        for (int i = first; i < first + corners; ++i) {
            const double angle = 2.0 * std::numbers::pi * (i % m_sides + 0.5) / m_sides;
            text += " " + rounded(kApart * (hole % kInARow) + kRadius * std::cos(angle)) + "," +
                    rounded(kApart * (hole / kInARow) + kRadius * std::sin(angle));
        }
        m_sketch.add(text);
    }

    void constrain(const std::string& type, const std::string& a, const std::string& b) {
        m_sketch.add(type + " " + a + " " + b);
    }

    std::string side(int hole, int i) const {
        const std::string number = std::to_string(hole);
        if (i == m_half - 1)
            return "x" + number + ".segment:0";
        if (i == m_sides - 1)
            return "y" + number + ".segment:0";
        return (i < m_half ? "a" : "b") + number + ".segment:" + std::to_string(i % m_half);
    }

    static std::string rounded(double x) {
        char text[32];
        std::snprintf(text, sizeof text, "%.3f", x);
        return text;
    }

    static constexpr double kApart = 10.0, kRadius = 3.0, kCentre = 10.0;
    static constexpr int kInARow = 4;
    int m_sides, m_half;
    SketchText m_sketch;
};

}  // namespace

/// Without a bound, tries to do better take fifty million.
TEST(Cost, ATurnAmongManyEqualSidesIsNotBetteredForever) {
    PolygonHoles holes(8, 48);
    const SolveResult result = holes.turnFirstLine(std::numbers::pi / 6);
    ASSERT_TRUE(result.isSolved());
    EXPECT_LT(holes.worstViolation(), 1e-8);
    EXPECT_LT(result.factorWork, 8'000'000);
}

/// Without a bound, one search brings point after point back by new factors: six million, half of them in vain.
TEST(Cost, OneSearchForTheNearestPointIsBounded) {
    PolygonHoles holes(16, 48);
    const SolveResult result = holes.turnFirstLine(std::numbers::pi / 6);
    EXPECT_LT(result.factorWork, 5'000'000);
}

/// The line can only touch the circle at its top, where Newton's steps lead half the way each.
TEST(Cost, OfADoubleRootIsAFewIterations) {
    SketchText text(
        "fixed! circle c 0,0 5; fixed! point p -4,5; line a -4,5 0.8,5.1; coincident a.start p; horizontal a;"
        "point_on_curve a.end c");
    const SolveResult result = solve(text.sketch, {});
    EXPECT_TRUE(result.isSolved());
    EXPECT_LE(result.iterations, 8);
    EXPECT_NEAR(text.at("a.end").x, 0.0, 1e-4);
}

}  // namespace holdfast::solver::detail
