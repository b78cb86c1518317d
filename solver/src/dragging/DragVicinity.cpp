#include "solver/src/dragging/DragVicinity.h"

#include <algorithm>
#include <utility>

#include "solver/src/sketch/Connections.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Entities whose neighbours are looked for: with twelve of them most handles have all of two rings around them.
constexpr std::size_t kNear = 192;

/// Parts up to so many times as large are taken as a whole.
constexpr std::size_t kAsGood = 4;

std::vector<Target> asTargets(std::span<const int> values) {
    std::vector<Target> targets;
    for (const int v : values)
        targets.push_back({v, 0.0});
    return targets;
}

}  // namespace

std::unique_ptr<DragVicinity> DragVicinity::around(const SketchData& sketch, std::span<const int> handles) {
    if (sketch.entities.size() <= kAsGood * kNear || sketch.constraintsOn.count() != sketch.constraints.size())
        return nullptr;
    std::vector<char> isSeen(sketch.entities.size(), 0), isInside(sketch.entities.size(), 0);
    std::vector<char> isTaken(sketch.constraints.size(), 0);
    std::vector<int> entities, constraints;
    const auto see = [&](int entity) {
        if (!std::exchange(isSeen[at(entity)], 1))
            entities.push_back(entity);
    };
    for (const int v : handles)
        see(entityOfValue(sketch, v));
    std::size_t inside = 0;
    for (std::size_t head = 0; head < entities.size() && inside < kNear; ++head) {
        isInside[at(entities[head])] = 1;
        if (sketch.entities[at(entities[head])].fixed)
            continue;
        ++inside;
        sketch.constraintsOn.forEachOn(entities[head], [&](int c) {
            if (std::exchange(isTaken[at(c)], 1) || !sketch.constraints[at(c)].binds())
                return;
            constraints.push_back(c);
            for (const SketchPlace& place : sketch.constraints[at(c)].refs)
                see(place.entity);
        });
    }
    // An entity that very many others hang on is no vicinity.
    if (entities.size() > kAsGood * kNear)
        return nullptr;
    std::sort(constraints.begin(), constraints.end());
    return std::unique_ptr<DragVicinity>(new DragVicinity(sketch, std::move(constraints), handles, isInside));
}

DragVicinity::DragVicinity(const SketchData& whole, std::vector<int> constraints, std::span<const int> handles,
                           std::span<const char> isInside)
    : m_constraints(std::move(constraints)), m_extract(whole, m_constraints, asTargets(handles)) {
    sketch().sizeAround = whole.size();
    m_start = sketch().values;
    for (const int entity : m_extract.taken()) {
        m_isRim.push_back(!isInside[at(entity)] && !whole.entities[at(entity)].fixed);
        m_firstThere.push_back(whole.entities[at(entity)].firstValue);
    }
    for (const Target& target : m_extract.targets())
        m_handles.push_back(target.value);
}

void DragVicinity::takeOver(SolveResult& result, SketchData& whole) const {
    const std::span<const int> taken = m_extract.taken();
    for (Movement& movement : result.movements) {
        copyEntity(movement.entity, m_extract.sketch().values, whole.values);
        movement.entity = taken[at(movement.entity)];
    }
    std::sort(result.movements.begin(), result.movements.end(),
              [](const Movement& a, const Movement& b) { return a.entity < b.entity; });
    if (!result.degeneracy)
        return;
    if (int& entity = result.degeneracy->entity; entity >= 0)
        entity = taken[at(entity)];
    if (int& constraint = result.degeneracy->constraint; constraint >= 0)
        constraint = m_constraints[at(constraint)];
}

void DragVicinity::copy(std::span<const double> from, std::vector<double>& to) const {
    for (int i = 0; i < static_cast<int>(m_firstThere.size()); ++i)
        copyEntity(i, from, to);
}

void DragVicinity::copyEntity(int number, std::span<const double> from, std::vector<double>& to) const {
    const SketchEntity& entity = m_extract.sketch().entities[at(number)];
    std::copy_n(from.begin() + entity.firstValue, entity.valueCount, to.begin() + m_firstThere[at(number)]);
}

}  // namespace holdfast::solver::detail
