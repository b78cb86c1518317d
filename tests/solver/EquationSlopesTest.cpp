#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "geometry/SplineBasis.h"
#include "solver/src/residuals/EquationSystem.h"
#include "tests/solver/Sketch.h"

// Every formula on every kind of operand: the derivatives that the solver uses against central differences. None of
// the sketches satisfies its constraints, so that nothing cancels.

namespace holdfast::solver::detail {
namespace {

constexpr const char* kPoints =
    "point p 1,2; point q 4,-3; line a 0,0 7,3; line b 1,9 5,2; arc k 3,1 5 20 130; circle c 9,2 3;"
    "spline s 3 0,0 2,5 6,4 9,-1 12,2; polyline w 0,0:0.4 6,1 9,5:-0.7 2,8;"
    "coincident p q; coincident a.mid p; coincident k.mid p; coincident w.segment:0.mid p; "
    "coincident w.segment:1.mid q; coincident w.segment:0.centre q; coincident w.segment:2.centre c.centre;"
    "horizontal a; vertical p q; horizontal a.mid q; vertical a.mid q; distance_x p q = 2; distance_y a.mid q = 1; "
    "distance p q = 4;"
    "midpoint p a; midpoint q k; midpoint p w.segment:2; symmetric p q a.start; symmetric p q b;"
    "fixed p; fixed a; fixed c; fixed k.mid; fixed s";

constexpr const char* kCurves =
    "point p 1,2; line a 0,0 7,3; xline x 1,1 30; ray r 2,0 100; text t 3,3 10; circle c 9,2 3; arc k 3,1 5 20 130;"
    "ellipse e 2,7 6,1 0.5; ellipse_arc f -3,1 4,2 0.7 10 150; spline s 3 0,0 2,5 6,4 9,-1 12,2;"
    "polyline w 0,0:0.4 6,1 9,5:-0.7 2,8;"
    "point_on_curve p a; point_on_curve p x; point_on_curve p c; point_on_curve p k; point_on_curve p e;"
    "point_on_curve p f; point_on_curve p s; point_on_curve p w.segment:0; point_on_curve p w.segment:1;"
    "point_on_curve p w.segment:2; distance p a = 1; distance p c = 2; distance c a = 3; distance c k = 1;"
    "distance a = 5; distance k = 9; distance w.segment:0 = 7; distance w.segment:1 = 3; radius c = 2;"
    "diameter k = 8; radius w.segment:2 = 4; radius w.segment:0 = 4; horizontal x; vertical t; fixed x; fixed e;"
    "distance w.segment:0.centre w.segment:2 = 3";

constexpr const char* kDirectionTexts =
    "line a 0,0 7,3; line b 1,9 5,2; xline x 1,1 30; ray r 2,0 100; text t 3,3 10; circle c 9,2 3; arc k 3,1 5 20 130;"
    "circle d 1,-4 2; ellipse e 2,7 6,1 0.5; ellipse_arc f -3,1 4,2 0.7 10 150; polyline w 0,0:0.4 6,1 9,5:-0.7 2,8;"
    "parallel a b; parallel a x; parallel r t; perpendicular a b; perpendicular a c; perpendicular w.segment:1 k;"
    "collinear a b; collinear a x; collinear x r; angle a = 40; angle a.end = 100; angle a b = 70; angle a.end b = 20;"
    "angle a k k.start = 30; angle k = 60; angle w.segment:0 = 50; equal a b; equal a w.segment:1; equal c d; equal k "
    "d;"
    "equal w.segment:0 w.segment:2; equal w.segment:0 c; equal e f; symmetric a b x; symmetric c d a; symmetric e f a;"
    "symmetric x r a; symmetric w.segment:0 c a; perpendicular k.start a.end; perpendicular f.end a.start";

constexpr const char* kTangents =
    "line a 0,0 7,3; line b 1,9 5,2; circle c 9,2 3; arc k 3,1 5 20 130; circle d 1,-4 2; ellipse e 2,7 6,1 0.5;"
    "ellipse_arc f -3,1 4,2 0.7 10 150; spline s 3 0,0 2,5 6,4 9,-1 12,2; spline z 2 9,9 4,8 5,3 1,1 -2,4;"
    "polyline w 0,0:0.4 6,1 9,5:-0.7 2,8; point p 1,2;"
    "tangent a c; tangent c d; tangent c k; tangent a e; tangent c e; tangent e f; tangent a s; tangent s c;"
    "tangent s z; tangent e s; tangent a.start k.end; tangent k.start f.end; tangent s.end a.start; tangent s.start "
    "k.end;"
    "tangent a.end c; tangent a.start e; tangent a.start s; tangent k f p; tangent w.segment:0 a; "
    "tangent w.segment:0.start a.end; tangent w.segment:2.end k.start; tangent w.segment:2 c";

constexpr const char* kSmooth =
    "line a 0,0 7,3; arc k 3,1 5 20 130; ellipse_arc f -3,1 4,2 0.7 10 150; spline s 3 0,0 2,5 6,4 9,-1 12,2;"
    "spline z 3 9,9 4,8 5,3 1,1 -2,4; polyline w 0,0:0.4 6,1 9,5:-0.7 2,8;"
    "g2_smooth s.end z.start; g2_smooth s.start k.end; g2_smooth z.end f.start; g2_smooth s.end a.start;"
    "g2_smooth k.start f.end; g2_smooth s.start w.segment:0.end;"
    "ellipse e 2,7 6,1 0.5; line m -3,6 8,8; line n 1,9 2,4; point p 7,8; point q -3,6;"
    "internal m e as major_diameter; internal n e as minor_diameter; internal p e as focus1; internal q e as focus2";

/// A periodic rational spline has no end that is a control point: its start is read as a point of the curve.
SketchText unclampedSplines() {
    SketchText sketch("line a 0,0 7,3");
    SplineShape open{2, false, {{0, 0}, {3, 4}, {6, 1}, {9, 5}}, {0, 1, 2, 3, 4, 5, 6}, {1, 2, 1.5, 1}};
    SplineShape round{3, true, {{0, 0}, {4, 0}, {5, 3}, {2, 5}, {-1, 3}}, {0, 1, 2, 3.5, 4, 5}, {1, 2, 3, 1, 1}};
    sketch.numbers["s"] = sketch.sketch.addSpline("s", open);
    sketch.numbers["o"] = sketch.sketch.addSpline("o", round);
    for (const char* constraint : {"coincident s.start a.end", "tangent s.end a.start", "g2_smooth s.start a.end",
                                   "point_on_curve a.start o", "tangent a o", "fixed s.start"})
        sketch.add(constraint);
    return sketch;
}

/// A contact at an end of its curve has a slope to the inside and none to the outside; a little inside it has one.
void leaveEnds(EquationSystem& system) {
    for (const Equation& equation : system.set.equations) {
        const auto inputs = system.set.inputsOf(equation);
        for (const int use : equation.splineUses) {
            if (use < 0 || !system.set.splineUses[static_cast<std::size_t>(use)].isParamFree)
                continue;
            const SplineRange range = splineRange((*system.set.splines)[static_cast<std::size_t>(
                system.set.splineUses[static_cast<std::size_t>(use)].spline)]);
            for (const int v : inputs) {
                double& x = system.values[static_cast<std::size_t>(v)];
                if (v >= system.figureValueCount && (x == range.first || x == range.last))
                    x += (x == range.first ? 1e-3 : -1e-3) * (range.last - range.first);
            }
        }
    }
}

struct Coverage {
    std::set<ResidualKind> residuals;
    std::set<OperandKind> operands;
};

double differenceQuotient(EquationSystem& system, const Equation& equation, int value, std::size_t row, double h) {
    double& x = system.values[static_cast<std::size_t>(value)];
    const double middle = x;
    x = middle + h;
    const double after = residuals(system.set, equation, system.values)[row];
    x = middle - h;
    const double before = residuals(system.set, equation, system.values)[row];
    x = middle;
    return (after - before) / (2 * h);
}

/// An input that occurs twice has the sum of both slopes.
double slopeBy(const EquationSystem& system, const Equation& equation, std::size_t row, int value,
               const std::vector<double>& slopes) {
    const auto inputs = system.set.inputsOf(equation);
    double sum = 0.0;
    for (std::size_t k = 0; k < inputs.size(); ++k)
        sum += inputs[k] == value ? slopes[row * inputs.size() + k] : 0.0;
    return sum;
}

void expectExactSlopes(EquationSystem system, Coverage& coverage) {
    std::vector<double> slopes;
    leaveEnds(system);
    for (const Equation& equation : system.set.equations) {
        coverage.residuals.insert(equation.residualKind);
        coverage.operands.insert(equation.operands.begin(), equation.operands.end());
        const auto rows = linearise(system.set, equation, system.values, slopes);
        const auto plain = residuals(system.set, equation, system.values);
        for (std::size_t row = 0; row < equation.rows; ++row) {
            EXPECT_NEAR(rows[row], plain[row], 1e-12 * (1 + std::abs(plain[row])));
            for (const int v : system.set.inputsOf(equation)) {
                const double slope = slopeBy(system, equation, row, v, slopes);
                EXPECT_NEAR(slope, differenceQuotient(system, equation, v, row, 1e-6), 2e-7 * (1 + std::abs(slope)))
                    << "residualKind " << static_cast<int>(equation.residualKind) << " row " << row << " value " << v
                    << " constraint " << equation.constraint;
            }
        }
    }
}

void expectExactSlopes(const SketchText& sketch, Coverage& coverage) {
    expectExactSlopes(buildPlainSystem(sketch.sketch, bindingConstraints(sketch.sketch)), coverage);
    expectExactSlopes(buildSystem(sketch.sketch), coverage);
    KeptSizes sizes;
    for (const auto& [id, number] : sketch.numbers)
        sizes.shapes.push_back({number, 10.0, 10.0, 10.0});
    expectExactSlopes(buildSystem(sketch.sketch, {}, sizes), coverage);
}

TEST(EquationSlopes, AgreeWithDifferencesForEveryFormulaAndOperand) {
    Coverage coverage;
    for (const char* text : {kPoints, kCurves, kDirectionTexts, kTangents, kSmooth})
        expectExactSlopes(SketchText(text), coverage);
    expectExactSlopes(unclampedSplines(), coverage);
    for (int residualKind = 0; residualKind <= static_cast<int>(ResidualKind::bulgeSweep); ++residualKind)
        EXPECT_TRUE(coverage.residuals.contains(static_cast<ResidualKind>(residualKind)))
            << "residualKind " << residualKind << " not tried";
    for (int operand = 0; operand <= static_cast<int>(OperandKind::splineJet); ++operand)
        EXPECT_TRUE(coverage.operands.contains(static_cast<OperandKind>(operand))) << "operand " << operand;
}

/// Rows and slopes that are worked out by hand beside those of dual numbers; the formulas that were found.
std::set<ResidualKind> expectSameAsDuals(const EquationSystem& system) {
    std::set<ResidualKind> found;
    std::vector<double> slopes, byDuals;
    for (const Equation& equation : system.set.equations) {
        if (!equation.isClosed)
            continue;
        found.insert(equation.residualKind);
        const auto rows = linearise(system.set, equation, system.values, slopes);
        const auto plain = residuals(system.set, equation, system.values);
        const auto expected = lineariseByDuals(system.set, equation, system.values, byDuals);
        EXPECT_EQ(slopes.size(), byDuals.size());
        for (std::size_t row = 0; row < equation.rows; ++row) {
            EXPECT_NEAR(rows[row], expected[row], 1e-13 * system.size);
            EXPECT_EQ(rows[row], plain[row]);
        }
        for (std::size_t k = 0; k < byDuals.size(); ++k)
            EXPECT_NEAR(slopes[k], byDuals[k], 1e-13 * (1 + std::abs(byDuals[k])))
                << "residualKind " << static_cast<int>(equation.residualKind) << " mode "
                << static_cast<int>(equation.mode) << " slope " << k;
    }
    return found;
}

TEST(EquationSlopes, WorkedOutByHandAreThoseOfDualNumbers) {
    std::set<ResidualKind> found;
    for (const char* text : {kPoints, kCurves, kDirectionTexts, kTangents, kSmooth}) {
        const SketchText sketch(text);
        KeptSizes sizes;
        for (const auto& [id, number] : sketch.numbers)
            sizes.shapes.push_back({number, 10.0, 10.0, 10.0});
        for (const EquationSystem& system :
             {buildSystem(sketch.sketch), buildSystem(sketch.sketch, bindingConstraints(sketch.sketch), sizes),
              buildPlainSystem(sketch.sketch, bindingConstraints(sketch.sketch))})
            found.merge(expectSameAsDuals(system));
    }
    using enum ResidualKind;
    for (const ResidualKind kind :
         {equalScalars, scalarIs, samePoint, pointsDistance, pointLine, pointCircle, directions, heading, lineLength,
          equalLengths, radiusIs, equalRadii, mirrored, inverted, lineCircle, circleCircle})
        EXPECT_TRUE(found.contains(kind)) << "residualKind " << static_cast<int>(kind) << " not tried";
}

TEST(EquationSlopes, AreThoseOfDualNumbersWhereALineHasNoLength) {
    const SketchText sketch(
        "line a 1,1 1,1; line d 2,2 2,2; circle c 1,1 2; parallel a d; distance a = 3; equal a d;"
        "point_on_curve d.start c");
    SketchText inside("circle c 1,1 2; point p 1,1; point_on_curve p c");
    expectSameAsDuals(buildSystem(sketch.sketch));
    expectSameAsDuals(buildSystem(inside.sketch));
}

TEST(EquationSlopes, AreFiniteWhereALineHasNoLength) {
    SketchText sketch("line a 1,1 1,1; line b 0,0 4,0; line d 2,2 2,2; parallel a d; distance a = 3; equal a b");
    const EquationSystem system = buildSystem(sketch.sketch);
    std::vector<double> slopes;
    for (const Equation& equation : system.set.equations) {
        linearise(system.set, equation, system.values, slopes);
        for (const double slope : slopes)
            EXPECT_TRUE(std::isfinite(slope));
    }
}

}  // namespace
}  // namespace holdfast::solver::detail
