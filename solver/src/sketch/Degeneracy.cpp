#include "solver/src/sketch/Degeneracy.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

constexpr double kCollapsed = 1e-6;

/// Sizes of the sketch from where it was beyond which nobody looks for a point.
constexpr double kBeyond = 1e4;

using Values = std::span<const double>;

double gapBetween(Values v, int a, int b) {
    const double x = v[at(b)] - v[at(a)], y = v[at(b + 1)] - v[at(a + 1)];
    return std::sqrt(x * x + y * y);
}

/// Counter-clockwise turn from one direction to another, in [0, 2 pi).
double turn(double fromX, double fromY, double toX, double toY) {
    const double angle = std::atan2(fromX * toY - fromY * toX, fromX * toX + fromY * toY);
    return angle < 0.0 ? angle + 2 * std::numbers::pi : angle;
}

/// From the centre of an arc to its start and to its end.
std::pair<Vec2, Vec2> raysOf(Values v, int first) {
    const Vec2 centre{v[at(first)], v[at(first + 1)]};
    return {Vec2{v[at(first + 3)], v[at(first + 4)]} - centre, Vec2{v[at(first + 5)], v[at(first + 6)]} - centre};
}

double arcSweep(Values v, int first) {
    const auto [start, end] = raysOf(v, first);
    return turn(start.x, start.y, end.x, end.y);
}

/// The arc turns by less than half a turn. Cheaper than the sweep.
bool isMinorArc(Values v, int first) {
    const auto [start, end] = raysOf(v, first);
    return cross(start, end) >= 0.0;
}

/// A bound below the sweep of an arc, without an arc tangent: the sine where it turns by less than a right angle.
double leastArcSweep(Values v, int first) {
    const auto [start, end] = raysOf(v, first);
    const double sine = cross(start, end), cosine = dot(start, end);
    if (!(sine >= 0.0))
        return sine < 0.0 ? std::numbers::pi : 0.0;
    return cosine <= 0.0 ? 1.0 : sine / std::sqrt(sine * sine + cosine * cosine);
}

/// Difference of the eccentric angles.
double ellipseSweep(Values v, int first) {
    const double a = std::hypot(v[at(first + 2)], v[at(first + 3)]), b = v[at(first + 4)];
    const double ux = v[at(first + 2)] / a, uy = v[at(first + 3)] / a;
    const auto local = [&](int point) {
        const double x = v[at(point)] - v[at(first)], y = v[at(point + 1)] - v[at(first + 1)];
        return Vec2{(x * ux + y * uy) / a, (y * ux - x * uy) / b};
    };
    const Vec2 p = local(first + 5), q = local(first + 7);
    return turn(p.x, p.y, q.x, q.y);
}

double polygonLength(Values v, const SketchEntity& entity) {
    double sum = 0.0;
    for (int i = 2; i < entity.valueCount; i += 2)
        sum += gapBetween(v, entity.firstValue + i - 2, entity.firstValue + i);
    return sum;
}

/// The smallest length or radius of an entity, and what to call it.
struct Extent {
    double size;
    const char* name;
};

Extent polylineExtent(const SketchData& sketch, int number, Values v) {
    const SketchEntity& entity = sketch.entities[at(number)];
    double least = gapBetween(v, sketch.vertexValue(number, 0), sketch.vertexValue(number, 1));
    for (int i = 1; i < entity.segmentCount(); ++i)
        least = std::min(least, gapBetween(v, sketch.vertexValue(number, i), sketch.vertexValue(number, i + 1)));
    return {least, "a segment of no length"};
}

Extent extentOf(const SketchData& sketch, int number, Values v) {
    const SketchEntity& entity = sketch.entities[at(number)];
    const int first = entity.firstValue;
    switch (entity.kind) {
        case EntityKind::line:
            return {gapBetween(v, first, first + 2), "no length"};
        case EntityKind::circle:
        case EntityKind::arc:
            return {v[at(first + 2)], "no radius"};
        case EntityKind::ellipse:
        case EntityKind::ellipticalArc:
            return {std::min(std::hypot(v[at(first + 2)], v[at(first + 3)]), v[at(first + 4)]), "no radius"};
        case EntityKind::spline:
            return {polygonLength(v, entity), "no length"};
        case EntityKind::polyline:
            return polylineExtent(sketch, number, v);
        default:
            return {std::numeric_limits<double>::max(), ""};
    }
}

/// A sweep near none or a full turn is one or the other by chance.
bool hasJumped(double before, double now) {
    constexpr double chance = 1e-6, full = 2 * std::numbers::pi;
    return before > chance && before < full - chance && std::abs(now - before) > std::numbers::pi;
}

