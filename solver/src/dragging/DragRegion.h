#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/solving/SolverState.h"

namespace holdfast::solver::detail {

/// What a drag may move in one step, and where its handles shall go: a subproblem around them, in a sketch whose values
/// stay as the last step has left them until somebody takes over the system's.
struct DragRegion {
    SketchData& sketch;
    std::vector<int> handles;  ///< values of the sketch
    Scope reach;
    SolverState workspace;
    std::vector<int> seeds;  ///< unknowns of the handles; the first ones of the subproblem
    std::vector<double> goals{};
    std::unique_ptr<Subproblem> subproblem{};
    int rings;
    bool isWidest = false;
    double emphasis;  ///< of the handles
    /// Where the last search for these goals began, and with what emphasis; empty: there was none in this region.
    std::vector<double> triedFrom{};
    double triedEmphasis = 0.0;

    /// isRim: entities, by number, of which the sketch does not say all; empty: none.
    DragRegion(SketchData& sketch, std::vector<int> handles, Scope reach, const KeptSizes& sizes,
               std::span<const char> isRim = {});
    DragRegion(const DragRegion&) = delete;  // the subproblem looks into the workspace
    DragRegion& operator=(const DragRegion&) = delete;

    /// As many rings as are asked for now; the handles pull in full again.
    void makeRegion();

    void setGoals(std::span<const double> wanted);
    void wishGoals();

    /// Where everything would like to be now. Cost: the handles' but for the first time in a region.
    const Pull& pull();

    /// More was asked for than the sketch says: what comes of it means nothing.
    bool isBeyond() const { return m_isBeyond; }

    /// Values of the sketch are now what the last step has left.
    void readSketch();

    /// How far the handles are from their goals, at worst.
    double miss();
    bool isMet();

    /// Short strides, so that a long step of the drag does not lead over to another branch; as many as the way takes.
    IterationLimits careful();

    /// The system's values of the subproblem as the sketch has them.
    void undo();

    /// Weight of a handle against other values: compliance 1e-9 in the squares.
    static constexpr double kHandleEmphasis = 3e4;

    /// Handles closer to their goals than this part of the sketch's size have reached them.
    static constexpr double kReached = 1e-7;

private:
    bool touchesRim() const;

    std::optional<Pull> m_pull{};
    std::span<const char> m_isRim;
    bool m_isBeyond = false;
};

}  // namespace holdfast::solver::detail
