#include "solver/src/residuals/ClosedForms.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <utility>

#include "geometry/Vec2.h"

namespace holdfast::solver::detail {

namespace {

/// Takes the operands of an equation from its locals, one after the other, and knows where their slopes go. Without
/// slopes wanted, what would write them falls away when it is compiled.
template <bool kWantsSlopes>
class ClosedForm {
public:
    ClosedForm(const Equation& equation, const double* locals, double* rows, double* slopes, std::size_t stride)
        : m_equation(equation), m_locals(locals), m_rows(rows), m_slopes(slopes), m_stride(stride) {
        if constexpr (kWantsSlopes)
            for (std::size_t row = 0; row < equation.rows; ++row)
                std::fill_n(slopes + row * stride, equation.locals, 0.0);
    }

    bool compute() {
        switch (m_equation.residualKind) {
            case ResidualKind::equalScalars:
            case ResidualKind::scalarIs:
                return scalars();
            case ResidualKind::samePoint:
                return samePoint();
            case ResidualKind::pointsDistance:
                return pointsDistance();
            case ResidualKind::pointLine:
                return pointLine();
            case ResidualKind::pointCircle:
                return pointCircle();
            case ResidualKind::directions:
                return directions();
            case ResidualKind::heading:
                return heading();
            case ResidualKind::lineLength:
            case ResidualKind::equalLengths:
                return lengths();
            case ResidualKind::radiusIs:
            case ResidualKind::equalRadii:
                return radii();
            case ResidualKind::mirrored:
                return mirrored();
            case ResidualKind::inverted:
                return inverted();
            case ResidualKind::lineCircle:
                return lineCircle();
            case ResidualKind::circleCircle:
                return circleCircle();
            default:
                return false;
        }
    }

    double sense() const {
        const auto [a, b] = courses();
        return dot(directionOf(a), directionOf(b));
    }

private:
    /// A vector from one local point to another; `from` -1: its direction is that of an angle, the local `to`.
    struct Arrow {
        int from, to;
        Vec2 unit;
        double length;
        bool isTurned;  ///< what is meant is the direction a quarter turn to the left of it
    };

    Vec2 pointAt(int local) const { return {m_locals[local], m_locals[local + 1]}; }

    void slope(std::size_t row, int local, double by) {
        if constexpr (kWantsSlopes)
            m_slopes[row * m_stride + static_cast<std::size_t>(local)] += by;
    }
    void slope(std::size_t row, int local, Vec2 by) {
        slope(row, local, by.x);
        slope(row, local + 1, by.y);
    }

    Arrow arrow(int from, int to) const {
        const Vec2 way = pointAt(to) - pointAt(from);
        const double length = std::sqrt(dot(way, way));
        return {from, to, (1.0 / length) * way, length, false};
    }

    /// Slopes of what changes by `by` for each radian that the arrow turns.
    void slopeByTurn(std::size_t row, const Arrow& a, double by) {
        if constexpr (kWantsSlopes) {
            if (a.from < 0)
                return slope(row, a.to, by);
            const Vec2 across = (by / a.length) * leftOf(a.unit);
            slope(row, a.to, across);
            slope(row, a.from, -across);
        }
    }

    /// Slopes of what changes by `by` for each length unit that the arrow grows.
    void slopeByLength(std::size_t row, const Arrow& a, double by) {
        if constexpr (kWantsSlopes) {
            slope(row, a.to, by * a.unit);
            slope(row, a.from, -by * a.unit);
        }
    }

    bool scalars() {
        const double scale = m_equation.scale;
        double value = m_locals[0] - m_equation.value;
        slope(0, 0, scale);
        if (m_equation.residualKind == ResidualKind::equalScalars) {
            value -= m_equation.sign * m_locals[1];
            slope(0, 1, -m_equation.sign * scale);
        }
        m_rows[0] = value * scale;
        return true;
    }

    bool samePoint() {
        for (int i = 0; i < 2; ++i) {
            m_rows[i] = m_locals[2 + i] - m_locals[i];
            slope(static_cast<std::size_t>(i), i, -1.0);
            slope(static_cast<std::size_t>(i), 2 + i, 1.0);
        }
        return true;
    }

    bool pointsDistance() {
        const Arrow apart = arrow(0, 2);
        m_rows[0] = apart.length - m_equation.value;
        slopeByLength(0, apart, 1.0);
        return apart.length > 0.0;
    }

