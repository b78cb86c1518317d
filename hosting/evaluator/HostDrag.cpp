#include "hosting/evaluator/HostDrag.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

#include <yxbase/YxGeTol.h>

#include "geometry/Tolerances.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/EditRequests.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Layout.h"
#include "solver/src/sketch/Measure.h"

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

bool isAmong(const YxArray<YxGePoint3d>& points, double x, double y) {
    const double near = YxGeContext::gTol.equalPoint();
    return std::any_of(points.begin(), points.end(),
                       [=](const YxGePoint3d& point) { return std::hypot(point.x - x, point.y - y) <= near; });
}

std::vector<int> heldPoints(const SketchData& sketch, const std::vector<int>& entities,
                            const YxArray<YxGePoint3d>& points) {
    std::vector<int> held;
    for (const int number : entities) {
        for (const int value : layoutOf(sketch.entities[at(number)]).points)
            if (isAmong(points, sketch.values[at(value)], sketch.values[at(value + 1)]))
                held.push_back(value);
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

bool isFinite(const YxGeMatrix3d& transform) {
    for (int row = 0; row < 2; ++row)
        for (const int column : {0, 1, 3})
            if (!std::isfinite(transform(row, column)))
                return false;
    return true;
}

/// The part of its length as drawn to which a line that has to turn round is led at most: steps keep twice of what an
/// edit has to leave of it.
constexpr double kVanishing = 0.03;

/// Shorter drags that a drag is divided into when nothing else leads all its way, and what they may cost together, or
/// the one that goes on where it has ended, as SolveResult::factorWork counts it: some tenths of a second.
constexpr int kLegs = 8;
constexpr long kMostLegWork = 2'500'000;

bool isTranslation(const YxGeMatrix3d& transform) {
    return transform(0, 0) == 1.0 && transform(1, 1) == 1.0 && transform(0, 1) == 0.0 && transform(1, 0) == 0.0;
}

Vec2 alongIn(const std::vector<double>& values, const SketchEntity& line) {
    const std::size_t v = at(line.firstValue);
    return {values[v + 2] - values[v], values[v + 3] - values[v + 1]};
}

std::vector<int> brokenIn(const SketchData& sketch) {
    const std::vector<double> misses = violationsOf(sketch);
    const double most = kHolds * sketch.size();
    std::vector<int> broken;
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c)
        if (!(misses[c] <= most))
            broken.push_back(static_cast<int>(c));
    return broken;
}

}  // namespace

HostDrag::Following::Following(const SketchData& drawn, const std::vector<int>& handles, const KeptSizes& sizes)
    : sketch(drawn), session(sketch, handles, Scope::rings, sizes) {}

HostDrag::HostDrag(Drawing& drawing, const AssocConstraintHeader& header, std::vector<std::string> names)
    : m_drawing(drawing),
      m_names(std::move(names)),
      m_editedIds(header.editedObjectIds),
      m_points(header.points),
      m_host(drawing.unsolved() ? HostSketch(drawing, m_names, kNearSteps) : HostSketch(drawing)) {
    begin();
}

