#pragma once

#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

/// Equations of one sketch that a solve has built, kept for the next ones: while a hand pulls, only where the entities
/// are is another each time. What is taken is what buildSystem() would build, to the last bit. One thread at a time.
///
/// The sketch's entities stay what they are as long as this lives; its values, its reference, and what its constraints
/// ask for need not.
class EquationShelf {
public:
    struct Taken {
        EquationSystem system;
        int place = -1;  ///< -1: it is not kept
    };

    Taken take(const SketchData& sketch, std::span<const int> constraints, const KeptSizes& sizes);
    /// When nobody needs it any more; its values may be any, the rest is as it was taken.
    void giveBack(Taken taken);

private:
    /// All that equations are built from.
    struct Needs {
        std::vector<int> constraints;
        std::vector<double> goals, reference, values;  ///< the goals are those of the constraints
        KeptSizes sizes;
    };
    struct Kept {
        Needs needs;
        EquationSystem system;
        std::vector<double> start;  ///< its values as they were built
        bool isOut = false;
        long lastUse = 0;
    };

    static bool isFor(const Kept& kept, const SketchData& sketch, std::span<const int> constraints,
                      const KeptSizes& sizes);
    int freePlace();

    std::vector<Kept> m_kept;
    long m_uses = 0;
};

}  // namespace holdfast::solver::detail
