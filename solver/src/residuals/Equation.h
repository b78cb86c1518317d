#pragma once

#include <array>
#include <cstdint>
#include <iterator>
#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// What an equation reads, and in how many numbers ("locals") it sees it.
enum class OperandKind : std::uint8_t {
    none,
    scalar,       ///< 1
    point,        ///< 2: x y
    middle,       ///< 4: the middle of two points
    arcMiddle,    ///< 7: centre, radius, start, end
    bulgeCentre,  ///< 5: two vertices, bulge
    bulgeMiddle,  ///< 5
    segment,      ///< 4: the line from one point to another
    axis,         ///< 3: the line through a point at an angle
    circle,       ///< 3: centre, radius
    bulgeCircle,  ///< 5: the circle of an arc segment
    ellipse,      ///< 5: centre, major axis vector, minor radius
    ellipseAt,    ///< 6: an ellipse and an eccentric angle
    splinePoint,  ///< 2: a point of a spline
    splineJet     ///< 6: point, first and second derivative of a spline
};

/// How many locals an operand has.
constexpr int localCount(OperandKind kind) {
    constexpr int counts[] = {0, 1, 2, 4, 7, 5, 5, 4, 3, 3, 5, 5, 6, 2, 6};
    static_assert(std::size(counts) == static_cast<std::size_t>(OperandKind::splineJet) + 1);
    return counts[static_cast<std::size_t>(kind)];
}

/// The formulas that equations are made of. Operands in brackets; lengths unless said otherwise, each with a gradient
/// of about one, so that one tolerance fits all.
enum class ResidualKind : std::uint8_t {
    equalScalars,     ///< (scalar a, scalar b): (a - sign b - value) scale
    scalarIs,         ///< (scalar a): (a - value) scale
    samePoint,        ///< (point, point): both differences
    pointsDeltaX,     ///< (point p, point q): q.x - p.x - value
    pointsDeltaY,     ///< the same along y
    pointsDistance,   ///< (point, point): distance - value
    pointLine,        ///< (point, line): sign * distance to the left of the line - value
    pointCircle,      ///< (point, circle): sign (distance to the centre - radius) - value
    pointEllipse,     ///< (point, ellipse): (sqrt((xi/a)^2 + (eta/b)^2) - 1) b
    directions,       ///< (curve, curve[, point]): turn between their directions there, see DirectionMode, times scale
    heading,          ///< (line): (its angle from the x axis - value) scale
    lineLength,       ///< (line): length - value
    equalLengths,     ///< (line, line)
    radiusIs,         ///< (circle): radius - value
    equalRadii,       ///< (circle, circle)
    equalMajorRadii,  ///< (ellipse, ellipse)
    mirrored,         ///< (point p, point q, line): p - q along the line; the middle's distance from it
    mirroredDirections,  ///< (line, line, line): turn from the mirrored first to the second, parallel, times scale
    inverted,            ///< (point, point, point c): p + q - 2 c
    lineCircle,          ///< (line, circle): sign * distance of the centre - radius - gap, see GapMode
    circleCircle,        ///< (circle, circle): see GapMode
    lineEllipse,         ///< (line, ellipse): sign * distance of the centre - reach of the ellipse across the line
    lineTouch,      ///< (line, curve at a parameter): its distance from the line; its direction across it, times scale
    circleTouch,    ///< (circle, curve at a parameter): distance to centre - radius; direction along radius
    curveTouch,     ///< (curve, curve at parameters): both differences; turn between their directions, times scale
    curvatures,     ///< (curve, curve[, point]): (curvature - sign curvature) scale^2
    ellipseVertex,  ///< (point, ellipse): point - vertex of the major (mode 0) or minor (mode 1) axis on side sign
    ellipseFocus,   ///< (point, ellipse): off the major axis; signed square of the focal distance, over the radius
    arcLength,      ///< (circle, point start, point end): radius * sweep - value
    arcSweep,       ///< the same: (sweep - value) scale
    bulgeLength,    ///< (bulgeCircle, scalar bulge)
    bulgeSweep      ///< (scalar bulge): (4 atan |bulge| - value) scale
};

