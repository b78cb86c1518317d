#pragma once

#include "solver/src/Uses.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// Entities carried along as one rigid body in the plane, bit by bit.
class RigidMotion {
public:
    /// The motion that brings the points of some entities from one set of values to another; none when they change
    /// their shape, or when there are not two different points.
    static std::optional<RigidMotion> between(const SketchData& sketch, std::span<const int> entities,
                                              std::span<const double> from, std::span<const double> to);

    /// Puts an entity to where this part of the motion carries it.
    void carry(const SketchEntity& entity, double part, std::span<const double> from, std::span<double> to) const;

    /// Of the whole motion, in radians.
    double angle() const { return m_angle; }

private:
    Vec2 carried(Vec2 p, double part) const;

    Vec2 m_centre{}, m_shift{};  ///< the shift counts when there is no angle
    double m_angle = 0.0;
};

/// The way from where a sketch stood before an edit to what the edit asks for: targets move straight, or along the
/// rigid motion that they make together; dimensions run through the values between.
class Way {
public:
    /// Dimensions begin at what they measure, edited entities where they are at the reference.
    Way(const SketchData& sketch, std::span<const Target> targets, std::span<const ValueGoal> values,
        std::span<const int> edited);

    /// Nothing is on the way: beginning and end are the same.
    bool isTrivial() const { return m_isTrivial; }

    /// The sketch's values at its beginning.
    const std::vector<double>& start() const { return m_start; }
    const std::optional<RigidMotion>& motion() const { return m_motion; }
    /// How far the farthest target has to go, or how much the dimension that changes most; angles are lengths there.
    double longest() const;
    std::vector<Target> targetsAt(double part) const;
    /// Gives the dimensions of a sketch the values that they have there.
    void setValuesAt(double part, SketchData& sketch) const;
    ReachedPart reachedAt(double part) const;

    /// The least part of what it was to which a dimension is led; 1 where none shrinks.
    double smallestFactor() const;

    /// The part of a size that has to be left of it: less than the most where the edit itself leaves less of an entity,
    /// by its targets and what else of it is kept.
    double leastPart(double most, std::span<const Target> kept) const;

private:
    std::vector<int> decidedEntities(std::span<const Target> kept) const;

    struct Lead {
        int constraint;
        double from, to;
    };

    const SketchData& m_sketch;
    std::vector<Target> m_targets;
    std::vector<int> m_edited;
    std::vector<Lead> m_leads;
    std::vector<double> m_start, m_goals;  ///< values of the sketch
    std::optional<RigidMotion> m_motion;
    bool m_isTrivial = true;
};

/// Driving dimensions that do not hold in the sketch, if they are all that does not hold; else none. Linear in the
/// sketch.
std::vector<ValueGoal> changedDimensions(const SketchData& sketch);

/// All driving dimensions that do not hold.
std::vector<ValueGoal> missedDimensions(const SketchData& sketch);

}  // namespace holdfast::solver::detail
