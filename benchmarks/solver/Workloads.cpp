#include "benchmarks/solver/Workloads.h"

#include <cmath>
#include <numbers>
#include <random>

namespace holdfast::solver::detail {

namespace {

constexpr double kLength = 10.0;

std::string numbered(const char* letter, int number) {
    return letter + std::to_string(number);
}

/// Puts constraints on places of a sketch.
class Binder {
public:
    explicit Binder(SketchData& sketch) : m_sketch(sketch) {}

    static SketchPlace start(int entity) { return {entity, PlaceKind::start, 0}; }
    static SketchPlace end(int entity) { return {entity, PlaceKind::end, 0}; }
    static SketchPlace whole(int entity) { return {entity, PlaceKind::whole, 0}; }

    void bind(ConstraintType type, std::vector<SketchPlace> refs) {
        SketchConstraint constraint;
        constraint.id = numbered("c", count());
        constraint.type = type;
        constraint.refs = std::move(refs);
        m_sketch.addConstraint(std::move(constraint));
    }
    void join(SketchPlace a, SketchPlace b) { bind(ConstraintType::coincident, {a, b}); }

    int count() const { return static_cast<int>(m_sketch.constraints.size()); }

private:
    SketchData& m_sketch;
};

void addRectangle(SketchData& sketch, double x, double y, int joinedTo) {
    Binder binder(sketch);
    const double w = kLength, h = 0.6 * kLength;
    const Vec2 corners[] = {{x, y}, {x + w, y}, {x + w, y + h}, {x, y + h}};
    const int first = static_cast<int>(sketch.entities.size());
    for (int i = 0; i < 4; ++i)
        sketch.addLine(numbered("l", first + i), corners[i], corners[(i + 1) % 4]);
    for (int i = 0; i < 4; ++i)
        binder.join(Binder::end(first + i), Binder::start(first + (i + 1) % 4));
    for (int i = 0; i < 4; ++i)
        binder.bind(i % 2 == 0 ? ConstraintType::horizontal : ConstraintType::vertical, {Binder::whole(first + i)});
    if (joinedTo >= 0)
        binder.join(Binder::start(first), Binder::end(joinedTo + 1));
}

void addTriangle(SketchData& sketch, double x, double y) {
    Binder binder(sketch);
    const Vec2 a{x, y}, b{x + kLength, y}, c{x + 0.5 * kLength, y + 0.8 * kLength};
    const int base = sketch.addLine(numbered("t", static_cast<int>(sketch.entities.size())), a, b);
    const int right = sketch.addLine(numbered("t", base + 1), b, c);
    const int left = sketch.addLine(numbered("t", base + 2), c, a);
    binder.join(Binder::end(base), Binder::start(right));
    binder.join(Binder::end(right), Binder::start(left));
    binder.join(Binder::end(left), Binder::start(base));
    binder.bind(ConstraintType::horizontal, {Binder::whole(base)});
    binder.bind(ConstraintType::equal, {Binder::whole(right), Binder::whole(left)});
}

/// The net's lines by the node that they begin at: one to the right, one upwards.
class Net {
public:
    Net(SketchData& sketch, int side) : m_sketch(sketch), m_binder(sketch), m_side(side) {
        for (int j = 0; j < side; ++j) {
            for (int i = 0; i < side; ++i)
                addCell(i, j);
        }
    }

    int right(int i, int j) const { return 2 * (j * m_side + i); }
    int up(int i, int j) const { return right(i, j) + 1; }

private:
    void addCell(int i, int j) {
        const double x = kLength * i, y = kLength * j;
        m_sketch.addLine(numbered("r", right(i, j)), {x, y}, {x + kLength, y});
        m_sketch.addLine(numbered("u", up(i, j)), {x, y}, {x, y + kLength});
        m_binder.join(Binder::start(right(i, j)), Binder::start(up(i, j)));
        if (i > 0)
            m_binder.join(Binder::end(right(i - 1, j)), Binder::start(right(i, j)));
        if (j > 0)
            m_binder.join(Binder::end(up(i, j - 1)), Binder::start(right(i, j)));
        m_binder.bind(ConstraintType::equal, {Binder::whole(right(i, j)), Binder::whole(up(i, j))});
    }

    SketchData& m_sketch;
    Binder m_binder;
    int m_side;
};

/// Where a path of lines and arcs has come to.
struct Pen {
    Vec2 at;
    double heading = 0.0;

    int line(SketchData& sketch, double length) {
        const Vec2 from = at;
        at = {at.x + length * std::cos(heading), at.y + length * std::sin(heading)};
        return sketch.addLine(numbered("l", static_cast<int>(sketch.entities.size())), from, at);
    }

