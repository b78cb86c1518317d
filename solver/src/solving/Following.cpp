#include "solver/src/solving/Following.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// The first step on the way.
constexpr double kFirstStep = 0.5;

/// The longest step where something is spared: its size counts so much that a longer step finds it elsewhere.
constexpr double kSparingStep = 0.125;

/// Where not even the smallest step succeeds, the way is begun with this part of it: on the way there may be much that
/// is smaller than a hundredth of it.
constexpr double kFiner = 1.0 / 64;

/// Unknowns and rows gone through in steps that failed, each once for every iteration, before a way is given up: some
/// tenths of a second. It is counted and not timed, so that the same edit ends the same way on every machine.
constexpr long kMostWasted = 1'000'000;

/// The longest turn of one step, in radians: at a right angle sines and cosines lose their slope.
constexpr double kLongestTurn = 0.35;

/// What a step may miss of where the steps before lead, as a part of its own way. A step that is twice as long as the
/// one before and turns by 20 degrees misses a quarter.
constexpr double kLeft = 0.3;

/// A step has led elsewhere than the steps before: two ways may cross there, as where an arm is straight, and this may
/// be the other one.
bool hasLeft(const std::vector<double>& values, const std::vector<double>& ahead, const Answer& now) {
    double way = 0.0, off = 0.0;
    for (std::size_t v = 0; v < values.size(); ++v) {
        way = std::max(way, std::abs(ahead[v] - values[v]) * now.metric[v]);
        off = std::max(off, std::abs(now.values[v] - ahead[v]) * now.metric[v]);
    }
    return off > kLeft * way;
}

}  // namespace

void Following::Course::pass(double part, const std::vector<double>& values) {
    m_before = std::exchange(m_values, values);
    m_lastStep = part - std::exchange(m_part, part);
}

std::vector<double> Following::Course::ahead(double part) const {
    std::vector<double> values = m_before;
    for (std::size_t v = 0; v < values.size(); ++v)
        values[v] = m_values[v] + (part - m_part) / m_lastStep * (m_values[v] - m_before[v]);
    return values;
}

Answer Following::run(const Manner& manner) {
    m_manner = manner;
    m_spared = manner.spared;
    std::vector<double> values = m_way.start();
    double leastStep = manner.leastStep;
    double done = 0.0, step = kFirstStep;
    if (const auto& motion = m_way.motion(); motion && motion->angle() != 0.0)
        step = std::min(step, kLongestTurn / std::abs(motion->angle()));
    if (!manner.spared.empty())
        step = std::min(step, kSparingStep);
    const double longest = step;
    Course course(values);
    // Most ways that lead nowhere do so from the beginning, which few tries show.
    Answer answer = stepOrNudge(leastStep, leastStep, values, {});
    if (answer.turnsRound && manner.mayTurnRound)
        answer.result.status = SolveStatus::solved;
    if (answer.isSolved()) {
        done = leastStep;
    } else if (leastStep < kNudged && !answer.isContradicted && !isSpent(m_task.budget)) {
        leastStep *= kFiner;
        answer = stepTo(leastStep, values, values, values);
        if (answer.isSolved()) {
            done = leastStep;
            step = 2.0 * leastStep;
        }
    }
    if (done > 0.0) {
        values = answer.values;
        course.pass(done, values);
    }
    long wasted = 0;
    bool hasJustFailed = false;
    Answer over;  // of the shortest step that turned a line round
    double overTo = 0.0;
    while (done > 0.0 && done < 1.0) {
        const double next = std::min(1.0, done + step);
        const long before = m_trying.work();
        answer = stepOrNudge(next, step, values, course.ahead(next));
        if (isSpent(m_task.budget))
            break;
        if (answer.isSolved()) {
            done = next;
            values = answer.values;
            course.pass(done, values);
            step = hasJustFailed ? step : std::min(longest, 2.0 * step);
            hasJustFailed = false;
            continue;
        }
        hasJustFailed = true;
        wasted += m_trying.work() - before;
        if (answer.turnsRound && manner.mayTurnRound && (overTo <= done || next < overTo)) {
            over = answer;
            overTo = next;
        }
        if ((step *= 0.5) >= leastStep && wasted <= kMostWasted)
            continue;
        if (overTo <= done)
            break;
        answer = std::exchange(over, {});
        answer.result.status = SolveStatus::solved;
        step = std::min(longest, std::max(overTo - done, leastStep));
        done = overTo;
        values = answer.values;
        course.pass(done, values);
    }
    if (!answer.isSolved()) {
        answer.result.reached = m_way.reachedAt(done < kLeastStep ? 0.0 : done);
        answer.values = std::move(values);
    }
    answer.spared = m_spared;
    return answer;
}

