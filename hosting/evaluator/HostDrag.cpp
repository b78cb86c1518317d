#include "hosting/evaluator/HostDrag.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

#include <yxbase/YxGeTol.h>

#include "geometry/Tolerances.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/EditRequests.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

namespace {

std::vector<int> valuesOf(const SketchData& sketch, const std::vector<int>& entities) {
    std::vector<int> values;
    for (const int number : entities) {
        const SketchEntity& entity = sketch.entities[at(number)];
        for (int v = 0; v < entity.valueCount; ++v)
            values.push_back(entity.firstValue + v);
    }
    return values;
}

/// Where an element's points begin among its values.
std::vector<int> pointValues(const SketchEntity& element) {
    switch (element.kind) {
        case EntityKind::line:
            return {0, 2};
        case EntityKind::arc:
            return {0, 3, 5};
        case EntityKind::ellipticalArc:
            return {0, 5, 7};
        case EntityKind::spline:
        case EntityKind::polyline:
            break;
        default:
            return {0};
    }
    std::vector<int> values;
    const int count = element.kind == EntityKind::spline ? element.valueCount : 2 * element.vertexCount;
    for (int v = 0; v < count; v += 2)
        values.push_back(v);
    return values;
}

bool isAmong(const YxArray<YxGePoint3d>& points, double x, double y) {
    const double near = YxGeContext::gTol.equalPoint();
    return std::any_of(points.begin(), points.end(),
                       [=](const YxGePoint3d& point) { return std::hypot(point.x - x, point.y - y) <= near; });
}

std::vector<int> heldPoints(const SketchData& sketch, const std::vector<int>& entities,
                            const YxArray<YxGePoint3d>& points) {
    std::vector<int> held;
    for (const int number : entities) {
        const SketchEntity& element = sketch.entities[at(number)];
        for (const int offset : pointValues(element)) {
            const int value = element.firstValue + offset;
            if (isAmong(points, sketch.values[at(value)], sketch.values[at(value + 1)]))
                held.push_back(value);
        }
    }
    return held;
}

std::vector<int> handlesOf(const SketchData& sketch, const std::vector<int>& entities, const std::vector<int>& held) {
    if (held.empty())
        return valuesOf(sketch, entities);
    std::vector<int> handles;
    for (const int value : held) {
        handles.push_back(value);
        handles.push_back(value + 1);
    }
    return handles;
}

}  // namespace

HostDrag::HostDrag(Drawing& drawing, const AssocConstraintHeader& header, std::vector<std::string> names)
    : m_drawing(drawing),
      m_names(std::move(names)),
      m_editedIds(header.editedObjectIds),
      m_points(header.points),
      m_host(drawing.unsolved() ? HostSketch(drawing, m_names, kNearSteps) : HostSketch(drawing)) {
    begin();
}

void HostDrag::begin() {
    m_edited = m_host.numbersOf(m_drawing, m_editedIds);
    m_held = heldPoints(m_host.sketch, m_edited, m_points);
    m_session.reset();
    m_dragged = m_host.sketch;
    m_session = std::make_unique<DragSession>(m_dragged, handlesOf(m_host.sketch, m_edited, m_held));
}

/// Targets stand in the order of the handles.
EditRequest HostDrag::demandFor(const YxGeMatrix3d& transform) const {
    if (m_held.empty())
        return transformDemand(m_host, m_edited, transform);
    EditRequest request;
    request.edited = m_edited;
    request.whenInfeasible = WhenInfeasible::yield;
    for (const int value : m_held) {
        const YxGePoint3d goal = transform * YxGePoint3d{m_host.drawn[at(value)], m_host.drawn[at(value + 1)], 0.0};
        request.targets.push_back({value, goal.x});
        request.targets.push_back({value + 1, goal.y});
    }
    return request;
}

/// Near the edited entities first, as the session itself does not look farther in most cases.
SolveResult HostDrag::step(const YxGeMatrix3d& transform) {
    SolveResult result = stepWithin(transform);
    if (!m_host.isCut || (result.isSolved() && m_miss <= kHolds * m_host.sketch.size() && !m_host.reachesBorder()))
        return result;
    // Steps are computed from the beginning, and the drawing has not changed since.
    m_previews.clear();
    m_host = HostSketch(m_drawing, m_names, kAllSteps);
    begin();
    return stepWithin(transform);
}

/// The drag session follows quickly where the constraints let everything through. Where they do not, the edited
/// entities keep their sizes if they can, and else come as near as they can.
SolveResult HostDrag::stepWithin(const YxGeMatrix3d& transform) {
    const EditRequest request = demandFor(transform);
    std::vector<double> goals;
    for (const Target& target : request.targets)
        goals.push_back(target.goal);
    SolveResult followed = m_session->step(goals);
    if (!followed.isSolved() || m_session->miss() > kHolds * m_host.sketch.size()) {
        SketchData firm = m_host.sketch;
        firm.values = m_host.drawn;
        SolveResult kept = meet(firm, request);
        if (kept.isSolved() || !followed.isSolved()) {
            if (kept.isSolved())
                take(firm.values, shortfallOf(firm, request));
            return kept;
        }
    }
    take(m_dragged.values, m_session->miss());
    return followed;
}

void HostDrag::land(const YxGeMatrix3d& transform) {
    const EditRequest request = demandFor(transform);
    if (m_miss > kHolds * m_host.sketch.size())
        return;
    SketchData exact = m_host.sketch;
    if (solve(exact, {.targets = request.targets, .edited = request.edited, .namesConflicts = false}).isSolved())
        take(exact.values, shortfallOf(exact, request));
}

void HostDrag::take(const std::vector<double>& values, double miss) {
    m_host.sketch.values = values;
    m_miss = miss;
}

void HostDrag::preview(const Drawing& drawing, AssocConstraintHeader& header) {
    std::vector<int> shown = m_edited;
    std::vector<char> isShown(m_host.sketch.entities.size(), 0);
    for (const int number : m_edited)
        isShown[at(number)] = 1;
    for (const int number : m_host.moved())
        if (!isShown[at(number)])
            shown.push_back(number);
    header.entitiesToDraw.setLogicalLength(0);
    for (const int number : shown) {
        const std::string& name = m_host.document.entities[at(number)].id;
        if (drawing.id(name).isNull())
            continue;  // erased during the drag
        YxDbEntity*& copy = m_previews[number];
        if (copy == nullptr) {
            std::unique_ptr<YxDbEntity> made(static_cast<YxDbEntity*>(drawing.entity(name).clone()));
            if (made == nullptr)
                throw std::runtime_error("the host makes no copy of " + name + " to show");
            header.adopt(made.get());
            copy = made.release();  // the header's
        }
        writeShape(*copy, m_host.shapeOf(number));
        header.entitiesToDraw.append(copy);
    }
}

}  // namespace holdfast::hosting
