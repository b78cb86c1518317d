#include "solver/src/residuals/ResidualBuilders.h"

#include <cstddef>

namespace holdfast::solver::detail {

namespace {

/// How one residual is built; null where there is nothing to do.
struct ResidualBuilder {
    ConstraintResidual residual;
    bool (*tie)(EquationBuilder&);
    bool (*fold)(EquationBuilder&);
    void (*add)(EquationBuilder&);
};

// clang-format off
constexpr ResidualBuilder kBuilders[] = {
    // residual                     ties at once         ties later          equations
    {ConstraintResidual::none,            nullptr,             nullptr,            nullptr},
    {ConstraintResidual::samePoint,       &tieCoincident,      nullptr,            &addSamePoint},
    {ConstraintResidual::pointOnCurve,    nullptr,             &foldPointOnCurve,  &addPointOnCurve},
    {ConstraintResidual::fixed,           &tieFixed,           nullptr,            &addFixed},
    {ConstraintResidual::sameCoordinate,  &tieSameCoordinate,  nullptr,            &addSameCoordinate},
    {ConstraintResidual::parallel,        nullptr,             &foldParallel,      &addParallel},
    {ConstraintResidual::perpendicular,   &tieMeetingEnds,     &foldPerpendicular, &addPerpendicular},
    {ConstraintResidual::collinear,       nullptr,             &foldCollinear,     &addCollinear},
    {ConstraintResidual::tangent,         &tieMeetingEnds,     nullptr,            &addTangency},
    {ConstraintResidual::equalSizes,      &tieEqual,           &foldEqualSizes,    &addEqualSizes},
    {ConstraintResidual::symmetric,       nullptr,             &foldSymmetric,     &addSymmetric},
    {ConstraintResidual::midpoint,        nullptr,             nullptr,            &addMidpoint},
    {ConstraintResidual::ellipseHelper,   nullptr,             nullptr,            &addEllipseHelper},
    {ConstraintResidual::smoothJoint,     &tieMeetingEnds,     nullptr,            &addSmoothness},
    {ConstraintResidual::gap,             nullptr,             &foldGap,           &addGap},
    {ConstraintResidual::coordinateGap,   &tieCoordinateGap,   nullptr,            &addCoordinateGap},
    {ConstraintResidual::radius,          &tieRadius,          nullptr,            &addRadius},
    {ConstraintResidual::angle,           nullptr,             nullptr,            &addAngle},
};
// clang-format on

constexpr bool isInOrder() {
    std::size_t row = 0;
    for (const ResidualBuilder& builder : kBuilders)
        if (static_cast<std::size_t>(builder.residual) != row++)
            return false;
    return row == static_cast<std::size_t>(ConstraintResidual::angle) + 1;
}
static_assert(isInOrder(), "a residual is found by its enumerator");

const ResidualBuilder& builderFor(const EquationBuilder& builder) {
    return kBuilders[static_cast<std::size_t>(builder.traits().residual)];
}

}  // namespace

bool tieNow(EquationBuilder& builder) {
    const auto tie = builderFor(builder).tie;
    return tie != nullptr && tie(builder);
}

bool fold(EquationBuilder& builder) {
    const auto fold = builderFor(builder).fold;
    return fold != nullptr && fold(builder);
}

void addEquations(EquationBuilder& builder) {
    if (const auto add = builderFor(builder).add)
        add(builder);
}

}  // namespace holdfast::solver::detail
