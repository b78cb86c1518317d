#include "tests/solver/DragPaths.h"

#include <gtest/gtest.h>

namespace holdfast::solver::detail {
namespace {

constexpr double kMostJump = 5.0;  // steps of the pointer

TEST(DragPaths, AreFollowedWithoutJumpsAndFlipsAndBack) {
    for (DragPath& path : scriptedDrags()) {
        SCOPED_TRACE(path.name);
        const DragFigures figures = followed(std::move(path));
        EXPECT_EQ(figures.unsolved, 0);
        EXPECT_LE(figures.jump, kMostJump);
        EXPECT_EQ(figures.flips, 0);
        EXPECT_LE(figures.hysteresis, 1e-9);
        EXPECT_LE(figures.residual, 1e-9);
    }
}

}  // namespace
}  // namespace holdfast::solver::detail