/// From where the last step has led, or from elsewhere, as near to the aims as can be.
Answer Following::stepTo(double part, const std::vector<double>& values, const std::vector<double>& from,
                         const std::vector<double>& aims) {
    const std::vector<Target> targets = m_way.targetsAt(part);
    m_way.setValuesAt(part, m_sketch);
    Task step = m_task;
    step.targets = targets;
    step.kept = m_manner.kept;
    step.shapes = m_trying.shapes();
    step.spared = m_manner.spared;
    step.sparesFirst = !m_manner.spared.empty();
    if (m_manner.sparesSmall)
        step.sparedBelow = m_way.longest();
    if (m_manner.mayTurnRound)
        step.passed = values;
    if (&from != &aims)
        step.aims = aims;
    Answer answer = m_trying.from(from, [&] { return m_trying.sparingSmall(step); });
    if (step.spared.size() > m_spared.size())
        m_spared = step.spared;
    m_trying.spare(answer.result, m_spared);
    // Wishes make the equations many, and near a double root only few can be solved to the last digit.
    if (answer.result.status == SolveStatus::unreached && !step.shapes.empty()) {
        step.shapes = {};
        answer = m_trying.from(from, [&] { return m_trying.once(step); });
    }
    answer.turnsRound = answer.isSolved() && findReversed(m_sketch, answer.concerned, values, answer.values) >= 0;
    if (answer.turnsRound)
        answer.result.status = SolveStatus::unreached;
    return answer;
}

/// What a step has found; where that has left the way of the steps before, what lies on that way.
Answer Following::straightOn(double next, const std::vector<double>& values, const std::vector<double>& ahead,
                             Answer found) {
    // What the step does not solve for stays where the last one has led, on its ties.
    std::vector<double> straight = values;
    for (const int number : found.concerned) {
        const auto& entity = m_sketch.entities[at(number)];
        const auto first = ahead.begin() + entity.firstValue;
        std::copy(first, first + entity.valueCount, straight.begin() + entity.firstValue);
    }
    if (!hasLeft(values, straight, found) || isSpent(m_task.budget))
        return found;
    Answer other = stepTo(next, values, straight, straight);
    return other.isSolved() && !hasLeft(values, straight, other) ? other : found;
}

/// Where a step fails, from where the steps before lead when they go on straight: what is smaller than a step would
/// be overrun where it stands.
Answer Following::stepOrNudge(double next, double step, const std::vector<double>& values,
                              const std::vector<double>& ahead) {
    Answer answer = stepTo(next, values, values, values);
    if (answer.isSolved() && !ahead.empty())
        return straightOn(next, values, ahead, std::move(answer));
    if (answer.isSolved() || isSpent(m_task.budget))
        return answer;
    if (answer.turnsRound && !m_manner.spared.empty())
        return answer;
    if (!ahead.empty())
        if (Answer straight = stepTo(next, values, ahead, values); straight.isSolved())
            return straight;
    if (step > kNudged || isSpent(m_task.budget))
        return answer;
    const std::vector<double> shake = m_shaken(values);
    Answer shaken = stepTo(next, values, shake, values);
    shaken.turnsRound = false;  // by the shake, and not because the way leads there
    return shaken.isSolved() || !answer.turnsRound ? shaken : answer;
}

}  // namespace holdfast::solver::detail
