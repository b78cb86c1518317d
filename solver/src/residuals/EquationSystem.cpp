#include "solver/src/residuals/EquationSystem.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

#include "solver/src/residuals/EquationBuilder.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// What iterations strive for under the tolerance that a sketch has unless told otherwise: a few hundred roundings of
/// a coordinate, which Newton steps reach one iteration after the tolerance.
constexpr double kRelativeAim = 1e-13;

/// The same as a part of an element's size, for sketches in which that is less: a thousand elements wide, a part of the
/// whole would be a gap that is seen. And how small a part of the sketch's size it may become: a dozen roundings.
constexpr double kElementAim = 1e-10, kLeastAim = 3e-15;

}  // namespace

ListTable tabulate(int listCount, std::span<const std::pair<int, int>> pairs) {
    assert(listCount >= 0);
    ListTable table;
    table.starts.assign(at(listCount) + 1, 0);
    for (const auto& [list, item] : pairs)
        ++table.starts[at(list) + 1];
    for (std::size_t i = 1; i < table.starts.size(); ++i)
        table.starts[i] += table.starts[i - 1];
    std::vector<int> next(table.starts.begin(), table.starts.end() - 1);
    table.items.resize(pairs.size());
    for (const auto& [list, item] : pairs)
        table.items[at(next[at(list)]++)] = item;
    return table;
}

double EquationSystem::meanOf(int unknown) const {
    return meanOf(unknown, values);
}

double EquationSystem::meanOf(int unknown, std::span<const double> from) const {
    double sum = 0.0, weight = 0.0;
    for (const int v : valuesOfUnknown[unknown]) {
        const ValueLink& link = links[at(v)];
        const double w = metric[at(v)] * metric[at(v)];
        sum += w * link.sign * (from[at(v)] - link.offset);
        weight += w;
    }
    assert(weight > 0.0);
    return sum / weight;
}

void EquationSystem::assign(int unknown, double x) {
    assert(unknown >= 0 && unknown < unknownCount);
    for (const int v : valuesOfUnknown[unknown])
        values[at(v)] = links[at(v)].sign * x + links[at(v)].offset;
}

double EquationSystem::weightOf(int unknown) const {
    double weight = 0.0;
    for (const int v : valuesOfUnknown[unknown])
        weight += metric[at(v)] * metric[at(v)];
    return weight;
}

double EquationSystem::residualOf(int equation) const {
    return residualOf(equation, values);
}

double EquationSystem::residualOf(int equation, std::span<const double> from) const {
    const Equation& e = set.equations[at(equation)];
    const auto rows = residuals(set, e, from);
    double worst = 0.0;
    for (std::size_t row = 0; row < e.rows; ++row)
        worst = std::isnan(rows[row]) ? rows[row] : std::max(worst, std::abs(rows[row]));
    return worst;
}

void EquationSystem::dropDoubtfulSenses() {
    const double most = SketchData::kHolds * tolerance;
    std::erase_if(senses, [&](const Sense& sense) { return !(residualOf(sense.equation, reference) <= most); });
}

std::vector<int> entitiesOf(const EquationSystem& system, std::span<const int> unknowns) {
    std::vector<int> entities;
    for (const int u : unknowns) {
        for (const int v : system.valuesOfUnknown[u]) {
            if (v < system.figureValueCount)
                entities.push_back(system.entityOfValue[at(v)]);
        }
    }
    std::sort(entities.begin(), entities.end());
    entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
    return entities;
}

std::vector<int> bindingConstraints(const SketchData& sketch) {
    std::vector<int> result;
    for (std::size_t i = 0; i < sketch.constraints.size(); ++i) {
        if (sketch.constraints[i].binds())
            result.push_back(static_cast<int>(i));
    }
    return result;
}

namespace {

EquationSystem emptySystem(const SketchData& sketch) {
    EquationSystem system;
    system.size = sketch.size();
    system.tolerance = sketch.tolerance * system.size;
    const double finest = std::max(kElementAim * sketch.typicalSize(), kLeastAim * system.size);
    system.aim = (sketch.tolerance / SketchData::kTolerance) * std::min(kRelativeAim * system.size, finest);
    system.figureValueCount = static_cast<int>(sketch.values.size());
    system.values = sketch.values;
    system.set.splines = &sketch.splines;
    for (std::size_t i = 0; i < sketch.entities.size(); ++i)
        system.entityOfValue.insert(system.entityOfValue.end(), at(sketch.entities[i].valueCount), static_cast<int>(i));
    return system;
}

}  // namespace

EquationSystem buildSystem(const SketchData& sketch, std::span<const int> constraints, const KeptSizes& sizes) {
    EquationSystem system = emptySystem(sketch);
    EquationBuilder(sketch, system, true).build(constraints, sizes);
    return system;
}

EquationSystem buildPlainSystem(const SketchData& sketch, std::span<const int> constraints) {
    EquationSystem system = emptySystem(sketch);
    EquationBuilder(sketch, system, false).build(constraints, {});
    return system;
}

EquationSystem buildSystem(const SketchData& sketch) {
    const std::vector<int> all = bindingConstraints(sketch);
    return buildSystem(sketch, all);
}

}  // namespace holdfast::solver::detail
