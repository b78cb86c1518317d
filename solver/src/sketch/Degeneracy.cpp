#include "solver/src/sketch/Degeneracy.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

constexpr double kCollapsed = 1e-6;

using Values = std::span<const double>;

double distance(Values v, int a, int b) {
    return std::hypot(v[at(b)] - v[at(a)], v[at(b + 1)] - v[at(a + 1)]);
}

/// Counter-clockwise turn from one direction to another, in [0, 2 pi).
double turn(double fromX, double fromY, double toX, double toY) {
    const double angle = std::atan2(fromX * toY - fromY * toX, fromX * toX + fromY * toY);
    return angle < 0.0 ? angle + 2 * std::numbers::pi : angle;
}

double arcSweep(Values v, int first) {
    return turn(v[at(first + 3)] - v[at(first)], v[at(first + 4)] - v[at(first + 1)], v[at(first + 5)] - v[at(first)],
                v[at(first + 6)] - v[at(first + 1)]);
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
        sum += distance(v, entity.firstValue + i - 2, entity.firstValue + i);
    return sum;
}

/// The smallest length or radius of an element, and what to call it.
struct Extent {
    double size;
    const char* name;
};

Extent polylineExtent(const SketchData& sketch, int number, Values v) {
    const SketchEntity& entity = sketch.entities[at(number)];
    double least = distance(v, sketch.vertexValue(number, 0), sketch.vertexValue(number, 1));
    for (int i = 1; i < entity.segmentCount(); ++i)
        least = std::min(least, distance(v, sketch.vertexValue(number, i), sketch.vertexValue(number, i + 1)));
    return {least, "a segment of no length"};
}

Extent extentOf(const SketchData& sketch, int number, Values v) {
    const SketchEntity& entity = sketch.entities[at(number)];
    const int first = entity.firstValue;
    switch (entity.kind) {
        case EntityKind::line:
            return {distance(v, first, first + 2), "no length"};
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
            return {1e300, ""};
    }
}

/// A sweep near none or a full turn is one or the other by chance.
bool hasJumped(double before, double now) {
    constexpr double chance = 1e-6, full = 2 * std::numbers::pi;
    return before > chance && before < full - chance && std::abs(now - before) > std::numbers::pi;
}

bool isInsideOut(const SketchData& sketch, int number, Values now) {
    const SketchEntity& entity = sketch.entities[at(number)];
    const Values before = sketch.reference;
    if (entity.kind == EntityKind::arc)
        return hasJumped(arcSweep(before, entity.firstValue), arcSweep(now, entity.firstValue));
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

}  // namespace

std::optional<Degeneracy> findFlaw(const SketchData& sketch, const EquationSystem& system,
                                   std::span<const int> entities, double margin) {
    const double least = margin * kCollapsed * system.size;
    for (const int number : entities) {
        const Extent extent = extentOf(sketch, number, system.values);
        if (!(extent.size >= least) && extentOf(sketch, number, sketch.reference).size >= least)
            return Degeneracy{number, -1, wholeName(sketch, number) + " would have " + extent.name};
        if (isInsideOut(sketch, number, system.values))
            return Degeneracy{number, -1, wholeName(sketch, number) + " would turn inside out"};
        if (hasExchangedAxes(sketch, number, system.values))
            return Degeneracy{number, -1,
                              wholeName(sketch, number) + " would have a minor axis longer than its major one"};
    }
    return std::nullopt;
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
