#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <set>
#include <span>
#include <utility>

#include "geometry/Angles.h"
#include "inference/InferState.h"

namespace holdfast::inference {
namespace {

/// One of the two directions of the drawing's axes, with what it means for lines along it.
struct Axis {
    ConstraintType type;
    double Vec2::*along;
    double Vec2::*across;
    DisjointSets& (InferState::*levels)();  ///< of the coordinate that is the same all along
};

const std::array<Axis, 2> kAxes = {{{ConstraintType::horizontal, &Vec2::x, &Vec2::y, &InferState::ys},
                                    {ConstraintType::vertical, &Vec2::y, &Vec2::x, &InferState::xs}}};

bool isLine(const PlaneCurve& curve) {
    return curve.kind == PlaneCurve::Kind::line;
}

bool runsAlong(const InferState& state, const PlaneCurve& line, const Axis& axis) {
    const double off = std::abs(line.startDirection.*axis.across);
    return off <= state.length() && off <= state.angle() * std::abs(line.startDirection.*axis.along);
}

Vec2 pointOf(const InferState& state, std::size_t node) {
    return state.nodes()[node].point;
}

/// Both nodes of a line in the order along an axis.
std::pair<std::size_t, std::size_t> nodesAlong(const InferState& state, const PlaneCurve& line, const Axis& axis) {
    if (pointOf(state, line.startNode).*axis.along <= pointOf(state, line.endNode).*axis.along)
        return {line.startNode, line.endNode};
    return {line.endNode, line.startNode};
}

Place placeOf(const PlaneCurve& line, std::size_t node) {
    return node == line.startNode ? line.startPlace : line.endPlace;
}

/// The line itself is upright; where both ends are at one level already, nothing needs to be said.
std::vector<std::size_t> inferLinesAlong(InferState& state, const Axis& axis) {
    std::vector<std::size_t> lines;
    for (std::size_t i = 0; i < state.curves().size(); ++i) {
        const PlaneCurve& line = state.curves()[i];
        if (!isLine(line) || !runsAlong(state, line, axis))
            continue;
        DisjointSets& levels = (state.*axis.levels)();
        const bool holds =
            line.fixed || levels.same(line.startNode, line.endNode) || state.propose(axis.type, {line.whole});
        if (!holds)
            continue;
        levels.join(line.startNode, line.endNode);
        state.setUpright(i);
        lines.push_back(i);
    }
    return lines;
}

/// Lines at one level are joined one after the other, each to the nearest end of the one before.
void joinLevel(InferState& state, const Axis& axis, std::vector<std::size_t> lines) {
    const auto begins = [&](std::size_t i) {
        return pointOf(state, nodesAlong(state, state.curves()[i], axis).first).*axis.along;
    };
    std::stable_sort(lines.begin(), lines.end(), [&](std::size_t a, std::size_t b) { return begins(a) < begins(b); });
    DisjointSets& levels = (state.*axis.levels)();
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const PlaneCurve &before = state.curves()[lines[i - 1]], &line = state.curves()[lines[i]];
        const std::size_t a = nodesAlong(state, before, axis).second, b = nodesAlong(state, line, axis).first;
        if (levels.same(a, b))
            continue;
        const bool bothFixed = before.fixed && line.fixed;
        if (bothFixed || state.propose(axis.type, {placeOf(before, a), placeOf(line, b)}))
            levels.join(a, b);
    }
}

/// Horizontal lines at one height (vertical ones at one x) lie in line with each other.
void inferLevels(InferState& state, const Axis& axis, std::vector<std::size_t> lines) {
    const auto level = [&](std::size_t i) { return pointOf(state, state.curves()[i].startNode).*axis.across; };
    std::stable_sort(lines.begin(), lines.end(), [&](std::size_t a, std::size_t b) { return level(a) < level(b); });
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= lines.size(); ++i) {
        if (i < lines.size() && level(lines[i]) - level(lines[begin]) <= state.length())
            continue;
        const auto first = lines.begin() + static_cast<std::ptrdiff_t>(begin);
        joinLevel(state, axis, {first, lines.begin() + static_cast<std::ptrdiff_t>(i)});
        begin = i;
    }
}

/// A slanted line with its slope, in [0, pi).
struct Slanted {
    std::size_t curve;
    double slope;
};

