#include "solver/src/diagnosis/GaussianElimination.h"

#include <gtest/gtest.h>

#include <random>

namespace holdfast::solver::detail {
namespace {

TEST(GaussianElimination, CallsTheLaterOfTwoDependentRowsSpare) {
    GaussianElimination rows(3);
    EXPECT_TRUE(rows.add({{0, 1.0}, {1, 2.0}}));
    EXPECT_TRUE(rows.add({{1, 1.0}, {2, -1.0}}));
    EXPECT_FALSE(rows.add({{0, 2.0}, {1, 7.0}, {2, -3.0}}));
    EXPECT_EQ(rows.rank(), 2);
}

TEST(GaussianElimination, AddsUpRepeatedColumns) {
    GaussianElimination rows(2);
    EXPECT_FALSE(rows.add({{0, 1.0}, {1, 0.0}, {0, -1.0}}));
    EXPECT_TRUE(rows.add({{0, 1.0}, {0, 1.0}}));
    EXPECT_FALSE(rows.add({{0, 5.0}}));
}

/// A length that is compared with itself, by way of other places: what is left of it is rounding.
TEST(GaussianElimination, CallsARowSpareOfWhichOnlyRoundingIsLeft) {
    GaussianElimination elimination(2);
    const double slope = 0.1 + 0.2;
    EXPECT_FALSE(elimination.add({{0, -slope}, {1, 0.5}, {0, 0.3}, {1, -0.5}}));
    EXPECT_TRUE(elimination.add({{0, 1.0}}));
}

TEST(GaussianElimination, CountsTheRankOfAProductOfRandomMatrices) {
    constexpr int size = 60, rank = 23;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<std::vector<double>> left(size, std::vector<double>(rank)), right(rank, std::vector<double>(size));
    for (auto* matrix : {&left, &right}) {
        for (auto& row : *matrix) {
            for (double& x : row)
                x = uniform(random);
        }
    }
    GaussianElimination rows(size);
    for (const auto& factors : left) {
        std::vector<std::pair<int, double>> row;
        for (int j = 0; j < size; ++j) {
            double sum = 0.0;
            for (std::size_t k = 0; k < rank; ++k)
                sum += factors[k] * right[k][static_cast<std::size_t>(j)];
            row.emplace_back(j, sum);
        }
        rows.add(row);
    }
    EXPECT_EQ(rows.rank(), rank);
}

}  // namespace
}  // namespace holdfast::solver::detail
