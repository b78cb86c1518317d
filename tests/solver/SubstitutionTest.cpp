#include "solver/src/presolve/Substitution.h"

#include <gmock/gmock.h>

namespace holdfast::solver::detail {
namespace {

using ::testing::ElementsAre;
using Outcome = Substitution::Outcome;

constexpr double kTolerance = 1e-9;

TEST(Substitution, CarriesOffsetsAndSignsAlongChains) {
    Substitution merge(4);
    merge.tie(1, 0, 1.0, 5.0, kTolerance, 0);   // v1 = v0 + 5
    merge.tie(2, 1, -1.0, 2.0, kTolerance, 1);  // v2 = -v1 + 2
    merge.tie(3, 2, 1.0, -1.0, kTolerance, 2);  // v3 = v2 - 1
    merge.fix(0, 10.0, kTolerance, 3);
    EXPECT_TRUE(merge.isConstant(3));
    EXPECT_DOUBLE_EQ(merge.find(1).offset, 15.0);
    EXPECT_DOUBLE_EQ(merge.find(2).offset, -13.0);
    EXPECT_DOUBLE_EQ(merge.find(3).offset, -14.0);
}

TEST(Substitution, CallsATieThatHoldsAlreadySpare) {
    Substitution merge(3);
    EXPECT_EQ(merge.tie(0, 1, 1.0, 1.0, kTolerance, 0), Outcome::joined);
    EXPECT_EQ(merge.tie(1, 2, 1.0, 1.0, kTolerance, 1), Outcome::joined);
    EXPECT_EQ(merge.tie(0, 2, 1.0, 2.0, kTolerance, 2), Outcome::spare);
    EXPECT_EQ(merge.tie(0, 2, 1.0, 2.5, kTolerance, 3), Outcome::conflicting);
}

TEST(Substitution, MakesAValueThatIsItsOwnMirrorImageConstant) {
    Substitution merge(2);
    merge.tie(0, 1, 1.0, 0.0, kTolerance, 0);
    EXPECT_EQ(merge.tie(0, 1, -1.0, 6.0, kTolerance, 1), Outcome::joined);
    EXPECT_TRUE(merge.isConstant(0));
    EXPECT_DOUBLE_EQ(merge.find(1).offset, 3.0);
}

TEST(Substitution, NamesTheTiesThatAContradictionRunsThrough) {
    Substitution merge(5);
    merge.tie(0, 1, 1.0, 0.0, kTolerance, 10);
    merge.tie(1, 2, 1.0, 0.0, kTolerance, 11);
    merge.tie(3, 4, 1.0, 0.0, kTolerance, 12);
    merge.fix(2, 4.0, kTolerance, 13);
    EXPECT_EQ(merge.fix(0, 5.0, kTolerance, 14), Outcome::conflicting);
    EXPECT_THAT(merge.ownersToGround(0), ElementsAre(10, 11, 13));
    EXPECT_THAT(merge.ownersBetween(3, 4), ElementsAre(12));
}

TEST(Substitution, FindsTheRootOfALongChainWithoutRecursion) {
    constexpr int count = 200000;
    Substitution merge(count);
    for (int i = 1; i < count; ++i)
        merge.tie(i, i - 1, 1.0, 1.0, kTolerance, i);
    merge.fix(0, 0.0, kTolerance, 0);
    EXPECT_DOUBLE_EQ(merge.find(count - 1).offset, count - 1.0);
}

}  // namespace
}  // namespace holdfast::solver::detail
