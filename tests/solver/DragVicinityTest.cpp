#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "solver/src/dragging/Drag.h"
#include "solver/src/sketch/Measure.h"

// Drags in sketches so large that a session begins with what is near its handles.

namespace holdfast::solver::detail {
namespace {

/// A zigzag of links that are equally long, each 8 across and 6 up or down; the first one begins at x.
SketchData zigzagOf(int count, double x) {
    SketchData sketch;
    for (int i = 0; i < count; ++i) {
        const Vec2 low{x + 8.0 * i, 0}, high{x + 8.0 * i + 8.0, 6};
        sketch.addLine("l" + std::to_string(i), i % 2 == 0 ? low : Vec2{low.x, 6}, i % 2 == 0 ? high : Vec2{high.x, 0});
        SketchConstraint length{"d" + std::to_string(i), ConstraintType::distance, {{i}}};
        length.value = 10.0;
        sketch.addConstraint(length);
        if (i > 0)
            sketch.addConstraint({"c" + std::to_string(i),
                                  ConstraintType::coincident,
                                  {{i - 1, PlaceKind::end}, {i, PlaceKind::start}}});
    }
    sketch.takeReference();
    return sketch;
}

DragSession beginAtEndOf(SketchData& sketch, int link) {
    const int v = sketch.entities[static_cast<std::size_t>(link)].firstValue + 2;
    return DragSession(sketch, {v, v + 1});
}

SolveResult ledTo(DragSession& session, Vec2 goal) {
    const double goals[] = {goal.x, goal.y};
    return session.step(goals);
}

Vec2 endOfLink(const SketchData& sketch, int link) {
    const auto numbers = sketch.valuesOf(link);
    return {numbers[2], numbers[3]};
}

double worstMissIn(const SketchData& sketch) {
    const std::vector<double> misses = violationsOf(sketch);
    return *std::max_element(misses.begin(), misses.end());
}

TEST(DragVicinity, FindsWhatTheWholeSketchWouldHaveFound) {
    constexpr int count = 1200, middle = 600, few = 60;
    SketchData large = zigzagOf(count, 0.0), small = zigzagOf(few, 8.0 * (middle - few / 2));
    small.sizeAround = large.size();
    DragSession inLarge = beginAtEndOf(large, middle), inSmall = beginAtEndOf(small, few / 2);
    const Vec2 start = endOfLink(large, middle);
    for (int step = 1; step <= 20; ++step) {
        const Vec2 goal{start.x + 0.1 * step, start.y - 0.05 * step};
        ASSERT_TRUE(ledTo(inLarge, goal).isSolved());
        ASSERT_TRUE(ledTo(inSmall, goal).isSolved());
        EXPECT_EQ(inLarge.freedom(), inSmall.freedom());
        for (int i = 0; i < few; ++i) {
            const Vec2 one = endOfLink(large, middle - few / 2 + i), other = endOfLink(small, i);
            EXPECT_LT(distance(one, other), 1e-9) << step << " " << i;
        }
    }
}

TEST(DragVicinity, TellsWhatHasMovedByItsNumberInTheSketch) {
    constexpr int middle = 600;
    SketchData sketch = zigzagOf(1200, 0.0);
    const std::vector<double> before = sketch.values;
    DragSession session = beginAtEndOf(sketch, middle);
    const Vec2 start = endOfLink(sketch, middle);
    const SolveResult result = ledTo(session, {start.x + 1.0, start.y});
    ASSERT_EQ(result.status, SolveStatus::solved);
    std::vector<int> moved, told;
    for (std::size_t i = 0; i < sketch.entities.size(); ++i) {
        const auto first = static_cast<std::size_t>(sketch.entities[i].firstValue);
        if (!std::equal(before.begin() + first, before.begin() + first + 4, sketch.values.begin() + first))
            moved.push_back(static_cast<int>(i));
    }
    for (const Movement& movement : result.movements)
        told.push_back(movement.entity);
    EXPECT_EQ(told, moved);
    EXPECT_TRUE(std::find(moved.begin(), moved.end(), middle) != moved.end());
}

/// A straight bar of pieces that are parallel and ten long: it moves as a whole or not at all.
SketchData barOf(int count) {
    SketchData sketch;
    for (int i = 0; i < count; ++i) {
        sketch.addLine("b" + std::to_string(i), {8.0 * i, 6.0 * i}, {8.0 * i + 8.0, 6.0 * i + 6.0});
        SketchConstraint length{"d" + std::to_string(i), ConstraintType::distance, {{i}}};
        length.value = 10.0;
        sketch.addConstraint(length);
        if (i == 0)
            continue;
        sketch.addConstraint(
            {"c" + std::to_string(i), ConstraintType::coincident, {{i - 1, PlaceKind::end}, {i, PlaceKind::start}}});
        sketch.addConstraint({"p" + std::to_string(i), ConstraintType::parallel, {{i - 1}, {i}}});
    }
    sketch.takeReference();
    return sketch;
}

TEST(DragVicinity, IsLeftWhereWhatIsNearCannotFollow) {
    constexpr int count = 800, middle = 400;
    SketchData sketch = barOf(count);
    const std::vector<double> before = sketch.values;
    DragSession session = beginAtEndOf(sketch, middle);
    const Vec2 start = endOfLink(sketch, middle);
    for (const int step : {1, 0}) {
        ASSERT_TRUE(ledTo(session, {start.x + step, start.y - step}).isSolved()) << step;
        EXPECT_LT(session.miss(), 1e-7 * sketch.size()) << step;
        EXPECT_LT(worstMissIn(sketch), 1e-9 * sketch.size()) << step;
    }
    EXPECT_EQ(session.freedom(), 2 * (count + 1));
    session.land();
    for (std::size_t v = 0; v < before.size(); ++v)
        EXPECT_NEAR(sketch.values[v], before[v], 1e-9 * sketch.size());
}

/// Starts on one level are one value: what is near is not all that moves.
TEST(DragVicinity, IsNotUsedWhereWhatMovesReachesBeyondIt) {
    constexpr int count = 800, middle = 400;
    SketchData sketch;
    for (int i = 0; i < count; ++i)
        sketch.addLine("b" + std::to_string(i), {8.0 * i, 0}, {8.0 * i + 8.0, 6});
    for (int i = 1; i < count; ++i)
        sketch.addConstraint(
            {"h" + std::to_string(i), ConstraintType::horizontal, {{i - 1, PlaceKind::start}, {i, PlaceKind::start}}});
    sketch.takeReference();
    const int v = sketch.entities[middle].firstValue;
    DragSession session(sketch, {v, v + 1});
    ASSERT_TRUE(ledTo(session, {sketch.values[static_cast<std::size_t>(v)], 3.0}).isSolved());
    for (const SketchEntity& entity : sketch.entities)
        EXPECT_NEAR(sketch.values[static_cast<std::size_t>(entity.firstValue) + 1], 3.0, 1e-5) << entity.id;
}

std::vector<int> onEntity(const SketchData& sketch, int entity) {
    std::vector<int> found;
    sketch.constraintsOn.forEachOn(entity, [&](int constraint) { found.push_back(constraint); });
    return found;
}

TEST(ConstraintLists, FollowWhatIsAppendedAndTakenBack) {
    SketchData sketch = zigzagOf(3, 0.0);  // d0, d1, c1, d2, c2
    EXPECT_EQ(onEntity(sketch, 0), (std::vector<int>{2, 0}));
    EXPECT_EQ(onEntity(sketch, 1), (std::vector<int>{4, 2, 1}));
    EXPECT_EQ(onEntity(sketch, 7), std::vector<int>());
    sketch.constraintsOn.shorten(3);
    EXPECT_EQ(sketch.constraintsOn.count(), 3u);
    EXPECT_EQ(onEntity(sketch, 1), (std::vector<int>{2, 1}));
    EXPECT_EQ(onEntity(sketch, 2), std::vector<int>());
    sketch.constraintsOn.append(std::vector<SketchPlace>{{2}, {0}});
    EXPECT_EQ(onEntity(sketch, 0), (std::vector<int>{3, 2, 0}));
    EXPECT_EQ(onEntity(sketch, 2), (std::vector<int>{3}));
}

}  // namespace
}  // namespace holdfast::solver::detail
