#include "solver/src/solving/Mending.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <utility>

#include "geometry/ConstraintKinds.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

/// Shapes count as much as places, and bends more: enough to tell a solution that looks like the sketch from one that
/// does not.
constexpr double kMendedShape = 1.0, kMendedBend = 10.0;

/// Distances below this many times what is amiss may be on the wrong side.
constexpr double kDoubtful = 2.0;

/// Further beginnings, and what they may cost together, in unknowns and rows, once for every iteration.
constexpr int kMostBeginnings = 48;
constexpr long kMostMending = 300'000;

/// How far they are from where the sketch was, as parts of what is amiss: the first, and each one more.
constexpr double kNearBeginning = 0.2, kFartherBeginning = 0.05;

}  // namespace

Mending::Mending(SketchData& sketch, Trying& trying, Task task)
    : m_sketch(sketch), m_trying(trying), m_task(std::move(task)), m_aims(sketch.values), m_sides(sketch.reference) {
    const std::vector<double> misses = violationsOf(sketch);
    m_amiss = *std::max_element(misses.begin(), misses.end());
    m_task.aims = m_aims;
    m_task.isQuick = false;
    m_task.isMending = true;
}

Answer Mending::fromHere() {
    Answer best = inShape();
    if (best.isSolved())
        return best;
    Answer answer = withoutDoubtful();
    return answer.isSolved() ? answer : best;
}

Answer Mending::anew(Answer best) {
    const long most = m_trying.work() + kMostMending;
    std::size_t fewest = brokenAt(best.left).size();
    for (int i = 0; i < kMostBeginnings && !best.left.empty() && m_trying.work() < most; ++i) {
        Answer answer = again(best, i);
        if (answer.isSolved())
            return answer;
        if (isSpent(m_task.budget) || answer.left.empty())
            break;
        const std::size_t broken = brokenAt(answer.left).size();
        if (broken > fewest)
            continue;
        fewest = broken;
        best = std::move(answer);
    }
    return best;
}

/// With the shapes as wishes: of the ways in which the tangencies can turn the one that changes least.
Answer Mending::inShape() {
    std::vector<KeptShape> shapes;
    for (int number = 0; number < static_cast<int>(m_sketch.entities.size()); ++number)
        if (!m_sketch.entities[at(number)].fixed)
            shapes.push_back({number, kMendedShape, kMendedBend, kMendedShape});
    Task task = m_task;
    task.shapes = shapes;
    return soundly(m_trying.once(task));
}

/// First without what may be on the wrong side: where all else holds, the sides can be told.
Answer Mending::withoutDoubtful() {
    const std::vector<int> doubtful = doubtfulSides();
    for (const int c : doubtful)
        m_sketch.constraints[at(c)].active = false;
    Answer answer = m_trying.once(m_task);
    for (const int c : doubtful)
        m_sketch.constraints[at(c)].active = true;
    if (doubtful.empty() && answer.isSolved())
        answer.result.status = SolveStatus::unreached;
    if (!answer.isSolved())
        return answer;
    m_sides = answer.values;
    return soundly(from(answer.values, m_sides));
}

/// From where the failure has ended, but for what is amiss there and what touches that: it begins anew beside where it
/// was. A sketch of many small shapes would not come right all over by chance. Sides are read off where the rest held,
/// off the sketch, and off the new beginning by turns.
Answer Mending::again(const Answer& failed, int number) {
    std::mt19937 random(static_cast<unsigned>(number) + 1);
    const auto off = [&] {
        return 2.0 * static_cast<double>(random()) / static_cast<double>(std::mt19937::max()) - 1.0;
    };
    const double most = (kNearBeginning + kFartherBeginning * number) * m_amiss;
    std::vector<double> values = failed.left;
    for (const int i : entitiesAmiss(failed)) {
        const SketchEntity& entity = m_sketch.entities[at(i)];
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount && !entity.fixed; ++v)
            values[at(v)] = m_aims[at(v)] + most * off();
    }
    const std::vector<double>* const sides[] = {&m_sides, &m_sketch.reference, &values};
    return soundly(from(values, *sides[number % std::ssize(sides)]));
}

/// What the reference calls degenerate is no answer, wherever the sides were taken from.
Answer Mending::soundly(Answer answer) const {
    if (!answer.isSolved())
        return answer;
    std::vector<int> all(m_sketch.entities.size());
    std::iota(all.begin(), all.end(), 0);
    auto degeneracy = findFlaw(m_sketch, answer.values, m_sketch.size(), all);
    if (!degeneracy)
        degeneracy = findRuined(m_sketch, answer.values, m_sketch.size(), all, {}, m_task.least);
    if (degeneracy) {
        answer.left = std::exchange(answer.values, {});
        answer.result.status = SolveStatus::degenerate;
        answer.result.degeneracy = degeneracy;
    }
    return answer;
}

Answer Mending::from(const std::vector<double>& values, std::vector<double> sides) {
    std::swap(sides, m_sketch.reference);
    Answer answer = m_trying.from(values, [&] { return m_trying.once(m_task); });
    std::swap(sides, m_sketch.reference);
    return answer;
}

/// Tangencies that do not hold, and distances that are hardly more than what is amiss.
std::vector<int> Mending::doubtfulSides() const {
    std::vector<int> doubtful = brokenAt(m_aims);
    std::erase_if(doubtful, [&](int c) {
        const SketchConstraint& constraint = m_sketch.constraints[at(c)];
        const bool isDistance =
            traitsOf(constraint.type).value == ConstraintValue::length && constraint.refs.size() == 2;
        return constraint.type != ConstraintType::tangent && !(isDistance && constraint.value < kDoubtful * m_amiss);
    });
    return doubtful;
}

std::vector<int> Mending::brokenAt(const std::vector<double>& values) const {
    if (values.empty())
        return {};
    std::vector<double> now = std::exchange(m_sketch.values, values);
    std::vector<int> broken = brokenConstraints(m_sketch);
    m_sketch.values = std::move(now);
    return broken;
}

/// Entities that have degenerated or whose constraints do not hold, and those that are tied to them.
std::vector<int> Mending::entitiesAmiss(const Answer& failed) const {
    std::vector<char> isAmiss(m_sketch.entities.size(), 0);
    std::vector<int> broken = brokenAt(failed.left);
    if (const auto& degeneracy = failed.result.degeneracy) {
        if (degeneracy->entity >= 0)
            isAmiss[at(degeneracy->entity)] = 1;
        if (degeneracy->constraint >= 0)
            broken.push_back(degeneracy->constraint);
    }
    for (const int c : broken)
        for (const SketchPlace& place : m_sketch.constraints[at(c)].refs)
            isAmiss[at(place.entity)] = 1;
    const std::vector<char> isCore = isAmiss;
    for (const int c : bindingConstraints(m_sketch)) {
        const auto& refs = m_sketch.constraints[at(c)].refs;
        const auto isOnCore = [&](const SketchPlace& place) {
            return isCore[at(place.entity)] != 0 && !m_sketch.entities[at(place.entity)].fixed;
        };
        if (std::any_of(refs.begin(), refs.end(), isOnCore))
            for (const SketchPlace& place : refs)
                isAmiss[at(place.entity)] = 1;
    }
    std::vector<int> amiss;
    for (int i = 0; i < static_cast<int>(isAmiss.size()); ++i)
        if (isAmiss[at(i)] != 0)
            amiss.push_back(i);
    return amiss;
}

}  // namespace holdfast::solver::detail