bool isInsideOut(const SketchEntity& entity, Values before, Values now) {
    if (entity.kind == EntityKind::arc)
        return isMinorArc(before, entity.firstValue) != isMinorArc(now, entity.firstValue) &&
               hasJumped(arcSweep(before, entity.firstValue), arcSweep(now, entity.firstValue));
    if (entity.kind == EntityKind::ellipticalArc)
        return hasJumped(ellipseSweep(before, entity.firstValue), ellipseSweep(now, entity.firstValue));
    return std::any_of(entity.bulgeValues.begin(), entity.bulgeValues.end(),
                       [&](int bulge) { return bulge >= 0 && now[at(bulge)] * before[at(bulge)] <= 0.0; });
}

bool hasLongerMinorAxis(Values v, int first) {
    constexpr double rounding = 1e-9;
    return v[at(first + 4)] > (1.0 + rounding) * std::hypot(v[at(first + 2)], v[at(first + 3)]);
}

bool hasExchangedAxes(const SketchData& sketch, int number, Values now) {
    const SketchEntity& entity = sketch.entities[at(number)];
    const bool hasAxes = entity.kind == EntityKind::ellipse || entity.kind == EntityKind::ellipticalArc;
    return hasAxes && hasLongerMinorAxis(now, entity.firstValue) &&
           !hasLongerMinorAxis(sketch.reference, entity.firstValue);
}

std::string wholeName(const SketchData& sketch, int number) {
    return nameOf(sketch, {number, PlaceKind::whole, 0});
}

/// Whether one of an entity's sizes is next to nothing of what it was. Sizes that were nothing before do not count.
class Shrinking {
public:
    Shrinking(const SketchData& sketch, int number, Values now, double least, double nothing)
        : m_sketch(sketch),
          m_entity(sketch.entities[at(number)]),
          m_number(number),
          m_now(now),
          m_least(least),
          m_nothing(nothing) {}

    bool isFound() const {
        const int first = m_entity.firstValue;
        switch (m_entity.kind) {
            case EntityKind::line:
                return length(first, first + 2);
            case EntityKind::circle:
                return value(first + 2);
            case EntityKind::arc:
                return value(first + 2) || arcSweepFell();
            case EntityKind::ellipse:
                return axes();
            case EntityKind::ellipticalArc:
                return axes() || sweep(&ellipseSweep);
            case EntityKind::spline:
                return fell(polygonLength(m_sketch.reference, m_entity), polygonLength(m_now, m_entity), m_nothing);
            case EntityKind::polyline:
                return segment();
            default:
                return false;
        }
    }

    /// Only of an arc's sweep.
    bool isInSweep() const { return m_entity.kind == EntityKind::arc && arcSweepFell(); }

private:
    bool fell(double before, double now, double nothing) const {
        return before > nothing && !(now >= m_least * before);
    }
    bool value(int v) const { return fell(m_sketch.reference[at(v)], m_now[at(v)], m_nothing); }
    bool length(int a, int b) const {
        return fell(gapBetween(m_sketch.reference, a, b), gapBetween(m_now, a, b), m_nothing);
    }
    /// No arc turns by more than a full turn: most can be seen not to have shrunk that far.
    bool arcSweepFell() const {
        constexpr double full = 2 * std::numbers::pi;
        return leastArcSweep(m_now, m_entity.firstValue) < m_least * full && sweep(&arcSweep);
    }
    bool sweep(double (*of)(Values, int)) const {
        constexpr double none = 1e-6;
        return fell(of(m_sketch.reference, m_entity.firstValue), of(m_now, m_entity.firstValue), none);
    }
    bool axes() const {
        const std::size_t u = at(m_entity.firstValue + 2);
        const auto major = [&](Values v) { return std::hypot(v[u], v[u + 1]); };
        return fell(major(m_sketch.reference), major(m_now), m_nothing) || value(m_entity.firstValue + 4);
    }
    bool segment() const {
        for (int i = 0; i < m_entity.segmentCount(); ++i)
            if (length(m_sketch.vertexValue(m_number, i), m_sketch.vertexValue(m_number, i + 1)))
                return true;
        return false;
    }

    const SketchData& m_sketch;
    const SketchEntity& m_entity;
    int m_number;
    Values m_now;
    double m_least, m_nothing;
};

