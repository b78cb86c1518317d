#include <holdfast/solver/Solver.h>

#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

// Sketches in two threads at once, solved, dragged, diagnosed; then one sketch read in two, and one of many parts
// solved in several. Every thread finds the bits that a thread alone finds. Under the thread sanitizer this also says
// that nothing is shared.

namespace {

using namespace holdfast::solver;

/// Solves, drags and diagnoses a chain of links with an arc, a spline and an ellipse; all numbers that come out.
std::vector<double> work(int links) {
    Sketch sketch;
    std::vector<EntityId> lines;
    for (int i = 0; i < links; ++i) {
        const double y = i % 2 == 0 ? 0.0 : 6.0;
        lines.push_back(sketch.addLine({8.0 * i, y}, {8.0 * i + 8.0, 6.0 - y}).value());
        (void)sketch.add(Length{lines.back(), 10.5}).value();
        if (i > 0)
            (void)sketch.add(Coincident{endOf(lines[lines.size() - 2]), startOf(lines.back())}).value();
    }
    const EntityId spline = sketch.addSpline({.control = {{0, 9}, {5, 14}, {10, 9}, {15, 12}}}).value();
    const EntityId ellipse = sketch.addEllipse({30, 20}, {6, 1}, 0.5).value();
    (void)sketch.add(Tangent{spline, lines.front()}).value();
    (void)sketch.add(Tangent{ellipse, lines.back()}).value();
    std::vector<double> numbers{static_cast<double>(solve(sketch).ending)};
    DragSession session = DragSession::begin(sketch, {endOf(lines.back())}).value();
    const Vec2 from = sketch.position(endOf(lines.back()));
    for (int step = 1; step <= 10; ++step)
        numbers.push_back(session.step({from.x - 0.3 * step, from.y + 0.2 * step}).iterations);
    (void)sketch.add(Length{lines.front(), 12}).value();
    const Diagnosis diagnosis = diagnose(sketch).value();
    numbers.push_back(diagnosis.freedom);
    numbers.push_back(static_cast<double>(diagnosis.conflicts.size()));
    for (const EntityId id : sketch.entities())
        numbers.insert(numbers.end(), sketch.values(id).begin(), sketch.values(id).end());
    return numbers;
}

bool areSame(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

bool solvesInTwoThreads() {
    const std::vector<double> alone = work(6);
    std::vector<double> one, two;
    std::thread first([&] { one = work(6); });
    std::thread second([&] { two = work(6); });
    first.join();
    second.join();
    return alone.front() == static_cast<double>(Ending::solved) && areSame(alone, one) && areSame(alone, two);
}

bool readsInTwoThreads() {
    Sketch sketch;
    const EntityId a = sketch.addLine({0, 0}, {3, 4}).value(), b = sketch.addLine({3, 4}, {9, 4}).value();
    const ConstraintId joined = sketch.add(Coincident{endOf(a), startOf(b)}).value();
    const ConstraintId length = sketch.add(Length{a, 6}).value();
    const auto read = [&] {
        return residual(sketch, joined).value() + measure(sketch, length).value() + diagnose(sketch).value().freedom +
               sketch.position(middleOf(b)).x + Sketch(sketch).values(a)[2];
    };
    const double alone = read();
    double one = 0.0, two = 0.0;
    std::thread first([&] { one = read(); });
    std::thread second([&] { two = read(); });
    first.join();
    second.join();
    return one == alone && two == alone;
}

/// Lines in pairs that no constraint connects, none of which holds; all numbers after a solve in so many threads.
std::vector<double> solvePairs(int threads) {
    Sketch sketch;
    for (int i = 0; i < 400; ++i) {
        const double x = 30.0 * (i % 20), y = 30.0 * (i / 20), turn = 0.01 * i;
        const EntityId a = sketch.addLine({x, y}, {x + 9, y + turn}).value();
        const EntityId b = sketch.addLine({x + 10, y}, {x + 9, y + 12}).value();
        (void)sketch.add(Coincident{endOf(a), startOf(b)}).value();
        (void)sketch.add(Perpendicular{a, b}).value();
        (void)sketch.add(Length{a, 8 + turn}).value();
        (void)sketch.add(Length{b, 11}).value();
    }
    std::vector<double> numbers{static_cast<double>(solve(sketch, {.threads = threads}).ending)};
    for (const EntityId id : sketch.entities())
        numbers.insert(numbers.end(), sketch.values(id).begin(), sketch.values(id).end());
    return numbers;
}

bool solvesPartsInThreads() {
    const std::vector<double> alone = solvePairs(1);
    return alone.front() == static_cast<double>(Ending::solved) && areSame(alone, solvePairs(4)) &&
           areSame(alone, solvePairs(0));
}

}  // namespace

int main() {
    const bool isRight = solvesInTwoThreads() && readsInTwoThreads() && solvesPartsInThreads();
    std::puts(isRight ? "more threads find what one finds" : "more threads find something else");
    return isRight ? 0 : 1;
}
