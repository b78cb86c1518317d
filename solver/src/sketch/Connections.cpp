#include "solver/src/sketch/Connections.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

int entityOfValue(const SketchData& sketch, int value) {
    assert(value >= 0 && at(value) < sketch.values.size());
    const auto after = std::upper_bound(sketch.entities.begin(), sketch.entities.end(), value,
                                        [](int v, const SketchEntity& entity) { return v < entity.firstValue; });
    return static_cast<int>(after - sketch.entities.begin()) - 1;
}

ListTable constraintsByEntity(const SketchData& sketch, std::span<const int> constraints) {
    std::vector<std::pair<int, int>> uses;
    for (const int c : constraints) {
        for (const SketchPlace& place : sketch.constraints[at(c)].refs)
            uses.emplace_back(place.entity, c);
    }
    return tabulate(static_cast<int>(sketch.entities.size()), uses);
}

Surroundings surroundingsOf(const SketchData& sketch, std::span<const int> constraints, std::vector<int> entities) {
    const ListTable constraintsOf = constraintsByEntity(sketch, constraints);
    Surroundings around;
    std::vector<char> isSeen(sketch.entities.size(), 0), isTaken(sketch.constraints.size(), 0);
    for (std::size_t head = 0; head < entities.size(); ++head) {
        const int entity = entities[head];
        if (std::exchange(isSeen[at(entity)], 1) || sketch.entities[at(entity)].fixed)
            continue;
        around.entities.push_back(entity);
        for (const int c : constraintsOf[entity]) {
            if (std::exchange(isTaken[at(c)], 1))
                continue;
            around.constraints.push_back(c);
            for (const SketchPlace& place : sketch.constraints[at(c)].refs)
                entities.push_back(place.entity);
        }
    }
    return around;
}

}  // namespace holdfast::solver::detail
