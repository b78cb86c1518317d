#include "hosting/evaluator/HostEvaluator.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>
#include <unordered_set>
#include <utility>

#include <yxbase/YxGeTol.h>

#include "document/Places.h"
#include "evaluation/EvaluationHeader.h"
#include "hosting/HostOpening.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/EditRequests.h"
#include "hosting/evaluator/HostDrag.h"
#include "hosting/evaluator/HostPull.h"
#include "hosting/evaluator/HostSketch.h"
#include "hosting/evaluator/RotationTrial.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

namespace {

/// True when the drawing plane is turned over.
bool reflects(const YxGeMatrix3d& m) {
    return m(0, 0) * m(1, 1) - m(0, 1) * m(1, 0) < 0.0;
}

void transformInPlace(const Drawing& drawing, const std::string& name, const YxGeMatrix3d& transform) {
    opened<YxDbEntity>(drawing.id(name), YxDb::kForWrite)->transformBy(transform);
}

/// Branches are chosen by where the elements were when an earlier sketch was read, as far as that has them.
void takeReference(HostSketch& host, const HostSketch& earlier) {
    for (std::size_t i = 0; i < host.sketch.entities.size(); ++i) {
        const SketchEntity& element = host.sketch.entities[i];
        const int known = earlier.numberOf(element.id);
        if (known < 0 || earlier.sketch.entities[at(known)].valueCount != element.valueCount)
            continue;
        const auto from = earlier.drawn.begin() + earlier.sketch.entities[at(known)].firstValue;
        std::copy(from, from + element.valueCount, host.sketch.reference.begin() + element.firstValue);
    }
}

}  // namespace

HostEvaluator::HostEvaluator(Drawing& drawing) : m_drawing(drawing), m_group(drawing) {
    drawing.process().setEvaluator([this](YxDbDatabase&) { return evaluateGroup(); });
    drawing.process().setStaticEvaluator([this](LvEvaDataConverter& converter) { evaluateStatic(converter); });
}

HostEvaluator::~HostEvaluator() {
    m_drawing.process().setEvaluator({});
    m_drawing.process().setStaticEvaluator({});
}

void HostEvaluator::endCommand() {
    m_drag.reset();
    m_stretchStart.reset();
    m_rotateStart.reset();
    m_placedFrom.clear();
    m_trialPointCount = 0;
    m_rotateReport.clear();
    m_group.forget();
}

bool HostEvaluator::evaluateGroup() {
    YxDbAssoc2dConstraintGroup& group = m_drawing.group();
    AssocConstraintHeader& header = *HostAccess::header(group);
    // The end of a drag counts without a change too: a cancelled one has been evaluated before.
    const bool endsDrag = header.editKind == static_cast<int>(EditKind::dragEnd);
    if (HostAccess::status(group) != kChangedAssocStatus && !endsDrag)
        return true;
    m_group.run([&] { evaluate(header); });
    HostAccess::setStatus(group, kUpToDateAssocStatus);
    return last().solved;
}

bool HostEvaluator::evaluate(AssocConstraintHeader& header) {
    // Another edit has come in between: the next rotation begins with a trial, however many base points there are.
    if (header.editKind != static_cast<int>(EditKind::rotate))
        m_trialPointCount = 0;
    switch (static_cast<EditKind>(header.editKind)) {
        case EditKind::align:
            return align(header);
        case EditKind::lengthen:
            return feedAndSolve(header, kLengthenEditor, &lengthenDemand);
        case EditKind::properties:
            return feedAndSolve(header, kPropertiesEditor, &propertiesDemand);
        case EditKind::mirror:
            return m_group.solveAround(namesIn(header),
                                       [&](HostSketch& host) { return demandAsPlaced(host, header.editedObjectIds); });
        case EditKind::stretch:
            return stretch(header);
        case EditKind::rotate:
            return rotate(header);
        case EditKind::drag:
            return drag(header);
        case EditKind::dragEnd:
            return endDrag(header);
    }
    return m_group.solveAround({}, [](HostSketch&) { return EditRequest(); });
}

/// The entities that a command speaks of.
std::vector<std::string> HostEvaluator::namesIn(const AssocConstraintHeader& header) const {
    std::vector<std::string> names;
    const auto take = [&](const YxDbObjectId& id) {
        if (std::string name = m_drawing.nameOf(id); !name.empty())
            names.push_back(std::move(name));
    };
    for (const YxDbObjectId& id : header.editedObjectIds)
        take(id);
    for (const auto& [id, copy] : header.preEditEntities)
        take(id);
    if (header.converter != nullptr)
        for (const ConverterRecord& call : HostAccess::records(*header.converter).calls)
            take(call.id);
    return names;
}