bool isBeyond(const SketchData& sketch, const SketchEntity& entity, Values now, double size) {
    for (std::size_t v = at(entity.firstValue); v < at(entity.firstValue + entity.valueCount); ++v)
        if (!(std::abs(now[v] - sketch.reference[v]) <= kBeyond * size))
            return true;
    return false;
}

bool isReversed(int a, int b, Values before, Values now) {
    return (before[at(b)] - before[at(a)]) * (now[at(b)] - now[at(a)]) +
               (before[at(b + 1)] - before[at(a + 1)]) * (now[at(b + 1)] - now[at(a + 1)]) <
           0.0;
}

/// Ends of an arc that pass its centre make half a turn of its sweep at once.
bool hasLeapt(int arc, Values before, Values now) {
    return std::abs(arcSweep(now, arc) - arcSweep(before, arc)) > 0.5 * std::numbers::pi;
}

}  // namespace

std::optional<Degeneracy> findFlaw(const SketchData& sketch, Values now, double size, std::span<const int> entities,
                                   double margin, Values passed) {
    const Values before = passed.empty() ? Values(sketch.reference) : passed;
    const double least = margin * kCollapsed * size;
    for (const int number : entities) {
        const Extent extent = extentOf(sketch, number, now);
        if (!(extent.size >= least) && extentOf(sketch, number, sketch.reference).size >= least)
            return Degeneracy{number, -1, wholeName(sketch, number) + " would have " + extent.name};
        if (isInsideOut(sketch.entities[at(number)], before, now))
            return Degeneracy{number, -1, wholeName(sketch, number) + " would turn inside out"};
        if (hasExchangedAxes(sketch, number, now))
            return Degeneracy{number, -1,
                              wholeName(sketch, number) + " would have a minor axis longer than its major one"};
    }
    return std::nullopt;
}

std::optional<Degeneracy> findRuined(const SketchData& sketch, Values now, double size, std::span<const int> entities,
                                     std::span<const Asked> asked, double least) {
    for (const int number : entities) {
        if (isBeyond(sketch, sketch.entities[at(number)], now, size))
            return Degeneracy{number, -1, wholeName(sketch, number) + " would go far out of the drawing"};
        const Asked ask = at(number) < asked.size() ? asked[at(number)] : Asked::nothing;
        const Shrinking shrinking(sketch, number, now, least, kCollapsed * size);
        if ((ask == Asked::nothing && shrinking.isFound()) || (ask == Asked::radius && shrinking.isInSweep()))
            return Degeneracy{number, -1, wholeName(sketch, number) + " would shrink to next to nothing"};
    }
    return std::nullopt;
}

bool haveShrunk(const SketchData& sketch, std::span<const int> entities, Values now, double least) {
    const double nothing = kCollapsed * sketch.size();
    return std::any_of(entities.begin(), entities.end(),
                       [&](int number) { return Shrinking(sketch, number, now, least, nothing).isFound(); });
}

int findReversed(const SketchData& sketch, std::span<const int> entities, Values before, Values now) {
    for (const int number : entities) {
        const SketchEntity& entity = sketch.entities[at(number)];
        if (entity.kind == EntityKind::line && isReversed(entity.firstValue, entity.firstValue + 2, before, now))
            return number;
        if (entity.kind == EntityKind::arc && hasLeapt(entity.firstValue, before, now))
            return number;
        if (entity.kind != EntityKind::polyline)
            continue;
        for (int i = 0; i < entity.segmentCount(); ++i)
            if (isReversed(sketch.vertexValue(number, i), sketch.vertexValue(number, i + 1), before, now))
                return number;
    }
    return -1;
}

std::vector<int> sensesOf(const EquationSystem& system, std::span<const int> equations) {
    std::vector<int> senses;
    for (const int e : equations) {
        const auto sense = std::lower_bound(system.senses.begin(), system.senses.end(), e,
                                            [](const auto& entry, int number) { return entry.equation < number; });
        if (sense != system.senses.end() && sense->equation == e)
            senses.push_back(static_cast<int>(sense - system.senses.begin()));
    }
    return senses;
}

std::optional<Degeneracy> findTurnedTangency(const SketchData& sketch, const EquationSystem& system,
                                             std::span<const int> senses) {
    for (const int i : senses) {
        const EquationSystem::Sense& sense = system.senses[at(i)];
        const Equation& equation = system.set.equations[at(sense.equation)];
        if ((senseOf(system.set, equation, system.values) > 0.0) != sense.isForward)
            return Degeneracy{-1, equation.constraint,
                              "the tangency " + sketch.constraints[at(equation.constraint)].id + " would turn over"};
    }
    return std::nullopt;
}

}  // namespace holdfast::solver::detail
