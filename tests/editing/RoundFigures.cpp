#include "tests/editing/RoundFigures.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "geometry/Angles.h"
#include "geometry/Vec2.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {

namespace {

constexpr double kQuarter = std::numbers::pi / 2.0;

/// Lengths of lines, radii, and how far chains turn, from the least to the most.
constexpr double kShort = 8.0, kLong = 60.0, kTight = 2.0, kWide = 15.0, kSlight = 0.3, kSharp = 2.2;

/// A pen that draws pieces, each of which goes on where the last one has ended.
class Pen {
public:
    Pen(Document& figure, double heading) : m_figure(figure), m_heading(heading) {}

    void line(double length) {
        const Vec2 from = m_at;
        m_at = from + length * polar(m_heading);
        add(LineShape{from, m_at}, PlaceKind::start, PlaceKind::end);
    }

    /// To the left for a positive turn.
    void arc(double radius, double turn) {
        const double side = turn > 0.0 ? 1.0 : -1.0, from = m_heading - side * kQuarter;
        const Vec2 centre = m_at - radius * polar(from);
        m_heading += turn;
        m_at = centre + radius * polar(from + turn);
        const double low = std::min(from, from + turn);
        add(ArcShape{centre, radius, low, low + std::abs(turn)}, turn > 0.0 ? PlaceKind::start : PlaceKind::end,
            turn > 0.0 ? PlaceKind::end : PlaceKind::start);
    }

    void close() { join(m_first, m_last); }
    void bind(ConstraintType type, std::vector<Place> places) {
        m_figure.constraints.push_back(
            constraintOf("c" + std::to_string(m_figure.constraints.size()), type, std::move(places)));
    }

private:
    void add(Shape shape, PlaceKind in, PlaceKind out) {
        const bool isFirst = m_figure.entities.empty();
        const std::string name = "g" + std::to_string(m_figure.entities.size());
        m_figure.entities.push_back(shapeEntity(name, std::move(shape)));
        if (isFirst)
            m_first = {name, in};
        else
            join({name, in}, m_last);
        m_last = {name, out};
    }

    void join(const Place& in, const Place& out) {
        bind(ConstraintType::coincident, {out, in});
        bind(ConstraintType::tangent, {{out.entity}, {in.entity}});
    }

    Document& m_figure;
    Vec2 m_at;
    double m_heading;
    Place m_first, m_last;
};

bool isLine(const Entity& entity) {
    return std::holds_alternative<LineShape>(entity.shape);
}

double extentOf(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape))
        return distance(line->start, line->end);
    return 2.0 * std::get<ArcShape>(shape).radius;
}

std::string digits(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

}  // namespace

Document RoundFigures::next() {
    using Maker = Document (RoundFigures::*)();
    static constexpr Maker makers[] = {&RoundFigures::chain, &RoundFigures::slot, &RoundFigures::roundedRectangle};
    return (this->*makers[m_made++ % 3])();
}

Document RoundFigures::chain() {
    Document figure;
    figure.name = "chain";
    Pen pen(figure, between(-2.0 * kQuarter, 2.0 * kQuarter));
    pen.line(between(kShort, kLong));
    for (int bends = 1 + below(5); bends > 0; --bends) {
        pen.arc(between(kTight, kWide), (chance(0.5) ? 1.0 : -1.0) * between(kSlight, kSharp));
        pen.line(between(kShort, kLong));
    }
    if (chance(0.3))
        pen.bind(ConstraintType::fixed, {{"g0", PlaceKind::start}});
    return figure;
}

Document RoundFigures::slot() {
    Document figure;
    figure.name = "slot";
    Pen pen(figure, between(-2.0 * kQuarter, 2.0 * kQuarter));
    const double length = between(kShort, kLong), radius = between(kTight, kWide);
    for (int side = 0; side < 2; ++side) {
        pen.line(length);
        pen.arc(radius, 2.0 * kQuarter);
    }
    pen.close();
    if (chance(0.5))
        pen.bind(ConstraintType::equal, {{"g1"}, {"g3"}});
    if (chance(0.3))
        pen.bind(ConstraintType::parallel, {{"g0"}, {"g2"}});
    return figure;
}

Document RoundFigures::roundedRectangle() {
    Document figure;
    figure.name = "rounded rectangle";
    const bool isLevel = chance(0.5), isEqual = chance(0.5);
    Pen pen(figure, isLevel ? 0.0 : between(-2.0 * kQuarter, 2.0 * kQuarter));
    const double sides[] = {between(kShort, kLong), between(kShort, kLong)}, radius = between(kTight, kWide);
    for (int side = 0; side < 4; ++side) {
        pen.line(sides[side % 2]);
        pen.arc(radius, kQuarter);
    }
    pen.close();
    const Place lines[] = {{"g0"}, {"g2"}, {"g4"}, {"g6"}};
    if (isLevel)
        for (int side = 0; side < 4; ++side)
            pen.bind(side % 2 == 0 ? ConstraintType::horizontal : ConstraintType::vertical, {lines[side]});
    else
        for (int side = 1; side < 4; ++side)
            pen.bind(side % 2 == 0 ? ConstraintType::parallel : ConstraintType::perpendicular, {lines[0], lines[side]});
    for (int arc = 3; arc < 8 && isEqual; arc += 2)
        pen.bind(ConstraintType::equal, {{"g1"}, {"g" + std::to_string(arc)}});
    return figure;
}

std::string RoundFigures::editOf(const Document& figure) {
    const Entity& entity = figure.entities[static_cast<std::size_t>(below(static_cast<int>(figure.entities.size())))];
    return isLine(entity) && chance(0.5) ? lengthening(entity) : dragging(entity);
}

std::string RoundFigures::lengthening(const Entity& line) {
    return "lengthen " + line.id + (chance(0.5) ? " start" : " end") + " by " +
           digits(between(-0.5, 1.0) * extentOf(line.shape));
}

/// An arc is held whole or at its centre: who pulls one of its ends asks for another arc.
std::string RoundFigures::dragging(const Entity& entity) {
    const char* const line[] = {"", ".start", ".end"};
    const char* const arc[] = {"", ".centre"};
    const double reach = between(0.02, 0.8) * extentOf(entity.shape);
    const Vec2 by = reach * polar(between(-2.0 * kQuarter, 2.0 * kQuarter));
    return "drag " + entity.id + (isLine(entity) ? line[below(3)] : arc[below(2)]) + " by " + digits(by.x) + "," +
           digits(by.y);
}

}  // namespace holdfast::editing