std::vector<Slanted> slantedLines(const InferState& state) {
    std::vector<Slanted> lines;
    for (std::size_t i = 0; i < state.curves().size(); ++i) {
        const PlaneCurve& line = state.curves()[i];
        if (!isLine(line) || state.isUpright(i))
            continue;
        const double slope = std::atan2(line.startDirection.y, line.startDirection.x);
        lines.push_back({i, slope < 0.0 ? slope + kPi : slope});
    }
    std::stable_sort(lines.begin(), lines.end(), [](const Slanted& a, const Slanted& b) { return a.slope < b.slope; });
    return lines;
}

/// True when the shorter of two lines would not leave the tolerance if it were turned to the other's direction.
bool areParallel(const InferState& state, const Slanted& a, const Slanted& b) {
    const double turn = std::abs(b.slope - a.slope);
    const double shorter = std::min(state.curves()[a.curve].size, state.curves()[b.curve].size);
    return turn <= state.angle() && turn * shorter <= state.length();
}

using Family = std::vector<Slanted>;

/// Families of parallel lines, in the order of their slopes.
std::vector<Family> familiesOf(const InferState& state) {
    std::vector<Family> families;
    for (const Slanted& line : slantedLines(state)) {
        if (families.empty() || !areParallel(state, families.back().front(), line))
            families.emplace_back();
        families.back().push_back(line);
    }
    return families;
}

/// Where a line lies in the frame of its family: how far along and how far across.
struct Position {
    std::size_t curve;
    double along, across;
};

std::vector<Position> positionsOf(const InferState& state, const Family& family) {
    const double c = std::cos(family.front().slope), s = std::sin(family.front().slope);
    std::vector<Position> positions;
    for (const Slanted& line : family) {
        const PlaneCurve& curve = state.curves()[line.curve];
        const Vec2 a = pointOf(state, curve.startNode), b = pointOf(state, curve.endNode);
        const Vec2 middle{(a.x + b.x) / 2, (a.y + b.y) / 2};
        positions.push_back({line.curve, c * middle.x + s * middle.y, c * middle.y - s * middle.x});
    }
    std::stable_sort(positions.begin(), positions.end(),
                     [](const Position& a, const Position& b) { return a.across < b.across; });
    return positions;
}

bool shareAnEnd(const InferState& state, const PlaneCurve& a, const PlaneCurve& b) {
    for (const std::size_t p : {a.startNode, a.endNode}) {
        for (const std::size_t q : {b.startNode, b.endNode}) {
            if (state.clusterOf(p) == state.clusterOf(q))
                return true;
        }
    }
    return false;
}

/// Lines on one unbounded line, one after the other; of two that share a point, parallel says as much as collinear.
void joinInLine(InferState& state, std::vector<Position> lines) {
    std::stable_sort(lines.begin(), lines.end(),
                     [](const Position& a, const Position& b) { return a.along < b.along; });
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const PlaneCurve &before = state.curves()[lines[i - 1].curve], &line = state.curves()[lines[i].curve];
        if (before.fixed && line.fixed)
            continue;
        const bool joined = shareAnEnd(state, before, line) && state.wants(ConstraintType::parallel);
        state.propose(joined ? ConstraintType::parallel : ConstraintType::collinear, {before.whole, line.whole});
    }
}

/// The lines of a family, those in line with each other joined, and each such line joined to the family's first.
void joinFamily(InferState& state, const Family& family) {
    const std::vector<Position> positions = positionsOf(state, family);
    const PlaneCurve* anchor = nullptr;
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= positions.size(); ++i) {
        if (i < positions.size() && positions[i].across - positions[begin].across <= state.length())
            continue;
        const auto first = positions.begin() + static_cast<std::ptrdiff_t>(begin);
        std::vector<Position> inLine(first, positions.begin() + static_cast<std::ptrdiff_t>(i));
        const auto leader = std::min_element(inLine.begin(), inLine.end(),
                                             [](const Position& a, const Position& b) { return a.curve < b.curve; });
        const PlaneCurve& line = state.curves()[leader->curve];
        if (anchor != nullptr && !(anchor->fixed && line.fixed))
            state.propose(ConstraintType::parallel, {anchor->whole, line.whole});
        anchor = anchor == nullptr ? &line : anchor;
        joinInLine(state, std::move(inLine));
        begin = i;
    }
}

