#include "solver/src/solving/Legs.h"

#include "solver/src/sketch/Index.h"
#include "solver/src/solving/Solving.h"
#include "solver/src/solving/Way.h"

namespace holdfast::solver::detail {

namespace {

/// As many as a user would try. What they may cost together, as SolveResult::factorWork counts it: some tenths of a
/// second, which a refusal takes longer.
constexpr int kLegs = 8;
constexpr long kMostLegsWork = 1'500'000;

}  // namespace

bool canBeDivided(const SolveRequest& request, const Answer& failed) {
    return !failed.isSolved() && request.mayDivide && request.keepsShapes && request.patience != Patience::once &&
           !request.asksWhether && !failed.isContradicted && failed.result.reached && failed.result.reached->part > 0.0;
}

Answer solveInLegs(const SketchData& sketch, const SolveRequest& request, std::span<const ValueGoal> values) {
    const Way way(sketch, request.targets, values, request.edited);
    SketchData now = sketch;
    SolveRequest shorter = request;
    shorter.patience = Patience::way;
    shorter.mayDivide = false;
    shorter.namesConflicts = false;
    shorter.values.assign(values.begin(), values.end());
    Answer answer;
    long work = 0, factorWork = 0;
    for (int leg = 1; leg <= kLegs; ++leg) {
        const double part = static_cast<double>(leg) / kLegs;
        shorter.targets = way.targetsAt(part);
        way.setValuesAt(part, now);
        for (ValueGoal& value : shorter.values)
            value.goal = now.constraints[at(value.constraint)].value;
        shorter.mostWork = kMostLegsWork - factorWork;
        Solving solving(now, shorter);
        answer = solving.run();
        solving.giveBack();
        work += solving.work();
        factorWork += solving.factorWork();
        if (!answer.isSolved())
            return answer;
        now.values = answer.values;
        now.takeReference();
    }
    if (isRuined(sketch, request.edited, answer.values))
        answer.result.status = SolveStatus::degenerate;
    answer.result.work = work;
    answer.result.factorWork = factorWork;
    return answer;
}

}  // namespace holdfast::solver::detail
