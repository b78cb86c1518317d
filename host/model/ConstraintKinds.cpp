#include "host/model/ConstraintKinds.h"

#include <algorithm>
#include <iterator>

#include "host/model/state/HostAccess.h"

namespace holdfast {

namespace {

template <class T>
YxGeomConstraint& addAs(YxDbAssoc2dConstraintGroup& group, const std::vector<YxConstrainedGeometry*>& geometries) {
    return HostAccess::addConstraint<T>(group, geometries);
}

template <class T>
constexpr ConstraintKind kind(std::string_view word, int fewest, int most, std::string_view places) {
    return {word, fewest, most, places, &T::desc, &addAs<T>, std::nullopt};
}

constexpr ConstraintKind dimension(std::string_view word, int fewest, int most, std::string_view places,
                                   YxDimensionConstraint::Kind measure) {
    return {word, fewest, most, places, &YxDimensionConstraint::desc, &addAs<YxDimensionConstraint>, measure};
}

using Dimension = YxDimensionConstraint;

// clang-format off
constexpr ConstraintKind kKinds[] = {
    kind<YxPointCoincidenceConstraint>("coincident", 2, 2, "two points"),
    kind<YxPointCurveConstraint>("on", 2, 2, "a point and a curve"),
    kind<YxFixedConstraint>("fixed", 1, 1, "one point or curve"),
    kind<YxHorizontalConstraint>("horizontal", 1, 2, "a line or two points"),
    kind<YxVerticalConstraint>("vertical", 1, 2, "a line or two points"),
    kind<YxParallelConstraint>("parallel", 2, 2, "two lines"),
    kind<YxPerpendicularConstraint>("perpendicular", 2, 3, "two curves, and the point where they meet if need be"),
    kind<YxCollinearConstraint>("collinear", 2, 2, "two lines"),
    kind<YxTangentConstraint>("tangent", 2, 3, "two curves, and the point where they touch if need be"),
    kind<YxConcentricConstraint>("concentric", 2, 2, "two centres"),
    kind<YxEqualLengthConstraint>("equal", 2, 2, "two lines"),
    kind<YxEqualRadiusConstraint>("equalradius", 2, 2, "two circles or arcs"),
    kind<YxSymmetricConstraint>("symmetric", 3, 3, "two geometries and the line or point between them"),
    kind<YxMidPointConstraint>("midpoint", 2, 2, "a point and a line"),
    kind<YxInternalConstraint>("helper", 2, 2, "a role, the helper and its ellipse"),
    dimension("distance", 1, 2, "one curve, or two geometries", Dimension::kDistance),
    dimension("distancex", 2, 2, "two points", Dimension::kDistanceX),
    dimension("distancey", 2, 2, "two points", Dimension::kDistanceY),
    dimension("radius", 1, 1, "one circle or arc", Dimension::kRadius),
    dimension("diameter", 1, 1, "one circle or arc", Dimension::kDiameter),
    dimension("angle", 1, 3, "one to three geometries", Dimension::kAngle),
};
// clang-format on

}  // namespace

const ConstraintKind* constraintKindNamed(std::string_view word) {
    const auto* found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const ConstraintKind& row) { return row.word == word; });
    return found == std::end(kKinds) ? nullptr : found;
}

const ConstraintKind* kindOf(const YxGeomConstraint& constraint) {
    std::optional<Dimension::Kind> measure;
    if (constraint.isKindOf(Dimension::desc()))
        measure = static_cast<const Dimension&>(constraint).kind();
    const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const ConstraintKind& row) {
        return constraint.isA() == row.type() && row.dimension == measure;
    });
    return found == std::end(kKinds) ? nullptr : found;
}

}  // namespace holdfast
