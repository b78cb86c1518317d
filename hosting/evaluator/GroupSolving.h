#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosting/Drawing.h"
#include "hosting/Uses.h"
#include "hosting/evaluator/Evaluation.h"

namespace holdfast::solver::detail {
struct SketchData;
struct SolveResult;
}  // namespace holdfast::solver::detail

namespace holdfast::hosting {

struct EditRequest;
struct HostSketch;

/// A value that a dimension is to have.
struct DimensionGoal {
    std::string id;
    double value = 0.0;  ///< in the drawing's length unit, or radians
};

std::vector<std::string> namesOf(const SketchData& sketch, const std::vector<int>& constraints);

/// Solves a drawing's constraint group for one request after another, writes what has moved, and tells what came of it.
/// What cannot be solved changes nothing.
class GroupSolving {
public:
    explicit GroupSolving(Drawing& drawing);
    ~GroupSolving();
    GroupSolving(const GroupSolving&) = delete;
    GroupSolving& operator=(const GroupSolving&) = delete;

    /// What came of the last request.
    const Evaluation& last() const { return m_last; }
    void forget();

    /// For a command that does not take less than it asked for: when the last evaluation came only near to the edit, it
    /// counts as failed from now on and names what stands in the way. The database is left to the command.
    const Evaluation& refuseYielded();

    /// Leads dimensions that drive the drawing to other values and has everything that hangs on them follow. False when
    /// the constraints do not let them, and nothing has changed then.
    bool lead(const std::vector<DimensionGoal>& goals);
    /// Gives a line another length, wherever its ends come to lie. False when the constraints do not let it: then
    /// nothing has changed, and last() is as it was, but for how far the edit could be followed.
    bool leadLength(const std::string& line, double length);
    /// Moves the drawing as little as it takes for a new constraint to hold, by shifting and turning where that will
    /// do. False when the others do not let it, and nothing has changed then.
    bool hold(const std::string& constraint);

    /// Does work in which the methods below are called; what it throws of a sketch is told as what came of it.
    void run(const std::function<void()>& work);

    /// A request on a sketch of the drawing, or of the part of it that is solved.
    using DemandFor = std::function<EditRequest(HostSketch&)>;
    bool solveAround(std::vector<std::string> names, const DemandFor& demandFor);
    bool solveAndWrite(HostSketch& host, const EditRequest& request);

    /// All that hangs together with the entities, and with what may not hold.
    HostSketch allAround(std::vector<std::string> names) const;
    /// These entities, and those of constraints that may not hold.
    std::vector<std::string> withUnsolved(std::vector<std::string> names) const;

    /// What came of a request that somebody else has solved.
    void note(const HostSketch& host, const SolveResult& result, double miss);
    void noteLeftAlone(std::vector<std::string> constraints) { m_last.leftAlone = std::move(constraints); }
    void noteHeldBack(std::vector<std::string> constraints) { m_last.heldBackBy = std::move(constraints); }

private:
    struct Yielded;

    bool solveWith(HostSketch host, const DemandFor& demandFor);
    bool accept(HostSketch& host, const EditRequest& request, const SolveResult& result);
    std::vector<std::string> entitiesOn(const std::vector<std::string>& constraints) const;

    Drawing& m_drawing;
    Evaluation m_last;
    std::unique_ptr<Yielded> m_yielded;
};

}  // namespace holdfast::hosting
