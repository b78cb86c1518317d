#include "benchmarks/solver/Workloads.h"

#include <cmath>
#include <numbers>
#include <random>

namespace holdfast {

namespace {

constexpr double kLength = 10.0;

std::string numbered(const char* letter, int number) {
    return letter + std::to_string(number);
}

/// Puts constraints on places of a figure.
class Binder {
public:
    explicit Binder(Figure& figure) : m_figure(figure) {}

    static FigurePlace start(int entity) { return {entity, PlaceKind::start, 0}; }
    static FigurePlace end(int entity) { return {entity, PlaceKind::end, 0}; }
    static FigurePlace whole(int entity) { return {entity, PlaceKind::whole, 0}; }

    void bind(ConstraintType type, std::vector<FigurePlace> refs) {
        FigureConstraint constraint;
        constraint.id = numbered("c", count());
        constraint.type = type;
        constraint.refs = std::move(refs);
        m_figure.addConstraint(std::move(constraint));
    }
    void join(FigurePlace a, FigurePlace b) { bind(ConstraintType::coincident, {a, b}); }

    int count() const { return static_cast<int>(m_figure.constraints.size()); }

private:
    Figure& m_figure;
};

void addRectangle(Figure& figure, double x, double y, int joinedTo) {
    Binder binder(figure);
    const double w = kLength, h = 0.6 * kLength;
    const Vec2 corners[] = {{x, y}, {x + w, y}, {x + w, y + h}, {x, y + h}};
    const int first = static_cast<int>(figure.entities.size());
    for (int i = 0; i < 4; ++i)
        figure.addLine(numbered("l", first + i), corners[i], corners[(i + 1) % 4]);
    for (int i = 0; i < 4; ++i)
        binder.join(Binder::end(first + i), Binder::start(first + (i + 1) % 4));
    for (int i = 0; i < 4; ++i)
        binder.bind(i % 2 == 0 ? ConstraintType::horizontal : ConstraintType::vertical, {Binder::whole(first + i)});
    if (joinedTo >= 0)
        binder.join(Binder::start(first), Binder::end(joinedTo + 1));
}

void addTriangle(Figure& figure, double x, double y) {
    Binder binder(figure);
    const Vec2 a{x, y}, b{x + kLength, y}, c{x + 0.5 * kLength, y + 0.8 * kLength};
    const int base = figure.addLine(numbered("t", static_cast<int>(figure.entities.size())), a, b);
    const int right = figure.addLine(numbered("t", base + 1), b, c);
    const int left = figure.addLine(numbered("t", base + 2), c, a);
    binder.join(Binder::end(base), Binder::start(right));
    binder.join(Binder::end(right), Binder::start(left));
    binder.join(Binder::end(left), Binder::start(base));
    binder.bind(ConstraintType::horizontal, {Binder::whole(base)});
    binder.bind(ConstraintType::equal, {Binder::whole(right), Binder::whole(left)});
}

/// The net's lines by the node that they begin at: one to the right, one upwards.
class Net {
public:
    Net(Figure& figure, int side) : m_figure(figure), m_binder(figure), m_side(side) {
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
        m_figure.addLine(numbered("r", right(i, j)), {x, y}, {x + kLength, y});
        m_figure.addLine(numbered("u", up(i, j)), {x, y}, {x, y + kLength});
        m_binder.join(Binder::start(right(i, j)), Binder::start(up(i, j)));
        if (i > 0)
            m_binder.join(Binder::end(right(i - 1, j)), Binder::start(right(i, j)));
        if (j > 0)
            m_binder.join(Binder::end(up(i, j - 1)), Binder::start(right(i, j)));
        m_binder.bind((i + j) % 2 == 0 ? ConstraintType::perpendicular : ConstraintType::equal,
                      {Binder::whole(right(i, j)), Binder::whole(up(i, j))});
    }

    Figure& m_figure;
    Binder m_binder;
    int m_side;
};

/// Where a path of lines and arcs has come to.
struct Pen {
    Vec2 at;
    double heading = 0.0;

