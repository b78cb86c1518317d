#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include <holdfast/solver/Export.h>
#include <holdfast/solver/Solve.h>

namespace holdfast::solver {

/// A sketch while points of it are dragged step by step.
///
/// Every step is computed from where the sketch was when the session began, so steps do not add up: a drag that comes
/// back to its beginning finds the sketch as it was. What is dragged yields where constraints do not let it; they never
/// do. A step costs what the entities that it may move cost, however many others there are.
class HOLDFAST_SOLVER_EXPORT DragSession {
public:
    /// The sketch outlives the session. No handles, points that cannot be targets (see Target), and constraints that do
    /// not hold are errors. Of the options a drag knows the tolerance, the limits, which are those of one step, and
    /// isCancelled.
    static Result<DragSession> begin(Sketch& sketch, const std::vector<PointId>& handles,
                                     const SolveOptions& options = {});

    ~DragSession();
    DragSession(DragSession&& other) noexcept;
    DragSession& operator=(DragSession&& other) noexcept;

    /// Moves each handle to its goal, or as near to it as the constraints let it come; the result tells what moved
    /// since the step before. Where the constraints cannot be kept, an entity would collapse, or a limit is reached,
    /// the sketch stays as it is. A sketch that was changed otherwise meanwhile, and another number of goals than of
    /// handles, are refused: Ending::invalid. What
    /// throws (memory runs out, isCancelled throws) leaves the sketch as it was and ends the session: Ending::invalid
    /// from then on.
    SolveResult step(std::span<const Vec2> goals);
    /// The same for a session with one handle.
    SolveResult step(Vec2 goal);

    /// How far the handles are from the goals of the last step, at worst; 0 before the first one.
    double miss() const;

private:
    struct State;
    explicit DragSession(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

}  // namespace holdfast::solver
