#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <set>

#include "Shaking.h"
#include "formats/json/JsonReader.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Diagnose.h"
#include "solver/src/dragging/Drag.h"
#include "solver/src/sketch/Measure.h"
#include "solver/src/solving/Solve.h"
#include "tests/support/DrawingFolder.h"

// Drawings that people made for their own work: the examples, and those of the folder that HOLDFAST_DRAWINGS names.
// A drawing that does not hold as it is stored is left out, and counted.

namespace holdfast::solver::detail {

using namespace document;
using namespace formats;
using namespace hosting;
namespace {

namespace fs = std::filesystem;

struct Sample {
    std::string name;
    SketchData sketch;
};

double worstViolation(const SketchData& sketch) {
    const std::vector<double> misses = violationsOf(sketch);
    return *std::max_element(misses.begin(), misses.end());
}

std::vector<Sample> readSamples() {
    std::vector<Sample> samples;
    std::string unsound;
    for (const fs::path& file : testing::drawingFiles()) {
        std::ifstream in(file);
        SketchData sketch = sketchFrom(readJson(in, file.filename().string()));
        constexpr double heldByItsAuthor = 1e-4;
        if (worstViolation(sketch) > heldByItsAuthor)
            unsound += " " + file.stem().string();
        else
            samples.push_back({file.stem().string(), std::move(sketch)});
    }
    std::cout << samples.size() << " drawings; not holding as they are stored:" << (unsound.empty() ? " none" : unsound)
              << "\n";
    return samples;
}

const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = readSamples();
    return all;
}

/// Runs the trial on every drawing, prints a line of the summary and expects that none fails.
void expectAll(const char* what, const std::function<std::string(const Sample&)>& trial) {
    std::string failures;
    std::size_t good = 0;
    for (const Sample& sample : samples()) {
        const std::string why = trial(sample);
        if (why.empty())
            ++good;
        else
            failures += "  " + sample.name + ": " + why + "\n";
    }
    std::cout << what << ": " << good << " of " << samples().size() << "\n" << failures;
    EXPECT_EQ(failures, "");
    EXPECT_GT(good, 0u);
}

double farthest(const SketchData& a, const SketchData& b) {
    double most = 0.0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        most = std::max(most, std::abs(a.values[i] - b.values[i]));
    return most;
}

void disturb(SketchData& sketch, double amount) {
    std::mt19937 random(12345);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (const SketchEntity& entity : sketch.entities) {
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount && !entity.fixed; ++v)
            sketch.values[static_cast<std::size_t>(v)] += amount * uniform(random);
    }
}

std::string solvedBack(SketchData sketch, double part) {
    disturb(sketch, part * sketch.size());
    const SolveResult result = solve(sketch, {.reach = Scope::part, .namesConflicts = false});
    if (!result.isSolved())
        return result.degeneracy ? result.degeneracy->what
                                 : "status " + std::to_string(static_cast<int>(result.status));
    const double miss = worstViolation(sketch);
    return miss < 1e-8 ? "" : "residual " + std::to_string(miss);
}

TEST(RealDrawings, StayWhereTheyAreWhenTheyAreSolved) {
    expectAll("solved as stored, unmoved", [](const Sample& sample) {
        SketchData sketch = sample.sketch;
        const SolveResult result = solve(sketch, {});
        const double moved = farthest(sketch, sample.sketch);
        return result.isSolved() && moved <= 1e-9 * sketch.size() ? "" : "moved " + std::to_string(moved);
    });
}

TEST(RealDrawings, SayHowFreeTheyAre) {
    int fullyConstrained = 0, withRedundancy = 0;
    expectAll("degrees of freedom counted", [&](const Sample& sample) -> std::string {
        const Diagnosis diagnosis = diagnose(sample.sketch);
        fullyConstrained += diagnosis.freedom == 0;
        withRedundancy += !diagnosis.redundant.empty();
        for (const SketchPart& part : diagnosis.parts) {
            if (part.freedom < 0)
                return "a part with " + std::to_string(part.freedom) + " degrees of freedom";
        }
        return diagnosis.conflicts.empty() ? "" : "a conflict in a drawing that holds";
    });
    std::cout << fullyConstrained << " fully constrained, " << withRedundancy << " with redundant constraints\n";
}

