#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "geometry/Angles.h"
#include "inference/InferState.h"

namespace holdfast::inference {
namespace {

/// More lines than this to be symmetric about, or without ends for points to lie on, are no axes of a drawing.
constexpr std::size_t kMostAxes = 16;

/// A line that others may be symmetric about, or that points may lie on, with a direction of length 1.
struct AxisLine {
    Place whole;
    Vec2 point, along;
    bool fixed = false;
    bool isEndless = false;

    double distanceOf(Vec2 p) const { return (p.x - point.x) * along.y - (p.y - point.y) * along.x; }
    Vec2 mirrored(Vec2 p) const {
        const double off = 2.0 * distanceOf(p);
        return {p.x - off * along.y, p.y + off * along.x};
    }
};

std::optional<AxisLine> axisOf(const Entity& entity) {
    AxisLine axis{{entity.id}, {}, {}, entity.fixed, false};
    if (const auto* line = std::get_if<LineShape>(&entity.shape)) {
        axis.point = line->start;
        axis.along = {line->end.x - line->start.x, line->end.y - line->start.y};
    } else if (const auto* xline = std::get_if<XlineShape>(&entity.shape)) {
        axis.point = xline->point;
        axis.along = xline->direction;
        axis.isEndless = true;
    } else {
        return std::nullopt;
    }
    const double length = std::hypot(axis.along.x, axis.along.y);
    if (!(length > 0.0) || (!axis.isEndless && !entity.fixed && !entity.construction))
        return std::nullopt;
    axis.along = {axis.along.x / length, axis.along.y / length};
    return axis;
}

std::vector<AxisLine> axesOf(const Document& document) {
    std::vector<AxisLine> axes;
    for (const Entity& entity : document.entities)
        if (const auto axis = axisOf(entity); axis && axes.size() < kMostAxes)
            axes.push_back(*axis);
    return axes;
}

/// One node for each point of the drawing: the others of its cluster are tied to it, or stay where they are alone.
std::vector<std::size_t> representatives(const InferState& state) {
    std::vector<std::size_t> found;
    std::vector<bool> isSeen(state.clusterCount(), false);
    for (std::size_t node = 0; node < state.nodes().size(); ++node)
        if (!isSeen[state.clusterOf(node)]) {
            isSeen[state.clusterOf(node)] = true;
            found.push_back(node);
        }
    return found;
}

struct Level {
    ConstraintType type;
    double Vec2::*across;
    double Vec2::*along;
    DisjointSets& (InferState::*levels)();
};
const std::array<Level, 2> kLevels = {{{ConstraintType::horizontal, &Vec2::y, &Vec2::x, &InferState::ys},
                                       {ConstraintType::vertical, &Vec2::x, &Vec2::y, &InferState::xs}}};

void joinAtLevel(InferState& state, const Level& level, std::size_t a, std::size_t b) {
    const Node &first = state.nodes()[a], &second = state.nodes()[b];
    DisjointSets& levels = (state.*level.levels)();
    if ((first.fixed && second.fixed) || levels.same(a, b))
        return;
    if (std::abs(first.point.*level.across - second.point.*level.across) > state.length())
        return;
    if (state.propose(level.type, {first.place, second.place}))
        levels.join(a, b);
}

/// Centres of circles at one level, each tied to the next; and ends of arcs at the level of their centre.
void inferLevelCentres(InferState& state, const Level& level) {
    std::vector<std::size_t> centres;
    for (const PlaneCurve& curve : state.curves()) {
        if (curve.centreNode == kNoNode)
            continue;
        if (!curve.hasEnds())
            centres.push_back(curve.centreNode);
    }
    const auto at = [&](std::size_t node, double Vec2::*axis) { return state.nodes()[node].point.*axis; };
    std::stable_sort(centres.begin(), centres.end(), [&](std::size_t a, std::size_t b) {
        const bool isOneLevel = std::abs(at(a, level.across) - at(b, level.across)) <= 0.0;
        return isOneLevel ? at(a, level.along) < at(b, level.along) : at(a, level.across) < at(b, level.across);
    });
    for (std::size_t i = 1; i < centres.size(); ++i)
        joinAtLevel(state, level, centres[i - 1], centres[i]);
    for (const PlaneCurve& curve : state.curves())
        if (curve.centreNode != kNoNode && curve.hasEnds())
            for (const std::size_t end : {curve.startNode, curve.endNode})
                joinAtLevel(state, level, curve.centreNode, end);
}

/// Points of the drawing in a box, from those sorted by one of their coordinates that are fewer.
class PointsInBox {
public:
    PointsInBox(const InferState& state, const std::vector<std::size_t>& nodes) : m_state(state) {
        for (std::size_t axis = 0; axis < 2; ++axis) {
            m_sorted[axis] = nodes;
            std::stable_sort(m_sorted[axis].begin(), m_sorted[axis].end(),
                             [&](std::size_t a, std::size_t b) { return at(axis, a) < at(axis, b); });
        }
    }

