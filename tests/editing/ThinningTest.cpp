// What is inferred, without what others imply and what cannot hold beside them.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "editing/InferredDrawing.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// Chains of up to a thousand lines that wander: by chance many run the same way, or are as long as each other.
Document wandering(int count) {
    std::mt19937 random(7);
    const auto step = [&] { return std::uniform_real_distribution<double>(-9.0, 9.0)(random); };
    Document document;
    Vec2 at;
    for (int i = 0; i < count; ++i) {
        if (i % 1000 == 0)
            at = {100.0 * step(), 100.0 * step()};
        const Vec2 next = at + Vec2{step(), step()};
        document.entities.push_back(lineEntity("g" + std::to_string(i), at, next));
        at = next;
    }
    return document;
}

std::size_t countOf(const Document& document, ConstraintType type) {
    return static_cast<std::size_t>(std::count_if(document.constraints.begin(), document.constraints.end(),
                                                  [&](const Constraint& each) { return each.type == type; }));
}

/// The chains hang together over thousands of such ties; all at once they are a matrix that fills up.
TEST(Thinning, TakesLongChainsWithManyChanceTiesApart) {
    const InferredDrawing found = inferredDrawing(wandering(16'000), {});
    EXPECT_TRUE(found.thinning.holds);
    EXPECT_EQ(found.thinning.contrary, 0U);
    EXPECT_GT(countOf(found.document, ConstraintType::parallel), 3000U);
    EXPECT_GT(countOf(found.document, ConstraintType::equal), 5000U);
}

TEST(Thinning, KeepsWhatCanHoldExactlyAllAtOnce) {
    const InferredDrawing found = inferredDrawing(wandering(2000), {});
    EXPECT_TRUE(found.thinning.holds);
    EXPECT_GT(countOf(found.document, ConstraintType::equal), 100U);
    hosting::DocumentSketch sketch(found.document);
    EXPECT_TRUE(sketch.solve({.namesConflicts = false}).isSolved());
    EXPECT_TRUE(sketch.redundancies().constraints.empty());
}

/// A leg as long as the side across the right angle leaves no room for the other one, however large the tolerance.
TEST(Thinning, LeavesOutWhatWouldFoldATriangle) {
    Document triangle;
    triangle.entities = {lineEntity("across", {0, 0}, {1.55, 0}), lineEntity("up", {0, 0}, {0, 1}),
                         lineEntity("slanted", {1.55, 0}, {0, 1})};
    InferOptions options;
    options.length = 0.4;
    const InferredDrawing found = inferredDrawing(triangle, options);
    EXPECT_TRUE(found.thinning.holds);
    EXPECT_EQ(found.thinning.contrary, 1U);
    EXPECT_EQ(countOf(found.document, ConstraintType::equal), 0U);
}

}  // namespace
}  // namespace holdfast::editing
