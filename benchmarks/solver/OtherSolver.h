#pragma once

#include <memory>
#include <optional>

#include "workbench/evaluator/Figure.h"

namespace holdfast {

/// The solver that Debian packages as libslvs1-dev, to compare with. Knows lines and arcs, and the constraints of the
/// workloads.
class OtherSolver {
public:
    explicit OtherSolver(const Figure& figure);
    ~OtherSolver();

    /// False in a build without the library.
    static bool isThere();

    /// Puts the value somewhere; it is favoured in the solves that follow.
    void drag(int value, double goal);

    /// Nothing when it worked, else what it answers.
    std::optional<const char*> solve();

    /// Where the values are now.
    void read(Figure& figure) const;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace holdfast