/// A failed edit is over like one that was met: what the command has done goes back, and it is not tried again.
bool HostEvaluator::feedAndSolve(AssocConstraintHeader& header, LvEditorType editor, RequestOf requestOf) {
    const ConverterFeed feed(header.converter, editor);
    m_group.run([&] {
        m_group.solveAround(namesIn(header), [&](HostSketch& host) {
            if (feed.isForeign())
                return placedDemand(host, host.numbersOf(m_drawing, header.editedObjectIds));
            return feed.isNew() ? requestOf(m_drawing, host, header, feed) : EditRequest();
        });
    });
    if (!last().solved && (feed.isNew() || feed.isForeign()))
        putBack(header);
    ConverterFeed::consume(header.converter);
    return last().solved;
}

bool HostEvaluator::align(AssocConstraintHeader& header) {
    const ConverterFeed feed(header.converter, kAlignEditor);
    const ConverterRecord* const told = feed.last("setTransform(matrix)");
    if (told != nullptr && reflects(told->transform))
        return reflect(header, told->transform);
    return feedAndSolve(header, kAlignEditor, &alignDemand);
}

/// Constraints know the ends of an arc by their names, which change places in the plane. So the entities are reflected
/// where they live, as MIRROR does it, and the others follow. A second reflection puts them back.
bool HostEvaluator::reflect(AssocConstraintHeader& header, const YxGeMatrix3d& reflection) {
    std::map<std::string, Shape> before;
    for (const YxDbObjectId& id : header.editedObjectIds)
        if (const std::string name = m_drawing.nameOf(id); !name.empty())
            before.emplace(name, m_drawing.shape(name));
    for (const auto& [name, shape] : before)
        transformInPlace(m_drawing, name, reflection);
    m_group.run([&] {
        m_group.solveAround(namesIn(header), [&](HostSketch& host) {
            return placedDemand(host, host.numbersOf(m_drawing, header.editedObjectIds));
        });
    });
    for (const auto& [name, shape] : last().solved ? std::map<std::string, Shape>() : before) {
        transformInPlace(m_drawing, name, reflection);
        m_drawing.write(name, shape);
    }
    ConverterFeed::consume(header.converter);
    return last().solved;
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
    std::vector<std::string> names = namesIn(header);
    if (m_stretchStart != nullptr)
        for (const Entity& entity : m_stretchStart->document.entities)
            names.push_back(entity.id);
    HostSketch now = m_group.allAround(std::move(names));
    if (!feed.isNew())
        return m_group.solveAndWrite(now, {});
    if (feed.isFirst() || m_stretchStart == nullptr || m_stretchStart->drawn.size() != now.drawn.size())
        m_stretchStart = std::make_unique<HostSketch>(now);
    HostSketch host = *m_stretchStart;
    const EditRequest request = stretchDemand(m_drawing, host, header, feed);
    ConverterFeed::consume(header.converter);
    const SolveResult result = meet(host.sketch, request);
    m_group.note(host, result, result.isSolved() ? shortfallOf(host.sketch, request) : 0.0);
    if (!result.isSolved())
        return false;
    now.sketch.values = host.sketch.values;
    writeMoved(m_drawing, now);
    m_drawing.markSolved();
    return true;
}

/// The module does not know the user's angle, so what it asks for is a trial that moves nothing. The evaluation after
/// it comes when the host has turned the entities: they stay, the others follow.
bool HostEvaluator::rotate(AssocConstraintHeader& header) {
    HostSketch host = m_group.allAround(namesIn(header));
    std::vector<int> edited = host.numbersOf(m_drawing, header.editedObjectIds);
    if (header.points.length() == m_trialPointCount) {
        if (m_rotateStart != nullptr)
            knowBefore(host, edited, *m_rotateStart);
        EditRequest request = placedDemand(host, std::move(edited));
        request.whenInfeasible = WhenInfeasible::refuse;
        return m_group.solveAndWrite(host, request);
    }
    m_trialPointCount = header.points.length();
    m_rotateStart = std::make_unique<HostSketch>(host);
    const EditRequest request = transformDemand(host, edited, header.staticTransform);
    const auto against = constraintsAgainst(host.sketch, request, constraintsTouching(host.sketch, edited));
    m_rotateReport = namesOf(host.sketch, against.value_or(std::vector<int>()));
    return true;
}

std::vector<std::string> HostEvaluator::againstPlaced(const std::vector<std::string>& entities,
                                                      const std::vector<std::string>& first) const {
    const HostProcess::Scope bound(m_drawing.process());
    HostSketch host = m_group.allAround(entities);
    const std::unordered_set<std::string_view> named(first.begin(), first.end());
    std::vector<int> edited, suspects;
    for (const std::string& name : entities)
        if (const int number = host.numberOf(name); number >= 0)
            edited.push_back(number);
    const std::vector<int> touching = constraintsTouching(host.sketch, edited);
    for (const int c : touching)
        if (named.contains(host.sketch.constraints[at(c)].id))
            suspects.push_back(c);
    if (m_rotateStart != nullptr)
        knowBefore(host, edited, *m_rotateStart);
    const EditRequest request = placedDemand(host, edited);
    std::optional<std::vector<int>> against = constraintsAgainst(host.sketch, request, suspects);
    if (!against)
        against = constraintsAgainst(host.sketch, request, touching);
    return namesOf(host.sketch, against.value_or(std::vector<int>()));
}

