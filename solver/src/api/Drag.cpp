#include <holdfast/solver/Drag.h>

#include <algorithm>
#include <cassert>

#include "solver/src/api/Running.h"
#include "solver/src/dragging/Drag.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver {

struct DragSession::State {
    SketchImpl& sketch;
    SolveOptions options;
    std::size_t handleCount;
    unsigned revision;
    std::vector<double> accepted;  ///< the sketch's numbers after the last step
    bool hasMoved = false;
    bool isOver = false;
    detail::DragSession session;

    SolveResult step(std::span<const Vec2> goals);
    void accept(const detail::SolveResult& found);
};

namespace {

std::optional<Error> faultOfStart(const SketchImpl& sketch) {
    const std::vector<double> misses = detail::violationsOf(sketch.data);
    const double worst = *std::max_element(misses.begin(), misses.end());
    if (worst <= sketch.data.slack())
        return std::nullopt;
    return Error{"a constraint does not hold", "sketch", "solve it before the drag begins"};
}

}  // namespace

DragSession::DragSession(std::unique_ptr<State> state) : m_state(std::move(state)) {}
DragSession::~DragSession() = default;
DragSession::DragSession(DragSession&&) noexcept = default;
DragSession& DragSession::operator=(DragSession&&) noexcept = default;

Result<DragSession> DragSession::begin(Sketch& sketch, const std::vector<PointId>& handles,
                                       const SolveOptions& options) {
    SketchImpl& impl = SketchAccess::of(sketch);
    if (auto fault = faultOf(options))
        return *std::move(fault);
    if (handles.empty())
        return Error{"there is nothing to drag", "drag", "name a point or more"};
    std::vector<int> values;
    for (const PointId handle : handles) {
        const auto value = handleOf(impl, handle);
        if (!value)
            return value.error();
        values.insert(values.end(), {value.value(), value.value() + 1});
    }
    const Preparation preparation(impl.data, options.tolerance);
    try {
        if (auto fault = faultOfStart(impl))
            return *std::move(fault);
        return DragSession(std::unique_ptr<State>(
            new State{impl, options, handles.size(), impl.revision, impl.data.values, false, false,
                      detail::DragSession(impl.data, std::move(values), static_cast<detail::Scope>(options.scope))}));
    } catch (const detail::SketchError& e) {
        return Error{e.what(), "sketch", "put the constraint's entities elsewhere, or remove it"};
    }
}

SolveResult DragSession::step(std::span<const Vec2> goals) {
    State& state = *m_state;
    if (state.isOver)
        return invalid({"an exception has ended the session", "drag", "begin a new session"});
    if (state.sketch.revision != state.revision)
        return invalid({"the sketch was changed since the session began", "drag", "begin a new session"});
    if (goals.size() != state.handleCount)
        return invalid({"there are " + std::to_string(goals.size()) + " goals for " +
                            std::to_string(state.handleCount) + " handles",
                        "drag", "give one for each"});
    if (!std::all_of(goals.begin(), goals.end(), [](Vec2 goal) { return geometry::isFinite(goal); }))
        return invalid({"a goal is not finite", "drag", "give finite numbers"});
    try {
        return state.step(goals);
    } catch (...) {
        std::copy(state.accepted.begin(), state.accepted.end(), state.sketch.data.values.begin());
        state.isOver = true;
        throw;
    }
}

SolveResult DragSession::State::step(std::span<const Vec2> goals) {
    std::vector<double> numbers;
    for (const Vec2 goal : goals)
        numbers.insert(numbers.end(), {goal.x, goal.y});
    detail::Budget budget = budgetOf(options);
    const detail::Budget::Clock::time_point start = detail::Budget::Clock::now();
    const detail::SolveResult found = session.step(numbers, &budget);
    SolveResult result = resultOf(sketch, found, budget);
    result.times.iterating = std::chrono::duration<double>(detail::Budget::Clock::now() - start).count();
    accept(found);
    hasMoved = true;
    return result;
}

/// Notes what has moved. Cost: the numbers of what has.
void DragSession::State::accept(const detail::SolveResult& found) {
    assert(accepted.size() == sketch.data.values.size());
    for (const detail::Movement& movement : found.movements) {
        const detail::SketchEntity& entity = sketch.data.entities[detail::at(movement.entity)];
        const auto numbers = sketch.data.valuesOf(movement.entity);
        std::copy(numbers.begin(), numbers.end(), accepted.begin() + entity.firstValue);
    }
}

SolveResult DragSession::step(Vec2 goal) {
    return step(std::span<const Vec2>(&goal, 1));
}

double DragSession::miss() const {
    return m_state->hasMoved ? m_state->session.miss() : 0.0;
}

}  // namespace holdfast::solver
