#include "Shaking.h"

#include <algorithm>
#include <random>

namespace holdfast::solver::detail {

namespace {

/// The largest part of a radius by which it changes.
constexpr double kOfRadius = 0.4;

class Shaking {
public:
    Shaking(SketchData& sketch, double amount, unsigned seed) : m_sketch(sketch), m_amount(amount), m_random(seed) {}

    void shake(const SketchEntity& entity) {
        switch (entity.kind) {
            case EntityKind::circle:
            case EntityKind::arc:
                shakeRound(entity);
                break;
            case EntityKind::ellipse:
            case EntityKind::ellipticalArc:
                shift(entity, {0, 5, 7});
                break;
            case EntityKind::polyline:
                shakeAll(entity.firstValue, 2 * entity.vertexCount);
                break;
            case EntityKind::ray:
            case EntityKind::xline:
            case EntityKind::text:
                shakeAll(entity.firstValue, 2);
                break;
            default:
                shakeAll(entity.firstValue, entity.valueCount);
        }
    }

private:
    double off(double most) { return most * std::uniform_real_distribution<double>(-1.0, 1.0)(m_random); }
    double& value(int v) { return m_sketch.values[static_cast<std::size_t>(v)]; }

    void shakeAll(int first, int count) {
        for (int v = first; v < first + count; ++v)
            value(v) += off(m_amount);
    }

    /// The same way for each of the entity's points.
    void shift(const SketchEntity& entity, std::initializer_list<int> points) {
        const double x = off(m_amount), y = off(m_amount);
        for (const int p : points)
            if (p < entity.valueCount) {
                value(entity.firstValue + p) += x;
                value(entity.firstValue + p + 1) += y;
            }
    }

    void shakeRound(const SketchEntity& entity) {
        const int first = entity.firstValue;
        const double radius = value(first + 2), other = radius + off(std::min(m_amount, kOfRadius * radius));
        value(first + 2) = other;
        for (int p = 3; p < entity.valueCount; ++p) {
            const double centre = value(first + (p - 3) % 2);
            value(first + p) = centre + (value(first + p) - centre) * other / radius;
        }
        shift(entity, {0, 3, 5});
    }

    SketchData& m_sketch;
    double m_amount;
    std::mt19937 m_random;
};

}  // namespace

void shake(SketchData& sketch, double part, unsigned seed) {
    std::vector<char> isHeld(sketch.entities.size(), 0);
    for (const SketchConstraint& constraint : sketch.constraints)
        if (constraint.type == ConstraintType::fixed && constraint.binds())
            for (const SketchPlace& place : constraint.refs)
                isHeld[static_cast<std::size_t>(place.entity)] = 1;
    Shaking shaking(sketch, part * sketch.size(), seed);
    for (std::size_t i = 0; i < sketch.entities.size(); ++i)
        if (!sketch.entities[i].fixed && !isHeld[i])
            shaking.shake(sketch.entities[i]);
    sketch.takeReference();
}

}  // namespace holdfast::solver::detail