    /// To the left of the line, times `by`: the value, and its slopes.
    double offLine(std::size_t row, const Arrow& line, int point, double by) {
        const Vec2 from = pointAt(point) - pointAt(line.from);
        const Vec2 across = by * leftOf(line.unit);
        slope(row, point, across);
        slope(row, line.from, -across);
        slopeByTurn(row, line, -by * dot(line.unit, from));
        return by * cross(line.unit, from);
    }

    bool pointLine() {
        const Arrow line = arrow(2, 4);
        m_rows[0] = offLine(0, line, 0, m_equation.sign) - m_equation.value;
        return line.length > 0.0;
    }

    bool pointCircle() {
        const Arrow out = arrow(2, 0);
        m_rows[0] = (out.length - m_locals[4]) * m_equation.sign - m_equation.value;
        slopeByLength(0, out, m_equation.sign);
        slope(0, 4, -m_equation.sign);
        return out.length > 0.0;
    }

    /// The direction of a curve, where it is asked for at the point.
    Arrow courseOf(OperandKind kind, int local, int point) const {
        switch (kind) {
            case OperandKind::segment:
                return arrow(local, local + 2);
            case OperandKind::axis:
                return {-1, local + 2, {std::cos(m_locals[local + 2]), std::sin(m_locals[local + 2])}, 1.0, false};
            default: {
                Arrow out = arrow(local, point);
                out.isTurned = true;
                return out;
            }
        }
    }

    static Vec2 directionOf(const Arrow& a) { return a.isTurned ? leftOf(a.unit) : a.unit; }

    std::pair<Arrow, Arrow> courses() const {
        const OperandKind one = m_equation.operands[0], two = m_equation.operands[1];
        const int second = localCount(one), point = second + localCount(two);
        return {courseOf(one, 0, point), courseOf(two, second, point)};
    }

    bool directions() {
        const auto [a, b] = courses();
        const double sine = cross(directionOf(a), directionOf(b)) * m_equation.sign;
        const double cosine = dot(directionOf(a), directionOf(b)) * m_equation.sign;
        double left = 0.0, byTurn = m_equation.scale;
        switch (static_cast<DirectionMode>(m_equation.mode)) {
            case DirectionMode::parallel:
                left = sine - m_equation.value;
                byTurn *= cosine;
                break;
            case DirectionMode::perpendicular:
                left = cosine - m_equation.value;
                byTurn *= -sine;
                break;
            case DirectionMode::angle:
                left = angleLeft(std::atan2(sine, cosine), 2 * std::numbers::pi);
                break;
            case DirectionMode::angleModuloPi:
                left = angleLeft(std::atan2(sine, cosine), std::numbers::pi);
                break;
        }
        m_rows[0] = left * m_equation.scale;
        slopeByTurn(0, a, -byTurn);
        slopeByTurn(0, b, byTurn);
        return a.length > 0.0 && b.length > 0.0;
    }

    bool heading() {
        const Arrow line = courseOf(m_equation.operands[0], 0, 0);
        const double angle = std::atan2(line.unit.y * m_equation.sign, line.unit.x * m_equation.sign);
        m_rows[0] = angleLeft(angle, 2 * std::numbers::pi) * m_equation.scale;
        slopeByTurn(0, line, m_equation.scale);
        return line.length > 0.0;
    }

    double angleLeft(double angle, double period) const {
        const double left = angle - m_equation.value;
        return left - period * std::round(left / period);
    }

    bool lengths() {
        const Arrow one = arrow(0, 2);
        slopeByLength(0, one, 1.0);
        m_rows[0] = one.length - m_equation.value;
        if (m_equation.residualKind == ResidualKind::lineLength)
            return one.length > 0.0;
        const Arrow two = arrow(4, 6);
        slopeByLength(0, two, -1.0);
        m_rows[0] = one.length - two.length;
        return one.length > 0.0 && two.length > 0.0;
    }

    bool radii() {
        const bool isOne = m_equation.residualKind == ResidualKind::radiusIs;
        m_rows[0] = m_locals[2] - (isOne ? m_equation.value : m_locals[5]);
        slope(0, 2, 1.0);
        if (!isOne)
            slope(0, 5, -1.0);
        return true;
    }

    bool mirrored() {
        const Arrow axis = arrow(4, 6);
        const Vec2 apart = pointAt(0) - pointAt(2);
        m_rows[0] = dot(axis.unit, apart) * m_equation.sign;
        slope(0, 0, m_equation.sign * axis.unit);
        slope(0, 2, -m_equation.sign * axis.unit);
        slopeByTurn(0, axis, m_equation.sign * cross(axis.unit, apart));
        m_rows[1] = offLine(1, axis, 0, 0.5) + offLine(1, axis, 2, 0.5);
        return axis.length > 0.0;
    }

