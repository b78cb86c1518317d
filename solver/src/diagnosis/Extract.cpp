#include "solver/src/diagnosis/Extract.h"

#include <algorithm>
#include <cassert>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

Extract::Extract(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets)
    : m_source(sketch) {
    takeAll(constraints, targets);
}

Extract::Extract(const SketchData& sketch, const Surroundings& part) : m_source(sketch) {
    for (const int entity : part.entities)
        take(entity);
    takeAll(part.constraints, {});
}

void Extract::takeAll(std::span<const int> constraints, std::span<const Target> targets) {
    m_sketch.tolerance = m_source.tolerance;
    assert(m_source.reference.size() == m_source.values.size());
    for (const int c : constraints) {
        for (const SketchPlace& place : m_source.constraints[at(c)].refs)
            take(place.entity);
    }
    for (const Target& target : targets)
        take(entityOfValue(m_source, target.value));
    for (const int c : constraints)
        takeConstraint(m_source.constraints[at(c)]);
    for (const Target& target : targets)
        m_targets.push_back({valueOf(target.value), target.goal});
}

int Extract::valueOf(int value) const {
    const int entity = entityOfValue(m_source, value);
    return m_sketch.entities[at(m_numbers.at(entity))].firstValue + value - m_source.entities[at(entity)].firstValue;
}

void Extract::take(int number) {
    if (!m_numbers.emplace(number, static_cast<int>(m_sketch.entities.size())).second)
        return;
    m_taken.push_back(number);
    SketchEntity entity = m_source.entities[at(number)];
    takeValues(entity);
    if (entity.spline >= 0) {
        m_sketch.splines.push_back(m_source.splines[at(entity.spline)]);
        entity.spline = static_cast<int>(m_sketch.splines.size()) - 1;
    }
    m_sketch.entities.push_back(std::move(entity));
}

void Extract::takeValues(SketchEntity& entity) {
    const int shift = static_cast<int>(m_sketch.values.size()) - entity.firstValue;
    for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v) {
        m_sketch.values.push_back(m_source.values[at(v)]);
        m_sketch.reference.push_back(m_source.reference[at(v)]);
    }
    entity.firstValue += shift;
    for (int& bulge : entity.bulgeValues)
        bulge = bulge < 0 ? bulge : bulge + shift;
}

void Extract::takeConstraint(SketchConstraint constraint) {
    for (SketchPlace& place : constraint.refs)
        place.entity = m_numbers.at(place.entity);
    m_sketch.addConstraint(std::move(constraint));
}

}  // namespace holdfast::solver::detail
