#include "hosting/evaluator/GroupSolving.h"

#include <algorithm>
#include <utility>

#include <yxbase/YxGeTol.h>

#include "document/Places.h"
#include "hosting/HostOpening.h"
#include "hosting/evaluator/EditRequests.h"
#include "hosting/evaluator/HostSketch.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

std::vector<std::string> namesOf(const SketchData& sketch, const std::vector<int>& constraints) {
    std::vector<std::string> names;
    names.reserve(constraints.size());
    for (const int c : constraints)
        names.push_back(sketch.constraints[at(c)].id);
    return names;
}

namespace {

/// Of a set that is not proven nobody knows that it cannot hold together: how far the edit could be led is told
/// instead.
std::vector<std::string> provenConflict(const SketchData& sketch, const SolveResult& result) {
    return result.isConflictMinimal ? namesOf(sketch, result.conflicting) : std::vector<std::string>();
}

}  // namespace

/// An edit that was met in part only, and the sketch that it began with.
struct GroupSolving::Yielded {
    SketchData sketch;
    EditRequest request;
};

GroupSolving::GroupSolving(Drawing& drawing) : m_drawing(drawing) {}

GroupSolving::~GroupSolving() = default;

void GroupSolving::forget() {
    m_yielded.reset();
    m_last = {};
}

/// A constraint that its entities cannot have fails the evaluation, with its name.
void GroupSolving::run(const std::function<void()>& work) {
    forget();
    try {
        work();
    } catch (const SketchError& error) {
        m_last = {};
        m_last.solved = false;
        m_last.complaint = error.what();
    }
}

/// Solves around the entities, and around all that may not hold: near them first, as the solver does not look farther
/// in most cases either, and in all that hangs on them where that was not enough.
bool GroupSolving::solveAround(std::vector<std::string> names, const DemandFor& demandFor) {
    if (!m_drawing.unsolved())
        return solveWith(allAround(std::move(names)), demandFor);
    HostSketch near(m_drawing, withUnsolved(names), kNearSteps);
    if (!near.isCut)
        return solveWith(std::move(near), demandFor);
    const EditRequest request = demandFor(near);
    const SolveResult result = meet(near.sketch, request);
    if (!result.isSolved() || shortfallOf(near.sketch, request) > YxGeContext::gTol.equalPoint() ||
        near.reachesBorder())
        return solveWith(allAround(std::move(names)), demandFor);
    m_yielded.reset();
    return accept(near, request, result);
}

bool GroupSolving::solveWith(HostSketch host, const DemandFor& demandFor) {
    return solveAndWrite(host, demandFor(host));
}

std::vector<std::string> GroupSolving::withUnsolved(std::vector<std::string> names) const {
    if (const std::optional<std::vector<std::string>> unsolved = m_drawing.unsolved())
        names.insert(names.end(), unsolved->begin(), unsolved->end());
    return names;
}

HostSketch GroupSolving::allAround(std::vector<std::string> names) const {
    return m_drawing.unsolved() ? HostSketch(m_drawing, withUnsolved(std::move(names)), kAllSteps)
                                : HostSketch(m_drawing);
}

bool GroupSolving::solveAndWrite(HostSketch& host, const EditRequest& request) {
    if (request.whenInfeasible != WhenInfeasible::refuse && !request.targets.empty())
        m_yielded = std::make_unique<Yielded>(Yielded{host.sketch, request});
    return accept(host, request, meet(host.sketch, request));
}

bool GroupSolving::accept(HostSketch& host, const EditRequest& request, const SolveResult& result) {
    note(host, result, result.isSolved() ? shortfallOf(host.sketch, request) : 0.0);
    if (m_last.miss == 0.0)
        m_yielded.reset();
    if (result.isSolved()) {
        writeMoved(m_drawing, host);
        m_drawing.markSolved();
    }
    return result.isSolved();
}

