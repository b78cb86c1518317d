#include "solver/src/diagnosis/FreeMotions.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "solver/src/diagnosis/Motion.h"
#include "solver/src/numerics/Iteration.h"
#include "solver/src/numerics/Stepper.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

using Matrix = Eigen::MatrixXd;
using Vector = Eigen::VectorXd;

constexpr int kMostMotions = 24;

/// Rates below this part of a random wish are rounding.
constexpr double kStill = 1e-7;

/// Sketches beyond this are not tried for motions of first derivatives only: each costs a few factorisations.
constexpr int kMostTried = 2000;

/// What remains of a motion after a try if it is one: nearly all; if it is none: nearly nothing.
constexpr double kReal = 0.3;

/// A motion is a named one when it differs by less than this part; after a try, by what the way bends.
constexpr double kNamed = 1e-6, kNamedAfterTry = 3e-2;

/// Random motions of all values, one a column, in lengths.
struct Samples {
    Matrix first;   ///< by first derivatives
    Matrix really;  ///< what is left of them when they are tried; no columns: not tried
};

class Sampler {
public:
    Sampler(const SketchData& sketch, Budget* budget)
        : m_sketch(sketch), m_budget(budget), m_system(buildSystem(sketch)) {
        for (int u = 0; u < m_system.unknownCount; ++u)
            m_system.assign(u, m_system.meanOf(u));
    }

    const EquationSystem& system() const { return m_system; }

    Samples run(int count) {
        std::vector<int> unknowns(at(m_system.unknownCount));
        std::iota(unknowns.begin(), unknowns.end(), 0);
        Subproblem subproblem(m_system, unknowns);
        for (const int u : unknowns)
            m_weights.push_back(m_system.weightOf(u));
        const std::vector<double> x = subproblem.read();
        Stepper stepper(subproblem, m_weights);
        stepper.linearise(x);
        std::fill(stepper.residual.begin(), stepper.residual.end(), 0.0);
        Samples samples{Matrix::Zero(valueCount(), count), Matrix(valueCount(), 0)};
        if (unknowns.empty() || !maySpend(m_budget) || !stepper.factorise(kLeastDamping))
            return samples;
        std::vector<std::vector<double>> steps;
        for (int k = 0; k < count; ++k) {
            const auto step = stepper.tangentialStep(randomWish());
            steps.emplace_back(step.begin(), step.end());
            samples.first.col(k) = inLengths(steps.back());
        }
        tryOut(subproblem, x, steps, samples);
        return samples;
    }

private:
    int valueCount() const { return m_system.figureValueCount; }

    std::vector<double> randomWish() {
        std::vector<double> wish;
        for (const double weight : m_weights)
            wish.push_back(m_normal(m_random) / std::sqrt(weight));
        return wish;
    }

    Vector inLengths(const std::vector<double>& step) const {
        Vector rates = Vector::Zero(valueCount());
        for (int v = 0; v < valueCount(); ++v) {
            const ValueLink& link = m_system.links[at(v)];
            if (link.unknown >= 0)
                rates[v] = m_system.metric[at(v)] * link.sign * step[at(link.unknown)];
        }
        return rates;
    }

    double wayOfTry() const {
        std::vector<int> free;
        for (int i = 0; i < static_cast<int>(m_sketch.entities.size()); ++i) {
            if (!m_sketch.entities[at(i)].fixed)
                free.push_back(i);
        }
        return wayOfShake(m_sketch, m_system, free);
    }

