#pragma once

#include <cmath>

#include <holdfast/solver/Dual.h>

#include "geometry/Conics.h"
#include "solver/src/Uses.h"
#include "solver/src/residuals/Equation.h"

/// What the formulas of equations are written in, once for plain numbers and for dual ones: points, lines, circles and
/// other curves, read from the locals of an equation.
namespace holdfast::solver::detail::formulas {

using std::atan;
using std::atan2;
using std::cos;
using std::sin;
using std::sqrt;

template <class T>
struct Pair {
    T x{}, y{};

    friend Pair operator+(const Pair& a, const Pair& b) { return {a.x + b.x, a.y + b.y}; }
    friend Pair operator-(const Pair& a, const Pair& b) { return {a.x - b.x, a.y - b.y}; }
    friend Pair operator*(const Pair& a, const T& f) { return {a.x * f, a.y * f}; }
    friend Pair operator/(const Pair& a, const T& f) { return {a.x / f, a.y / f}; }
};

template <class T>
T dot(const Pair<T>& a, const Pair<T>& b) {
    return a.x * b.x + a.y * b.y;
}

template <class T>
T cross(const Pair<T>& a, const Pair<T>& b) {
    return a.x * b.y - a.y * b.x;
}

template <class T>
T length(const Pair<T>& a) {
    return sqrt(dot(a, a));
}

/// A quarter turn counter-clockwise.
template <class T>
Pair<T> turned(const Pair<T>& a) {
    return {-a.y, a.x};
}

/// The vector at length one; a vector of no length stays as it is.
template <class T>
Pair<T> unit(const Pair<T>& a) {
    const T size = length(a);
    return valueOf(size) > 0.0 ? a / size : a;
}

template <class T>
struct LineCurve {
    Pair<T> base, direction;  ///< direction of length one
    T size{};                 ///< length of a segment, 1 for an unbounded line
};

template <class T>
struct CircleCurve {
    Pair<T> centre;
    T radius{};
};

template <class T>
struct EllipseCurve {
    Pair<T> centre, major;  ///< major: unit direction of the major axis
    T a{}, b{};
    Pair<T> minor() const { return turned(major); }
};

template <class T>
struct JetCurve {
    Pair<T> point, first, second;
};

/// Reads the operands of an equation from its locals, one after the other.
template <class T>
class Reader {
public:
    Reader(const Equation& equation, const T* locals) : m_equation(equation), m_next(locals) {}

    OperandKind kind() const { return m_equation.operands[m_index]; }

    void skip() { m_next += localCount(m_equation.operands[m_index++]); }

    T scalar() {
        ++m_index;
        return *m_next++;
    }

    Pair<T> point() {
        switch (m_equation.operands[m_index++]) {
            case OperandKind::middle: {
                const Pair<T> a = pair(), b = pair();
                return (a + b) * T(0.5);
            }
            case OperandKind::arcMiddle:
                return arcMiddle();
            case OperandKind::bulgeCentre:
                return bulge().centre;
            case OperandKind::bulgeMiddle:
                return bulgeMiddle();
            default:
                return pair();
        }
    }

    /// Of a line, at length one.
    Pair<T> direction() {
        const Pair<T> base = pair();
        if (m_equation.operands[m_index++] != OperandKind::axis)
            return unit(pair() - base);
        const T angle = *m_next++;
        return {cos(angle), sin(angle)};
    }

    LineCurve<T> line() {
        const Pair<T> base = pair();
        if (m_equation.operands[m_index++] == OperandKind::axis) {
            const T angle = *m_next++;
            return {base, {cos(angle), sin(angle)}, T(1.0)};
        }
        const Pair<T> along = pair() - base;
        return {base, unit(along), length(along)};
    }

    CircleCurve<T> circle() {
        if (m_equation.operands[m_index++] == OperandKind::bulgeCircle)
            return bulge();
        const Pair<T> centre = pair();
        return {centre, *m_next++};
    }

    EllipseCurve<T> ellipse() {
        ++m_index;
        const Pair<T> centre = pair(), axis = pair();
        return {centre, unit(axis), length(axis), *m_next++};
    }

