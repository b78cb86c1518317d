#include "solver/src/solving/Way.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "geometry/ConstraintKinds.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/Layout.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

/// Parts of the sketch's size within which points lie where a rigid motion brings them.
constexpr double kRigid = 1e-7;

/// Turns below this many radians are none: their centre would be far away.
constexpr double kTurns = 1e-6;

Vec2 pointIn(std::span<const double> values, int v) {
    return {values[at(v)], values[at(v + 1)]};
}

void put(std::span<double> values, int v, Vec2 p) {
    values[at(v)] = p.x;
    values[at(v + 1)] = p.y;
}

Vec2 turned(Vec2 p, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    return {c * p.x - s * p.y, s * p.x + c * p.y};
}

/// Points of entities as they lie in two sets of values.
struct Pairs {
    std::vector<Vec2> from, to;

    static Vec2 middle(const std::vector<Vec2>& points) {
        Vec2 sum{};
        for (const Vec2 p : points)
            sum = {sum.x + p.x, sum.y + p.y};
        const double n = static_cast<double>(points.size());
        return {sum.x / n, sum.y / n};
    }

    /// The turn that fits best (the plane case of Kabsch's problem).
    double angle(Vec2 a, Vec2 b) const {
        double along = 0.0, across = 0.0;
        for (std::size_t i = 0; i < from.size(); ++i) {
            const Vec2 p{from[i].x - a.x, from[i].y - a.y}, q{to[i].x - b.x, to[i].y - b.y};
            along += p.x * q.x + p.y * q.y;
            across += p.x * q.y - p.y * q.x;
        }
        return std::atan2(across, along);
    }
};

}  // namespace

std::optional<RigidMotion> RigidMotion::between(const SketchData& sketch, std::span<const int> entities,
                                                std::span<const double> from, std::span<const double> to) {
    const double size = sketch.size();
    Pairs pairs;
    for (const int number : entities) {
        const Layout layout = layoutOf(sketch.entities[at(number)]);
        for (const int v : layout.points) {
            pairs.from.push_back(pointIn(from, v));
            pairs.to.push_back(pointIn(to, v));
        }
        if (const int v = layout.vector; v >= 0) {
            const Vec2 p = pairs.from.back(), q = pairs.to.back(), u = pointIn(from, v), w = pointIn(to, v);
            pairs.from.push_back({p.x + u.x, p.y + u.y});
            pairs.to.push_back({q.x + w.x, q.y + w.y});
        }
        if (const int v = layout.direction; v >= 0) {
            const Vec2 p = pairs.from.back(), q = pairs.to.back();
            const Vec2 u = turned({size, 0.0}, from[at(v)]), w = turned({size, 0.0}, to[at(v)]);
            pairs.from.push_back({p.x + u.x, p.y + u.y});
            pairs.to.push_back({q.x + w.x, q.y + w.y});
        }
    }
    if (pairs.from.size() < 2)
        return std::nullopt;
    const Vec2 a = Pairs::middle(pairs.from), b = Pairs::middle(pairs.to);
    RigidMotion motion;
    motion.m_angle = pairs.angle(a, b);
    motion.m_shift = {b.x - a.x, b.y - a.y};
    if (std::abs(motion.m_angle) < kTurns)
        motion.m_angle = 0.0;
    // c + R (a - c) = b
    const double half = 0.5 * motion.m_angle;
    if (motion.m_angle != 0.0) {
        const Vec2 across{-motion.m_shift.y, motion.m_shift.x};
        const double k = 0.5 / std::tan(half);
        motion.m_centre = {0.5 * (a.x + b.x) + k * across.x, 0.5 * (a.y + b.y) + k * across.y};
    }
    const double near = kRigid * size;
    bool isOnePoint = true;
    for (std::size_t i = 0; i < pairs.from.size(); ++i) {
        const Vec2 p = motion.carried(pairs.from[i], 1.0);
        if (!(std::hypot(p.x - pairs.to[i].x, p.y - pairs.to[i].y) <= near))
            return std::nullopt;
        isOnePoint = isOnePoint && std::hypot(pairs.from[i].x - a.x, pairs.from[i].y - a.y) <= near;
    }
    return isOnePoint ? std::nullopt : std::optional(motion);
}

Vec2 RigidMotion::carried(Vec2 p, double part) const {
    if (m_angle == 0.0)
        return {p.x + part * m_shift.x, p.y + part * m_shift.y};
    const Vec2 q = turned({p.x - m_centre.x, p.y - m_centre.y}, part * m_angle);
    return {m_centre.x + q.x, m_centre.y + q.y};
}

void RigidMotion::carry(const SketchEntity& entity, double part, std::span<const double> from,
                        std::span<double> to) const {
    const Layout layout = layoutOf(entity);
    for (const int v : layout.points)
        put(to, v, carried(pointIn(from, v), part));
    if (layout.vector >= 0)
        put(to, layout.vector, turned(pointIn(from, layout.vector), part * m_angle));
    if (layout.direction >= 0)
        to[at(layout.direction)] = from[at(layout.direction)] + part * m_angle;
}