    void tryOut(Subproblem& subproblem, const std::vector<double>& x, const std::vector<std::vector<double>>& steps,
                Samples& samples) {
        if (subproblem.columnCount() > kMostTried)
            return;
        const double way = wayOfTry();
        Matrix really = samples.first;
        IterationLimits limits;
        limits.budget = m_budget;
        limits.mayDouble = false;
        for (std::size_t k = 0; k < steps.size(); ++k) {
            const double reach = samples.first.col(static_cast<Eigen::Index>(k)).lpNorm<Eigen::Infinity>();
            if (reach <= kStill)
                continue;
            std::vector<double> next = moved(x, steps[k], way / reach);
            const bool holds = restore(subproblem, m_weights, next, limits).isSatisfied;
            subproblem.write(x);
            if (!holds)
                return;  // nothing was found out
            for (std::size_t j = 0; j < next.size(); ++j)
                next[j] = (next[j] - x[j]) * reach / way;
            really.col(static_cast<Eigen::Index>(k)) = inLengths(next);
        }
        samples.really = really;
    }

    const SketchData& m_sketch;
    Budget* m_budget;
    EquationSystem m_system;
    std::vector<double> m_weights;
    std::mt19937 m_random{1};
    std::normal_distribution<double> m_normal;
};

/// Orthonormal columns that span what one entity can do.
struct Space {
    Matrix basis;
    double named = kNamed;
};

Space spaceOf(const Samples& samples, int firstValue, int valueCount) {
    const Matrix first = samples.first.middleRows(firstValue, valueCount);
    const Eigen::JacobiSVD<Matrix> svd(first, Eigen::ComputeThinU | Eigen::ComputeThinV);
    Eigen::Index rank = 0;
    while (rank < svd.singularValues().size() && svd.singularValues()[rank] > kStill)
        ++rank;
    const Matrix basis = svd.matrixU().leftCols(rank);
    if (samples.really.cols() == 0 || rank == 0)
        return {basis, kNamed};
    // How much is left of each motion, in the measure of the motions themselves.
    const Matrix left = svd.singularValues().head(rank).cwiseInverse().asDiagonal() * basis.transpose() *
                        samples.really.middleRows(firstValue, valueCount) * svd.matrixV().leftCols(rank);
    const Eigen::JacobiSVD<Matrix> kept(left, Eigen::ComputeFullU);
    const Eigen::Index real = (kept.singularValues().array() > kReal).count();
    if (real == rank)
        return {basis, kNamed};
    const Matrix motions = basis * svd.singularValues().head(rank).asDiagonal() * kept.matrixU().leftCols(real);
    if (real == 0)
        return {Matrix(valueCount, 0), kNamedAfterTry};
    const Eigen::HouseholderQR<Matrix> qr(motions);
    return {qr.householderQ() * Matrix::Identity(valueCount, real), kNamedAfterTry};
}

/// Where the coordinates of points and the x of vectors stand among an entity's values.
struct Layout {
    std::vector<int> points, vectors;
    int angle = -1;
};

Layout layoutOf(const SketchEntity& entity) {
    switch (entity.kind) {
        case EntityKind::line:
            return {{0, 2}, {}};
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::text:
            return {{0}, {}, 2};
        case EntityKind::circle:
        case EntityKind::point:
            return {{0}, {}};
        case EntityKind::arc:
            return {{0, 3, 5}, {}};
        case EntityKind::ellipse:
            return {{0}, {2}};
        case EntityKind::ellipticalArc:
            return {{0, 5, 7}, {2}};
        case EntityKind::spline:
        case EntityKind::polyline:
            break;
    }
    Layout layout;
    const int coordinates = entity.kind == EntityKind::spline ? entity.valueCount : 2 * entity.vertexCount;
    for (int v = 0; v < coordinates; v += 2)
        layout.points.push_back(v);
    return layout;
}

/// The motions that have names, of one entity.
class Names {
public:
    Names(const SketchData& sketch, const EquationSystem& system, int number)
        : m_entity(sketch.entities[at(number)]),
          m_layout(layoutOf(m_entity)),
          m_values(sketch.valuesOf(number)),
          m_metric(std::span(system.metric).subspan(at(m_entity.firstValue), at(m_entity.valueCount))) {}