    JetCurve<T> jet() {
        if (kind() != OperandKind::ellipseAt) {
            ++m_index;
            const Pair<T> p = pair(), first = pair();
            return {p, first, pair()};
        }
        const EllipseCurve<T> e = ellipse();
        const T t = *m_next++;
        const Pair<T> u = e.major * e.a, v = e.minor() * e.b;
        const Pair<T> out = u * cos(t) + v * sin(t);
        return {e.centre + out, v * cos(t) - u * sin(t), Pair<T>{} - out};
    }

private:
    Pair<T> pair() {
        const Pair<T> p{m_next[0], m_next[1]};
        m_next += 2;
        return p;
    }

    /// For an arc that turns counter-clockwise from start to end, of any sweep.
    Pair<T> arcMiddle() {
        const Pair<T> centre = pair();
        const T radius = *m_next++;
        const Pair<T> start = pair(), end = pair();
        return centre - turned(unit(end - start)) * radius;
    }

    /// Circle of an arc segment from its vertices and bulge = tan(included angle / 4).
    CircleCurve<T> bulge() {
        const Pair<T> p = pair(), q = pair();
        const T b = *m_next++;
        const Pair<T> chord = q - p;
        const T radius = length(chord) * radiusOfBulge(b);
        return {(p + q) * T(0.5) + turned(chord) * apothemOfBulge(b), valueOf(b) < 0.0 ? -radius : radius};
    }

    Pair<T> bulgeMiddle() {
        const Pair<T> p = pair(), q = pair();
        const T b = *m_next++;
        return (p + q) * T(0.5) - turned(q - p) * (b * 0.5);
    }

    const Equation& m_equation;
    const T* m_next;
    std::size_t m_index = 0;
};

/// Direction and curvature of a curve at a point of it; lines and jets have theirs without the point.
template <class T>
struct Course {
    Pair<T> direction;
    T curvature{};
};

/// A curve of any kind, read from the locals when it is asked for.
template <class T>
class AnyCurve {
public:
    /// Takes the next operand from the reader.
    explicit AnyCurve(Reader<T>& reader) : m_reader(reader) { reader.skip(); }

    LineCurve<T> line() const { return Reader<T>(m_reader).line(); }
    CircleCurve<T> circle() const { return Reader<T>(m_reader).circle(); }
    JetCurve<T> jet() const { return Reader<T>(m_reader).jet(); }

    Pair<T> direction(const Pair<T>& p) const {
        switch (m_reader.kind()) {
            case OperandKind::segment:
            case OperandKind::axis:
                return Reader<T>(m_reader).direction();
            case OperandKind::ellipse:
                return alongEllipse(p).direction;
            case OperandKind::splineJet:
            case OperandKind::ellipseAt:
                return unit(jet().first);
            default:
                return turned(unit(p - circle().centre));
        }
    }

    Course<T> at(const Pair<T>& p) const {
        switch (m_reader.kind()) {
            case OperandKind::segment:
            case OperandKind::axis:
                return {direction(p), T(0.0)};
            case OperandKind::ellipse:
                return alongEllipse(p);
            case OperandKind::splineJet:
            case OperandKind::ellipseAt:
                return alongJet();
            default:
                return {direction(p), T(1.0) / circle().radius};
        }
    }

private:
    /// From the gradient of (xi/a)^2 + (eta/b)^2; curvature of an implicit curve.
    Course<T> alongEllipse(const Pair<T>& p) const {
        const EllipseCurve<T> ellipse = Reader<T>(m_reader).ellipse();
        const Pair<T> out = p - ellipse.centre;
        const T a2 = ellipse.a * ellipse.a, b2 = ellipse.b * ellipse.b;
        const T x = dot(out, ellipse.major) / a2, y = dot(out, ellipse.minor()) / b2;
        const Pair<T> normal = ellipse.major * x + ellipse.minor() * y;
        const T size = length(normal);
        return {turned(unit(normal)), T(1.0) / (a2 * b2 * size * size * size)};
    }

    Course<T> alongJet() const {
        const JetCurve<T> curve = jet();
        const T speed = length(curve.first);
        return {unit(curve.first), cross(curve.first, curve.second) / (speed * speed * speed)};
    }

    Reader<T> m_reader;  ///< at the curve's operand
};

}  // namespace holdfast::solver::detail::formulas
