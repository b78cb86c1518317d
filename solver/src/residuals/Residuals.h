#pragma once

#include <numbers>

#include "solver/src/Uses.h"
#include "solver/src/residuals/ResidualOperands.h"

/// The formulas behind the residuals.
namespace holdfast::solver::detail::formulas {

/// Where two curves meet.
template <class T>
struct Meeting {
    AnyCurve<T> first, second;
    Pair<T> point;
};

template <class T>
Meeting<T> meeting(const Equation& e, const T* locals) {
    Reader<T> reader(e, locals);
    const AnyCurve<T> one(reader), two(reader);
    return {one, two, e.operands[2] == OperandKind::none ? Pair<T>{} : reader.point()};
}

/// angle - value, taken to the nearest turn (or half turn).
template <class T>
T angleLeft(const T& angle, double value, double period) {
    const T left = angle - value;
    return left - period * std::round(valueOf(left) / period);
}

template <class T>
T turnLeft(const Equation& e, const Pair<T>& a, const Pair<T>& b) {
    const T sine = cross(a, b) * e.sign, cosine = dot(a, b) * e.sign;
    switch (static_cast<DirectionMode>(e.mode)) {
        case DirectionMode::parallel:
            return (sine - e.value) * e.scale;
        case DirectionMode::perpendicular:
            return (cosine - e.value) * e.scale;
        case DirectionMode::angle:
            return angleLeft(atan2(sine, cosine), e.value, 2 * std::numbers::pi) * e.scale;
        case DirectionMode::angleModuloPi:
            break;
    }
    return angleLeft(atan2(sine, cosine), e.value, std::numbers::pi) * e.scale;
}

template <class T>
T distanceFrom(const LineCurve<T>& line, const Pair<T>& p) {
    return cross(line.direction, p - line.base);
}

template <class T>
T gapLeft(const Equation& e, const T& distance, const T& r1, const T& r2) {
    switch (static_cast<GapMode>(e.mode)) {
        case GapMode::outside:
            return distance - r1 - r2 - e.value;
        case GapMode::inside:
            return (r1 - r2) * e.sign - distance - e.value;
        case GapMode::crossing:
            break;
    }
    return r1 + r2 - distance - e.value;
}

/// Sweep of an arc, counter-clockwise from start to end, in (0, 2 pi].
template <class T>
T sweepOf(const CircleCurve<T>& circle, const Pair<T>& start, const Pair<T>& end) {
    const Pair<T> a = start - circle.centre, b = end - circle.centre;
    const T angle = atan2(cross(a, b), dot(a, b));
    return valueOf(angle) > 0.0 ? angle : angle + 2 * std::numbers::pi;
}

template <class T>
void mirrored(const Equation& e, Reader<T>& reader, T* out) {
    const Pair<T> p = reader.point(), q = reader.point();
    const LineCurve<T> axis = reader.line();
    out[0] = dot(axis.direction, p - q) * e.sign;
    out[1] = distanceFrom(axis, (p + q) * T(0.5));
}

template <class T>
void mirroredDirections(const Equation& e, Reader<T>& reader, T* out) {
    const Pair<T> a = reader.direction(), b = reader.direction(), axis = reader.direction();
    const Pair<T> mirror = axis * (dot(a, axis) * 2.0) - a;
    out[0] = cross(mirror, b) * e.scale;
}

template <class T>
void lineEllipse(const Equation& e, Reader<T>& reader, T* out) {
    const LineCurve<T> line = reader.line();
    const EllipseCurve<T> ellipse = reader.ellipse();
    const T along = cross(line.direction, ellipse.major) * ellipse.a;
    const T across = cross(line.direction, ellipse.minor()) * ellipse.b;
    out[0] = distanceFrom(line, ellipse.centre) * e.sign - sqrt(along * along + across * across);
}

template <class T>
void touches(const Equation& e, Reader<T>& reader, T* out) {
    const AnyCurve<T> one(reader);
    const JetCurve<T> jet = reader.jet();
    const Pair<T> direction = unit(jet.first);
    if (e.residualKind == ResidualKind::lineTouch) {
        out[0] = distanceFrom(one.line(), jet.point);
        out[1] = cross(one.line().direction, direction) * e.scale;
    } else if (e.residualKind == ResidualKind::circleTouch) {
        const Pair<T> out1 = jet.point - one.circle().centre;
        out[0] = length(out1) - one.circle().radius;
        out[1] = dot(unit(out1), direction) * e.scale;
    } else {
        const Pair<T> apart = one.jet().point - jet.point;
        out[0] = apart.x;
        out[1] = apart.y;
        out[2] = cross(unit(one.jet().first), direction) * e.scale;
    }
}

template <class T>
void ellipseHelper(const Equation& e, Reader<T>& reader, T* out) {
    const Pair<T> p = reader.point();
    const EllipseCurve<T> ellipse = reader.ellipse();
    const Pair<T> from = p - ellipse.centre;
    if (e.residualKind == ResidualKind::ellipseVertex) {
        const Pair<T> vertex = e.mode == 0 ? ellipse.major * ellipse.a : ellipse.minor() * ellipse.b;
        out[0] = from.x - vertex.x * e.sign;
        out[1] = from.y - vertex.y * e.sign;
        return;
    }
    const T along = dot(from, ellipse.major) * e.sign;
    const T square = valueOf(along) < 0.0 ? -(along * along) : along * along;
    out[0] = cross(ellipse.major, from);
    out[1] = (square - (ellipse.a * ellipse.a - ellipse.b * ellipse.b)) / ellipse.a;
}

template <class T>
void evaluatePoints(const Equation& e, Reader<T>& reader, T* out) {
    const Pair<T> p = reader.point();
    const Pair<T> d = reader.point() - p;
    switch (e.residualKind) {
        case ResidualKind::pointsDeltaX:
            out[0] = d.x - e.value;
            break;
        case ResidualKind::pointsDeltaY:
            out[0] = d.y - e.value;
            break;
        case ResidualKind::pointsDistance:
            out[0] = length(d) - e.value;
            break;
        default:
            out[0] = d.x, out[1] = d.y;
            break;
    }
}

template <class T>
void evaluatePointAndCurve(const Equation& e, Reader<T>& reader, T* out) {
    const Pair<T> p = reader.point();
    if (e.residualKind == ResidualKind::pointLine) {
        out[0] = distanceFrom(reader.line(), p) * e.sign - e.value;
    } else if (e.residualKind == ResidualKind::pointCircle) {
        const CircleCurve<T> circle = reader.circle();
        out[0] = (length(p - circle.centre) - circle.radius) * e.sign - e.value;
    } else {
        const EllipseCurve<T> ellipse = reader.ellipse();
        const T x = dot(p - ellipse.centre, ellipse.major) / ellipse.a;
        const T y = dot(p - ellipse.centre, ellipse.minor()) / ellipse.b;
        out[0] = (sqrt(x * x + y * y) - 1.0) * ellipse.b;
    }
}

template <class T>
void evaluateSizes(const Equation& e, Reader<T>& reader, T* out) {
    switch (e.residualKind) {
        case ResidualKind::lineLength:
            out[0] = reader.line().size - e.value;
            break;
        case ResidualKind::equalLengths:
            out[0] = reader.line().size;
            out[0] = out[0] - reader.line().size;
            break;
        case ResidualKind::radiusIs:
            out[0] = reader.circle().radius - e.value;
            break;
        case ResidualKind::equalRadii:
            out[0] = reader.circle().radius;
            out[0] = out[0] - reader.circle().radius;
            break;
        default:
            out[0] = reader.ellipse().a;
            out[0] = out[0] - reader.ellipse().a;
            break;
    }
}

template <class T>
void evaluateArcs(const Equation& e, Reader<T>& reader, T* out) {
    if (e.residualKind == ResidualKind::bulgeSweep) {
        const T bulge = reader.scalar();
        out[0] = (atan(valueOf(bulge) < 0.0 ? -bulge : bulge) * 4.0 - e.value) * e.scale;
        return;
    }
    const CircleCurve<T> circle = reader.circle();
    if (e.residualKind == ResidualKind::bulgeLength) {
        const T bulge = reader.scalar();
        out[0] = circle.radius * atan(valueOf(bulge) < 0.0 ? -bulge : bulge) * 4.0 - e.value;
        return;
    }
    const Pair<T> start = reader.point();
    const T sweep = sweepOf(circle, start, reader.point());
    out[0] = e.residualKind == ResidualKind::arcSweep ? (sweep - e.value) * e.scale : circle.radius * sweep - e.value;
}

template <class T>
void evaluateGaps(const Equation& e, Reader<T>& reader, T* out) {
    if (e.residualKind == ResidualKind::lineCircle) {
        const LineCurve<T> line = reader.line();
        const CircleCurve<T> circle = reader.circle();
        out[0] = gapLeft(e, distanceFrom(line, circle.centre) * e.sign, circle.radius, T(0.0));
    } else {
        const CircleCurve<T> one = reader.circle(), two = reader.circle();
        out[0] = gapLeft(e, length(one.centre - two.centre), one.radius, two.radius);
    }
}

template <class T>
void evaluateScalars(const Equation& e, Reader<T>& reader, T* out) {
    const T a = reader.scalar();
    out[0] = ((e.residualKind == ResidualKind::scalarIs ? a : a - reader.scalar() * e.sign) - e.value) * e.scale;
}

template <class T>
void evaluateCourses(const Equation& e, const T* locals, T* out) {
    const Meeting<T> m = meeting(e, locals);
    if (e.residualKind == ResidualKind::directions)
        out[0] = turnLeft(e, m.first.direction(m.point), m.second.direction(m.point));
    else
        out[0] = (m.first.at(m.point).curvature - m.second.at(m.point).curvature * e.sign) * (e.scale * e.scale);
}

/// All rows of one equation.
template <class T>
void evaluate(const Equation& e, const T* locals, T* out) {
    Reader<T> reader(e, locals);
    switch (e.residualKind) {
        case ResidualKind::equalScalars:
        case ResidualKind::scalarIs:
            evaluateScalars(e, reader, out);
            break;
        case ResidualKind::samePoint:
        case ResidualKind::pointsDeltaX:
        case ResidualKind::pointsDeltaY:
        case ResidualKind::pointsDistance:
            evaluatePoints(e, reader, out);
            break;
        case ResidualKind::pointLine:
        case ResidualKind::pointCircle:
        case ResidualKind::pointEllipse:
            evaluatePointAndCurve(e, reader, out);
            break;
        case ResidualKind::directions:
        case ResidualKind::curvatures:
            evaluateCourses(e, locals, out);
            break;
        case ResidualKind::heading: {
            const Pair<T> d = reader.direction();
            out[0] = angleLeft(atan2(d.y * e.sign, d.x * e.sign), e.value, 2 * std::numbers::pi) * e.scale;
            break;
        }
        case ResidualKind::lineLength:
        case ResidualKind::equalLengths:
        case ResidualKind::radiusIs:
        case ResidualKind::equalRadii:
        case ResidualKind::equalMajorRadii:
            evaluateSizes(e, reader, out);
            break;
        case ResidualKind::mirrored:
            mirrored(e, reader, out);
            break;
        case ResidualKind::mirroredDirections:
            mirroredDirections(e, reader, out);
            break;
        case ResidualKind::inverted: {
            const Pair<T> p = reader.point(), q = reader.point();
            const Pair<T> left = p + q - reader.point() * T(2.0);
            out[0] = left.x, out[1] = left.y;
            break;
        }
        case ResidualKind::lineCircle:
        case ResidualKind::circleCircle:
            evaluateGaps(e, reader, out);
            break;
        case ResidualKind::lineEllipse:
            lineEllipse(e, reader, out);
            break;
        case ResidualKind::lineTouch:
        case ResidualKind::circleTouch:
        case ResidualKind::curveTouch:
            touches(e, reader, out);
            break;
        case ResidualKind::ellipseVertex:
        case ResidualKind::ellipseFocus:
            ellipseHelper(e, reader, out);
            break;
        case ResidualKind::arcLength:
        case ResidualKind::arcSweep:
        case ResidualKind::bulgeLength:
        case ResidualKind::bulgeSweep:
            evaluateArcs(e, reader, out);
            break;
    }
}

}  // namespace holdfast::solver::detail::formulas