    /// Slides first, as they say most, then turns about its own points, then sizes.
    std::vector<FreeMotion> all() const {
        std::vector<FreeMotion> motions;
        if (m_entity.kind == EntityKind::line)
            motions.push_back(slide(directionOf(0, 2)));
        motions.push_back(slide({1.0, 0.0}));
        motions.push_back(slide({0.0, 1.0}));
        if (m_entity.kind != EntityKind::circle && m_entity.kind != EntityKind::point) {
            for (const int point : m_layout.points)
                motions.push_back(turn(pointAt(point)));
        }
        if (m_entity.kind == EntityKind::line) {
            const Vec2 u = directionOf(0, 2);
            motions.push_back(end(2, u, false));
            motions.push_back(end(0, {-u.x, -u.y}, true));
        }
        if (m_entity.kind == EntityKind::circle || m_entity.kind == EntityKind::arc)
            motions.push_back(radius());
        if (m_entity.kind == EntityKind::arc) {
            motions.push_back(end(5, turned(directionOf(0, 5)), false));
            motions.push_back(end(3, turned(directionOf(0, 3)), true));
        }
        return motions;
    }

    FreeMotion slide(Vec2 direction) const {
        FreeMotion motion{MotionKind::slide, direction, {}, false, still()};
        for (const int point : m_layout.points)
            put(motion.rates, point, direction);
        return motion;
    }

    FreeMotion turn(Vec2 centre) const {
        FreeMotion motion{MotionKind::turn, {}, centre, false, still()};
        for (const int point : m_layout.points) {
            const Vec2 p = pointAt(point);
            put(motion.rates, point, turned({p.x - centre.x, p.y - centre.y}));
        }
        for (const int vector : m_layout.vectors)
            put(motion.rates, vector, turned(pointAt(vector)));
        if (m_layout.angle >= 0)
            motion.rates[at(m_layout.angle)] = 1.0;
        return motion;
    }

    /// A motion that has no such name may be a slide or a turn about some point all the same.
    FreeMotion nameOf(const Vector& rates, double tolerance) const {
        FreeMotion motion{MotionKind::other, {}, {}, false, raw(rates)};
        if (m_layout.points.empty())
            return motion;
        Matrix rigid(rates.size(), 3);
        const Vec2 base = pointAt(m_layout.points.front());
        rigid.col(0) = scaled(slide({1.0, 0.0}));
        rigid.col(1) = scaled(slide({0.0, 1.0}));
        rigid.col(2) = scaled(turn(base));
        const Vector parts = rigid.completeOrthogonalDecomposition().solve(rates);
        if ((rigid * parts - rates).norm() > tolerance * rates.norm())
            return motion;
        const double speed = std::hypot(parts[0], parts[1]);
        const double reach = rigid.col(2).norm() * std::abs(parts[2]);
        if (reach <= tolerance * rates.norm()) {
            motion.kind = MotionKind::slide;
            motion.direction = {parts[0] / speed, parts[1] / speed};
        } else {
            motion.kind = MotionKind::turn;
            motion.centre = {base.x - parts[1] / parts[2], base.y + parts[0] / parts[2]};
        }
        return motion;
    }

    /// In lengths.
    Vector scaled(const FreeMotion& motion) const {
        Vector rates(static_cast<Eigen::Index>(motion.rates.size()));
        for (std::size_t v = 0; v < motion.rates.size(); ++v)
            rates[static_cast<Eigen::Index>(v)] = motion.rates[v] * m_metric[v];
        return rates;
    }

private:
    std::vector<double> still() const { return std::vector<double>(m_values.size(), 0.0); }
    Vec2 pointAt(int value) const { return {m_values[at(value)], m_values[at(value + 1)]}; }
    static Vec2 turned(Vec2 v) { return {-v.y, v.x}; }
    static void put(std::vector<double>& rates, int value, Vec2 rate) {
        rates[at(value)] = rate.x;
        rates[at(value + 1)] = rate.y;
    }