TEST(RealDrawings, ComeBackFromADisturbanceOfAThousandthOfTheirSize) {
    expectAll("disturbed by 0.1 %", [](const Sample& sample) { return solvedBack(sample.sketch, 0.001); });
}

TEST(RealDrawings, ComeBackFromADisturbanceOfAHundredthOfTheirSize) {
    expectAll("disturbed by 1 %", [](const Sample& sample) { return solvedBack(sample.sketch, 0.01); });
}

/// A place where nothing is known but what the drawing says itself. Few may be refused, and none of them is called
/// contradictory, as it held before.
TEST(RealDrawings, ArePutRightWhenAllTheirCoordinatesAreOff) {
    std::size_t solved = 0;
    std::string refused;
    for (const Sample& sample : samples()) {
        SketchData sketch = sample.sketch;
        constexpr double hundredth = 0.01;
        shake(sketch, hundredth, 1);
        const SolveResult result = solve(sketch, {.keepsShapes = true});
        EXPECT_FALSE(result.isConflictMinimal) << sample.name << " is called contradictory";
        solved += result.isSolved();
        if (!result.isSolved())
            refused += "  " + sample.name + (result.degeneracy ? ": " + result.degeneracy->what : "") + "\n";
        sketch.takeReference();
        EXPECT_TRUE(!result.isSolved() || worstViolation(sketch) <= 1e-9 * sketch.size()) << sample.name;
    }
    std::cout << "shaken by 1 %: " << solved << " of " << samples().size() << " put right\n" << refused;
    EXPECT_GE(solved + samples().size() / 50, samples().size());
}

/// A point of the drawing on its way out along a bent path and back the same way, 50 steps each.
struct Path {
    int handle = -1;  ///< first of two values
    Vec2 start, direction;
    double length = 0.0;

    /// Steps may be parts of one.
    Vec2 at(double step) const {
        const double part = (step <= 50.0 ? step : 100.0 - step) / 50.0;
        if (part == 0.0)
            return start;
        return {start.x + length * part * direction.x,
                start.y + length * part * direction.y + 0.2 * length * std::sin(3.141592653589793 * part)};
    }

    SolveResult take(DragSession& session, double step) const {
        const Vec2 goal = at(step);
        const double goals[] = {goal.x, goal.y};
        return session.step(goals);
    }

    double stride(double from, double to) const {
        const Vec2 a = at(from), b = at(to);
        return std::hypot(b.x - a.x, b.y - a.y);
    }
};

/// From the end of a random line in a random direction; a handle of -1 for a drawing without lines.
Path randomPath(const SketchData& sketch) {
    std::vector<int> ends;
    for (const SketchEntity& entity : sketch.entities) {
        if (entity.kind == EntityKind::line && !entity.fixed)
            ends.insert(ends.end(), {entity.firstValue, entity.firstValue + 2});
    }
    if (ends.empty())
        return {};
    std::mt19937 random(1);
    const int handle = ends[random() % ends.size()];
    const double angle = std::uniform_real_distribution<double>(0.0, 6.28)(random);
    const auto v = static_cast<std::size_t>(handle);
    return {handle, {sketch.values[v], sketch.values[v + 1]}, {std::cos(angle), std::sin(angle)}, 0.1 * sketch.size()};
}

/// The same step in twenty parts. Where a drawing's leverage is large it moves far in a step, but step by step; a jump
/// to another solution stays one jump however small the steps are.
bool goesStepByStep(SketchData sketch, const Path& path, int step) {
    DragSession session(sketch, {path.handle, path.handle + 1});
    for (int i = 1; i < step; ++i)
        path.take(session, i);
    const SketchData before = sketch;
    double most = 0.0;
    for (int part = 1; part <= 20; ++part) {
        const SketchData last = sketch;
        path.take(session, step - 1 + part / 20.0);
        most = std::max(most, farthest(last, sketch));
    }
    return most <= 0.6 * farthest(before, sketch);
}

