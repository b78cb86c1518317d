#include "inference/InferState.h"

#include <algorithm>
#include <utility>

#include "document/Names.h"
#include "inference/PointClusters.h"

namespace holdfast::inference {
namespace {

/// A name for a constraint that does not depend on the order of its places, where the order has no meaning.
std::string keyOf(ConstraintType type, const std::vector<Place>& refs) {
    std::vector<std::string> names;
    names.reserve(refs.size());
    for (const Place& place : refs)
        names.push_back(spokenPlace(place));
    std::sort(names.begin(), names.end());
    std::string key(typeName(type));
    for (const std::string& name : names)
        key += '\n' + name;
    return key;
}

double toleranceFor(const Document& document, const InferOptions& options) {
    constexpr double millionth = 1e-6, smallest = 1e-12;
    return options.length > 0.0 ? options.length : std::max(drawnSizeOf(document) * millionth, smallest);
}

std::vector<ConstraintType> kindsOf(const InferOptions& options) {
    std::vector<ConstraintType> kinds = options.kinds;
    if (options.relations)
        kinds.insert(kinds.end(), {ConstraintType::horizontal, ConstraintType::vertical, ConstraintType::pointOnCurve,
                                   ConstraintType::symmetric});
    return kinds;
}

std::size_t countOf(const std::vector<std::size_t>& clusters) {
    return clusters.empty() ? 0 : *std::max_element(clusters.begin(), clusters.end()) + 1;
}

std::vector<Vec2> pointsOf(const std::vector<Node>& nodes) {
    std::vector<Vec2> points;
    points.reserve(nodes.size());
    for (const Node& node : nodes)
        points.push_back(node.point);
    return points;
}

/// A clamped spline starts and ends in its outer control points: two names for each of these points.
void nameOuterControlPoints(const PlaneCurve& curve, const SplineShape& spline,
                            std::unordered_map<std::string, std::size_t>& nodeAt) {
    const std::size_t degree = static_cast<std::size_t>(spline.degree), last = spline.control.size() - 1;
    const std::string& id = curve.whole.entity;
    if (spline.knots[0] == spline.knots[degree])
        nodeAt.emplace(spokenPlace({id, PlaceKind::control, 0}), curve.startNode);
    if (spline.knots[last + 1] == spline.knots.back())
        nodeAt.emplace(spokenPlace({id, PlaceKind::control, static_cast<int>(last)}), curve.endNode);
}

}  // namespace

InferState::InferState(const Document& document, const InferOptions& options, const RedundancyTest& isRedundant)
    : m_result{document, toleranceFor(document, options)},
      m_angle(options.angle),
      m_kinds(kindsOf(options)),
      m_isRedundant(isRedundant),
      m_plane(planeCurvesOf(document, 2 * m_result.length)),
      m_clusters(clusteredPoints(pointsOf(m_plane.nodes), m_result.length)),
      m_clusterCount(countOf(m_clusters)),
      m_xs(m_plane.nodes.size()),
      m_ys(m_plane.nodes.size()),
      m_upright(m_plane.curves.size(), false) {
    learnFromExisting();
}

bool InferState::wants(ConstraintType type) const {
    return std::find(m_kinds.begin(), m_kinds.end(), type) != m_kinds.end();
}

void InferState::learnFromExisting() {
    if (m_result.document.constraints.empty())
        return;
    std::unordered_map<std::string, std::size_t> nodeAt, curveAt;
    for (std::size_t i = 0; i < nodes().size(); ++i)
        nodeAt.emplace(spokenPlace(nodes()[i].place), i);
    for (std::size_t i = 0; i < curves().size(); ++i) {
        const PlaneCurve& curve = curves()[i];
        curveAt.emplace(spokenPlace(curve.whole), i);
        if (!curve.hasEnds())
            continue;
        nodeAt.emplace(spokenPlace(curve.startPlace), curve.startNode);
        nodeAt.emplace(spokenPlace(curve.endPlace), curve.endNode);
        if (const auto* spline = std::get_if<SplineShape>(&m_result.document.entities[curve.entity].shape))
            nameOuterControlPoints(curve, *spline, nodeAt);
    }
    for (const Constraint& constraint : m_result.document.constraints) {
        m_ids.insert(constraint.id);
        m_known.insert(keyOf(constraint.type, constraint.refs));
        if (constraint.active)
            learn(constraint, nodeAt, curveAt);
    }
}

void InferState::learn(const Constraint& constraint, const std::unordered_map<std::string, std::size_t>& nodeAt,
                       const std::unordered_map<std::string, std::size_t>& curveAt) {
    const ConstraintType type = constraint.type;
    const bool samePoint = type == ConstraintType::coincident || type == ConstraintType::concentric;
    if (!samePoint && type != ConstraintType::horizontal && type != ConstraintType::vertical)
        return;
    std::size_t first = kNoNode, second = kNoNode;
    if (constraint.refs.size() == 1) {
        const auto curve = curveAt.find(spokenPlace(constraint.refs[0]));
        if (curve == curveAt.end())
            return;
        first = curves()[curve->second].startNode;
        second = curves()[curve->second].endNode;
        setUpright(curve->second);
    } else {
        const auto a = nodeAt.find(spokenPlace(constraint.refs[0])), b = nodeAt.find(spokenPlace(constraint.refs[1]));
        if (a == nodeAt.end() || b == nodeAt.end())
            return;
        first = a->second;
        second = b->second;
    }
    if (samePoint || type == ConstraintType::vertical)
        m_xs.join(first, second);
    if (samePoint || type == ConstraintType::horizontal)
        m_ys.join(first, second);
}

std::string InferState::freshId() {
    std::string id;
    do {
        id = "c" + std::to_string(m_nextId++);
    } while (m_ids.contains(id));
    return id;
}

bool InferState::propose(ConstraintType type, std::vector<Place> refs) {
    if (!wants(type))
        return false;
    if (!m_known.insert(keyOf(type, refs)).second)
        return true;
    Constraint constraint;
    constraint.type = type;
    constraint.refs = std::move(refs);
    if (m_isRedundant && m_isRedundant(m_result.document, constraint)) {
        ++m_result.redundant;
        return true;
    }
    constraint.id = freshId();
    m_result.document.constraints.push_back(std::move(constraint));
    ++m_result.added;
    return true;
}

}  // namespace holdfast::inference
