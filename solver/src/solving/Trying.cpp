#include "solver/src/solving/Trying.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "solver/src/solving/Stopwatch.h"

namespace holdfast::solver::detail {

namespace {

/// How often sizes are weighed again so that few change instead of many.
constexpr int kMostReweighted = 4;

/// How often what a try has left degenerate is spared in a further one.
constexpr int kMostSpared = 2;

/// A size that changes by more than this part of itself makes another way worth a look.
constexpr double kTwisted = 0.5;

/// Tries to keep exactly what weighing alone has not kept, and the unknowns and rows, once for every iteration, that
/// those of one solve may cost together: a tenth of a second or so.
constexpr int kMostKeeping = 64;
constexpr long kMostKeepingWork = 240'000;

/// What the sizes that change do more, together, may not be worth that fewer do.
constexpr double kMostStrain = 2.0;

/// What all tries of one request may cost together, in the same measure, and their factorisations: about a second each;
/// or in a drawing so large that one try takes as long, so many times that.
constexpr long kMostWork = 2'500'000, kMostFactorWork = 6'000'000, kMostTimes = 20;

int countOf(const Run::Changes& changes) {
    return changes.bends + changes.lengths + changes.sweeps + changes.turns;
}

}  // namespace

bool Trying::isCostly() const {
    return m_betteringWork + m_dearest >= kMostWork;
}

void Trying::keepUpright(std::span<const int> entities, double turnWeight) {
    for (KeptShape& shape : m_shapes)
        if (std::binary_search(entities.begin(), entities.end(), shape.entity))
            shape.turnWeight = turnWeight;
}

Answer Trying::once(const Task& task) {
    Answer answer;
    answer.result.status = SolveStatus::unreached;
    if (isSpent())
        return answer;
    const Stopwatch building;
    Run run(m_sketch, task);
    m_secondsBuilding += building.seconds();
    answer.result = run.solve();
    m_work += run.work();
    m_factorWork += run.factorWork();
    m_dearest = std::max(m_dearest, run.factorWork());
    if (m_mostWork == std::numeric_limits<long>::max()) {
        m_mostWork = std::max(kMostWork, kMostTimes * m_work);
        m_mostFactorWork = std::max(kMostFactorWork, kMostTimes * m_factorWork);
    }
    answer.isContradicted = run.isContradicted();
    answer.suspects = run.suspects();
    if (!answer.isSolved()) {
        if (task.isMending)
            answer.left.assign(run.values().begin(), run.values().end());
        return answer;
    }
    if (m_flawOf)
        answer.result.degeneracy = m_flawOf(run.values());
    if (answer.result.degeneracy) {
        answer.result.status = SolveStatus::degenerate;
        return answer;
    }
    answer.values.assign(run.values().begin(), run.values().end());
    answer.metric.assign(run.metric().begin(), run.metric().end());
    if (task.isEdit) {
        answer.concerned = run.concerned();
        answer.leavesBroken = run.leavesBroken();
    }
    if (!task.shapes.empty()) {
        answer.unchangedSizes = run.unchangedSizes();
        answer.unchangedLengths = run.unchangedLengths();
        answer.changedLengths = run.changedLengths();
        answer.inexactLengths = run.inexactLengths();
        answer.emphasis = run.emphasis();
        answer.changes = run.changes();
        answer.strain = run.strain();
        answer.isTwisted = run.mostChanged() > kTwisted;
        answer.isBent = run.isBent();
        answer.isReshaped = run.isReshaped();
    }
    return answer;
}

/// A change is shared out among sizes alike, and the share of a small one may be more than there is of it: then small
/// ones count more, and after that the very ones that came to nothing. The task says afterwards what it took.
Answer Trying::sparingSmall(Task& task) {
    Answer answer = once(task);
    if (answer.result.status != SolveStatus::degenerate || task.shapes.empty() || m_sparedBelow == 0.0)
        return answer;
    task.sparedBelow = m_sparedBelow;
    Answer spared = once(task);
    for (int i = 0; i < kMostSpared && spare(spared.result, task.spared); ++i)
        spared = once(task);
    if (spared.isSolved())
        return spared;
    task.sparedBelow = 0.0;
    task.spared.clear();
    return answer;
}

bool Trying::spare(const SolveResult& result, std::vector<int>& spared) const {
    if (result.status != SolveStatus::degenerate || !result.degeneracy)
        return false;
    const std::size_t before = spared.size();
    const auto add = [&](int entity) {
        const auto at = std::lower_bound(spared.begin(), spared.end(), entity);
        if (entity >= 0 && (at == spared.end() || *at != entity))
            spared.insert(at, entity);
    };
    add(result.degeneracy->entity);
    if (const int constraint = result.degeneracy->constraint; constraint >= 0)
        for (const SketchPlace& place : m_sketch.constraints[static_cast<std::size_t>(constraint)].refs)
            add(place.entity);
    return spared.size() > before;
}

Answer Trying::bettering(const std::vector<double>& values, const Task& task) {
    const long before = m_factorWork;
    Answer answer = from(values, [&] { return once(task); });
    m_betteringWork += m_factorWork - before;
    return answer;
}

/// With the shapes as wishes, weighed again until few change.
Answer Trying::wishing(Task task) {
    Answer wished = sparingSmall(task);
    if (!wished.isSolved())
        return wished;
    const std::vector<double> aims(task.aims.empty() ? m_sketch.values
                                                     : std::vector<double>(task.aims.begin(), task.aims.end()));
    task.aims = aims;
    for (int i = 0; i < kMostReweighted && countOf(wished.changes) > 1 && !isCostly(); ++i) {
        task.emphasis = wished.emphasis;
        Answer fewer = bettering(wished.values, task);
        if (!fewer.isSolved() || countOf(fewer.changes) > countOf(wished.changes))
            break;
        wished = std::move(fewer);
    }
    return wished;
}

/// Squares share a change out, and weighing again may end where several sizes hold each other up. So of those that have
/// changed, the least first, as many as can be stay as they were exactly.
Answer Trying::changingFewest(Task task, Answer wished) {
    m_keepingTries = kMostKeeping;
    const std::vector<int> unchanged = wished.unchangedLengths, changed = wished.changedLengths;
    task.isFirm.assign(wished.unchangedSizes.size(), 0);
    keepAlso(task, unchanged, wished, wished.inexactLengths);
    if (changed.size() < 2)
        return wished;
    const std::span<const int> all(changed);
    const std::size_t half = changed.size() / 2;
    const int most = wished.inexactLengths - 1;
    keepAlso(task, all.first(half), wished, most);
    keepAlso(task, all.subspan(half), wished, most);
    return wished;
}

/// As many of these sizes as can be, those in front first, unless then more lengths than the most change.
void Trying::keepAlso(Task& task, std::span<const int> sizes, Answer& best, int most) {
    if (m_keepingTries <= 0 || isCostly() || m_keepingWork > kMostKeepingWork || sizes.empty())
        return;
    --m_keepingTries;
    const long before = m_work;
    Task firm = task;
    for (const int size : sizes)
        firm.isFirm[static_cast<std::size_t>(size)] = 1;
    Answer kept = bettering(best.values, firm);
    m_keepingWork += m_work - before;
    if (kept.isSolved() && kept.inexactLengths <= std::min(most, best.inexactLengths) &&
        kept.strain <= kMostStrain * best.strain && (!m_isShunned || !m_isShunned(kept) || m_isShunned(best))) {
        task = std::move(firm);
        best = std::move(kept);
        return;
    }
    if (sizes.size() == 1)
        return;
    keepAlso(task, sizes.first(sizes.size() / 2), best, most);
    keepAlso(task, sizes.subspan(sizes.size() / 2), best, most);
}

Answer Trying::keepingShapes(Task task) {
    if (m_shapes.empty())
        return once(task);
    const bool isQuick = std::exchange(task.isQuick, true);
    task.shapes = m_shapes;
    const std::vector<double> aims(task.aims.empty() ? m_sketch.values
                                                     : std::vector<double>(task.aims.begin(), task.aims.end()));
    Answer wished = wishing(task);
    if (!wished.isSolved()) {
        if (wished.isContradicted)
            return wished;
        task.shapes = {};
        task.isQuick = isQuick;
        Answer bare = once(task);
        bare.isTwisted = true;
        bare.strain = std::numeric_limits<double>::max();
        if (!bare.isSolved())
            return bare;
        // Wishes bar many ways to a solution, but not those from one to the next.
        task.isQuick = true;
        task.shapes = m_shapes;
        task.aims = aims;
        wished = from(bare.values, [&] { return wishing(task); });
        if (!wished.isSolved())
            return bare;
    }
    if (!wished.isBent)
        return wished;
    // Where sizes have to change anyway, fewer change if what would turn as well counts as much.
    if (wished.changes.turns > 0 && wished.changes.bends + wished.changes.lengths > 0 && !isCostly()) {
        const std::vector<KeptShape> straight = unturned();
        Task again = task;
        again.shapes = straight;
        if (Answer other = wishing(again); other.isSolved() && other.changes < wished.changes)
            wished = std::move(other);
    }
    task.aims = aims;
    wished = changingFewest(task, std::move(wished));
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