    bool inverted() {
        for (int i = 0; i < 2; ++i) {
            const auto row = static_cast<std::size_t>(i);
            m_rows[i] = m_locals[i] + m_locals[2 + i] - 2.0 * m_locals[4 + i];
            slope(row, i, 1.0);
            slope(row, 2 + i, 1.0);
            slope(row, 4 + i, -2.0);
        }
        return true;
    }

    bool lineCircle() {
        const Arrow line = arrow(0, 2);
        const double byDistance = gapByDistance();
        const double distance = byDistance * offLine(0, line, 4, byDistance * m_equation.sign);
        m_rows[0] = gap(distance, m_locals[6], 6, 0.0, -1);
        return line.length > 0.0;
    }

    bool circleCircle() {
        const Arrow apart = arrow(0, 3);
        slopeByLength(0, apart, gapByDistance());
        m_rows[0] = gap(apart.length, m_locals[2], 2, m_locals[5], 5);
        return apart.length > 0.0;
    }

    double gapByDistance() const { return static_cast<GapMode>(m_equation.mode) == GapMode::outside ? 1.0 : -1.0; }

    /// What is left between two radii at a distance, see GapMode; the slopes by the radii, -1: there is none.
    double gap(double distance, double r1, int local1, double r2, int local2) {
        double by1 = 1.0, by2 = 1.0;
        switch (static_cast<GapMode>(m_equation.mode)) {
            case GapMode::outside:
                by1 = by2 = -1.0;
                break;
            case GapMode::inside:
                by1 = m_equation.sign;
                by2 = -m_equation.sign;
                break;
            case GapMode::crossing:
                break;
        }
        slope(0, local1, by1);
        if (local2 >= 0)
            slope(0, local2, by2);
        return gapByDistance() * distance + by1 * r1 + by2 * r2 - m_equation.value;
    }

    const Equation& m_equation;
    const double* m_locals;
    double* m_rows;
    double* m_slopes;
    std::size_t m_stride;
};

bool isOneOf(OperandKind kind, std::initializer_list<OperandKind> kinds) {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool hasClosedDirections(const Equation& e) {
    using enum OperandKind;
    const bool hasCircle = e.operands[0] == circle || e.operands[1] == circle;
    return isOneOf(e.operands[0], {segment, axis, circle}) && isOneOf(e.operands[1], {segment, axis, circle}) &&
           (e.operands[2] == point || (!hasCircle && e.operands[2] == none));
}

}  // namespace

bool hasClosedForm(const Equation& e) {
    using enum OperandKind;
    const auto takes = [&](OperandKind one, OperandKind two, OperandKind three) {
        return e.operands[0] == one && e.operands[1] == two && e.operands[2] == three;
    };
    if (e.function >= 0)
        return false;
    switch (e.residualKind) {
        case ResidualKind::equalScalars:
        case ResidualKind::scalarIs:
            return true;
        case ResidualKind::samePoint:
        case ResidualKind::pointsDistance:
            return takes(point, point, none);
        case ResidualKind::pointLine:
            return takes(point, segment, none);
        case ResidualKind::pointCircle:
            return takes(point, circle, none);
        case ResidualKind::directions:
            return hasClosedDirections(e);
        case ResidualKind::heading:
            return takes(segment, none, none) || takes(axis, none, none);
        case ResidualKind::lineLength:
            return takes(segment, none, none);
        case ResidualKind::equalLengths:
            return takes(segment, segment, none);
        case ResidualKind::radiusIs:
            return takes(circle, none, none);
        case ResidualKind::equalRadii:
        case ResidualKind::circleCircle:
            return takes(circle, circle, none);
        case ResidualKind::mirrored:
            return takes(point, point, segment);
        case ResidualKind::inverted:
            return takes(point, point, point);
        case ResidualKind::lineCircle:
            return takes(segment, circle, none);
        default:
            return false;
    }
}

bool evaluateClosed(const Equation& equation, const double* locals, double* rows) {
    return ClosedForm<false>(equation, locals, rows, nullptr, 0).compute();
}

bool lineariseClosed(const Equation& equation, const double* locals, double* rows, double* slopes, std::size_t stride) {
    return ClosedForm<true>(equation, locals, rows, slopes, stride).compute();
}

double senseOfClosed(const Equation& equation, const double* locals) {
    return ClosedForm<false>(equation, locals, nullptr, nullptr, 0).sense();
}

}  // namespace holdfast::solver::detail
