#include "solver/src/solving/Run.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/ConstraintKinds.h"
#include "solver/src/sketch/Connections.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

/// How much more than others the values of edited entities count in the movement, and what targets count when they
/// are wishes.
constexpr double kEditedEmphasis = 10.0;
constexpr double kTargetEmphasis = 1e3;
constexpr double kSizeWeight = 1e2;

/// Sizes that change by less than these parts of what moves are as good as kept: weights of 1e2 and more leave a
/// ten-thousandth of what the movement of one point would gain, and some of many points.
constexpr double kKeptLength = 0.02, kKeptBend = 0.01;

/// Parts of the largest change below which all count the same when few are to change.
constexpr double kLeastChange = 1e-2;

/// A place is no size: what is put on something else is not to shrink away for it.
bool asksForSizes(ConstraintType type) {
    return traitsOf(type).isDimension() || type == ConstraintType::equal;
}

bool isLengthOrBend(const SizeRow& size) {
    return size.kind == SizeRow::Kind::length || size.kind == SizeRow::Kind::bend;
}

}  // namespace

std::vector<int> namedEntities(const SketchData& sketch, const Task& task) {
    std::vector<int> named(task.edited.begin(), task.edited.end());
    for (const Target& target : task.targets)
        named.push_back(entityOfValue(sketch, target.value));
    for (const int c : task.dimensions)
        for (const SketchPlace& place : sketch.constraints[at(c)].refs)
            named.push_back(place.entity);
    std::sort(named.begin(), named.end());
    named.erase(std::unique(named.begin(), named.end()), named.end());
    return named;
}

Run::Run(const SketchData& sketch, const Task& task) : m_sketch(sketch), m_task(task), m_state(takeState()) {
    m_state.setBudget(task.budget);
    m_state.setLeast(task.least);
    m_state.setQuick(task.isQuick);
    m_state.setNearest(task.isNearest);
    m_state.setPassed(task.passed);
    if (!task.aims.empty())
        m_state.aimAt(task.aims);
    for (const int c : task.dimensions)
        if (asksForSizes(sketch.constraints[at(c)].type))
            for (const SketchPlace& place : sketch.constraints[at(c)].refs)
                m_state.askOf(place.entity,
                              sketch.entities[at(place.entity)].kind == EntityKind::arc ? Asked::radius : Asked::sizes);
}

Run::~Run() {
    if (m_place >= 0)
        m_task.shelf->giveBack({std::move(system()), m_place});
}

EquationSystem Run::takeSystem() {
    KeptSizes sizes{{m_task.shapes.begin(), m_task.shapes.end()},
                    m_task.isFirm,
                    m_task.emphasis,
                    m_task.sparedBelow,
                    m_task.spared,
                    m_task.sparesFirst};
    if (m_task.level != RelaxationLevel::exact) {
        const double weight = m_task.level == RelaxationLevel::sizes ? 0.0 : kSizeWeight;
        for (const int number : m_task.edited)
            sizes.shapes.push_back({number, weight, weight, 0.0});
    }
    const std::vector<int> constraints = bindingConstraints(m_sketch);
    if (m_task.shelf != nullptr && !m_task.isMending) {
        EquationShelf::Taken taken = m_task.shelf->take(m_sketch, constraints, sizes);
        m_place = taken.place;
        return std::move(taken.system);
    }
    EquationSystem system = buildSystem(m_sketch, constraints, sizes);
    if (m_task.isMending)
        system.dropDoubtfulSenses();
    return system;
}

SolverState Run::takeState() {
    if (!m_task.isEdit)
        return {m_sketch, takeSystem()};
    return {m_sketch, takeSystem(), namedEntities(m_sketch, m_task)};
}

SolveResult Run::solve() {
    m_result.level = m_task.level;
    wishEdited();
    if (!placeTargets() || !meetsConstants() || !solveParts() || isOverBudget() || !leavesPinnedSound())
        return m_result;
    for (int e = 0; e < static_cast<int>(system().set.equations.size()); ++e)
        if (m_state.concernsEquation(e))
            noteWorst(e);
    m_result.status = SolveStatus::solved;
    return m_result;
}

std::span<const double> Run::values() const {
    return std::span(system().values).first(at(system().figureValueCount));
}

std::span<const double> Run::metric() const {
    return std::span(system().metric).first(at(system().figureValueCount));
}

std::vector<int> Run::concerned() const {
    std::vector<int> numbers;
    for (int i = 0; i < static_cast<int>(m_sketch.entities.size()); ++i)
        if (m_state.concerns(i))
            numbers.push_back(i);
    return numbers;
}

std::vector<int> Run::concernedValues() const {
    std::vector<int> values;
    for (int v = 0; v < system().figureValueCount; ++v)
        if (m_state.concernsValue(v))
            values.push_back(v);
    return values;
}

