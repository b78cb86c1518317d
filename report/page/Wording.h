#pragma once

#include <string>
#include <string_view>

#include "document/Document.h"
#include "editing/fates/FateReport.h"
#include "report/Uses.h"

/// The words in which a report speaks of a drawing.
namespace holdfast::report {

/// "coincident", "point on curve", "distance in x", ...
std::string_view kindName(ConstraintType type);

/// "line", "elliptical arc", "construction line", ...
std::string_view kindName(const Shape& shape);

/// All places of a constraint, separated by two spaces.
std::string placeNames(const Constraint& constraint);

/// The value of a dimension as a drawing shows it, "12.5", "R 5", "⌀ 8", "30°", in brackets where it only measures;
/// empty for anything but a dimension with a value.
std::string valueText(const Constraint& constraint);

/// The same as pictures show it, where coordinates have no sign: it shows in where the dimension lies.
std::string labelText(Constraint constraint);

/// A residual as a length; what is nothing for a drawing is told as that, since it is another one on every machine:
/// "below 1e-08".
std::string residualText(double residual);

/// A number in four digits at most.
std::string shortNumber(double value);

/// "length", "major radius", ...
std::string sizeWords(SizeKind size);

/// The number and the noun that goes with it: "1 constraint", "3 constraints", "2 entities".
std::string counted(std::size_t count, std::string_view noun);

}  // namespace holdfast::report
