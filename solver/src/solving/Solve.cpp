#include "solver/src/solving/Solve.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Measure.h"
#include "solver/src/solving/Legs.h"
#include "solver/src/solving/Parts.h"
#include "solver/src/solving/Solving.h"
#include "solver/src/solving/Stopwatch.h"

namespace holdfast::solver::detail {

namespace {

/// Puts the values of an answer into the sketch, and notes what moves there.
void take(SketchData& sketch, Answer& answer) {
    bool hasMoved = false;
    for (int number = 0; number < static_cast<int>(sketch.entities.size()); ++number) {
        const SketchEntity& entity = sketch.entities[at(number)];
        double way = 0.0;
        for (std::size_t v = at(entity.firstValue); v < at(entity.firstValue + entity.valueCount); ++v) {
            way = std::max(way, std::abs(answer.values[v] - sketch.values[v]) * answer.metric[v]);
            hasMoved = hasMoved || answer.values[v] != sketch.values[v];
        }
        if (way > 0.0)
            answer.result.movements.push_back({number, way});
    }
    sketch.values = std::move(answer.values);
    answer.result.status = hasMoved ? SolveStatus::solved : SolveStatus::unchanged;
}

/// What the edit does not concern and does not hold, told for the user's sake.
void noteLeftAlone(const SketchData& sketch, const Answer& answer, std::vector<int>& leftAlone) {
    if (!answer.leavesBroken)
        return;
    const std::vector<int> broken = brokenConstraints(sketch);
    leftAlone.insert(leftAlone.end(), broken.begin(), broken.end());
    std::sort(leftAlone.begin(), leftAlone.end());
    leftAlone.erase(std::unique(leftAlone.begin(), leftAlone.end()), leftAlone.end());
}

}  // namespace

SolveResult solve(SketchData& sketch, const SolveRequest& request) {
    const bool isPlain = request.targets.empty() && request.kept.empty() && request.values.empty() &&
                         request.edited.empty() && request.added.empty() && !request.asksWhether;
    if (isPlain)
        if (auto result = solvePartByPart(sketch, request))
            return *std::move(result);
    return solveWhole(sketch, request);
}

SolveResult solveWhole(SketchData& sketch, const SolveRequest& request) {
    const Stopwatch iterating;
    Solving solving(sketch, request);
    Answer answer = solving.run();
    solving.giveBack();
    answer.result.work = solving.work();
    answer.result.factorWork = solving.factorWork();
    if (canBeDivided(request, answer))
        if (Answer divided = solveInLegs(sketch, request, solving.values()); divided.isSolved()) {
            divided.result.work += answer.result.work;
            divided.result.factorWork += answer.result.factorWork;
            answer = std::move(divided);
        }
    answer.result.times.building = solving.secondsBuilding();
    answer.result.times.iterating = iterating.seconds() - answer.result.times.building - solving.secondsExplaining();
    if (answer.isSolved()) {
        for (const ValueGoal& value : solving.values())
            sketch.constraints[at(value.constraint)].value = value.goal;
        take(sketch, answer);
        if (!answer.concerned.empty())
            noteLeftAlone(sketch, answer, answer.result.leftAlone);
        return std::move(answer.result);
    }
    if (answer.result.reached)
        answer.result.reached->values = answer.values;
    SketchData asked = sketch;
    for (const ValueGoal& value : solving.values())
        asked.constraints[at(value.constraint)].value = value.goal;
    solving.explain(asked, answer);
    answer.result.times.explaining = solving.secondsExplaining();
    return std::move(answer.result);
}

bool isRuined(const SketchData& sketch, std::span<const int> edited, std::span<const double> values) {
    std::vector<char> isEdited(sketch.entities.size(), 0);
    for (const int number : edited)
        isEdited[at(number)] = 1;
    std::vector<int> others;
    for (int number = 0; number < static_cast<int>(sketch.entities.size()); ++number)
        if (!isEdited[at(number)])
            others.push_back(number);
    return haveShrunk(sketch, others, values, SolverState::kLeast);
}

}  // namespace holdfast::solver::detail