    template <class Visit>
    void visit(Vec2 low, Vec2 high, const Visit& take) const {
        const auto [x, xEnd] = range(0, low.x, high.x);
        const auto [y, yEnd] = range(1, low.y, high.y);
        const std::size_t axis = xEnd - x <= yEnd - y ? 0 : 1;
        for (auto i = axis == 0 ? x : y; i != (axis == 0 ? xEnd : yEnd); ++i) {
            const double other = at(1 - axis, *i);
            if (other >= (axis == 0 ? low.y : low.x) && other <= (axis == 0 ? high.y : high.x))
                take(*i);
        }
    }

private:
    using Iterator = std::vector<std::size_t>::const_iterator;

    double at(std::size_t axis, std::size_t node) const {
        const Vec2 point = m_state.nodes()[node].point;
        return axis == 0 ? point.x : point.y;
    }
    std::pair<Iterator, Iterator> range(std::size_t axis, double low, double high) const {
        const auto& sorted = m_sorted[axis];
        const auto from = std::lower_bound(sorted.begin(), sorted.end(), low,
                                           [&](std::size_t node, double value) { return at(axis, node) < value; });
        return {from, std::upper_bound(from, sorted.end(), high,
                                       [&](double value, std::size_t node) { return value < at(axis, node); })};
    }

    const InferState& m_state;
    std::array<std::vector<std::size_t>, 2> m_sorted;
};

bool isEndOf(const InferState& state, const PlaneCurve& curve, std::size_t node) {
    const std::size_t cluster = state.clusterOf(node);
    return (curve.hasEnds() &&
            (cluster == state.clusterOf(curve.startNode) || cluster == state.clusterOf(curve.endNode))) ||
           (curve.centreNode != kNoNode && cluster == state.clusterOf(curve.centreNode));
}

/// Whether a direction from its centre lies in an arc's sweep.
bool isWithin(const InferState& state, const PlaneCurve& arc, Vec2 point) {
    if (!arc.hasEnds())
        return true;
    const Shape& shape = state.document().entities[arc.entity].shape;
    const auto* whole = std::get_if<ArcShape>(&shape);
    if (whole == nullptr)
        return false;
    const double angle = std::atan2(point.y - whole->centre.y, point.x - whole->centre.x);
    double off = std::fmod(angle - whole->startAngle, kTurn);
    off += off < 0.0 ? kTurn : 0.0;
    return off <= whole->endAngle - whole->startAngle;
}

/// The box around a curve with its tolerance; nothing for one on which no points are looked for.
std::optional<std::pair<Vec2, Vec2>> boxOf(const InferState& state, const PlaneCurve& curve) {
    const double tolerance = state.length();
    if (curve.kind == PlaneCurve::Kind::line) {
        const Vec2 a = state.nodes()[curve.startNode].point, b = state.nodes()[curve.endNode].point;
        return std::pair<Vec2, Vec2>({std::min(a.x, b.x) - tolerance, std::min(a.y, b.y) - tolerance},
                                     {std::max(a.x, b.x) + tolerance, std::max(a.y, b.y) + tolerance});
    }
    if (curve.kind != PlaneCurve::Kind::round)
        return std::nullopt;
    const Vec2 centre = state.nodes()[curve.centreNode].point;
    const double reach = curve.size + tolerance;
    return std::pair<Vec2, Vec2>({centre.x - reach, centre.y - reach}, {centre.x + reach, centre.y + reach});
}

bool liesOn(const InferState& state, const PlaneCurve& curve, Vec2 point) {
    if (curve.kind == PlaneCurve::Kind::line) {
        const Vec2 a = state.nodes()[curve.startNode].point, along = curve.startDirection;
        return std::abs((point.x - a.x) * along.y - (point.y - a.y) * along.x) <= state.length() * curve.size;
    }
    const Vec2 centre = state.nodes()[curve.centreNode].point;
    return std::abs(std::hypot(point.x - centre.x, point.y - centre.y) - curve.size) <= state.length() &&
           isWithin(state, curve, point);
}

void inferPointsOnCurves(InferState& state, const std::vector<std::size_t>& points) {
    const PointsInBox index(state, points);
    for (std::size_t i = 0; i < state.curves().size(); ++i) {
        const PlaneCurve& curve = state.curves()[i];
        const auto box = boxOf(state, curve);
        if (!box)
            continue;
        index.visit(box->first, box->second, [&](std::size_t number) {
            const Node& node = state.nodes()[number];
            if (node.place.entity != curve.whole.entity && !(node.fixed && curve.fixed) &&
                !isEndOf(state, curve, number) && liesOn(state, curve, node.point))
                state.propose(ConstraintType::pointOnCurve, {node.place, curve.whole});
        });
    }
}

void inferPointsOnAxes(InferState& state, const std::vector<AxisLine>& axes, const std::vector<std::size_t>& points) {
    for (const AxisLine& axis : axes) {
        if (!axis.isEndless && !axis.fixed)
            continue;
        for (const std::size_t number : points) {
            const Node& node = state.nodes()[number];
            if (node.place.entity != axis.whole.entity && !(node.fixed && axis.fixed) &&
                std::abs(axis.distanceOf(node.point)) <= state.length())
                state.propose(ConstraintType::pointOnCurve, {node.place, axis.whole});
        }
    }
}

/// Finds a node by its place, to within the tolerance.
class NodesByPlace {
public:
    NodesByPlace(const InferState& state, const std::vector<std::size_t>& nodes)
        : m_state(state), m_cell(std::max(4.0 * state.length(), 1e-300)) {
        for (const std::size_t node : nodes)
            m_nodes.emplace(keyOf(state.nodes()[node].point), node);
    }