/// ResidualKind::directions: which turn between two directions is asked for.
enum class DirectionMode : std::uint8_t { parallel, perpendicular, angle, angleModuloPi };

/// ResidualKind::circleCircle and lineCircle: how circles lie to each other.
enum class GapMode : std::uint8_t {
    outside,  ///< distance - r1 - r2 - value
    inside,   ///< sign (r1 - r2) - distance - value
    crossing  ///< r1 + r2 - distance - value (lineCircle: radius - distance - value)
};

/// How an operand of kind splinePoint or splineJet is read: its inputs are [the parameter's value,] then x, y of
/// control points. With a constant parameter only the control points that matter there are inputs.
struct SplineUse {
    int spline = -1;
    bool isParamFree = false;
    double param = 0.0;
};

/// One to three equations F = 0 of the same operands.
struct Equation {
    ResidualKind residualKind = ResidualKind::samePoint;
    std::array<OperandKind, 3> operands{};
    std::array<int, 3> splineUses{-1, -1, -1};
    std::uint8_t rows = 1;
    std::uint8_t mode = 0;
    std::uint8_t locals = 0;
    int firstInput = 0;  ///< in EquationSet::inputs
    int inputCount = 0;
    int constraint = -1;     ///< in SketchData::constraints; -1: a rule that belongs to the entity
    int entity = -1;         ///< the entity, when constraint is -1
    bool isImplied = false;  ///< another constraint usually says the same: spare without being redundant
    bool isClosed = false;   ///< rows and slopes are worked out by hand, see hasClosedForm()
    int function = -1;       ///< in EquationSet::functions: a user's own rows instead of the residual kind's
    int slack = -1;          ///< a value that the first row is to equal instead of 0; the last input
    double value = 0.0;
    double sign = 1.0;
    double scale = 1.0;
};

/// An operand while an equation is put together.
struct Operand {
    OperandKind kind = OperandKind::none;
    std::vector<int> inputs;  ///< values that it reads
    SplineUse use;            ///< splines only
};

/// All equations of a sketch, and which values they read.
struct EquationSet {
    static constexpr int kMaxRows = 3;
    static constexpr int kMaxLocals = 20;

    std::vector<Equation> equations;
    std::vector<int> inputs;
    std::vector<SplineUse> splineUses;
    const std::vector<SplineKnots>* splines = nullptr;
    std::vector<const ResidualFunction*> functions;  ///< of the sketch's constraints

    /// Appends an equation with these operands; its other fields are taken from `form`.
    void add(Equation form, std::initializer_list<Operand> operands);

    std::span<const int> inputsOf(const Equation& equation) const {
        return std::span(inputs).subspan(static_cast<std::size_t>(equation.firstInput),
                                         static_cast<std::size_t>(equation.inputCount));
    }
};

/// The values of an equation's rows.
std::array<double, EquationSet::kMaxRows> residuals(const EquationSet& set, const Equation& equation,
                                                    std::span<const double> values);

/// The values of an equation's rows, and their exact derivatives: slopes[row * inputCount + k] by input k.
std::array<double, EquationSet::kMaxRows> linearise(const EquationSet& set, const Equation& equation,
                                                    std::span<const double> values, std::vector<double>& slopes);

/// The same by dual numbers alone, also where rows and slopes are worked out by hand: what these have to agree with.
std::array<double, EquationSet::kMaxRows> lineariseByDuals(const EquationSet& set, const Equation& equation,
                                                           std::span<const double> values, std::vector<double>& slopes);

/// Scalar product of the unit directions of the two curves of a `directions` equation: negative when they run against
/// each other.
double senseOf(const EquationSet& set, const Equation& equation, std::span<const double> values);

}  // namespace holdfast::solver::detail