    /// To the left for a positive turn.
    int arc(SketchData& sketch, double radius, double turn) {
        const double side = turn > 0.0 ? 1.0 : -1.0, quarter = std::numbers::pi / 2;
        const Vec2 centre{at.x - side * radius * std::sin(heading), at.y + side * radius * std::cos(heading)};
        const double from = heading - side * quarter, to = from + turn;
        heading += turn;
        at = {centre.x + radius * std::cos(to), centre.y + radius * std::sin(to)};
        return sketch.addArc(numbered("k", static_cast<int>(sketch.entities.size())),
                             {centre, radius, std::min(from, to), std::max(from, to)});
    }
};

}  // namespace

Workload chainOf(int constraints) {
    Workload work{"chain", {}, -1};
    for (int i = 0, last = -1; static_cast<int>(work.sketch.constraints.size()) + 8 <= constraints; ++i) {
        const int first = static_cast<int>(work.sketch.entities.size());
        addRectangle(work.sketch, kLength * i, 0.6 * kLength * i, last);
        last = first;
    }
    const int middle = 4 * static_cast<int>(work.sketch.entities.size() / 8) + 1;
    work.handle = work.sketch.entities[static_cast<std::size_t>(middle)].firstValue + 2;
    return work;
}

Workload gridOf(int constraints) {
    Workload work{"grid", {}, -1};
    const int side = std::max(2, static_cast<int>(std::lround(std::sqrt(constraints / 4.0))));
    const Net net(work.sketch, side);
    work.handle = work.sketch.entities[static_cast<std::size_t>(net.right(side / 2, side / 2))].firstValue;
    return work;
}

Workload islandsOf(int constraints) {
    Workload work{"islands", {}, -1};
    addIslands(work.sketch, std::max(1, constraints / 5));
    work.handle = work.sketch.entities[1].firstValue + 2;
    return work;
}

Workload mechanismOf(int constraints) {
    Workload work{"mechanism", {}, -1};
    SketchData& sketch = work.sketch;
    Binder binder(sketch);
    Pen pen;
    constexpr double radius = 4.0, turn = std::numbers::pi / 3;
    int lastArc = -1;
    int line = pen.line(sketch, kLength);
    for (int i = 0; binder.count() + 5 <= constraints; ++i) {
        const bool isLeft = i % 4 == 0 || i % 4 == 3;
        const int arc = pen.arc(sketch, radius, isLeft ? turn : -turn);
        const int next = pen.line(sketch, kLength);
        const SketchPlace in = isLeft ? Binder::start(arc) : Binder::end(arc);
        const SketchPlace out = isLeft ? Binder::end(arc) : Binder::start(arc);
        binder.join(Binder::end(line), in);
        binder.bind(ConstraintType::tangent, {Binder::end(line), in});
        binder.join(out, Binder::start(next));
        binder.bind(ConstraintType::tangent, {out, Binder::start(next)});
        if (lastArc >= 0)
            binder.bind(ConstraintType::equal, {Binder::whole(lastArc), Binder::whole(arc)});
        lastArc = arc;
        line = next;
    }
    const std::size_t middle = 2 * (sketch.entities.size() / 4);
    work.handle = sketch.entities[middle].firstValue + 2;
    return work;
}

SketchData starOf(int lines) {
    SketchData sketch;
    for (int i = 0; i < lines; ++i) {
        const double angle = 6.0 * i / lines;
        sketch.addLine(std::to_string(i), {0, 0}, {(9.0 + i % 3) * std::cos(angle), (9.0 + i % 3) * std::sin(angle)});
        if (i > 0)
            sketch.addConstraint(
                {std::to_string(i), ConstraintType::coincident, {{0, PlaceKind::start}, {i, PlaceKind::start}}});
    }
    sketch.takeReference();
    return sketch;
}

SketchData slotsOf(int entities) {
    SketchData sketch;
    constexpr double pi = std::numbers::pi;
    int next = 0;
    const auto join = [&](ConstraintType type, std::vector<SketchPlace> places) {
        sketch.addConstraint({std::to_string(next++), type, std::move(places)});
    };
    for (int i = 0; 4 * i < entities; ++i) {
        const double y = 5.0 * i;
        const int left = sketch.addArc(std::to_string(4 * i), {{0, y}, 2, pi / 2, 3 * pi / 2});
        const int right = sketch.addArc(std::to_string(4 * i + 1), {{9, y}, 2, 3 * pi / 2, 5 * pi / 2});
        const int below = sketch.addLine(std::to_string(4 * i + 2), {0, y - 2}, {9, y - 2});
        const int above = sketch.addLine(std::to_string(4 * i + 3), {9, y + 2}, {0, y + 2});
        join(ConstraintType::tangent, {{left, PlaceKind::end}, {below, PlaceKind::start}});
        join(ConstraintType::tangent, {{below, PlaceKind::end}, {right, PlaceKind::start}});
        join(ConstraintType::tangent, {{right, PlaceKind::end}, {above, PlaceKind::start}});
        join(ConstraintType::tangent, {{above, PlaceKind::end}, {left, PlaceKind::start}});
        if (i > 0)
            join(ConstraintType::equal, {{0, PlaceKind::whole}, {left, PlaceKind::whole}});
    }
    sketch.takeReference();
    return sketch;
}

void addIslands(SketchData& sketch, int count) {
    const int perRow = std::max(1, static_cast<int>(std::sqrt(count)));
    for (int i = 0; i < count; ++i) {
        const int row = 1 + i / perRow;
        addTriangle(sketch, 1.5 * kLength * (i % perRow), -1.5 * kLength * row);
    }
}

void disturb(SketchData& sketch, double amount) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-amount, amount);
    for (double& value : sketch.values)
        value += uniform(random);
}

}  // namespace holdfast::solver::detail