bool HostEvaluator::drag(AssocConstraintHeader& header) {
    // The module raises this flag when a session hands over its objects; each session starts from the database anew.
    if (header.dropCollected) {
        m_drag = std::make_unique<HostDrag>(m_drawing, header, m_group.withUnsolved(namesIn(header)));
        header.dropCollected = false;
    }
    if (m_drag == nullptr)
        return m_group.solveAround({}, [](HostSketch&) { return EditRequest(); });
    // Whatever the step throws, it has failed then and shows nothing.
    header.dropChanged = true;
    if (header.dragActive)
        header.entitiesToDraw.setLogicalLength(0);
    const SolveResult result = m_drag->step(header.dragTransform);
    if (result.isSolved() && !header.dragActive)
        m_drag->land(header.dragTransform);
    m_group.note(m_drag->host(), result, m_drag->miss());
    header.dropChanged = !result.isSolved();
    if (header.dragActive) {
        if (result.isSolved())
            m_drag->preview(m_drawing, header);
        return result.isSolved();
    }
    noteShortfall(header.dragTransform);
    if (result.isSolved()) {
        writeMoved(m_drawing, m_drag->host());
        m_drawing.markSolved();
    }
    header.entitiesToDraw.setLogicalLength(0);
    m_drag.reset();
    return result.isSolved();
}

std::unique_ptr<HostPull> HostEvaluator::pull(const YxArray<YxDbObjectId>& edited,
                                              const YxArray<YxGePoint3d>& points) const {
    auto header = std::make_unique<AssocConstraintHeader>();
    header->editedObjectIds = edited;
    header->points = points;
    std::vector<std::string> names = m_group.withUnsolved(namesIn(*header));
    return std::make_unique<HostPull>(m_drawing, std::move(header), std::move(names));
}

void HostEvaluator::noteShortfall(const YxGeMatrix3d& transform) {
    const SketchData& sketch = m_drag->host().sketch;
    m_group.noteLeftAlone(namesOf(sketch, m_drag->leftAlone()));
    if (last().solved && last().miss > 0.0)
        m_group.noteHeldBack(namesOf(sketch, m_drag->holdingBack(transform)));
}

/// After a cancelled drag there is nothing to do. After one that the host has finished itself the edited entities are
/// where the user wants them: what differs from the beginning of the drag is meant, the rest follows.
bool HostEvaluator::endDrag(AssocConstraintHeader& header) {
    header.entitiesToDraw.setLogicalLength(0);
    std::unique_ptr<HostDrag> drag = std::move(m_drag);
    if (header.collectNeeded || header.dropCollected)
        drag.reset();  // it belongs to a session before this one, which has not been evaluated yet
    HostSketch host = m_group.allAround(namesIn(header));
    EditRequest request;
    request.whenInfeasible = WhenInfeasible::yield;
    request.edited = host.numbersOf(m_drawing, header.editedObjectIds);
    if (drag != nullptr)
        takeReference(host, drag->host());
    for (const int number : drag != nullptr ? request.edited : std::vector<int>()) {
        const SketchEntity& entity = host.sketch.entities[at(number)];
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            if (std::abs(host.drawn[at(v)] - host.sketch.reference[at(v)]) > YxGeContext::gTol.equalPoint())
                request.targets.push_back({v, host.drawn[at(v)]});
    }
    return m_group.solveAndWrite(host, request);
}

/// They stay where they are, the others follow.
EditRequest HostEvaluator::demandAsPlaced(HostSketch& host, const YxArray<YxDbObjectId>& ids) const {
    for (const auto& [name, before] : m_placedFrom)
        if (const int number = host.numberOf(name); number >= 0)
            host.setReference(number, before);
    return placedDemand(host, host.numbersOf(m_drawing, ids));
}

/// Objects that the host has placed itself.
void HostEvaluator::evaluateStatic(LvEvaDataConverter& converter) {
    m_group.run([&] {
        YxArray<YxDbObjectId> ids;
        std::vector<std::string> names;
        for (const ConverterRecord* record :
             ConverterFeed(&converter, kStaticEvaluateEditor).all("addObjectOffset(id)")) {
            ids.append(record->id);
            names.push_back(m_drawing.nameOf(record->id));
        }
        m_group.solveAround(std::move(names), [&](HostSketch& host) { return demandAsPlaced(host, ids); });
    });
    ConverterFeed::consume(&converter);
}

}  // namespace holdfast::hosting
