#include "workbench/evaluator/HostEvaluator.h"

#include <algorithm>
#include <cmath>

#include <yxbase/YxGeTol.h>

#include "evaluation/EvaluationHeader.h"
#include "workbench/drawing/HostShapes.h"
#include "workbench/evaluator/EditDemands.h"
#include "workbench/evaluator/HostDrag.h"
#include "workbench/evaluator/RotationTrial.h"

namespace holdfast {

namespace {

std::size_t at(int i) {
    return static_cast<std::size_t>(i);
}

std::vector<std::string> namesOf(const Figure& figure, const std::vector<int>& constraints) {
    std::vector<std::string> names;
    for (const int c : constraints)
        names.push_back(figure.constraints[at(c)].id);
    return names;
}

}  // namespace

HostEvaluator::HostEvaluator(Drawing& drawing) : m_drawing(drawing) {
    drawing.process().setEvaluator([this](YxDbDatabase&) { return evaluateGroup(); });
    hostState().staticEvaluator = [this](LvEvaDataConverter& converter) { evaluateStatic(converter); };
}

HostEvaluator::~HostEvaluator() {
    m_drawing.process().setEvaluator({});
    hostState().staticEvaluator = {};
}

void HostEvaluator::endCommand() {
    m_drag.reset();
    m_stretchStart.reset();
    m_trialPointCount = 0;
    m_rotateReport.clear();
    m_yielded.reset();
    m_last = {};
}

/// A constraint that its entities cannot have fails the evaluation, with its name.
template <class Work>
void HostEvaluator::run(const Work& work) {
    m_last = {};
    try {
        work();
    } catch (const FigureError& error) {
        m_last = {};
        m_last.solved = false;
        m_last.complaint = error.what();
    }
}

bool HostEvaluator::evaluateGroup() {
    YxDbAssoc2dConstraintGroup& group = m_drawing.group();
    AssocConstraintHeader& header = *HostAccess::header(group);
    // The end of a drag counts without a change too: a cancelled one has been evaluated before.
    const bool endsDrag = header.editKind == static_cast<int>(EditKind::dragEnd);
    if (HostAccess::status(group) != kChangedAssocStatus && !endsDrag)
        return true;
    run([&] { evaluate(header); });
    HostAccess::setStatus(group, kUpToDateAssocStatus);
    return m_last.solved;
}

bool HostEvaluator::evaluate(AssocConstraintHeader& header) {
    switch (static_cast<EditKind>(header.editKind)) {
        case EditKind::align:
            return feedAndSolve(header, kAlignEditor, &alignDemand);
        case EditKind::lengthen:
            return feedAndSolve(header, kLengthenEditor, &lengthenDemand) || (putBack(header), false);
        case EditKind::properties:
            return feedAndSolve(header, kPropertiesEditor, &propertiesDemand) || (putBack(header), false);
        case EditKind::mirror: {
            HostFigure host(m_drawing);
            return solveAndWrite(host, placedDemand(host, host.numbersOf(m_drawing, header.editedObjectIds)));
        }
        case EditKind::stretch:
            return stretch(header);
        case EditKind::rotate:
            return rotate(header);
        case EditKind::drag:
            return drag(header);
        case EditKind::dragEnd:
            return endDrag(header);
    }
    HostFigure host(m_drawing);
    return solveAndWrite(host, {});
}

bool HostEvaluator::solveAndWrite(HostFigure& host, const EditDemand& demand) {
    m_yielded.reset();
    if (demand.whenBarred != WhenBarred::refuse && !demand.targets.empty())
        m_yielded = Yielded{host.figure, demand};
    const SolveResult result = meet(host.figure, demand);
    note(host, result, result.isSolved() ? missOf(host.figure, demand) : 0.0);
    if (m_last.miss == 0.0)
        m_yielded.reset();
    if (result.isSolved())
        writeMoved(m_drawing, host);
    return result.isSolved();
}

const Evaluation& HostEvaluator::refuseYielded() {
    if (!m_yielded)
        return m_last;
    m_yielded->demand.whenBarred = WhenBarred::refuse;
    const SolveResult result = meet(m_yielded->figure, m_yielded->demand);
    m_last.solved = result.isSolved();
    m_last.conflicting = namesOf(m_yielded->figure, result.conflicting);
    if (!result.isSolved() && result.flaw)
        m_last.complaint = result.flaw->what;
    m_yielded.reset();
    return m_last;
}

bool HostEvaluator::feedAndSolve(AssocConstraintHeader& header, LvEditorType editor,
                                 EditDemand (*demandOf)(const Drawing&, HostFigure&, const AssocConstraintHeader&,
                                                        const ConverterFeed&)) {
    HostFigure host(m_drawing);
    const ConverterFeed feed(header.converter, editor);
    const EditDemand demand = feed.isNew() ? demandOf(m_drawing, host, header, feed) : EditDemand();
    const bool solved = solveAndWrite(host, demand);
    ConverterFeed::consume(header.converter);
    return solved;
}

/// Entities that the command had changed already go back to the header's copies of them.
void HostEvaluator::putBack(const AssocConstraintHeader& header) {
    for (const auto& [id, copy] : header.preEditEntities) {
        const std::string name = m_drawing.nameOf(id);
        if (name.empty() || copy == nullptr)
            continue;
        const Shape before = readShape(*copy);
        if (!(readShape(m_drawing.entity(name)) == before))
            m_drawing.write(name, before);
    }
}

/// Every step starts from where the stretch began, so that steps do not add up; what an earlier step moved and this one
/// does not goes back.
bool HostEvaluator::stretch(AssocConstraintHeader& header) {
    const ConverterFeed feed(header.converter, kStretchEditor);
    if (feed.isFirst() || m_stretchStart == nullptr)
        m_stretchStart = std::make_unique<HostFigure>(m_drawing);
    HostFigure host = *m_stretchStart;
    const bool isNew = feed.isNew();
    const EditDemand demand = isNew ? stretchDemand(m_drawing, host, header, feed) : EditDemand();
    ConverterFeed::consume(header.converter);
    if (!isNew) {
        HostFigure now(m_drawing);
        return solveAndWrite(now, {});
    }
    const SolveResult result = meet(host.figure, demand);
    note(host, result, result.isSolved() ? missOf(host.figure, demand) : 0.0);
    if (!result.isSolved())
        return false;
    HostFigure now(m_drawing);
    now.figure.values = host.figure.values;
    writeMoved(m_drawing, now);
    return true;
}

/// The module does not know the user's angle, so what it asks for is a trial that moves nothing. The evaluation after
/// it comes when the host has turned the entities: they stay, the others follow.
bool HostEvaluator::rotate(AssocConstraintHeader& header) {
    HostFigure host(m_drawing);
    std::vector<int> edited = host.numbersOf(m_drawing, header.editedObjectIds);
    if (header.points.length() == m_trialPointCount) {
        EditDemand demand = placedDemand(host, std::move(edited));
        demand.whenBarred = WhenBarred::refuse;
        return solveAndWrite(host, demand);
    }
    m_trialPointCount = header.points.length();
    const EditDemand demand = transformDemand(host, edited, header.staticTransform);
    m_rotateReport =
        namesOf(host.figure, constraintsAgainst(host.figure, demand, constraintsTouching(host.figure, edited)));
    return true;
}

std::vector<std::string> HostEvaluator::againstPlaced(const std::vector<std::string>& entities,
                                                      const std::vector<std::string>& mayGo) const {
    const HostFigure host(m_drawing);
    std::vector<int> edited, constraints;
    for (const std::string& name : entities)
        if (const int number = host.numberOf(name); number >= 0)
            edited.push_back(number);
    for (const int c : constraintsTouching(host.figure, edited))
        if (std::find(mayGo.begin(), mayGo.end(), host.figure.constraints[at(c)].id) != mayGo.end())
            constraints.push_back(c);
    return namesOf(host.figure, constraintsAgainst(host.figure, placedDemand(host, edited), constraints));
}

bool HostEvaluator::drag(AssocConstraintHeader& header) {
    // The module raises this flag when a session hands over its objects; each session starts from the database anew.
    if (header.dropCollected) {
        m_drag = std::make_unique<HostDrag>(m_drawing, header);
        header.dropCollected = false;
    }
    if (m_drag == nullptr) {
        HostFigure host(m_drawing);
        return solveAndWrite(host, {});
    }
    const SolveResult result = m_drag->step(header.dragTransform);
    if (result.isSolved() && !header.dragActive)
        m_drag->land(header.dragTransform);
    note(m_drag->host(), result, m_drag->miss());
    header.dropChanged = !result.isSolved();
    if (header.dragActive) {
        m_drag->preview(m_drawing, header);
        return result.isSolved();
    }
    if (result.isSolved())
        writeMoved(m_drawing, m_drag->host());
    header.entitiesToDraw.setLogicalLength(0);
    m_drag.reset();
    return result.isSolved();
}

/// After a cancelled drag there is nothing to do. After one that the host has finished itself the edited entities are
/// where the user wants them: what differs from the beginning of the drag is meant, the rest follows.
bool HostEvaluator::endDrag(AssocConstraintHeader& header) {
    header.entitiesToDraw.setLogicalLength(0);
    const std::unique_ptr<HostDrag> drag = std::move(m_drag);
    HostFigure host(m_drawing);
    EditDemand demand;
    demand.whenBarred = WhenBarred::yield;
    demand.edited = host.numbersOf(m_drawing, header.editedObjectIds);
    if (drag != nullptr && drag->host().drawn.size() == host.drawn.size()) {
        host.figure.reference = drag->host().drawn;
        for (const int number : demand.edited) {
            const FigureEntity& entity = host.figure.entities[at(number)];
            for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
                if (std::abs(host.drawn[at(v)] - drag->host().drawn[at(v)]) > YxGeContext::gTol.equalPoint())
                    demand.targets.push_back({v, host.drawn[at(v)]});
        }
    }
    return solveAndWrite(host, demand);
}

/// Objects that the host has placed itself: they stay where they are, the others follow.
void HostEvaluator::evaluateStatic(LvEvaDataConverter& converter) {
    run([&] {
        HostFigure host(m_drawing);
        YxArray<YxDbObjectId> ids;
        for (const ConverterRecord* record :
             ConverterFeed(&converter, kStaticEvaluateEditor).all("addObjectOffset(id)"))
            ids.append(record->id);
        solveAndWrite(host, placedDemand(host, host.numbersOf(m_drawing, ids)));
    });
    ConverterFeed::consume(&converter);
}

void HostEvaluator::note(const HostFigure& host, const SolveResult& result, double miss) {
    m_last.solved = result.isSolved();
    m_last.unchanged = result.status == SolveStatus::unchanged;
    m_last.conflicting = namesOf(host.figure, result.conflicting);
    m_last.residual = result.residual;
    m_last.iterations = result.iterations;
    m_last.miss = miss > YxGeContext::gTol.equalPoint() ? miss : 0.0;
    if (result.worstConstraint >= 0)
        m_last.worst = host.figure.constraints[at(result.worstConstraint)].id;
    if (!result.isSolved() && result.flaw)
        m_last.complaint = result.flaw->what;
    for (const Movement& movement : result.movements)
        m_last.movements.emplace_back(host.document.entities[at(movement.entity)].id, movement.distance);
}

}  // namespace holdfast
