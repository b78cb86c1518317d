#include "solver/src/solving/Trying.h"

#include <limits>

#include "solver/src/solving/Stopwatch.h"

namespace holdfast::solver::detail {

namespace {

/// How often sizes are weighed again so that few change instead of many.
constexpr int kMostReweighted = 4;

/// A size that changes by more than this part of itself makes another way worth a look.
constexpr double kTwisted = 0.5;

int countOf(const Run::Changes& changes) {
    return changes.bends + changes.lengths + changes.turns;
}

}  // namespace

Answer Trying::once(const Task& task) {
    const Stopwatch building;
    Run run(m_sketch, task);
    m_secondsBuilding += building.seconds();
    Answer answer;
    answer.result = run.solve();
    m_work += run.work();
    answer.isContradicted = run.isContradicted();
    answer.suspects = run.suspects();
    if (!answer.isSolved())
        return answer;
    answer.values.assign(run.values().begin(), run.values().end());
    answer.metric.assign(run.metric().begin(), run.metric().end());
    if (task.isEdit) {
        answer.concerned = run.concerned();
        answer.leavesBroken = run.leavesBroken();
    }
    if (!task.shapes.empty()) {
        answer.unchangedSizes = run.unchangedSizes();
        answer.emphasis = run.emphasis();
        answer.changes = run.changes();
        answer.strain = run.strain();
        answer.isTwisted = run.mostChanged() > kTwisted;
        answer.isBent = run.isBent();
    }
    return answer;
}

/// With the shapes as wishes, weighed again until few change.
Answer Trying::wishing(Task task) {
    Answer wished = once(task);
    if (!wished.isSolved())
        return wished;
    const std::vector<double> aims(task.aims.empty() ? m_sketch.values
                                                     : std::vector<double>(task.aims.begin(), task.aims.end()));
    task.aims = aims;
    for (int i = 0; i < kMostReweighted && countOf(wished.changes) > 1; ++i) {
        task.emphasis = wished.emphasis;
        Answer fewer = from(wished.values, [&] { return once(task); });
        if (!fewer.isSolved() || countOf(fewer.changes) > countOf(wished.changes))
            break;
        wished = std::move(fewer);
    }
    return wished;
}

Answer Trying::keepingShapes(Task task) {
    if (m_shapes.empty())
        return once(task);
    const bool isQuick = std::exchange(task.isQuick, true);
    task.shapes = m_shapes;
    Answer wished = wishing(task);
    if (!wished.isSolved()) {
        if (wished.isContradicted)
            return wished;
        task.shapes = {};
        task.isQuick = isQuick;
        Answer bare = once(task);
        bare.isTwisted = true;
        bare.strain = std::numeric_limits<double>::max();
        return bare;
    }
    if (!wished.isBent)
        return wished;
    // Where sizes have to change anyway, fewer change if what would turn as well counts as much.
    if (wished.changes.turns > 0 && wished.changes.bends + wished.changes.lengths > 0) {
        const std::vector<KeptShape> straight = unturned();
        Task again = task;
        again.shapes = straight;
        if (Answer other = wishing(again); other.isSolved() && other.changes < wished.changes)
            wished = std::move(other);
    }
    const std::vector<double> aims(task.aims.empty() ? m_sketch.values
                                                     : std::vector<double>(task.aims.begin(), task.aims.end()));
    task.aims = aims;
    task.isFirm = wished.unchangedSizes;
    Answer firm = from(wished.values, [&] { return once(task); });
    return firm.isSolved() ? firm : wished;
}

std::vector<KeptShape> Trying::unturned() const {
    std::vector<KeptShape> shapes = m_shapes;
    for (KeptShape& shape : shapes)
        shape.turnWeight = shape.lengthWeight;
    return shapes;
}

}  // namespace holdfast::solver::detail