/// A pair of lines of two families that meet in a corner, or their first lines.
std::pair<std::size_t, std::size_t> pairOf(const InferState& state, const Family& a, const Family& b) {
    std::vector<std::pair<std::size_t, std::size_t>> corners;  // cluster and line
    for (const Slanted& line : a) {
        corners.emplace_back(state.clusterOf(state.curves()[line.curve].startNode), line.curve);
        corners.emplace_back(state.clusterOf(state.curves()[line.curve].endNode), line.curve);
    }
    std::sort(corners.begin(), corners.end());
    for (const Slanted& line : b) {
        for (const std::size_t node : {state.curves()[line.curve].startNode, state.curves()[line.curve].endNode}) {
            const auto corner = std::lower_bound(corners.begin(), corners.end(),
                                                 std::pair<std::size_t, std::size_t>(state.clusterOf(node), 0));
            if (corner != corners.end() && corner->first == state.clusterOf(node))
                return {corner->second, line.curve};
        }
    }
    return {a.front().curve, b.front().curve};
}

/// One perpendicular for every two families at a right angle; families are sorted by slope.
void inferPerpendicular(InferState& state, const std::vector<Family>& families) {
    for (const Family& family : families) {
        const double across = family.front().slope + kPi / 2;
        const auto other = std::lower_bound(families.begin(), families.end(), across - state.angle(),
                                            [](const Family& f, double slope) { return f.front().slope < slope; });
        if (other == families.end() || other->front().slope > across + state.angle())
            continue;
        const auto [a, b] = pairOf(state, family, *other);
        const PlaneCurve &first = state.curves()[a], &second = state.curves()[b];
        if (!(first.fixed && second.fixed))
            state.propose(ConstraintType::perpendicular, {first.whole, second.whole});
    }
}

/// What fixes the length of an upright line besides itself: the two levels that its ends stand on.
using Span = std::array<std::size_t, 3>;

Span spanOf(InferState& state, std::size_t i) {
    const PlaneCurve& line = state.curves()[i];
    if (!state.isUpright(i))
        return {2, i, i};
    const bool isHorizontal = std::abs(line.startDirection.x) > std::abs(line.startDirection.y);
    DisjointSets& levels = isHorizontal ? state.xs() : state.ys();
    const std::size_t a = levels.find(line.startNode), b = levels.find(line.endNode);
    return {isHorizontal ? 0U : 1U, std::min(a, b), std::max(a, b)};
}

/// Lines of one length hang on the first of them; lines between the same two levels are equal already.
void joinLengths(InferState& state, std::vector<std::size_t> lines) {
    std::sort(lines.begin(), lines.end());
    const PlaneCurve& anchor = state.curves()[lines.front()];
    std::set<Span> held;
    bool fixedIsHeld = false;
    for (const std::size_t i : lines) {
        const PlaneCurve& line = state.curves()[i];
        const bool isNew = held.insert(spanOf(state, i)).second;
        const bool isFixedAgain = line.fixed && std::exchange(fixedIsHeld, fixedIsHeld || line.fixed);
        if (i != lines.front() && isNew && !isFixedAgain)
            state.propose(ConstraintType::equal, {anchor.whole, line.whole});
    }
}

}  // namespace

void inferUprightLines(InferState& state) {
    std::array<std::vector<std::size_t>, 2> lines;
    for (std::size_t i = 0; i < kAxes.size(); ++i)
        lines[i] = inferLinesAlong(state, kAxes[i]);
    if (!state.wants(ConstraintType::collinear))
        return;
    for (std::size_t i = 0; i < kAxes.size(); ++i)
        inferLevels(state, kAxes[i], std::move(lines[i]));
}

void inferDirections(InferState& state) {
    const std::vector<Family> families = familiesOf(state);
    for (const Family& family : families)
        joinFamily(state, family);
    inferPerpendicular(state, families);
}

void inferEqualLengths(InferState& state) {
    const std::vector<PlaneCurve>& curves = state.curves();
    std::vector<std::size_t> lines;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        if (isLine(curves[i]))
            lines.push_back(i);
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [&](std::size_t a, std::size_t b) { return curves[a].size < curves[b].size; });
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= lines.size(); ++i) {
        if (i < lines.size() && curves[lines[i]].size - curves[lines[begin]].size <= state.length())
            continue;
        const auto first = lines.begin() + static_cast<std::ptrdiff_t>(begin);
        joinLengths(state, {first, lines.begin() + static_cast<std::ptrdiff_t>(i)});
        begin = i;
    }
}

}  // namespace holdfast::inference
