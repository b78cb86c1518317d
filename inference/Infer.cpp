#include "inference/Infer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <span>

#include "geometry/Angles.h"
#include "inference/InferState.h"

namespace holdfast::inference {
namespace {

/// The nodes of every cluster, in the order of the drawing.
std::vector<std::vector<std::size_t>> nodesByCluster(const InferState& state) {
    std::vector<std::vector<std::size_t>> groups(state.clusterCount());
    for (std::size_t node = 0; node < state.nodes().size(); ++node)
        groups[state.clusterOf(node)].push_back(node);
    return groups;
}

/// Joins two nodes at one point, unless that is known, both are of one entity or none can move.
void joinNodes(InferState& state, ConstraintType type, std::size_t a, std::size_t b) {
    const Node &first = state.nodes()[a], &second = state.nodes()[b];
    if (first.place.entity == second.place.entity || (state.xs().same(a, b) && state.ys().same(a, b)))
        return;
    const bool holds = (first.fixed && second.fixed) || state.propose(type, {first.place, second.place});
    if (!holds)
        return;
    state.xs().join(a, b);
    state.ys().join(a, b);
}

/// Ends hang on the cluster's first end, centres on its first centre, and the two on each other.
void inferSharedPoints(InferState& state) {
    for (const std::vector<std::size_t>& group : nodesByCluster(state)) {
        std::size_t end = kNoNode, centre = kNoNode;
        for (const std::size_t node : group) {
            std::size_t& anchor = state.nodes()[node].isCentre ? centre : end;
            if (anchor == kNoNode)
                anchor = node;
            else
                joinNodes(state, state.nodes()[node].isCentre ? ConstraintType::concentric : ConstraintType::coincident,
                          anchor, node);
        }
        if (end != kNoNode && centre != kNoNode)
            joinNodes(state, ConstraintType::coincident, end, centre);
    }
}

/// One end of a curve with the slope of its tangent there, in [0, pi).
struct CurveEnd {
    std::size_t cluster;
    double slope;
    std::size_t curve;
    bool atStart;
};

double slopeOf(Vec2 direction) {
    double slope = std::atan2(direction.y, direction.x);
    if (slope < 0.0)
        slope += kPi;
    return slope < kPi ? slope : 0.0;
}

std::vector<CurveEnd> endsByClusterAndSlope(const InferState& state) {
    std::vector<CurveEnd> ends;
    for (std::size_t i = 0; i < state.curves().size(); ++i) {
        const PlaneCurve& curve = state.curves()[i];
        if (!curve.hasEnds())
            continue;
        ends.push_back({state.clusterOf(curve.startNode), slopeOf(curve.startDirection), i, true});
        ends.push_back({state.clusterOf(curve.endNode), slopeOf(curve.endDirection), i, false});
    }
    std::sort(ends.begin(), ends.end(), [](const CurveEnd& a, const CurveEnd& b) {
        if (a.cluster != b.cluster)
            return a.cluster < b.cluster;
        return a.slope != b.slope ? a.slope < b.slope : a.curve < b.curve;
    });
    return ends;
}

Place placeOf(const InferState& state, const CurveEnd& end) {
    const PlaneCurve& curve = state.curves()[end.curve];
    return end.atStart ? curve.startPlace : curve.endPlace;
}

bool isLine(const InferState& state, const CurveEnd& end) {
    return state.curves()[end.curve].kind == PlaneCurve::Kind::line;
}

/// Ends that meet with one tangent hang on the first line among them, or on the first curve.
void joinTangents(InferState& state, std::vector<CurveEnd> group) {
    std::sort(group.begin(), group.end(), [&](const CurveEnd& a, const CurveEnd& b) {
        const bool lineA = isLine(state, a), lineB = isLine(state, b);
        return lineA != lineB ? lineA : a.curve < b.curve;
    });
    const CurveEnd& anchor = group.front();
    for (const CurveEnd& end : std::span(group).subspan(1)) {
        const PlaneCurve &first = state.curves()[anchor.curve], &second = state.curves()[end.curve];
        if (!isLine(state, end) && anchor.curve != end.curve && !(first.fixed && second.fixed))
            state.propose(ConstraintType::tangent, {placeOf(state, anchor), placeOf(state, end)});
    }
}

/// Splits the ends of one cluster where the slope changes; slopes near pi belong to those near 0.
void inferTangentsIn(InferState& state, std::span<const CurveEnd> ends) {
    std::vector<std::vector<CurveEnd>> groups;
    for (const CurveEnd& end : ends) {
        if (groups.empty() || end.slope - groups.back().front().slope > state.angle())
            groups.emplace_back();
        groups.back().push_back(end);
    }
    if (groups.size() > 1 && groups.front().front().slope + kPi - groups.back().front().slope <= state.angle()) {
        groups.front().insert(groups.front().end(), groups.back().begin(), groups.back().end());
        groups.pop_back();
    }
    for (std::vector<CurveEnd>& group : groups)
        joinTangents(state, std::move(group));
}

void inferTangents(InferState& state) {
    const std::vector<CurveEnd> ends = endsByClusterAndSlope(state);
    std::size_t begin = 0;
    while (begin < ends.size()) {
        std::size_t end = begin;
        while (end < ends.size() && ends[end].cluster == ends[begin].cluster)
            ++end;
        inferTangentsIn(state, std::span(ends).subspan(begin, end - begin));
        begin = end;
    }
}

/// Circles and arcs of one radius hang on the first of them in the drawing.
void joinRadii(InferState& state, std::span<const std::size_t> group) {
    std::vector<std::size_t> curves(group.begin(), group.end());
    std::sort(curves.begin(), curves.end());
    const PlaneCurve& anchor = state.curves()[curves.front()];
    for (const std::size_t i : std::span(curves).subspan(1)) {
        const PlaneCurve& curve = state.curves()[i];
        if (!(anchor.fixed && curve.fixed))
            state.propose(ConstraintType::equal, {anchor.whole, curve.whole});
    }
}

void inferEqualRadii(InferState& state) {
    const std::vector<PlaneCurve>& curves = state.curves();
    std::vector<std::size_t> rounds;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        if (curves[i].kind == PlaneCurve::Kind::round)
            rounds.push_back(i);
    }
    std::stable_sort(rounds.begin(), rounds.end(),
                     [&](std::size_t a, std::size_t b) { return curves[a].size < curves[b].size; });
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= rounds.size(); ++i) {
        if (i < rounds.size() && curves[rounds[i]].size - curves[rounds[begin]].size <= state.length())
            continue;
        joinRadii(state, std::span(rounds).subspan(begin, i - begin));
        begin = i;
    }
}

}  // namespace

Inference inferConstraints(const Document& document, const InferOptions& options, const RedundancyTest& isRedundant) {
    InferState state(document, options, isRedundant);
    inferSharedPoints(state);
    inferUprightLines(state);
    inferTangents(state);
    inferDirections(state);
    inferEqualRadii(state);
    inferEqualLengths(state);
    if (options.relations)
        inferRelations(state);
    return state.take();
}

}  // namespace holdfast::inference