    int line(Figure& figure, double length) {
        const Vec2 from = at;
        at = {at.x + length * std::cos(heading), at.y + length * std::sin(heading)};
        return figure.addLine(numbered("l", static_cast<int>(figure.entities.size())), from, at);
    }

    /// To the left for a positive turn.
    int arc(Figure& figure, double radius, double turn) {
        const double side = turn > 0.0 ? 1.0 : -1.0, quarter = std::numbers::pi / 2;
        const Vec2 centre{at.x - side * radius * std::sin(heading), at.y + side * radius * std::cos(heading)};
        const double from = heading - side * quarter, to = from + turn;
        heading += turn;
        at = {centre.x + radius * std::cos(to), centre.y + radius * std::sin(to)};
        return figure.addArc(numbered("k", static_cast<int>(figure.entities.size())),
                             {centre, radius, std::min(from, to), std::max(from, to)});
    }
};

}  // namespace

Workload chainOf(int constraints) {
    Workload work{"chain", {}, -1};
    for (int i = 0, last = -1; static_cast<int>(work.figure.constraints.size()) + 8 <= constraints; ++i) {
        const int first = static_cast<int>(work.figure.entities.size());
        addRectangle(work.figure, kLength * i, 0.6 * kLength * i, last);
        last = first;
    }
    const int middle = 4 * static_cast<int>(work.figure.entities.size() / 8) + 1;
    work.handle = work.figure.entities[static_cast<std::size_t>(middle)].firstValue + 2;
    return work;
}

Workload gridOf(int constraints) {
    Workload work{"grid", {}, -1};
    const int side = std::max(2, static_cast<int>(std::lround(std::sqrt(constraints / 4.0))));
    const Net net(work.figure, side);
    work.handle = work.figure.entities[static_cast<std::size_t>(net.right(side / 2, side / 2))].firstValue;
    return work;
}

Workload islandsOf(int constraints) {
    Workload work{"islands", {}, -1};
    addIslands(work.figure, std::max(1, constraints / 5));
    work.handle = work.figure.entities[1].firstValue + 2;
    return work;
}

Workload mechanismOf(int constraints) {
    Workload work{"mechanism", {}, -1};
    Figure& figure = work.figure;
    Binder binder(figure);
    Pen pen;
    constexpr double radius = 4.0, turn = std::numbers::pi / 3;
    int lastArc = -1;
    int line = pen.line(figure, kLength);
    for (int i = 0; binder.count() + 5 <= constraints; ++i) {
        const bool isLeft = i % 4 == 0 || i % 4 == 3;
        const int arc = pen.arc(figure, radius, isLeft ? turn : -turn);
        const int next = pen.line(figure, kLength);
        const FigurePlace in = isLeft ? Binder::start(arc) : Binder::end(arc);
        const FigurePlace out = isLeft ? Binder::end(arc) : Binder::start(arc);
        binder.join(Binder::end(line), in);
        binder.bind(ConstraintType::tangent, {Binder::end(line), in});
        binder.join(out, Binder::start(next));
        binder.bind(ConstraintType::tangent, {out, Binder::start(next)});
        if (lastArc >= 0)
            binder.bind(ConstraintType::equal, {Binder::whole(lastArc), Binder::whole(arc)});
        lastArc = arc;
        line = next;
    }
    const std::size_t middle = 2 * (figure.entities.size() / 4);
    work.handle = figure.entities[middle].firstValue + 2;
    return work;
}

void addIslands(Figure& figure, int count) {
    const int perRow = std::max(1, static_cast<int>(std::sqrt(count)));
    for (int i = 0; i < count; ++i) {
        const int row = 1 + i / perRow;
        addTriangle(figure, 1.5 * kLength * (i % perRow), -1.5 * kLength * row);
    }
}

void disturb(Figure& figure, double amount) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-amount, amount);
    for (double& value : figure.values)
        value += uniform(random);
}

}  // namespace holdfast