Way::Way(const SketchData& sketch, std::span<const Target> targets, std::span<const ValueGoal> values,
         std::span<const int> edited)
    : m_sketch(sketch),
      m_targets(targets.begin(), targets.end()),
      m_edited(edited.begin(), edited.end()),
      m_start(sketch.values) {
    for (const int number : edited) {
        const SketchEntity& entity = sketch.entities[at(number)];
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            m_start[at(v)] = sketch.reference[at(v)];
    }
    m_goals = m_start;
    for (const Target& target : m_targets) {
        m_goals[at(target.value)] = target.goal;
        m_isTrivial = m_isTrivial && target.goal == m_start[at(target.value)];
    }
    if (!m_edited.empty() && !m_isTrivial && decidedEntities({}).size() == m_edited.size())
        m_motion = RigidMotion::between(sketch, m_edited, m_start, m_goals);
    for (const ValueGoal& value : values) {
        double from = measured(sketch, value.constraint);
        const SketchConstraint& constraint = sketch.constraints[at(value.constraint)];
        if (traitsOf(constraint.type).value == ConstraintValue::angle) {
            const double period = constraint.refs.size() == 3 ? std::numbers::pi : 2 * std::numbers::pi;
            from = value.goal + std::remainder(from - value.goal, period);
        }
        m_leads.push_back({value.constraint, from, value.goal});
        m_isTrivial = m_isTrivial && from == value.goal;
    }
}

std::vector<Target> Way::targetsAt(double part) const {
    std::vector<Target> targets = m_targets;
    if (part >= 1.0)
        return targets;
    std::vector<double> carried;
    if (m_motion) {
        carried = m_start;
        for (const int number : m_edited)
            m_motion->carry(m_sketch.entities[at(number)], part, m_start, carried);
    }
    for (Target& target : targets) {
        const double from = m_start[at(target.value)];
        target.goal = m_motion ? carried[at(target.value)] : (1.0 - part) * from + part * target.goal;
    }
    return targets;
}

void Way::setValuesAt(double part, SketchData& sketch) const {
    for (const Lead& lead : m_leads)
        sketch.constraints[at(lead.constraint)].value =
            part >= 1.0 ? lead.to : (1.0 - part) * lead.from + part * lead.to;
}

ReachedPart Way::reachedAt(double part) const {
    ReachedPart reached{part};
    for (const Lead& lead : m_leads) {
        reached.dimensions.push_back({lead.constraint, (1.0 - part) * lead.from + part * lead.to});
        reached.from.push_back(lead.from);
    }
    return reached;
}

double Way::longest() const {
    double longest = 0.0;
    for (const Target& target : m_targets)
        longest = std::max(longest, std::abs(target.goal - m_start[at(target.value)]));
    for (const Lead& lead : m_leads) {
        const bool isAngle = traitsOf(m_sketch.constraints[at(lead.constraint)].type).value == ConstraintValue::angle;
        longest = std::max(longest, std::abs(lead.to - lead.from) * (isAngle ? m_sketch.size() : 1.0));
    }
    return longest;
}

double Way::smallestFactor() const {
    double factor = 1.0;
    for (const Lead& lead : m_leads)
        if (lead.from != 0.0)
            factor = std::min(factor, std::abs(lead.to / lead.from));
    return factor;
}

double Way::leastPart(double most, std::span<const Target> kept) const {
    const std::vector<int> decided = decidedEntities(kept);
    double least = most;
    while (least > std::numeric_limits<double>::epsilon() && haveShrunk(m_sketch, decided, m_goals, least))
        least *= most;
    return least;
}

/// Edited entities of which targets and kept values say all there is to know.
std::vector<int> Way::decidedEntities(std::span<const Target> kept) const {
    std::vector<char> isGiven(m_start.size(), 0);
    for (const Target& target : m_targets)
        isGiven[at(target.value)] = 1;
    for (const Target& target : kept)
        isGiven[at(target.value)] = 1;
    std::vector<int> decided;
    for (const int number : m_edited) {
        const auto first = isGiven.begin() + m_sketch.entities[at(number)].firstValue;
        if (std::all_of(first, first + m_sketch.entities[at(number)].valueCount, [](char given) { return given != 0; }))
            decided.push_back(number);
    }
    return decided;
}

std::vector<ValueGoal> missedDimensions(const SketchData& sketch) {
    std::vector<ValueGoal> missed;
    const std::vector<double> misses = violationsOf(sketch);
    const double limit = sketch.slack();
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c)
        if (misses[c] > limit && !sketch.constraints[c].own && traitsOf(sketch.constraints[c].type).isDimension())
            missed.push_back({static_cast<int>(c), sketch.constraints[c].value});
    return missed;
}

std::vector<ValueGoal> changedDimensions(const SketchData& sketch) {
    const std::vector<double> misses = violationsOf(sketch);
    const double limit = sketch.slack();
    std::vector<ValueGoal> changed;
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c) {
        if (misses[c] <= limit)
            continue;
        if (sketch.constraints[c].own || !traitsOf(sketch.constraints[c].type).isDimension())
            return {};
        changed.push_back({static_cast<int>(c), sketch.constraints[c].value});
    }
    return misses.back() <= limit ? changed : std::vector<ValueGoal>();
}

}  // namespace holdfast::solver::detail
