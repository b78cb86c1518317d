#pragma once

#include <array>
#include <span>
#include <string_view>

#include "geometry/ConstraintType.h"

namespace holdfast::geometry {

/// What a place of a drawing can serve as. One place may serve as several: the end of a line is a point, a curve's end
/// and a direction.
namespace roles {
enum Role : unsigned {
    point = 1,
    curveEnd = 2,
    centrePoint = 4,
    boundedLine = 8,
    endlessLine = 16,
    circle = 32,
    arc = 64,
    ellipse = 128,
    spline = 256,
    text = 512,
    direction = 1024,
    smoothEnd = 2048,  ///< an end at which a curvature can be matched: of a line, arc, elliptical arc or spline
    lineLike = boundedLine | endlessLine,
    round = circle | arc,
    bent = round | ellipse,
    curve = lineLike | bent | spline,
    upright = lineLike | text,
    anything = ~0U
};
}  // namespace roles

/// One way in which a kind can hold: so many places, each with one of its roles.
struct ConstraintSignature {
    static constexpr int kUnused = -1;

    int places = kUnused;
    std::array<unsigned, 3> roles{};

    bool fits(std::span<const unsigned> found) const;
};

/// What the value of a dimension is; none for a kind that carries no value.
enum class ConstraintValue {
    none,
    signedLength,
    length,          ///< 0 or more
    positiveLength,  ///< above 0
    angle            ///< radians
};

/// What the solver has to make zero. Kinds that differ by an axis or a factor only have the same.
enum class ConstraintResidual {
    none,  ///< nothing of its own: it only owns others
    samePoint,
    pointOnCurve,
    fixed,
    sameCoordinate,  ///< of two points, or of the ends of a line
    parallel,
    perpendicular,
    collinear,
    tangent,
    equalSizes,
    symmetric,
    midpoint,
    ellipseHelper,
    smoothJoint,
    gap,  ///< a distance, or a length
    coordinateGap,
    radius,
    angle
};

/// Where pictures show a kind.
enum class ConstraintMark {
    atFirst,  ///< at its first place
    onPoint,  ///< there too, and unchanged ones as a spot on the point itself
    atEach,
    between,   ///< its first two places
    atCorner,  ///< where its lines meet
    atTouch,   ///< where its curves touch
    length,    ///< a dimension line
    radial,
    opening  ///< an arc between two directions
};

/// All that is particular to a kind, in plain values: the floors above look up here what they do with it.
struct ConstraintTraits {
    ConstraintType type;
    std::string_view name;      ///< in drawing files
    std::string_view label;     ///< in reports
    std::string_view hostWord;  ///< in the host's scenes; empty for kinds that own others, which are written as blocks
    std::string_view sign;      ///< name of its drawing in pictures and tables
    ConstraintMark mark = ConstraintMark::atFirst;
    ConstraintResidual residual = ConstraintResidual::none;
    int coordinate = -1;          ///< the one that it compares: 0 for x, 1 for y, -1 for neither
    double residualFactor = 1.0;  ///< times the value: what the residual takes
    ConstraintValue value = ConstraintValue::none;
    std::string_view valuePrefix{};  ///< before the value in pictures
    bool isJudgedByModule = true;    ///< false: the engine sees for itself whether it still holds after a command
    bool ownsMembers = false;        ///< it can own other constraints
    std::string_view takes{};        ///< in words: what it can hold between
    std::array<ConstraintSignature, 8> signatures{};  ///< the same in code; spare ones are unused

    bool isDimension() const { return value != ConstraintValue::none; }
    /// True when the kind can hold between places with these roles.
    bool accepts(std::span<const unsigned> found) const;
};

/// The row of one kind; takes constant time.
const ConstraintTraits& traitsOf(ConstraintType type);

/// All rows in the order of the enumerators.
std::span<const ConstraintTraits> constraintKinds();

}  // namespace holdfast::geometry