    Vec2 directionOf(int from, int to) const {
        const Vec2 a = pointAt(from), b = pointAt(to);
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        return length > 0.0 ? Vec2{(b.x - a.x) / length, (b.y - a.y) / length} : Vec2{1.0, 0.0};
    }

    FreeMotion end(int point, Vec2 rate, bool isAtStart) const {
        FreeMotion motion{MotionKind::length, {}, {}, isAtStart, still()};
        put(motion.rates, point, rate);
        return motion;
    }

    FreeMotion radius() const {
        FreeMotion motion{MotionKind::radius, {}, {}, false, still()};
        motion.rates[2] = 1.0;
        if (m_entity.kind == EntityKind::arc) {
            put(motion.rates, 3, directionOf(0, 3));
            put(motion.rates, 5, directionOf(0, 5));
        }
        return motion;
    }

    std::vector<double> raw(const Vector& rates) const {
        std::vector<double> found = still();
        for (std::size_t v = 0; v < found.size(); ++v)
            found[v] = rates[static_cast<Eigen::Index>(v)] / m_metric[v];
        return found;
    }

    const SketchEntity& m_entity;
    Layout m_layout;
    std::span<const double> m_values;
    std::span<const double> m_metric;
};

void normalise(FreeMotion& motion, const Names& names) {
    const double longest = names.scaled(motion).lpNorm<Eigen::Infinity>();
    for (double& rate : motion.rates)
        rate /= longest;
}

/// Named motions as far as they are in the space and say something new; the rest of the space as it is.
EntityMotions motionsIn(const Space& space, const Names& names) {
    constexpr double fresh = 1e-3;  // of a unit vector: what is less adds nothing to those before
    EntityMotions found;
    Matrix rest = space.basis;
    for (FreeMotion motion : names.all()) {
        const Vector rates = names.scaled(motion).normalized();
        const Vector within = space.basis * (space.basis.transpose() * rates);
        const Vector added = rest * (rest.transpose() * within);
        if (rest.cols() == 0 || (within - rates).norm() > space.named || added.norm() < fresh)
            continue;
        normalise(motion, names);
        found.motions.push_back(std::move(motion));
        // What is left of the rest at right angles to the motion.
        const Vector gone = rest.transpose() * added.normalized();
        const Matrix turned = Eigen::HouseholderQR<Matrix>(gone).householderQ();
        rest = Matrix(rest * turned.rightCols(rest.cols() - 1));
    }
    for (Eigen::Index k = 0; k < rest.cols(); ++k) {
        FreeMotion motion = names.nameOf(rest.col(k), space.named);
        if (rest.cols() > 1)
            motion.kind = MotionKind::other;
        normalise(motion, names);
        found.motions.push_back(std::move(motion));
    }
    return found;
}

/// How many ways an entity has by itself: its values less its own rules.
int ownFreedom(const SketchEntity& entity) {
    const bool hasRules = entity.kind == EntityKind::arc || entity.kind == EntityKind::ellipticalArc;
    return entity.valueCount - (hasRules ? 2 : 0);
}

}  // namespace

std::vector<EntityMotions> freeMotionsOf(const SketchData& sketch, Budget* budget) {
    int most = 0;
    for (const SketchEntity& entity : sketch.entities)
        most = std::max(most, entity.fixed ? 0 : entity.valueCount);
    Sampler sampler(sketch, budget);
    const Samples samples = sampler.run(std::min(most, kMostMotions));
    std::vector<EntityMotions> found;
    for (int i = 0; i < static_cast<int>(sketch.entities.size()); ++i) {
        const SketchEntity& entity = sketch.entities[at(i)];
        found.emplace_back();
        if (entity.fixed || samples.first.cols() == 0)
            continue;
        const Space space = spaceOf(samples, entity.firstValue, entity.valueCount);
        found.back() = motionsIn(space, Names(sketch, sampler.system(), i));
        found.back().isFree = space.basis.cols() == ownFreedom(entity);
    }
    return found;
}

}  // namespace holdfast::solver::detail
