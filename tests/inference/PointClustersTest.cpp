#include "inference/PointClusters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace holdfast::inference {
namespace {

TEST(PointClusters, GatherWhatIsNearTheirFirstPoint) {
    const std::vector<Vec2> points{{0, 0}, {5, 5}, {0.5, 0}, {0, -1}, {1.2, 0}, {5, 5}};
    EXPECT_THAT(clusteredPoints(points, 1.0), testing::ElementsAre(0, 1, 0, 0, 2, 1));
}

TEST(PointClusters, SeeAcrossTheCellsOfTheirGridAndTheZero) {
    EXPECT_THAT(clusteredPoints(std::vector<Vec2>{{-0.4, -0.4}, {0.2, 0.2}}, 1.0), testing::ElementsAre(0, 0));
    EXPECT_THAT(clusteredPoints(std::vector<Vec2>{{0.99, 0}, {1.01, 0}, {-0.0, 9}, {0.0, 9}}, 1.0),
                testing::ElementsAre(0, 0, 1, 1));
}

TEST(PointClusters, StandPointsThatAreFarBeyondTheirTolerance) {
    EXPECT_THAT(clusteredPoints(std::vector<Vec2>{{1e300, 0}, {1e300, 0}, {-1e300, 1}}, 1e-12),
                testing::ElementsAre(0, 0, 1));
    EXPECT_THAT(clusteredPoints({}, 1.0), testing::IsEmpty());
}

TEST(PointClusters, AgreeWithAComparisonOfAllPairs) {
    std::mt19937 random(7);  // NOLINT(bugprone-random-generator-seed): the same points in every run
    std::uniform_real_distribution<double> place(0.0, 10.0);
    std::vector<Vec2> points(400);
    for (Vec2& point : points)
        point = {place(random), place(random)};
    std::vector<std::size_t> expected, leaders;
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::size_t k = 0;
        while (k < leaders.size() &&
               std::hypot(points[leaders[k]].x - points[i].x, points[leaders[k]].y - points[i].y) > 0.5)
            ++k;
        if (k == leaders.size())
            leaders.push_back(i);
        expected.push_back(k);
    }
    EXPECT_EQ(clusteredPoints(points, 0.5), expected);
}

}  // namespace
}  // namespace holdfast::inference
