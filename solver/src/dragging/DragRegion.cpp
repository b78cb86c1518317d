#include "solver/src/dragging/DragRegion.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Longest movement in one iteration, as a part of the sketch's size.
constexpr double kStride = 0.02;

/// Strides that one step is worth at most.
constexpr double kMostStrides = 2000.0;

constexpr int kFirstRings = 2;

}  // namespace

DragRegion::DragRegion(SketchData& figure, std::vector<int> h, Scope r, const KeptSizes& sizes,
                       std::span<const char> rim)
    : sketch(figure),
      handles(std::move(h)),
      reach(r),
      workspace(sketch, buildSystem(sketch, bindingConstraints(sketch), sizes)),
      rings(kFirstRings),
      emphasis(kHandleEmphasis),
      m_isRim(rim) {
    for (const int v : handles) {
        if (const int unknown = workspace.system().links[at(v)].unknown; unknown >= 0)
            seeds.push_back(unknown);
    }
    std::sort(seeds.begin(), seeds.end());
    seeds.erase(std::unique(seeds.begin(), seeds.end()), seeds.end());
    makeRegion();
}

void DragRegion::makeRegion() {
    Neighbourhood& neighbourhood = workspace.neighbourhood();
    const Neighbourhood::Rings around = reach == Scope::part ? Neighbourhood::Rings{neighbourhood.partOf(seeds), true}
                                                             : neighbourhood.around(seeds, rings);
    isWidest = around.isWhole;
    emphasis = kHandleEmphasis;
    wishGoals();
    subproblem = std::make_unique<Subproblem>(workspace.system(), around.unknowns);
    m_pull.reset();
    triedFrom.clear();
    m_isBeyond = m_isBeyond || touchesRim();
}

bool DragRegion::touchesRim() const {
    return !m_isRim.empty() && std::any_of(subproblem->entities().begin(), subproblem->entities().end(),
                                           [&](int entity) { return m_isRim[at(entity)] != 0; });
}

void DragRegion::readSketch() {
    std::copy(sketch.values.begin(), sketch.values.end(), workspace.system().values.begin());
}

void DragRegion::setGoals(std::span<const double> wanted) {
    triedFrom.clear();
    goals.assign(wanted.begin(), wanted.end());
    wishGoals();
}

void DragRegion::wishGoals() {
    for (std::size_t i = 0; i < goals.size(); ++i)
        workspace.wish(handles[i], goals[i], emphasis);
}

const Pull& DragRegion::pull() {
    if (m_pull)
        workspace.updatePull(*subproblem, seeds.size(), *m_pull);
    else
        m_pull = workspace.pullOf(*subproblem);
    return *m_pull;
}

double DragRegion::miss() {
    const EquationSystem& system = workspace.system();
    double worst = 0.0;
    for (std::size_t i = 0; i < goals.size(); ++i) {
        const std::size_t v = at(handles[i]);
        worst = std::max(worst, std::abs(system.values[v] - goals[i]) * system.metric[v]);
    }
    return worst;
}

bool DragRegion::isMet() {
    return miss() <= kReached * workspace.system().size;
}

IterationLimits DragRegion::careful() {
    IterationLimits limits;
    limits.stride = kStride;
    const double strides = miss() / (kStride * workspace.system().size);
    limits.sliding += static_cast<int>(std::min(2.0 * strides, kMostStrides));
    return limits;
}

void DragRegion::undo() {
    EquationSystem& system = workspace.system();
    for (const int u : subproblem->unknowns()) {
        for (const int v : system.valuesOfUnknown[u]) {
            if (v < system.figureValueCount)
                system.values[at(v)] = sketch.values[at(v)];
        }
    }
}

}  // namespace holdfast::solver::detail
