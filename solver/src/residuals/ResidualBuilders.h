#pragma once

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationBuilder.h"

namespace holdfast::solver::detail {

// What the residuals of constraint kinds are made of; ResidualBuilders.cpp says which belong together. All throw
// SketchError where the constraint's entities cannot have its kind.

// What ties say at once; true when that is all.
bool tieCoincident(EquationBuilder& builder);
bool tieSameCoordinate(EquationBuilder& builder);
bool tieCoordinateGap(EquationBuilder& builder);
bool tieRadius(EquationBuilder& builder);
bool tieEqual(EquationBuilder& builder);
/// Entities that a fixed constraint holds by constants alone. A line may slide along itself, so it needs equations.
bool tieFixed(EquationBuilder& builder);
/// Ends that meet where they are tangent or smooth are the same point; never all that there is to say.
bool tieMeetingEnds(EquationBuilder& builder);

// What ties say once other ties are known; true when that is all.
bool foldGap(EquationBuilder& builder);
bool foldPointOnCurve(EquationBuilder& builder);
bool foldParallel(EquationBuilder& builder);
bool foldPerpendicular(EquationBuilder& builder);
bool foldCollinear(EquationBuilder& builder);
bool foldSymmetric(EquationBuilder& builder);
bool foldEqualSizes(EquationBuilder& builder);

// Equations for the rest.
void addSamePoint(EquationBuilder& builder);
void addPointOnCurve(EquationBuilder& builder);
void addFixed(EquationBuilder& builder);
void addSameCoordinate(EquationBuilder& builder);
void addParallel(EquationBuilder& builder);
void addPerpendicular(EquationBuilder& builder);
void addCollinear(EquationBuilder& builder);
void addTangency(EquationBuilder& builder);
void addEqualSizes(EquationBuilder& builder);
void addSymmetric(EquationBuilder& builder);
void addMidpoint(EquationBuilder& builder);
void addEllipseHelper(EquationBuilder& builder);
void addSmoothness(EquationBuilder& builder);
void addGap(EquationBuilder& builder);
void addCoordinateGap(EquationBuilder& builder);
void addRadius(EquationBuilder& builder);
void addAngle(EquationBuilder& builder);

}  // namespace holdfast::solver::detail
