#include "solver/src/solving/Solving.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/numerics/Shake.h"
#include "solver/src/sketch/Connections.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"
#include "solver/src/solving/Mending.h"
#include "solver/src/solving/Stopwatch.h"

namespace holdfast::solver::detail {

namespace {

/// How much a change of a size counts in the movement, squared: a point rather goes a hundred times as far than that
/// a straight length or a sweep changes, and these give way before a radius or a spline does.
constexpr double kLengthWeight = 1e2, kBendWeight = 1e4;

/// What follows by shifting does not turn.
constexpr double kTurnWeight = 10.0;

/// Entities around an edit of which the shapes are kept; what is farther away is reached by the rings only where
/// nothing nearer could give way.
constexpr std::size_t kMostShapes = 2000;

/// What a side of a corner that would turn over counts when it turns instead of changing its length, and how often
/// further corners may turn over then.
constexpr double kUprightWeight = 1e4;
constexpr int kMostUpright = 3;

/// Where a step fails, the sketch is shaken by this part of its size: it may stand where no slope tells the way.
constexpr double kNudge = 1e-4;
constexpr int kMostNudges = 3;

/// How often a way is followed again with what would vanish on it counting more.
constexpr int kMostSparing = 3;

/// The shortest turn that is worth carrying everything along, in radians.
constexpr double kTurned = 0.3;

/// Whether a conflict can hold after all, from where the way of the edit has ended.
bool holdsFarther(SketchData sketch, const ConflictSet& conflict, const Answer& answer, const SolveRequest& request) {
    if (answer.values.size() != sketch.values.size())
        return false;
    sketch.values = answer.values;
    std::vector<Target> targets;
    for (const int number : conflict.targets)
        targets.push_back(request.targets[at(number)]);
    Effort effort(request.budget, Effort::kMostForEdit);
    return canHold(sketch, conflict.constraints, targets, Care::thorough, effort);
}

void nameConflict(const SketchData& sketch, Answer& answer, const SolveRequest& request) {
    const ConflictSet conflict = findConflict(sketch, answer.suspects, request.targets, request.budget);
    if (conflict.isEmpty() || holdsFarther(sketch, conflict, answer, request))
        return;
    SolveResult& result = answer.result;
    if (conflict.isMinimal && result.status == SolveStatus::unreached)
        result.status = SolveStatus::conflicting;
    result.conflicting = conflict.constraints;
    result.contradictedTargets = conflict.targets;
    result.isConflictMinimal = conflict.isMinimal;
}

}  // namespace

Solving::Solving(SketchData& sketch, const SolveRequest& request)
    : m_request(request), m_work(sketch), m_loan(sketch), m_values(request.values) {
    m_isEdit = !m_values.empty() || !request.targets.empty() || !request.edited.empty() || !request.added.empty();
    if (!m_isEdit && request.keepsShapes) {
        m_values = changedDimensions(sketch);
        m_isEdit = !m_values.empty();
    }
    m_dimensions = request.added;
    for (const ValueGoal& value : m_values)
        m_dimensions.push_back(value.constraint);
    m_way.emplace(sketch, request.targets, m_values, request.edited);
    setGoals();
    m_named = namedEntities(m_work, task(RelaxationLevel::exact, true));
    m_leastWished = m_way->leastPart(SolverState::kLeast, request.kept);
    m_least = m_way->smallestFactor() * m_leastWished;
    if (request.keepsShapes && m_isEdit)
        m_trying.keepShapes(shapesAround());
    m_trying.limit(request.mostWork);
    m_trying.spareBelow(m_way->longest());
    if (m_isEdit)
        m_trying.refuse([this](std::span<const double> values) { return smoothJoins().findCusp(m_work, values); });
    m_trying.shun([this](const Answer& answer) { return !turnedOver(answer).empty(); });
}

Answer Solving::run() {
    Answer first;
    for (int level = 0; level <= static_cast<int>(m_request.lastLevel); ++level) {
        Answer answer = reach(static_cast<RelaxationLevel>(level));
        if (answer.isSolved())
            return shrinkingLess(std::move(answer));
        if (level == 0)
            first = std::move(answer);
        if (isSpent(m_request.budget))
            break;
    }
    if (m_request.asksWhether)
        return first;
    if (const std::vector<int> lame = brokenBefore(); !lame.empty() && !isSpent(m_request.budget)) {
        for (const int c : lame)
            m_work.constraints[at(c)].active = false;
        m_concerned.reset();
        Answer without = reach(RelaxationLevel::exact);
        if (without.isSolved()) {
            without.result.leftAlone = lame;
            return without;
        }
        for (const int c : lame)
            m_work.constraints[at(c)].active = true;
    }
    return first;
}

void Solving::explain(const SketchData& asked, Answer& answer) {
    if (m_hasExplained || !m_request.namesConflicts || isSpent(m_request.budget))
        return;
    const Stopwatch explaining;
    nameConflict(asked, answer, m_request);
    m_secondsExplaining = explaining.seconds();
    m_hasExplained = true;
}

Task Solving::task(RelaxationLevel level, bool isQuick) const {
    return {.level = level,
            .targets = m_request.targets,
            .edited = m_request.edited,
            .dimensions = m_dimensions,
            .isEdit = m_isEdit,
            .least = m_least,
            .isQuick = isQuick,
            .isNearest = !m_request.asksWhether,
            .reach = m_request.reach,
            .budget = m_request.budget,
            .shelf = m_request.shelf};
}

Answer Solving::tryKeepingPlaces(Task task) {
    if (!m_request.kept.empty() && task.level == RelaxationLevel::exact) {
        Task firm = task;
        firm.kept = m_request.kept;
        firm.isQuick = true;
        Answer answer = m_trying.keepingShapes(firm);
        if (answer.isSolved() && !isReversed(answer)) {
            answer.keepsPlaces = true;
            return answer;
        }
    }
    return m_trying.keepingShapes(std::move(task));
}

Answer Solving::reach(RelaxationLevel level) {
    Answer answer = reachAsItComes(level);
    const std::vector<KeptShape> shapes(m_trying.shapes().begin(), m_trying.shapes().end());
    std::vector<int> over = answer.isSolved() && !shapes.empty() ? turnedOver(answer) : std::vector<int>();
    for (int i = 0; i < kMostUpright && !over.empty() && (i == 0 || !m_trying.isCostly()); ++i) {
        m_trying.keepUpright(over, kUprightWeight);
        Answer upright = reachAsItComes(level);
        if (!upright.isSolved())
            break;
        over = turnedOver(upright);
        if (over.empty())
            return upright;
    }
    m_trying.keepShapes(shapes);
    return answer;
}

Answer Solving::shrinkingLess(Answer answer) {
    if (m_least >= m_leastWished || !haveShrunk(m_work, notNamed(answer), answer.values, m_leastWished))
        return answer;
    const double allowed = std::exchange(m_least, m_leastWished);
    Answer other = reach(answer.result.level);
    m_least = allowed;
    return other.isSolved() ? other : answer;
}

Answer Solving::reachAsItComes(RelaxationLevel level) {
    const bool canFollow = m_request.patience != Patience::once && level == RelaxationLevel::exact;
    const bool isLed = m_isEdit && !m_way->isTrivial() && level == RelaxationLevel::exact;
    Answer atOnce = tryKeepingPlaces(task(level, isLed || m_request.patience == Patience::once));
    if (!isLed && !atOnce.isSolved() && canFollow && m_isEdit && !atOnce.isContradicted)
        return tryNudged(std::move(atOnce));
    if (!isLed)
        return atOnce.isSolved() || !canFollow ? atOnce : mend(leadDimensions(std::move(atOnce)));
    if (atOnce.isSolved() && !isDoubtful(atOnce) && !atOnce.keepsPlaces && !m_request.kept.empty() && canFollow)
        if (Answer keeping = followKeepingPlaces(); keeping.isSolved())
            return keeping;
    if (atOnce.isContradicted || (atOnce.isSolved() && !isDoubtful(atOnce)))
        return orAlong(std::move(atOnce));
    Answer carried = tryCarried(atOnce.isSolved());
    if (carried.isSolved() && !carried.isTwisted)
        return orAlong(std::move(carried));
    if (!canFollow || (atOnce.isSolved() && m_trying.isCostly()))
        return carried.isSolved() && !atOnce.isSolved() ? carried : atOnce;
    if (Answer keeping = followKeepingPlaces(); keeping.isSolved())
        return keeping;
    Answer followed = follow({.leastStep = atOnce.isSolved() ? Following::kNudged : Following::kLeastStep,
                              .mayTurnRound = !atOnce.isSolved()});
    followed = followSparing(std::move(followed), atOnce.isSolved());
    if (followed.isSolved() && (!atOnce.isSolved() || isReversed(atOnce) || isLessSurprising(followed, atOnce)))
        return orAlong(std::move(followed));
    if (atOnce.isSolved())
        return orAlong(std::move(atOnce));
    if (Answer along = goAlong(); along.isSolved())
        return along;
    if (m_request.patience != Patience::all)
        return followed;
    Answer careful = m_trying.isSpent() ? std::move(atOnce) : m_trying.once(task(level, false));
    if (careful.isSolved())
        return careful;
    careful.result.reached = followed.result.reached;
    careful.values = std::move(followed.values);
    if (followed.result.degeneracy)
        careful.result.degeneracy = followed.result.degeneracy;
    return careful;
}

Answer Solving::followSparing(Answer followed, bool isAnswered) {
    const auto partOf = [](const Answer& answer) {
        return answer.isSolved() ? 1.0 : answer.result.reached ? answer.result.reached->part : 0.0;
    };
    for (int i = 0; i < kMostSparing; ++i) {
        const bool wouldVanish = !followed.spared.empty();
        const bool isPartly = !followed.isSolved() && partOf(followed) > 0.0;
        const bool isOver = wouldVanish && followed.isSolved() && isReversed(followed);
        if (!isOver && !(isPartly && (wouldVanish || !isAnswered)))
            break;
        Answer sparing = follow({.mayTurnRound = !wouldVanish, .sparesSmall = true, .spared = followed.spared});
        if (!sparing.isSolved() && (isOver || partOf(sparing) <= partOf(followed)))
            break;
        const bool sparesMore = sparing.spared.size() > followed.spared.size();
        followed = std::move(sparing);
        if (followed.isSolved() || !sparesMore)
            break;
    }
    return followed;
}

Answer Solving::tryNudged(Answer failed) {
    if (isSpent(m_request.budget))
        return failed;
    Task again = task(RelaxationLevel::exact, true);
    const std::vector<double> aims = m_work.values;
    again.aims = aims;
    for (int number = 0; number < kMostNudges; ++number) {
        Answer answer = m_trying.from(nudged(aims, number), [&] { return tryKeepingPlaces(again); });
        if (answer.isSolved())
            return answer;
    }
    return failed;
}

Answer Solving::leadDimensions(Answer failed) {
    if (m_isEdit || failed.isContradicted || isSpent(m_request.budget))
        return failed;
    const std::vector<ValueGoal> missed = missedDimensions(m_work);
    if (missed.empty())
        return failed;
    m_way.emplace(m_work, m_request.targets, missed, m_request.edited);
    Answer followed = follow({});
    if (followed.isSolved())
        return followed;
    failed.result.reached = followed.result.reached;
    failed.values = std::move(followed.values);
    return failed;
}

Answer Solving::mend(Answer failed) {
    if (m_isEdit || failed.isSolved() || isSpent(m_request.budget))
        return failed;
    Mending mending(m_work, m_trying, task(RelaxationLevel::exact, false));
    Answer answer = mending.fromHere();
    if (answer.isSolved())
        return answer;
    explain(m_work, failed);
    if (!failed.result.isConflictMinimal)
        answer = mending.anew(std::move(answer));
    return answer.isSolved() ? answer : failed;
}

std::vector<int> Solving::notNamed(const Answer& answer) const {
    std::vector<int> others;
    std::set_difference(answer.concerned.begin(), answer.concerned.end(), m_named.begin(), m_named.end(),
                        std::back_inserter(others));
    return others;
}

bool Solving::isReversed(const Answer& answer, std::span<const double> before) const {
    return findReversed(m_work, notNamed(answer), before, answer.values) >= 0;
}

bool Solving::isDoubtful(const Answer& answer) const {
    return (!answer.keepsPlaces && (answer.isTwisted || isReversed(answer))) || !turnedOver(answer).empty();
}

std::vector<int> Solving::turnedOver(const Answer& answer) const {
    if (!m_corners)
        m_corners.emplace(m_work);
    std::vector<int> over = m_corners->turnedOver(m_way->start(), answer.values);
    if (over.empty())
        return over;
    const std::vector<int> moved = movedEntities();
    std::erase_if(over, [&](int number) { return std::binary_search(moved.begin(), moved.end(), number); });
    return over;
}

const SmoothJoins& Solving::smoothJoins() const {
    if (!m_smoothJoins)
        m_smoothJoins.emplace(m_work, m_way->start(), movedEntities());
    return *m_smoothJoins;
}

std::vector<int> Solving::movedEntities() const {
    std::vector<int> moved(m_request.edited.begin(), m_request.edited.end());
    for (const Target& target : m_request.targets)
        moved.push_back(entityOfValue(m_work, target.value));
    std::sort(moved.begin(), moved.end());
    return moved;
}

bool Solving::isLessSurprising(const Answer& answer, const Answer& other) const {
    const bool isOver = !turnedOver(answer).empty(), isOtherOver = !turnedOver(other).empty();
    return isOver != isOtherOver ? isOtherOver : answer.strain < other.strain;
}

Answer Solving::tryCarried(bool isAnswered) {
    const auto& motion = m_way->motion();
    Answer none;
    none.result.status = SolveStatus::unreached;
    if (!motion || (isAnswered && std::abs(motion->angle()) < kTurned) || (m_request.asksWhether && !isAtBeginning()))
        return none;
    return fromCarried(m_work.values);
}

Answer Solving::orAlong(Answer answer) {
    if (!answer.isSolved() || !answer.isReshaped)
        return answer;
    Answer along = goAlong();
    return along.isSolved() && !along.isReshaped ? along : answer;
}

Answer Solving::goAlong() {
    Answer none;
    none.result.status = SolveStatus::unreached;
    if (!m_way->motion())
        return none;
    const std::vector<KeptShape> shapes(m_trying.shapes().begin(), m_trying.shapes().end());
    std::vector<KeptShape> turning = shapes;
    for (KeptShape& shape : turning)
        shape.turnWeight = 0.0;
    m_trying.keepShapes(std::move(turning));
    Answer answer = fromCarried({});
    m_trying.keepShapes(shapes);
    return answer.isTwisted ? none : answer;
}

Answer Solving::fromCarried(std::vector<double> aims) {
    const auto& motion = m_way->motion();
    std::vector<double> carried = m_way->start();
    for (const int number : concerned().entities)
        if (!m_work.entities[at(number)].fixed)
            motion->carry(m_work.entities[at(number)], 1.0, m_way->start(), carried);
    Task carriedTask = task(RelaxationLevel::exact, true);
    if (aims.empty())
        aims = carried;
    carriedTask.aims = aims;
    Answer answer = m_trying.from(carried, [&] { return m_trying.keepingShapes(carriedTask); });
    answer.isTwisted = answer.isTwisted || (answer.isSolved() && isReversed(answer, carried));
    return answer;
}

Answer Solving::followKeepingPlaces() {
    if (!m_request.kept.empty())
        return follow({.mayTurnRound = false, .kept = m_request.kept});
    Answer none;
    none.result.status = SolveStatus::unreached;
    return none;
}

Answer Solving::follow(const Following::Manner& manner) {
    Following following(m_work, m_trying, *m_way, task(RelaxationLevel::exact, true),
                        [this](const std::vector<double>& values) { return nudged(values); });
    Answer last = following.run(manner);
    setGoals();
    if (!last.isSolved())
        return last;
    Task settling = task(RelaxationLevel::exact, true);
    const std::vector<double> aims = m_work.values;
    settling.aims = aims;
    settling.spared = manner.spared;
    settling.sparesFirst = !manner.spared.empty();
    if (manner.sparesSmall)
        settling.sparedBelow = m_way->longest();
    if (manner.mayTurnRound)
        settling.passed = last.values;
    Answer settled = m_trying.from(last.values, [&] { return tryKeepingPlaces(settling); });
    last.keepsPlaces = !manner.kept.empty();
    if (!settled.isSolved() || (last.keepsPlaces && !settled.keepsPlaces) ||
        findReversed(m_work, settled.concerned, last.values, settled.values) >= 0 ||
        (!turnedOver(settled).empty() && turnedOver(last).empty()))
        return last;
    settled.result.iterations += last.result.iterations;
    settled.spared = std::move(last.spared);
    return settled;
}

std::vector<double> Solving::nudged(std::vector<double> values, int number) const {
    const double most = kNudge * m_work.size();
    for (const int v : concerned().values)
        values[at(v)] += most * shake(v, number);
    return values;
}

const Solving::Concerned& Solving::concerned() const {
    if (!m_concerned) {
        const Task asked = task(RelaxationLevel::exact, true);
        const Run run(m_work, asked);
        m_concerned = {run.concerned(), run.concernedValues()};
    }
    return *m_concerned;
}

std::vector<int> Solving::brokenBefore() {
    if (!m_isEdit)
        return {};
    SketchData before = m_work;
    before.values = m_way->start();
    const Task asked = task(RelaxationLevel::exact, true);
    const Run whole(m_work, asked);
    std::vector<int> broken;
    for (const int number : brokenConstraints(before)) {
        if (!whole.concernsConstraint(number) ||
            std::find(m_dimensions.begin(), m_dimensions.end(), number) != m_dimensions.end())
            continue;
        const auto& refs = m_work.constraints[at(number)].refs;
        const bool isOnEdited = std::any_of(refs.begin(), refs.end(), [&](const SketchPlace& place) {
            return std::binary_search(m_named.begin(), m_named.end(), place.entity);
        });
        if (!isOnEdited || !m_way->isTrivial())
            broken.push_back(number);
    }
    return broken;
}

std::vector<KeptShape> Solving::shapesAround() const {
    std::vector<char> isEdited(m_work.entities.size(), 0);
    for (const int number : m_request.edited)
        isEdited[at(number)] = 1;
    std::vector<KeptShape> shapes;
    for (const int number : surroundingsOf(m_work, bindingConstraints(m_work), m_named).entities)
        if (!isEdited[at(number)] && shapes.size() < kMostShapes)
            shapes.push_back({number, kLengthWeight, kBendWeight, kTurnWeight});
    std::sort(shapes.begin(), shapes.end(), [](const KeptShape& a, const KeptShape& b) { return a.entity < b.entity; });
    return shapes;
}

}  // namespace holdfast::solver::detail
