#include "geometry/ConstraintKinds.h"

#include <algorithm>
#include <cstddef>

namespace holdfast::geometry {
namespace {

using namespace roles;
using Type = ConstraintType;
using Value = ConstraintValue;
using Residual = ConstraintResidual;
using Mark = ConstraintMark;

// clang-format off
constexpr ConstraintTraits kKinds[] = {
    {.type = Type::coincident, .name = "coincident", .label = "coincident", .hostWord = "coincident",
     .sign = "coincident", .mark = Mark::onPoint, .residual = Residual::samePoint,
     .takes = "two points",
     .signatures = {{{2, {point, point}}}}},

    {.type = Type::concentric, .name = "concentric", .label = "concentric", .hostWord = "concentric",
     .sign = "concentric", .mark = Mark::onPoint, .residual = Residual::samePoint,
     .takes = "two centre points",
     .signatures = {{{2, {centrePoint, centrePoint}}}}},

    {.type = Type::pointOnCurve, .name = "point_on_curve", .label = "point on curve", .hostWord = "on",
     .sign = "on-curve", .mark = Mark::onPoint, .residual = Residual::pointOnCurve,
     .takes = "a point and a whole curve",
     .signatures = {{{2, {point, curve}}}}},

    {.type = Type::fixed, .name = "fixed", .label = "fixed", .hostWord = "fixed",
     .sign = "fixed", .residual = Residual::fixed,
     .takes = "one entity or point",
     .signatures = {{{1, {anything}}}}},

    {.type = Type::horizontal, .name = "horizontal", .label = "horizontal", .hostWord = "horizontal",
     .sign = "horizontal", .mark = Mark::between, .residual = Residual::sameCoordinate, .coordinate = 1,
     .takes = "one whole line or text, or two points",
     .signatures = {{{1, {upright}}, {2, {point, point}}}}},

    {.type = Type::vertical, .name = "vertical", .label = "vertical", .hostWord = "vertical",
     .sign = "vertical", .mark = Mark::between, .residual = Residual::sameCoordinate, .coordinate = 0,
     .takes = "one whole line or text, or two points",
     .signatures = {{{1, {upright}}, {2, {point, point}}}}},

    {.type = Type::parallel, .name = "parallel", .label = "parallel", .hostWord = "parallel",
     .sign = "parallel", .mark = Mark::atEach, .residual = Residual::parallel,
     .takes = "two whole lines or texts",
     .signatures = {{{2, {upright, upright}}}}},

    {.type = Type::perpendicular, .name = "perpendicular", .label = "perpendicular", .hostWord = "perpendicular",
     .sign = "perpendicular", .mark = Mark::atCorner, .residual = Residual::perpendicular,
     .takes = "two whole lines or texts, a whole line and a circle, arc or ellipse, ends of curves, or two curves and "
              "a point",
     .signatures = {{{2, {upright, upright}},
                     {2, {lineLike, bent}},
                     {2, {bent, lineLike}},
                     {2, {curveEnd, curveEnd | curve}},
                     {2, {curve, curveEnd}},
                     {3, {curve, curve, point}}}}},

    {.type = Type::collinear, .name = "collinear", .label = "collinear", .hostWord = "collinear",
     .sign = "collinear", .mark = Mark::atEach, .residual = Residual::collinear,
     .takes = "two whole lines",
     .signatures = {{{2, {lineLike, lineLike}}}}},

    {.type = Type::tangent, .name = "tangent", .label = "tangent", .hostWord = "tangent",
     .sign = "tangent", .mark = Mark::atTouch, .residual = Residual::tangent,
     .takes = "two whole curves that can touch (a line and a bent one, or two bent ones), ends of curves, or two curves "
              "and a point",
     .signatures = {{{2, {lineLike, bent | spline}},
                     {2, {bent, lineLike | bent | spline}},
                     {2, {spline, lineLike | bent}},
                     {2, {curveEnd, curveEnd | curve}},
                     {2, {curve, curveEnd}},
                     {3, {curve, curve, point}}}}},

    {.type = Type::equal, .name = "equal", .label = "equal", .hostWord = "equal",
     .sign = "equal", .mark = Mark::atEach, .residual = Residual::equalSizes,
     .takes = "two bounded lines, two circles or arcs, or two ellipses",
     .signatures = {{{2, {boundedLine, boundedLine}}, {2, {round, round}}, {2, {ellipse, ellipse}}}}},

    {.type = Type::symmetric, .name = "symmetric", .label = "symmetric", .hostWord = "symmetric",
     .sign = "symmetric", .mark = Mark::between, .residual = Residual::symmetric,
     .takes = "two points and a line or point to mirror at, or two lines or circles and a line",
     .signatures = {{{3, {point, point, lineLike | point}}, {3, {lineLike, lineLike, lineLike}},
                     {3, {round, round, lineLike}}}}},

    {.type = Type::midpoint, .name = "midpoint", .label = "midpoint", .hostWord = "midpoint",
     .sign = "midpoint", .mark = Mark::onPoint, .residual = Residual::midpoint, .isJudgedByModule = false,
     .takes = "a point and a whole bounded line",
     .signatures = {{{2, {point, boundedLine}}}}},

    {.type = Type::internal, .name = "internal", .label = "internal", .hostWord = "helper",
     .sign = "internal", .residual = Residual::ellipseHelper, .isJudgedByModule = false,
     .takes = "a helper line or point and the ellipse that it belongs to",
     .signatures = {{{2, {boundedLine | point, ellipse}}}}},

    {.type = Type::g2Smooth, .name = "g2_smooth", .label = "smooth", .hostWord = "",
     .sign = "smooth", .residual = Residual::smoothJoint, .ownsMembers = true,
     .takes = "two ends of curves, one of them a spline's",
     .signatures = {{{2, {smoothEnd, smoothEnd}}}}},

    {.type = Type::composite, .name = "composite", .label = "composite", .hostWord = "",
     .sign = "composite", .ownsMembers = true,
     .takes = "no refs of its own; its geometry is that of its members",
     .signatures = {{{0, {}}}}},

    {.type = Type::distance, .name = "distance", .label = "distance", .hostWord = "distance",
     .sign = "length", .mark = Mark::length, .residual = Residual::gap,
     .value = Value::length, .isJudgedByModule = false,
     .takes = "one bounded line or arc, or two of points, lines and circles",
     .signatures = {{{1, {boundedLine | arc}},
                     {2, {point, point | lineLike | round}},
                     {2, {lineLike, point | lineLike | round}},
                     {2, {round, point | lineLike | round}}}}},

    {.type = Type::distanceX, .name = "distance_x", .label = "distance in x", .hostWord = "distancex",
     .sign = "length", .mark = Mark::length, .residual = Residual::coordinateGap, .coordinate = 0,
     .value = Value::signedLength, .isJudgedByModule = false,
     .takes = "two points",
     .signatures = {{{2, {point, point}}}}},

    {.type = Type::distanceY, .name = "distance_y", .label = "distance in y", .hostWord = "distancey",
     .sign = "length", .mark = Mark::length, .residual = Residual::coordinateGap, .coordinate = 1,
     .value = Value::signedLength, .isJudgedByModule = false,
     .takes = "two points",
     .signatures = {{{2, {point, point}}}}},

    {.type = Type::radius, .name = "radius", .label = "radius", .hostWord = "radius",
     .sign = "radius", .mark = Mark::radial, .residual = Residual::radius,
     .value = Value::positiveLength, .valuePrefix = "R ", .isJudgedByModule = false,
     .takes = "one whole circle or arc",
     .signatures = {{{1, {round}}}}},

    {.type = Type::diameter, .name = "diameter", .label = "diameter", .hostWord = "diameter",
     .sign = "diameter", .mark = Mark::radial, .residual = Residual::radius, .residualFactor = 0.5,
     .value = Value::positiveLength, .valuePrefix = "\u2300 ", .isJudgedByModule = false,
     .takes = "one whole circle or arc",
     .signatures = {{{1, {round}}}}},

    {.type = Type::angle, .name = "angle", .label = "angle", .hostWord = "angle",
     .sign = "angle", .mark = Mark::opening, .residual = Residual::angle,
     .value = Value::angle, .isJudgedByModule = false,
     .takes = "one line or arc, two lines, or two curves and a point",
     .signatures = {{{1, {direction | arc}},
                     {2, {direction, direction}},
                     {3, {curve | direction, curve | direction, point}}}}},
};
// clang-format on

constexpr bool isInOrder() {
    std::size_t row = 0;
    for (const ConstraintTraits& kind : kKinds)
        if (static_cast<std::size_t>(kind.type) != row++)
            return false;
    return true;
}
static_assert(isInOrder(), "a kind is found by its enumerator");

}  // namespace

bool ConstraintSignature::fits(std::span<const unsigned> found) const {
    if (places < 0 || static_cast<std::size_t>(places) != found.size())
        return false;
    for (std::size_t i = 0; i < found.size(); ++i)
        if ((found[i] & roles[i]) == 0 && roles[i] != anything)
            return false;
    return true;
}

bool ConstraintTraits::accepts(std::span<const unsigned> found) const {
    return std::any_of(signatures.begin(), signatures.end(), [&](const auto& each) { return each.fits(found); });
}

const ConstraintTraits& traitsOf(ConstraintType type) {
    return kKinds[static_cast<std::size_t>(type)];
}

std::span<const ConstraintTraits> constraintKinds() {
    return kKinds;
}

}  // namespace holdfast::geometry
