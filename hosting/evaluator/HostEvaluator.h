#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hosting/Drawing.h"
#include "hosting/Uses.h"
#include "hosting/evaluator/ConverterFeed.h"
#include "hosting/evaluator/Evaluation.h"

class AssocConstraintHeader;

namespace holdfast::solver::detail {
struct SolveResult;
}

namespace holdfast::hosting {

class HostDrag;
class HostPull;
/// A value that a dimension is to have.
struct DimensionGoal {
    std::string id;
    double value = 0.0;  ///< in the drawing's length unit, or radians
};

struct EditRequest;
struct HostSketch;

/// Solves a drawing's constraint group whenever the host evaluates its network. Stands behind
/// YxDbAssocManager::evaluateTopLevelNetwork and LvEvaDataConverter::evaluate as long as it lives.
///
/// An edit is read from the group's header once: evaluated again without new data, the constraints are only made to
/// hold. A failed evaluation changes nothing; where the command had changed the database already, its entities are put
/// back to the copies that it left in the header.
class HostEvaluator {
public:
    explicit HostEvaluator(Drawing& drawing);
    ~HostEvaluator();
    HostEvaluator(const HostEvaluator&) = delete;
    HostEvaluator& operator=(const HostEvaluator&) = delete;

    /// The evaluation that ran last in this command.
    const Evaluation& last() const { return m_last; }
    /// For a command that does not take less than it asked for: when the last evaluation came only near to the edit, it
    /// counts as failed from now on and names what stands in the way. The database is left to the command.
    const Evaluation& refuseYielded();

    /// Constraints that would have to go for the rotation that was tried last, in drawing order.
    const std::vector<std::string>& rotateReport() const { return m_rotateReport; }

    /// The constraints that have to go for entities to stay where they are now, in drawing order. They are looked for
    /// among some first; the others on these entities are only given up when it cannot be without.
    std::vector<std::string> againstPlaced(const std::vector<std::string>& entities,
                                           const std::vector<std::string>& first) const;

    /// Leads dimensions that drive the drawing to other values and has everything that hangs on them follow. False when
    /// the constraints do not let them, and nothing has changed then.
    bool lead(const std::vector<DimensionGoal>& goals);
    /// Gives a line another length, wherever its ends come to lie. False when the constraints do not let it: then
    /// nothing has changed, and last() is as it was, but for how far the edit could be followed.
    bool leadLength(const std::string& line, double length);
    /// Moves the drawing as little as it takes for a new constraint to hold, by shifting and turning where that will
    /// do. False when the others do not let it, and nothing has changed then.
    bool hold(const std::string& constraint);

    /// How an entity was before the command changed it, for when it is to stay as it is now: then the others are led
    /// from there.
    void knowPlaced(const std::string& entity, Shape before) {
        m_placedFrom.insert_or_assign(entity, std::move(before));
    }

    /// A drag of these entities, or of these points of theirs, that is only looked at.
    std::unique_ptr<HostPull> pull(const YxArray<YxDbObjectId>& edited, const YxArray<YxGePoint3d>& points) const;

    /// The command is over: drags and trials are forgotten.
    void endCommand();

private:
    template <class Work>
    void run(const Work& work);
    bool evaluateGroup();
    bool evaluate(AssocConstraintHeader& header);
    void evaluateStatic(LvEvaDataConverter& converter);
    EditRequest demandAsPlaced(HostSketch& host, const YxArray<YxDbObjectId>& ids) const;
    bool solveAndWrite(HostSketch& host, const EditRequest& request);
    template <class DemandFor>
    bool solveAround(std::vector<std::string> names, const DemandFor& demandFor);
    template <class DemandFor>
    bool solveWith(HostSketch host, const DemandFor& demandFor);
    bool accept(HostSketch& host, const EditRequest& request, const SolveResult& result);
    std::vector<std::string> entitiesOn(const std::vector<std::string>& constraints) const;
    std::vector<std::string> withUnsolved(std::vector<std::string> names) const;
    HostSketch allAround(std::vector<std::string> names) const;
    std::vector<std::string> namesIn(const AssocConstraintHeader& header) const;
    using RequestOf = EditRequest (*)(const Drawing&, HostSketch&, const AssocConstraintHeader&, const ConverterFeed&);
    bool feedAndSolve(AssocConstraintHeader& header, LvEditorType editor, RequestOf requestOf);
    bool align(AssocConstraintHeader& header);
    bool reflect(AssocConstraintHeader& header, const YxGeMatrix3d& reflection);
    bool stretch(AssocConstraintHeader& header);
    bool rotate(AssocConstraintHeader& header);
    bool drag(AssocConstraintHeader& header);
    bool endDrag(AssocConstraintHeader& header);
    void putBack(const AssocConstraintHeader& header);
    void noteShortfall(const YxGeMatrix3d& transform);
    void note(const HostSketch& host, const SolveResult& result, double miss);

    struct Yielded;

    Drawing& m_drawing;
    Evaluation m_last;
    std::unique_ptr<Yielded> m_yielded;
    std::vector<std::string> m_rotateReport;
    int m_trialPointCount = 0;  ///< base points in the header when a rotation was tried last
    std::unique_ptr<HostDrag> m_drag;
    std::unique_ptr<HostSketch> m_stretchStart;
    std::map<std::string, Shape> m_placedFrom;
    std::unique_ptr<HostSketch> m_rotateStart;  ///< the drawing when the rotation was tried, before it was made
};

}  // namespace holdfast::hosting
