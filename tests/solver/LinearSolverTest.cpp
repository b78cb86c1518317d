#include "solver/src/numerics/LinearSolver.h"

#include <gmock/gmock.h>

namespace holdfast::solver::detail {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

constexpr double kDamping = 1e-12;

/// Rows as dense lists.
struct System {
    ColumnPattern pattern;
    std::vector<double> jacobian;

    explicit System(const std::vector<std::vector<double>>& rows) {
        pattern.rowCount = static_cast<int>(rows.size());
        for (std::size_t j = 0; j < rows.front().size(); ++j) {
            for (std::size_t i = 0; i < rows.size(); ++i) {
                if (rows[i][j] == 0.0)
                    continue;
                pattern.rows.push_back(static_cast<int>(i));
                jacobian.push_back(rows[i][j]);
            }
            pattern.starts.push_back(static_cast<int>(pattern.rows.size()));
        }
    }

    std::vector<double> step(std::vector<double> weights, std::vector<double> g, std::vector<double> h) const {
        LinearSolver solver;
        solver.analyse(pattern);
        const std::vector<double> damping(h.size(), kDamping);
        EXPECT_TRUE(solver.factorise(weights, jacobian, damping));
        solver.solve(g, h, true);
        return g;
    }
};

TEST(LinearSolver, FindsTheLeastStepThatMeetsTheEquations) {
    const System system({{1.0, 1.0, 0.0}, {0.0, 1.0, 1.0}});
    // Least norm with x + y = 3, y + z = 3.
    EXPECT_THAT(system.step({1, 1, 1}, {0, 0, 0}, {3, 3}), Pointwise(DoubleNear(1e-12), {1.0, 2.0, 1.0}));
}

TEST(LinearSolver, MovesHeavyUnknownsLess) {
    const System system({{1.0, 1.0}});
    EXPECT_THAT(system.step({1.0, 3.0}, {0, 0}, {4}), Pointwise(DoubleNear(1e-12), {3.0, 1.0}));
}

TEST(LinearSolver, IsExactWhereEquationsAreRedundant) {
    const System system({{1.0, 1.0}, {2.0, 2.0}, {1.0, 1.0}});
    EXPECT_THAT(system.step({1, 1}, {0, 0}, {2, 4, 2}), Pointwise(DoubleNear(1e-11), {1.0, 1.0}));
}

TEST(LinearSolver, ProjectsAWishOntoTheEquations) {
    const System system({{0.0, 1.0}});
    EXPECT_THAT(system.step({1, 1}, {5, 7}, {0}), Pointwise(DoubleNear(1e-11), {5.0, 0.0}));
}

/// W = [2 c; c 2] with x + y = 2 for c below the diagonal.
int negativePivotsWith(double c, std::vector<double>& step) {
    const System system({{1.0, 1.0}});
    const ColumnPattern curvature{2, {0, 1, 1}, {1}};
    LinearSolver solver;
    solver.analyse(system.pattern, curvature);
    EXPECT_TRUE(solver.factorise(std::vector{2.0, 2.0}, system.jacobian, std::vector{kDamping}, std::vector{c}));
    std::vector<double> multiplier{2.0};
    solver.solve(step, multiplier, true);
    return solver.negativePivots();
}

TEST(LinearSolver, TakesWeightsThatTieUnknownsTogether) {
    std::vector<double> step{1.0, 0.0};
    EXPECT_EQ(negativePivotsWith(1.0, step), 1);
    // 2 x + y + m = 1, x + 2 y + m = 0, x + y = 2
    EXPECT_THAT(step, Pointwise(DoubleNear(1e-11), {1.5, 0.5}));
}

TEST(LinearSolver, TellsByPivotsWhetherAStepLeadsDownhill) {
    std::vector<double> step{0.0, 0.0};
    EXPECT_EQ(negativePivotsWith(1.9, step), 1);
    EXPECT_EQ(negativePivotsWith(2.5, step), 2) << "along x + y = 0 the weights are negative";
}

}  // namespace
}  // namespace holdfast::solver::detail
