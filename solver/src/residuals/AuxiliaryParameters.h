#pragma once

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationBuilder.h"

namespace holdfast::solver::detail {

/// A curve with a point of it given by a parameter that is an unknown of its own.
struct Contact {
    Operand jet;
    int param = -1;
    double first = 0.0, last = 1.0;
};

/// A new contact on an ellipse or a spline.
Contact contactOn(EquationBuilder& builder, CurveRef curve);

/// True for curves whose points are given by a parameter here: ellipses and splines.
bool hasContacts(const EquationBuilder& builder, CurveRef curve);

/// Puts contacts where the curves of an equation come closest to fulfilling it, at the reference and now.
void startContacts(EquationBuilder& builder, Equation form, std::initializer_list<Operand> operands,
                   std::initializer_list<Contact> contacts);

}  // namespace holdfast::solver::detail
