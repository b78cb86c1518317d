#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hosting/Drawing.h"
#include "hosting/Uses.h"
#include "hosting/evaluator/ConverterFeed.h"
#include "hosting/evaluator/GroupSolving.h"

class AssocConstraintHeader;

namespace holdfast::hosting {

class HostDrag;
class HostPull;
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
    const Evaluation& last() const { return m_group.last(); }

    /// Constraints that would have to go for the rotation that was tried last, in drawing order.
    const std::vector<std::string>& rotateReport() const { return m_rotateReport; }

    /// The constraints that have to go for entities to stay where they are now, in drawing order. They are looked for
    /// among some first; the others on these entities are only given up when it cannot be without.
    std::vector<std::string> againstPlaced(const std::vector<std::string>& entities,
                                           const std::vector<std::string>& first) const;

    /// What is asked of the constraints themselves, without a header.
    GroupSolving& group() { return m_group; }

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
    bool evaluateGroup();
    bool evaluate(AssocConstraintHeader& header);
    void evaluateStatic(LvEvaDataConverter& converter);
    EditRequest demandAsPlaced(HostSketch& host, const YxArray<YxDbObjectId>& ids) const;
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

    Drawing& m_drawing;
    GroupSolving m_group;
    std::vector<std::string> m_rotateReport;
    int m_trialPointCount = 0;  ///< base points in the header when a rotation was tried last
    std::unique_ptr<HostDrag> m_drag;
    std::unique_ptr<HostSketch> m_stretchStart;
    std::map<std::string, Shape> m_placedFrom;
    std::unique_ptr<HostSketch> m_rotateStart;  ///< the drawing when the rotation was tried, before it was made
};

}  // namespace holdfast::hosting
