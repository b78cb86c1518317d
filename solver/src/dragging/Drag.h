#pragma once

#include <memory>

#include "solver/src/Uses.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// A sketch while values of it are dragged step by step.
///
/// Every step is computed from where the sketch was when the session began, so steps do not add up: a drag that comes
/// back to its beginning finds the sketch as it was. What is dragged yields where constraints do not let it; they
/// never do. Patterns, orderings and the reach that a step needed are kept for the next one, and a step costs what
/// the entities that it may move cost, however many others there are.
class DragSession {
public:
    /// The handles are values of the sketch, the same in every step. The sketch outlives the session and changes
    /// through it only. Throws SketchError for a constraint, of those near the handles, that its entities cannot have.
    /// Entities of `sizes` keep their lengths, radii, bulges and sweeps, as if constraints said so.
    DragSession(SketchData& sketch, std::vector<int> handles, Scope reach = Scope::rings, const KeptSizes& sizes = {});
    ~DragSession();
    DragSession(DragSession&&) noexcept;
    DragSession& operator=(DragSession&&) noexcept;

    /// Moves each handle to its goal, or as near to it as the constraints let it come. The result's movements are
    /// those since the step before. When the constraints cannot be kept the sketch stays as it is. A drag that would
    /// make an entity collapse or turn inside out stops there, even where entities farther away could give way.
    /// When the budget runs out the sketch stays as it is.
    SolveResult step(std::span<const double> goals, Budget* budget = nullptr);

    /// Ends the drag: what the handles' compliance has left of the last step is taken away. Handles that can arrive do,
    /// to rounding; others are as near to their goals as the constraints let them come, and everything else is nearest
    /// to where it was when the session began, for just these places of the handles. A few iterations; when they fail
    /// the sketch stays as the last step has left it.
    SolveResult land(Budget* budget = nullptr);

    /// How far the handles are from the goals of the last step, at worst.
    double miss() const;

    /// How many unknowns the last step was free to move.
    int freedom() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace holdfast::solver::detail
