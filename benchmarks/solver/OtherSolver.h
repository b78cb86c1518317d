#pragma once

#include <memory>
#include <optional>

#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// The solver that Debian packages as libslvs1-dev, to compare with. Knows lines and arcs, and the constraints of the
/// workloads.
class OtherSolver {
public:
    explicit OtherSolver(const SketchData& sketch);
    ~OtherSolver();

    /// False in a build without the library.
    static bool isThere();

    /// Puts the value somewhere; it is favoured in the solves that follow.
    void drag(int value, double goal);

    /// Nothing when it worked, else what it answers.
    std::optional<const char*> solve();

    /// Where the values are now.
    void read(SketchData& sketch) const;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace holdfast::solver::detail