const Evaluation& GroupSolving::refuseYielded() {
    if (!m_yielded)
        return m_last;
    m_yielded->request.whenInfeasible = WhenInfeasible::refuse;
    const SolveResult result = meet(m_yielded->sketch, m_yielded->request);
    m_last.solved = result.isSolved();
    m_last.conflicting = provenConflict(m_yielded->sketch, result);
    if (!result.isSolved() && result.degeneracy)
        m_last.complaint = result.degeneracy->what;
    m_yielded.reset();
    return m_last;
}

bool GroupSolving::lead(const std::vector<DimensionGoal>& goals) {
    const HostProcess::Scope bound(m_drawing.process());
    std::vector<std::string> ids;
    ids.reserve(goals.size());
    for (const DimensionGoal& goal : goals)
        ids.push_back(goal.id);
    run([&] {
        solveAround(entitiesOn(ids), [&](HostSketch& host) {
            EditRequest request;
            for (const DimensionGoal& goal : goals)
                if (const int number = constraintNumber(host.sketch, goal.id); number >= 0)
                    request.dimensions.push_back({number, goal.value});
            return request;
        });
    });
    for (const DimensionGoal& goal : m_last.solved ? goals : std::vector<DimensionGoal>())
        m_drawing.setMeasure(goal.id, goal.value);
    HostAccess::setStatus(m_drawing.group(), kUpToDateAssocStatus);
    return m_last.solved;
}

bool GroupSolving::leadLength(const std::string& line, double length) {
    const HostProcess::Scope bound(m_drawing.process());
    const Evaluation before = m_last;
    run([&] {
        HostSketch host = allAround({line});
        SketchConstraint dimension;
        dimension.type = ConstraintType::distance;
        dimension.refs = {{host.numberOf(line), PlaceKind::whole, 0}};
        dimension.value = length;
        const ValueGoal goal{host.sketch.addConstraint(std::move(dimension)), length};
        const SolveResult result = solve(host.sketch, {.values = {goal},
                                                       .edited = {host.numberOf(line)},
                                                       .keepsShapes = true,
                                                       .patience = Patience::way,
                                                       .namesConflicts = false});
        accept(host, {}, result);
    });
    const bool isLed = m_last.solved;
    if (!isLed)
        m_last.followed = std::max(before.followed, std::exchange(m_last, before).followed);
    HostAccess::setStatus(m_drawing.group(), kUpToDateAssocStatus);
    return isLed;
}

bool GroupSolving::hold(const std::string& constraint) {
    const HostProcess::Scope bound(m_drawing.process());
    run([&] {
        solveAround(entitiesOn({constraint}), [&](HostSketch& host) {
            EditRequest request;
            if (const int number = constraintNumber(host.sketch, constraint); number >= 0)
                request.added.push_back(number);
            return request;
        });
    });
    HostAccess::setStatus(m_drawing.group(), kUpToDateAssocStatus);
    return m_last.solved;
}

std::vector<std::string> GroupSolving::entitiesOn(const std::vector<std::string>& constraints) const {
    std::vector<std::string> names;
    for (const std::string& id : constraints)
        if (const std::optional<Constraint> constraint = m_drawing.constraint(id))
            for (std::string& name : entitiesOf(*constraint))
                names.push_back(std::move(name));
    return names;
}

void GroupSolving::note(const HostSketch& host, const SolveResult& result, double miss) {
    m_last.solved = result.isSolved();
    m_last.unchanged = result.status == SolveStatus::unchanged;
    m_last.conflicting = provenConflict(host.sketch, result);
    m_last.residual = result.residual;
    m_last.iterations = result.iterations;
    m_last.miss = miss > YxGeContext::gTol.equalPoint() ? miss : 0.0;
    if (result.worstConstraint >= 0)
        m_last.worst = host.sketch.constraints[at(result.worstConstraint)].id;
    if (!result.isSolved() && result.degeneracy)
        m_last.complaint = result.degeneracy->what;
    m_last.leftAlone = namesOf(host.sketch, result.leftAlone);
    m_last.followed = result.reached ? result.reached->part : 0.0;
    m_last.led = ledDimensions(host.sketch, result);
    for (const Movement& movement : result.movements)
        m_last.movements.emplace_back(host.document.entities[at(movement.entity)].id, movement.distance);
}

}  // namespace holdfast::hosting