struct DragFigures {
    double worstDrift = 0.0;     ///< as a part of the drawing's size
    double worstLeverage = 0.0;  ///< movement of anything in a step, against the path's
    std::size_t dragged = 0;
    int unmetSteps = 0;              ///< whose goal the constraints forbid
    std::vector<std::string> forks;  ///< where the nearest solution itself jumps, in a drawing and a step
};

std::string dragged(const std::string& name, SketchData sketch, DragFigures& sketches) {
    constexpr double muchLeverage = 5.0;
    const Path path = randomPath(sketch);
    if (path.handle < 0)
        return "";
    ++sketches.dragged;
    const SketchData start = sketch;
    DragSession session(sketch, {path.handle, path.handle + 1});
    for (int step = 1; step <= 100; ++step) {
        const SketchData before = sketch;
        const SolveResult result = path.take(session, step);
        if (!result.isSolved())
            return "step " + std::to_string(step) +
                   (result.degeneracy ? ": " + result.degeneracy->what : " was not solved");
        sketches.unmetSteps += session.miss() > 1e-6 * start.size();
        const double leverage = farthest(before, sketch) / path.stride(step - 1, step);
        sketches.worstLeverage = std::max(sketches.worstLeverage, leverage);
        if (leverage > muchLeverage && !goesStepByStep(start, path, step))
            sketches.forks.push_back(name + ", step " + std::to_string(step));
        if (step % 10 == 0 && worstViolation(sketch) > 1e-8 * start.size())
            return "constraints do not hold in step " + std::to_string(step);
    }
    const double drift = farthest(sketch, start) / start.size();
    sketches.worstDrift = std::max(sketches.worstDrift, drift);
    return drift < 1e-6 ? "" : "drifted by " + std::to_string(drift) + " of its size";
}

TEST(RealDrawings, TakeTheWidthOfTheBatteryClipThatIsAskedFor) {
    std::ifstream in("examples/drawings/battery-clip.json");
    const SketchData clip = sketchFrom(readJson(in, "battery-clip.json"));
    const auto width = std::find_if(clip.constraints.begin(), clip.constraints.end(),
                                    [](const SketchConstraint& constraint) { return constraint.id == "c9"; });
    ASSERT_NE(width, clip.constraints.end());
    for (const double asked : {20.0, 23.1, 33.0, 40.0, 44.0}) {
        SketchData sketch = clip;
        sketch.takeReference();
        sketch.constraints[static_cast<std::size_t>(width - clip.constraints.begin())].value = asked;
        EXPECT_TRUE(solve(sketch, {.keepsShapes = true}).isSolved()) << asked;
        EXPECT_LE(worstViolation(sketch), 1e-9 * sketch.size()) << asked;
    }
}

TEST(RealDrawings, FollowADragAndComeBackWithIt) {
    DragFigures sketches;
    expectAll("dragged 50 steps out and back",
              [&](const Sample& sample) { return dragged(sample.name, sample.sketch, sketches); });
    std::cout << sketches.dragged << " have a line to drag, " << sketches.unmetSteps
              << " steps were held back by constraints; worst drift " << sketches.worstDrift
              << " of the size; largest leverage of a step " << sketches.worstLeverage << "\n"
              << sketches.forks.size() << " steps jump because the nearest solution does\n";
    std::set<std::string> drawings;
    for (const std::string& fork : sketches.forks) {
        std::cout << "  " << fork << "\n";
        drawings.insert(fork.substr(0, fork.find(',')));
    }
    EXPECT_LE(drawings.size(), (sketches.dragged + 199) / 200);
}

}  // namespace
}  // namespace holdfast::solver::detail
