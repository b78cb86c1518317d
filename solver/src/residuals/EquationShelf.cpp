#include "solver/src/residuals/EquationShelf.h"

#include <algorithm>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// Places: one pull takes three kinds of equations in turn, and some more where sizes have to give way.
constexpr std::size_t kMostKept = 6;

/// Bit by bit: no 0.0 for a -0.0.
bool areSame(std::span<const double> a, std::span<const double> b) {
    return std::ranges::equal(std::as_bytes(a), std::as_bytes(b));
}

}  // namespace

/// Where entities are now matters to few equations, which say so, and to constants of fixed entities.
bool EquationShelf::isFor(const Kept& kept, const SketchData& sketch, std::span<const int> constraints,
                          const KeptSizes& sizes) {
    const Needs& needs = kept.needs;
    if (kept.isOut || !std::ranges::equal(needs.constraints, constraints) ||
        !areSame(needs.reference, sketch.reference) || needs.sizes != sizes)
        return false;
    for (std::size_t i = 0; i < constraints.size(); ++i)
        if (const double goal = sketch.constraints[at(constraints[i])].value;
            !areSame({&needs.goals[i], 1}, {&goal, 1}))
            return false;
    if (kept.system.readsNow)
        return areSame(needs.values, sketch.values);
    return std::ranges::all_of(sketch.entities, [&](const SketchEntity& entity) {
        const auto from = at(entity.firstValue), count = at(entity.valueCount);
        return !entity.fixed ||
               areSame(std::span(needs.values).subspan(from, count), std::span(sketch.values).subspan(from, count));
    });
}

EquationShelf::Taken EquationShelf::take(const SketchData& sketch, std::span<const int> constraints,
                                         const KeptSizes& sizes) {
    for (std::size_t i = 0; i < m_kept.size(); ++i) {
        Kept& kept = m_kept[i];
        if (!isFor(kept, sketch, constraints, sizes))
            continue;
        Taken taken{std::move(kept.system), static_cast<int>(i)};
        kept.isOut = true;
        kept.lastUse = ++m_uses;
        taken.system.values = kept.start;
        std::ranges::copy(sketch.values, taken.system.values.begin());
        taken.system.set.splines = &sketch.splines;
        return taken;
    }
    Taken taken;
    taken.system = buildSystem(sketch, constraints, sizes);
    Kept kept;
    kept.needs.constraints.assign(constraints.begin(), constraints.end());
    for (const int c : constraints)
        kept.needs.goals.push_back(sketch.constraints[at(c)].value);
    kept.needs.reference = sketch.reference;
    kept.needs.values = sketch.values;
    kept.needs.sizes = sizes;
    kept.start = taken.system.values;
    kept.isOut = true;
    // Nothing that can fail comes after it has a place.
    taken.place = freePlace();
    if (taken.place < 0)
        return taken;
    kept.lastUse = ++m_uses;
    m_kept[at(taken.place)] = std::move(kept);
    return taken;
}

/// That of what was used longest ago; -1 while all are in use.
int EquationShelf::freePlace() {
    if (m_kept.size() < kMostKept) {
        m_kept.emplace_back();
        return static_cast<int>(m_kept.size()) - 1;
    }
    int oldest = -1;
    for (int i = 0; i < static_cast<int>(m_kept.size()); ++i)
        if (!m_kept[at(i)].isOut && (oldest < 0 || m_kept[at(i)].lastUse < m_kept[at(oldest)].lastUse))
            oldest = i;
    return oldest;
}

void EquationShelf::giveBack(Taken taken) {
    if (taken.place < 0)
        return;
    Kept& kept = m_kept[at(taken.place)];
    kept.system = std::move(taken.system);
    kept.isOut = false;
}

}  // namespace holdfast::solver::detail