    std::optional<std::size_t> at(Vec2 point) const {
        const Key key = keyOf(point);
        for (std::int64_t dx = -1; dx <= 1; ++dx)
            for (std::int64_t dy = -1; dy <= 1; ++dy) {
                const auto found = m_nodes.find({key.first + dx, key.second + dy});
                if (found != m_nodes.end() && distance(m_state.nodes()[found->second].point, point) <= m_state.length())
                    return found->second;
            }
        return std::nullopt;
    }

private:
    using Key = std::pair<std::int64_t, std::int64_t>;
    Key keyOf(Vec2 point) const {
        // Beyond this a cell's number has no digits of its own any more.
        constexpr double most = 4e18;
        const auto cell = [&](double value) {
            return static_cast<std::int64_t>(std::clamp(std::floor(value / m_cell), -most, most));
        };
        return {cell(point.x), cell(point.y)};
    }

    const InferState& m_state;
    double m_cell;
    std::map<Key, std::size_t> m_nodes;
};

/// A line with mirrored ends lies with its middle on the axis, which says as much where it is upright anyway.
void inferMiddlesOnAxis(InferState& state, const AxisLine& axis) {
    for (std::size_t i = 0; i < state.curves().size(); ++i) {
        const PlaneCurve& line = state.curves()[i];
        if (line.kind != PlaneCurve::Kind::line || line.fixed)
            continue;
        const Vec2 a = state.nodes()[line.startNode].point, b = state.nodes()[line.endNode].point;
        if (std::abs(axis.distanceOf(a)) <= state.length() || distance(axis.mirrored(a), b) > state.length())
            continue;
        const bool isSegment = line.whole.kind == PlaceKind::segment;
        const Place middle{line.whole.entity, isSegment ? PlaceKind::segmentMid : PlaceKind::mid, line.whole.index};
        state.propose(ConstraintType::symmetric, {line.startPlace, line.endPlace, axis.whole});
        state.propose(ConstraintType::pointOnCurve, {middle, axis.whole});
    }
}

void inferSymmetry(InferState& state, const std::vector<AxisLine>& axes, const std::vector<std::size_t>& points) {
    const NodesByPlace index(state, points);
    for (const AxisLine& axis : axes) {
        inferMiddlesOnAxis(state, axis);
        for (const std::size_t number : points) {
            const Node& node = state.nodes()[number];
            if (axis.distanceOf(node.point) <= state.length() || node.place.entity == axis.whole.entity)
                continue;
            const auto image = index.at(axis.mirrored(node.point));
            if (!image || state.nodes()[*image].place.entity == axis.whole.entity)
                continue;
            const Node& other = state.nodes()[*image];
            if (!(node.fixed && other.fixed))
                state.propose(ConstraintType::symmetric, {node.place, other.place, axis.whole});
        }
    }
}

}  // namespace

void inferRelations(InferState& state) {
    const std::vector<std::size_t> points = representatives(state);
    const std::vector<AxisLine> axes = axesOf(state.document());
    inferPointsOnAxes(state, axes, points);
    inferPointsOnCurves(state, points);
    inferSymmetry(state, axes, points);
    for (const Level& level : kLevels)
        inferLevelCentres(state, level);
}

}  // namespace holdfast::inference