double Run::longestWay() const {
    const EquationSystem& s = system();
    double longest = 0.0;
    for (std::size_t v = 0; v < at(s.figureValueCount); ++v)
        longest = std::max(longest, std::abs(s.values[v] - m_state.startValues()[v]) * s.metric[v]);
    return longest;
}

bool Run::isUnchanged(const SizeRow& size, double way) const {
    return m_state.changeOf(size) <= (size.kind == SizeRow::Kind::bend ? kKeptBend : kKeptLength) * way;
}

/// What constraints have made another size cannot be kept: no unknown is left in it that its row could be solved for.
bool Run::canBeKept(const SizeRow& size) const {
    const EquationSystem& s = system();
    const auto inputs = s.set.inputsOf(s.set.equations[at(size.equation)]);
    return s.residualOf(size.equation) <= s.tolerance && std::any_of(inputs.begin(), inputs.end(), [&](int v) {
               return v < s.figureValueCount && s.links[at(v)].unknown >= 0;
           });
}

std::vector<char> Run::unchangedSizes() const {
    const double way = longestWay();
    std::vector<char> unchanged;
    for (const SizeRow& size : system().sizes)
        unchanged.push_back(isUnchanged(size, way) && canBeKept(size));
    return unchanged;
}

std::vector<int> Run::unchangedLengths() const {
    return lengthsThatAre(true);
}

std::vector<int> Run::changedLengths() const {
    return lengthsThatAre(false);
}

int Run::inexactLengths() const {
    const double most = SketchData::kHolds * system().tolerance;
    return static_cast<int>(std::count_if(system().sizes.begin(), system().sizes.end(), [&](const SizeRow& size) {
        return isLengthOrBend(size) && m_state.changeOf(size) > most;
    }));
}

std::vector<int> Run::lengthsThatAre(bool unchanged) const {
    const double way = longestWay();
    const auto& sizes = system().sizes;
    std::vector<int> found;
    for (int i = 0; i < static_cast<int>(sizes.size()); ++i)
        if (isLengthOrBend(sizes[at(i)]) && isUnchanged(sizes[at(i)], way) == unchanged && canBeKept(sizes[at(i)]))
            found.push_back(i);
    std::stable_sort(found.begin(), found.end(),
                     [&](int a, int b) { return m_state.changeOf(sizes[at(a)]) < m_state.changeOf(sizes[at(b)]); });
    return found;
}

Run::Changes Run::changes() const {
    const double way = longestWay();
    Changes changes;
    for (const SizeRow& size : system().sizes) {
        if (isUnchanged(size, way))
            continue;
        switch (size.kind) {
            case SizeRow::Kind::bend:
                ++changes.bends;
                break;
            case SizeRow::Kind::length:
                ++changes.lengths;
                break;
            case SizeRow::Kind::sweep:
                ++changes.sweeps;
                break;
            case SizeRow::Kind::turn:
                ++changes.turns;
                break;
        }
    }
    return changes;
}

/// Reweighted least squares: what changes least counts most next time (R. Chartrand, W. Yin, Iteratively reweighted
/// algorithms for compressive sensing).
std::vector<double> Run::emphasis() const {
    double most = system().tolerance;
    for (const SizeRow& size : system().sizes)
        most = std::max(most, m_state.changeOf(size));
    std::vector<double> emphasis;
    for (const SizeRow& size : system().sizes)
        emphasis.push_back(1.0 / std::max(m_state.changeOf(size) / most, kLeastChange));
    return emphasis;
}

double Run::strain() const {
    double sum = 0.0;
    for (const SizeRow& size : system().sizes)
        if (isLengthOrBend(size))
            sum += m_state.changeOf(size);
    return sum;
}

bool Run::isBent() const {
    return std::any_of(system().sizes.begin(), system().sizes.end(),
                       [&](const SizeRow& size) { return m_state.changeOf(size) > system().tolerance; });
}

bool Run::isReshaped() const {
    return std::any_of(system().sizes.begin(), system().sizes.end(), [&](const SizeRow& size) {
        return size.kind != SizeRow::Kind::turn && m_state.changeOf(size) > system().tolerance;
    });
}

double Run::mostChanged() const {
    double most = 0.0;
    for (const SizeRow& size : system().sizes) {
        if (size.kind == SizeRow::Kind::turn)
            continue;
        const Equation& equation = system().set.equations[at(size.equation)];
        const double whole = std::abs(equation.value * equation.scale);
        if (whole > system().tolerance)
            most = std::max(most, m_state.changeOf(size) / whole);
    }
    return most;
}

