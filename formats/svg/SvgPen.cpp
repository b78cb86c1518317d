#include "formats/svg/SvgPen.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "formats/svg/SvgFault.h"
#include "geometry/Angles.h"
#include "geometry/Conics.h"
#include "geometry/Tolerances.h"

namespace holdfast::formats {
namespace {

/// Half turns of which files with few decimals say the ends. Where the ends of an arc are a little less than a diameter
/// apart its centre lies off their middle by the root of what is missing.
constexpr double kRoundedHalf = 1e-3;

/// Parts of its radius within which arcs of files with few decimals are on one circle.
constexpr double kSameCircle = 1e-4;

/// Control points on the chord, one behind the other, make a straight piece.
bool isStraightBetween(Vec2 from, Vec2 first, Vec2 second, Vec2 to) {
    const Vec2 chord = to - from;
    const double size = dot(chord, chord);
    const auto along = [&](Vec2 point) { return dot(point - from, chord) / size; };
    const auto isOn = [&](Vec2 point) { return std::abs(cross(point - from, chord)) <= kSamePoint * size; };
    return size > 0.0 && isOn(first) && isOn(second) && 0.0 <= along(first) && along(first) <= along(second) &&
           along(second) <= 1.0;
}

/// A cubic piece for a quarter of a circle reaches this part of the way from each end to the corner of its tangents: it
/// meets the circle in its middle then, and is off by 3e-4 of the radius at most.
constexpr double kQuarterReach = 4.0 / 3.0 * (std::numbers::sqrt2 - 1.0);
/// Files with few decimals, and programs that spread what it is off, have it so much shorter or longer.
constexpr double kRoundedQuarter = 1e-3;

/// What arcs that go on may come to: of what is nearly closed the ends do not tell where its centre is.
constexpr double kMostOfATurn = kTurn - 0.05;

double angleBetween(Vec2 from, Vec2 to) {
    return std::atan2(cross(from, to), dot(from, to));
}

void refuseMoreThan(std::size_t most, std::size_t count) {
    if (count >= most)
        throw SvgFault{"more than a million pieces", "a smaller picture, or parts of it"};
}

}  // namespace

void SvgPen::moveTo(Vec2 to) {
    endSubpath();
    m_start = m_at = to;
    m_reach = 0.0;
    m_first = m_drawn.shapes.size();
    m_hasPieces = m_endsInArc = false;
    m_isOpen = true;
    m_arcs.clear();
}

void SvgPen::add(Shape shape, Vec2 to) {
    refuseMoreThan(kSvgMostCurves, m_drawn.shapes.size());
    m_drawn.shapes.push_back(std::move(shape));
    m_reach = std::max({m_reach, distance(m_start, to), distance(m_at, to)});
    m_at = to;
    m_endsInArc = false;
}

void SvgPen::lineTo(Vec2 to) {
    m_hasPieces = true;
    if (to != m_at)
        add(LineShape{m_at, to}, to);
}

void SvgPen::quadTo(Vec2 control, Vec2 to) {
    if (isStraightBetween(m_at, control, control, to))
        return lineTo(to);
    m_hasPieces = true;
    if (to != m_at || control != m_at)
        add(SplineShape{.degree = 2,
                        .periodic = false,
                        .control = {m_at, control, to},
                        .knots = {0, 0, 0, 1, 1, 1},
                        .weights = {}},
            to);
}

/// A quarter of a circle, or of an ellipse with its ends on the axes: the tangents at the ends are at right angles.
std::optional<SvgPen::Course> SvgPen::quarterOf(Vec2 from, Vec2 first, Vec2 second, Vec2 to) {
    const Vec2 begin = first - from, end = second - to;
    const double turn = cross(begin, end), size = norm(begin) * norm(end);
    if (size == 0.0 || std::abs(dot(begin, end)) > kRoundedQuarter * size)
        return std::nullopt;
    const double reach = cross(to - from, end) / turn;  // of the corner of both tangents, in their own lengths
    const double otherReach = cross(to - from, begin) / turn;
    const auto isUsual = [](double times) { return std::abs(1.0 / times - kQuarterReach) <= kRoundedQuarter; };
    if (!isUsual(reach) || !isUsual(otherReach))
        return std::nullopt;
    const Vec2 corner = from + reach * begin, centre = from + to - corner;
    const Vec2 out = from - centre, across = to - centre;
    const double sweep = cross(out, across) > 0.0 ? kQuarterTurn : -kQuarterTurn;
    const double ratio = norm(across) / norm(out);
    if (std::abs(ratio - 1.0) <= kRoundedQuarter) {
        const double radius = 0.5 * (norm(out) + norm(across));
        return Course{centre, {radius, 0.0}, 1.0, std::atan2(out.y, out.x), sweep, from, true};
    }
    // Arcs of one ellipse have one x radius, whichever of its quarters they are.
    const bool startsOnX = std::abs(out.x) >= std::abs(out.y);
    Vec2 axis = startsOnX ? out : across;
    const bool isBackward = axis.x < 0.0;
    axis = isBackward ? -axis : axis;
    const Vec2 other = (startsOnX ? norm(across) : norm(out)) * unit(leftOf(axis));
    const double start = std::atan2(dot(out, other) / dot(other, other), dot(out, axis) / dot(axis, axis));
    return Course{centre, axis, norm(other) / norm(axis), start, sweep, from, true};
}

void SvgPen::cubicTo(Vec2 first, Vec2 second, Vec2 to) {
    if (isStraightBetween(m_at, first, second, to))
        return lineTo(to);
    m_hasPieces = true;
    if (const std::optional<Course> quarter = quarterOf(m_at, first, second, to)) {
        ++m_drawn.roundCubics;
        return goAlong(*quarter, to);
    }
    if (to != m_at || first != m_at || second != m_at)
        add(SplineShape{.degree = 3,
                        .periodic = false,
                        .control = {m_at, first, second, to},
                        .knots = {0, 0, 0, 0, 1, 1, 1, 1},
                        .weights = {}},
            to);
}

/// Scalable Vector Graphics 1.1, F.6.5: from the ends to the centre, in the frame in which the ellipse is the unit
/// circle.
SvgPen::Course SvgPen::courseOf(const Arc& arc, Vec2 from, Vec2 to) {
    const Vec2 along = polar(arc.turn), across = leftOf(along);
    const Vec2 chord = to - from;
    const Vec2 half{0.5 * dot(chord, along) / arc.xRadius, 0.5 * dot(chord, across) / arc.yRadius};
    const double size = norm(half);
    const double apart = 1.0 - size * size;
    double off = apart > kHolds ? std::sqrt(apart) / size : 0.0;
    if (arc.isLarge == arc.isForward)
        off = -off;
    const Vec2 centre = off * leftOf(half);  // seen from the middle of the ends, in radii
    const Vec2 first = -half - centre, last = half - centre;
    double sweep = off == 0.0 ? (arc.isForward ? kPi : -kPi) : angleBetween(first, last);
    if (arc.isForward && sweep < 0.0)
        sweep += kTurn;
    if (!arc.isForward && sweep > 0.0)
        sweep -= kTurn;
    // Half a circle has its ends for a diameter, also where the radii are too short for that.
    const double scale = off == 0.0 ? size : 1.0;
    return {0.5 * (from + to) + (arc.xRadius * centre.x) * along + (arc.yRadius * centre.y) * across,
            (scale * arc.xRadius) * along,
            arc.yRadius / arc.xRadius,
            std::atan2(first.y, first.x),
            sweep,
            from};
}

Shape SvgPen::shapeOf(const Course& course) {
    const double start = course.sweep < 0.0 ? course.start + course.sweep : course.start;
    const double sweep = std::abs(course.sweep);
    const auto positive = [](double angle) { return angle - kTurn * std::floor(angle / kTurn); };
    if (course.ratio == 1.0) {
        const double first = positive(start + std::atan2(course.axis.y, course.axis.x));
        return ArcShape{course.centre, norm(course.axis), first, first + sweep};
    }
    if (course.ratio < 1.0) {
        const double first = positive(start);
        return EllipticalArcShape{course.centre, course.axis, course.ratio, first, first + sweep};
    }
    const double first = positive(start - kQuarterTurn);
    return EllipticalArcShape{course.centre, course.ratio * leftOf(course.axis), 1.0 / course.ratio, first,
                              first + sweep};
}

void SvgPen::arcTo(const Arc& arc, Vec2 to) {
    if (arc.xRadius == 0.0 || arc.yRadius == 0.0)
        return lineTo(to);
    m_hasPieces = true;
    if (to == m_at)
        return;
    const Arc sound{std::abs(arc.xRadius), std::abs(arc.yRadius), arc.turn, arc.isLarge, arc.isForward};
    goAlong(courseOf(sound, m_at, to), to);
}

void SvgPen::goAlong(const Course& course, Vec2 to) {
    m_reach = std::max(m_reach, norm(course.axis));
    if (m_endsInArc && goesOn(m_arcs.back(), course)) {
        m_arcs.back() = joined(m_arcs.back(), m_at, to);
        m_drawn.shapes.back() = shapeOf(m_arcs.back());
        m_at = to;
        return;
    }
    m_arcs.push_back(course);
    add(shapeOf(course), to);
    m_endsInArc = true;
}

/// All the way round is left to two arcs: one that ends where it begins has no ends.
bool SvgPen::goesOn(const Course& before, const Course& arc) {
    const double share = arc.isOfCubic ? kRoundedQuarter : kSameCircle;
    const double near = share * norm(arc.axis) * std::min(1.0, arc.ratio);
    return distance(before.centre, arc.centre) <= near && distance(before.axis, arc.axis) <= near &&
           std::abs(before.ratio - arc.ratio) <= (arc.isOfCubic ? share * arc.ratio : 0.0) &&
           before.sweep * arc.sweep > 0.0 && std::abs(before.sweep + arc.sweep) < kMostOfATurn;
}

/// The arc through its begin, the joint and its end, in the frame in which the ellipse is a unit circle around there:
/// its ends stay where they are, whatever the few digits of a file have done to its centre.
SvgPen::Course SvgPen::joined(const Course& before, Vec2 at, Vec2 to) {
    const double xRadius = norm(before.axis), yRadius = xRadius * before.ratio;
    const Vec2 along = unit(before.axis), across = leftOf(along);
    const auto inRadii = [&](Vec2 point) {
        return Vec2{dot(point - at, along) / xRadius, dot(point - at, across) / yRadius};
    };
    const Vec2 first = inRadii(before.from), last = inRadii(to);
    const double scale = 0.5 / cross(first, last);
    const Vec2 centre = scale * (dot(last, last) * leftOf(first) - dot(first, first) * leftOf(last));
    double sweep = angleBetween(first - centre, last - centre);
    if (sweep * before.sweep < 0.0)
        sweep += before.sweep < 0.0 ? -kTurn : kTurn;
    return {at + (xRadius * centre.x) * along + (yRadius * centre.y) * across,
            norm(centre) * before.axis,
            before.ratio,
            std::atan2(first.y - centre.y, first.x - centre.x),
            sweep,
            before.from,
            before.isOfCubic};
}

void SvgPen::close() {
    m_hasPieces = true;
    if (distance(m_at, m_start) > kHolds * m_reach)
        lineTo(m_start);
    m_at = m_start;
}

bool SvgPen::goesRound() const {
    if (m_arcs.size() < 2 || m_arcs.size() != m_drawn.shapes.size() - m_first ||
        distance(m_at, m_start) > kHolds * m_reach)
        return false;
    const Course& one = m_arcs.front();
    double sweep = 0.0;
    const double near = m_arcs.size() == 2 ? std::sqrt(2.0 * kRoundedHalf) : kSameCircle;
    const double size = norm(one.axis) * std::min(1.0, one.ratio);
    for (const Course& arc : m_arcs) {
        sweep += arc.sweep;
        if (distance(arc.centre, one.centre) > near * size || distance(arc.axis, one.axis) > kRoundedHalf * size ||
            std::abs(arc.ratio - one.ratio) > (one.isOfCubic ? kRoundedQuarter : kHolds) * one.ratio ||
            arc.sweep * one.sweep < 0.0)
            return false;
    }
    return std::abs(std::abs(sweep) - kTurn) <= 4.0 * near;
}

void SvgPen::endSubpath() {
    if (m_isOpen && m_hasPieces && m_drawn.shapes.size() == m_first)
        addDot();
    if (!m_isOpen || !goesRound())
        return;
    m_drawn.shapes.resize(m_first);
    Vec2 centre;
    for (const Course& arc : m_arcs)
        centre = centre + (1.0 / static_cast<double>(m_arcs.size())) * arc.centre;
    const Course& one = m_arcs.front();
    if (one.ratio == 1.0)
        m_drawn.shapes.push_back(CircleShape{centre, norm(one.axis)});
    else if (one.ratio < 1.0)
        m_drawn.shapes.push_back(EllipseShape{centre, one.axis, one.ratio});
    else
        m_drawn.shapes.push_back(EllipseShape{centre, one.ratio * leftOf(one.axis), 1.0 / one.ratio});
}

void SvgPen::addDot() {
    refuseMoreThan(kSvgMostCurves, m_drawn.dots.size());
    m_drawn.dots.push_back(m_start);
}

SvgPen::Drawn SvgPen::finish() {
    endSubpath();
    m_isOpen = false;
    return std::move(m_drawn);
}

}  // namespace holdfast::formats