void HostDrag::begin() {
    m_drawn = m_host.sketch;
    m_edited = m_host.numbersOf(m_drawing, m_editedIds);
    m_held = heldPoints(m_drawn, m_edited, m_points);
    m_handles = handlesOf(m_drawn, m_edited, m_held);
    m_broken = brokenIn(m_drawn);
    m_isLeaving = false;
    restart();
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

SolveResult HostDrag::step(const YxGeMatrix3d& transform) {
    if (m_steps > 0 && m_last.isSolved() && m_lastTransform == transform)
        return repeated();
    ++m_steps;
    m_lastTransform = transform;
    m_last.status = SolveStatus::unreached;  // as long as nothing else is known
    return m_last = stepAnew(transform);
}

/// Where an entity is dropped it has been shown before: what was found for there counts, on whichever way.
SolveResult HostDrag::repeated() const {
    SolveResult result = m_last;
    result.status = SolveStatus::unchanged;
    result.movements.clear();
    result.iterations = 0;
    return result;
}

/// Near the edited entities first, as the session itself does not look farther in most cases.
SolveResult HostDrag::stepAnew(const YxGeMatrix3d& transform) {
    SolveResult result = stepWithin(transform);
    if (isNearEnough(result))
        return result;
    lookFarther();
    return stepWithin(transform);
}

bool HostDrag::isNearEnough(const SolveResult& result) const {
    return !m_host.isCut || (result.isSolved() && m_miss <= kHolds * m_host.sketch.size() && !m_host.reachesBorder());
}

/// Steps are computed from the beginning, and the drawing has not changed since.
void HostDrag::lookFarther() {
    m_previews.clear();
    m_host = HostSketch(m_drawing, m_names, kAllSteps);
    begin();
}

std::optional<SolveResult> HostDrag::place(const YxGeMatrix3d& transform) {
    m_steps = 1;
    m_last.status = SolveStatus::unreached;  // no step of before is one of this drag
    m_host.sketch.values = m_host.drawn;
    SolveResult result = stepWithin(transform);
    if (!isNearEnough(result))
        return std::nullopt;
    if (result.isSolved())
        land(transform);
    return result;
}

SolveResult HostDrag::stepWithin(const YxGeMatrix3d& transform) {
    const EditRequest request = demandFor(transform);
    std::vector<double> goals;
    for (const Target& target : request.targets)
        goals.push_back(target.goal);
    SolveResult result;
    result.status = SolveStatus::unreached;
    if (!isFinite(transform) || goals.size() != m_handles.size())
        return result;  // the entities' host would not move them either
    result = follow(request, goals);
    if (m_isLeaving || m_broken.empty() || (result.isSolved() && !breaksWhatHeld()))
        return result;
    leaveBroken();
    return follow(request, goals);
}

SolveResult HostDrag::follow(const EditRequest& request, const std::vector<double>& goals) {
    m_taken = nullptr;
    SolveResult followed = m_free->session.step(goals);
    if (followed.isSolved() && m_free->session.miss() <= kHolds * m_drawn.size()) {
        m_taken = m_free.get();
        take(m_free->sketch.values, m_free->session.miss());
        return followed;
    }
    return yield(request, goals, followed);
}

/// Where the constraints do not let everything through, entities that are held whole keep their sizes if they can. What
/// the first step of a drag cannot follow to may be reached on another way; later ones must not leave theirs, but for
/// lines that stand before having no length: beyond that they go on, turned round.
SolveResult HostDrag::yield(const EditRequest& request, const std::vector<double>& goals, const SolveResult& followed) {
    if (m_held.empty()) {
        if (m_firm == nullptr)
            m_firm = std::make_unique<Following>(m_drawn, m_handles, keptExactly(m_edited));
        SolveResult kept = m_firm->session.step(goals);
        if (kept.isSolved()) {
            m_taken = m_firm.get();
            take(m_firm->sketch.values, m_firm->session.miss());
            return kept;
        }
    }
    const bool isOpen = m_steps == 1 || !followed.isSolved();
    const std::vector<int> vanishing = isOpen ? std::vector<int>() : vanishingLines(m_free->sketch.values);
    if (isOpen || !vanishing.empty()) {
        SketchData direct = m_drawn;
        const SolveRequest exactly{.targets = request.targets,
                                   .edited = request.edited,
                                   .patience = isOpen ? Patience::all : Patience::once,
                                   .namesConflicts = false,
                                   .mostWork = m_mostWork - m_work};
        SolveResult reached = solve(direct, exactly);
        m_work += reached.factorWork;
        if (reached.isSolved() && (isOpen || turnsOnly(vanishing, direct.values))) {
            take(direct.values, shortfallOf(direct, request));
            return reached;
        }
    }
    if (followed.isSolved()) {
        m_taken = m_free.get();
        take(m_free->sketch.values, m_free->session.miss());
    }
    return followed;
}

/// Lines that a step has led to where nothing is left of them.
std::vector<int> HostDrag::vanishingLines(const std::vector<double>& values) const {
    std::vector<int> lines;
    for (int number = 0; number < static_cast<int>(m_drawn.entities.size()); ++number)
        if (const SketchEntity& entity = m_drawn.entities[at(number)]; entity.kind == EntityKind::line)
            if (const double drawn = norm(alongIn(m_drawn.values, entity));
                drawn > kHolds * m_drawn.size() && norm(alongIn(values, entity)) <= kVanishing * drawn)
                lines.push_back(number);
    return lines;
}

/// No other line points away from where the session has it.
bool HostDrag::turnsOnly(const std::vector<int>& lines, const std::vector<double>& values) const {
    for (int number = 0; number < static_cast<int>(m_drawn.entities.size()); ++number)
        if (const SketchEntity& entity = m_drawn.entities[at(number)];
            entity.kind == EntityKind::line && !std::binary_search(lines.begin(), lines.end(), number) &&
            dot(alongIn(values, entity), alongIn(m_free->sketch.values, entity)) < 0.0)
            return false;
    return true;
}

std::vector<int> HostDrag::brokenNow() const {
    return m_broken.empty() ? std::vector<int>() : brokenIn(m_host.sketch);
}

std::vector<int> HostDrag::leftAlone() const {
    const std::vector<int> now = brokenNow();
    std::vector<int> left;
    std::set_intersection(now.begin(), now.end(), m_broken.begin(), m_broken.end(), std::back_inserter(left));
    return left;
}

bool HostDrag::breaksWhatHeld() const {
    const std::vector<int> now = brokenNow();
    return !std::includes(m_broken.begin(), m_broken.end(), now.begin(), now.end());
}

void HostDrag::leaveBroken() {
    for (const int c : m_broken)
        m_drawn.constraints[at(c)].active = false;
    m_isLeaving = true;
    m_host.sketch.values = m_host.drawn;
    restart();
}

/// A drag that ends short of the transform although its way leads farther than its steps is taken up once more from
/// there, and then from the beginning as several shorter ones: what is left of a short line is in the way of the first
/// of them only, and each may find another way round what would turn over.
void HostDrag::land(const YxGeMatrix3d& transform) {
    if (!goFarther(transform) || !isTranslation(transform))
        return;
    const SketchData drawn = m_drawn;
    const double miss = m_miss;
    const int steps = m_steps;
    SketchData farther = drawn;
    farther.values = m_host.sketch.values;
    farther.takeReference();
    const auto isThereIn = [&](int legs, const SketchData& from) {
        m_drawn = from;
        m_mostWork = m_work + kMostLegWork;
        return goInLegs(transform, legs) && !isRuined(drawn, m_edited, m_host.sketch.values);
    };
    const bool isThere = isThereIn(1, farther) || isThereIn(kLegs, drawn);
    m_mostWork = std::numeric_limits<long>::max();
    m_drawn = drawn;
    m_steps = steps;
    if (!isThere)
        take(farther.values, miss);
    restart();
}

bool HostDrag::goInLegs(const YxGeMatrix3d& transform, int legs) {
    for (int leg = 1; leg <= legs; ++leg) {
        YxGeMatrix3d part = transform;
        for (int row = 0; row < 2; ++row)
            part(row, 3) *= static_cast<double>(leg) / legs;
        restart();
        m_steps = 1;
        if (!stepWithin(part).isSolved())
            return false;
        goFarther(part);
        if (m_miss > kHolds * m_drawn.size())
            return false;
        m_drawn.values = m_host.sketch.values;
        m_drawn.takeReference();
    }
    return true;
}

/// Steps begin where the drag is drawn now.
void HostDrag::restart() {
    m_shaped.reset();
    m_shelf = {};
    m_firm.reset();
    m_taken = nullptr;
    m_free = std::make_unique<Following>(m_drawn, m_handles, KeptSizes{});
}

/// Where the last step is made exact; true if it fell short and its way with shapes kept leads farther than it.
bool HostDrag::goFarther(const YxGeMatrix3d& transform) {
    const EditRequest asked = demandFor(transform);
    if (m_taken != nullptr) {
        m_taken->session.land();
        take(m_taken->sketch.values, shortfallOf(m_taken->sketch, asked));
    }
    std::vector<double> led;
    if (keepShapes(asked, led))
        return false;
    const double miss = m_miss;
    if (!led.empty()) {
        SketchData farther = m_drawn;
        farther.values = std::move(led);
        if (const double left = shortfallOf(farther, asked);
            left < miss - kHolds * m_drawn.size() && isTaken(farther.values)) {
            m_miss = left;
            return true;
        }
    }
    EditRequest nearest = asked;
    for (Target& target : nearest.targets)
        target.goal = m_host.sketch.values[at(target.value)];
    keepShapes(nearest, led);
    m_miss = miss;
    return false;
}

/// False, and nothing is taken, where the request cannot be met so; then where its way has led, if it is known.
bool HostDrag::keepShapes(const EditRequest& request, std::vector<double>& led) {
    if (!m_shaped)
        m_shaped = m_drawn;
    SketchData& shaped = *m_shaped;
    const auto isShapedWith = [&](Patience patience) {
        shaped.values = m_drawn.values;
        const SolveResult result = solve(shaped, {.targets = request.targets,
                                                  .edited = request.edited,
                                                  .keepsShapes = true,
                                                  .patience = patience,
                                                  .mayDivide = false,
                                                  .namesConflicts = false,
                                                  .mostWork = m_mostWork - m_work,
                                                  .shelf = &m_shelf});
        m_work += result.factorWork;
        led = result.reached ? result.reached->values : std::vector<double>();
        return result.isSolved() && !isTurnedOver(shaped.values);
    };
    if (!(m_miss == 0.0 && isShapedWith(Patience::once)) && !isShapedWith(Patience::way))
        return false;
    if (!isTaken(shaped.values))
        return false;
    m_miss = shortfallOf(shaped, request);
    return true;
}

/// The values become the host's, unless they move what the sketch is cut off from.
bool HostDrag::isTaken(const std::vector<double>& values) {
    const std::vector<double> followed = std::exchange(m_host.sketch.values, values);
    if (m_host.isCut && m_host.reachesBorder()) {
        m_host.sketch.values = followed;
        return false;
    }
    return true;
}

/// True where a line points away from where the last step had it: that step has gone over to a branch that is not to be
/// left when the drag ends. It has not where it fell short, or has pushed a line over itself instead of turning it,
/// while the line points as it was drawn.
bool HostDrag::isTurnedOver(const std::vector<double>& values) const {
    const double same = kHolds * m_drawn.size();
    if (m_miss > same)
        return false;
    return std::any_of(m_drawn.entities.begin(), m_drawn.entities.end(), [&](const SketchEntity& entity) {
        if (entity.kind != EntityKind::line)
            return false;
        const Vec2 now = alongIn(values, entity), followed = alongIn(m_host.sketch.values, entity),
                   drawn = alongIn(m_drawn.values, entity);
        const bool isBranch = std::abs(norm(followed) - norm(drawn)) <= same;
        return dot(now, followed) < 0.0 && (isBranch || dot(now, drawn) < 0.0);
    });
}

std::vector<int> HostDrag::holdingBack(const YxGeMatrix3d& transform) const {
    const EditRequest request = demandFor(transform);
    SketchData sketch = m_drawn;
    for (const int c : leftAlone())
        sketch.constraints[at(c)].active = false;
    return solve(sketch, {.targets = request.targets, .edited = request.edited}).conflicting;
}

void HostDrag::take(const std::vector<double>& values, double miss) {
    m_host.sketch.values = values;
    m_miss = miss;
}

void HostDrag::preview(const Drawing& drawing, AssocConstraintHeader& header) {
    std::vector<int> shown = m_edited;
    std::vector<char> isEdited(m_host.sketch.entities.size(), 0);
    for (const int number : m_edited)
        isEdited[at(number)] = 1;
    for (const int number : m_host.moved())
        if (!isEdited[at(number)])
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