void Run::wishEdited() {
    const std::span<const double> aims = m_task.aims.empty() ? std::span<const double>(m_sketch.values) : m_task.aims;
    for (const int number : m_task.edited) {
        const SketchEntity& entity = m_sketch.entities[at(number)];
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            m_state.wish(v, aims[at(v)], kEditedEmphasis);
    }
}

bool Run::placeTargets() {
    for (std::size_t i = 0; i < m_task.targets.size(); ++i) {
        const Target& target = m_task.targets[i];
        if (m_task.level != RelaxationLevel::exact) {
            m_state.wish(target.value, target.goal, kTargetEmphasis);
            if (const int u = system().links[at(target.value)].unknown; u >= 0)
                m_seeds.push_back(u);
        } else if (!m_state.pin(target.value, target.goal)) {
            m_result.status = SolveStatus::conflicting;
            m_result.contradictedTargets.push_back(static_cast<int>(i));
            m_isContradicted = true;
            suspectPart();
            return false;
        }
    }
    for (const Target& target : m_task.kept)
        m_state.pin(target.value, target.goal);
    return true;
}

bool Run::meetsConstants() {
    for (const Contradiction& contradiction : system().contradictions) {
        std::vector<int> members = contradiction.others;
        members.push_back(contradiction.constraint);
        std::erase_if(members, [](int c) { return c < 0; });
        if (std::none_of(members.begin(), members.end(), [&](int c) { return m_state.concernsConstraint(c); }))
            continue;
        m_result.status = SolveStatus::conflicting;
        m_isContradicted = true;
        m_suspects = std::move(members);
        tidySuspects();
        return false;
    }
    const int broken = m_state.brokenConstantEquation();
    if (broken < 0)
        return true;
    m_result.status = SolveStatus::conflicting;
    m_isContradicted = true;
    noteWorst(broken);
    suspectPart();
    return false;
}

bool Run::solveParts() {
    std::vector<int> seeds = m_state.violated();
    m_state.takeSizes();
    seeds.insert(seeds.end(), m_seeds.begin(), m_seeds.end());
    std::vector<char> isSeed(at(system().unknownCount), 0);
    for (const int seed : seeds)
        isSeed[at(seed)] = 1;
    std::vector<int> mine;
    for (const int seed : seeds) {
        if (!isSeed[at(seed)])
            continue;
        const std::vector<int> part = m_state.neighbourhood().partOf({&seed, 1});
        mine.clear();
        for (const int u : part) {
            if (std::exchange(isSeed[at(u)], 0) != 0)
                mine.push_back(u);
        }
        if (!solvePart(part, mine))
            return false;
    }
    return true;
}

bool Run::solvePart(const std::vector<int>& part, const std::vector<int>& seeds) {
    const Attempt attempt = m_state.solveAround(seeds, m_task.reach);
    m_result.iterations += attempt.iterations;
    if (attempt.isSolved)
        return true;
    m_result.degeneracy = attempt.degeneracy;
    m_result.status = attempt.degeneracy ? SolveStatus::degenerate : SolveStatus::unreached;
    for (const int u : part) {
        for (const int e : system().equationsOfUnknown[u])
            noteWorst(e);
    }
    suspectPart(part);
    return false;
}

/// What was found until then may hold, but need not be the nearest: it is not taken.
bool Run::isOverBudget() {
    if (!m_state.hasSpentBudget())
        return false;
    m_result.status = SolveStatus::unreached;
    return true;
}

bool Run::leavesPinnedSound() {
    m_result.degeneracy = m_state.degeneracyInConstants();
    if (!m_result.degeneracy)
        m_result.degeneracy = m_state.ruinInConstants();
    if (!m_result.degeneracy)
        return true;
    m_result.status = SolveStatus::degenerate;
    suspectPart();
    return false;
}

void Run::noteWorst(int equation) {
    const double residual = system().residualOf(equation);
    if (!(residual <= m_result.residual)) {
        m_result.residual = residual;
        m_result.worstConstraint = system().set.equations[at(equation)].constraint;
    }
}

/// Ties leave no equations, so the walk goes by entities: constraints on them, the entities of those, and so on;
/// fixed entities connect nothing.
void Run::suspectAround(std::vector<int> entities) {
    const Surroundings around = surroundingsOf(m_sketch, bindingConstraints(m_sketch), std::move(entities));
    m_suspects.insert(m_suspects.end(), around.constraints.begin(), around.constraints.end());
    tidySuspects();
}

void Run::suspectPart() {
    suspectAround(m_task.isEdit ? namedEntities(m_sketch, m_task) : concerned());
}

void Run::tidySuspects() {
    std::erase_if(m_suspects, [](int c) { return c < 0; });
    std::sort(m_suspects.begin(), m_suspects.end());
    m_suspects.erase(std::unique(m_suspects.begin(), m_suspects.end()), m_suspects.end());
}

}  // namespace holdfast::solver::detail
