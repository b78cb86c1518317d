#pragma once

#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// Puts every coordinate somewhere else by at most `part` of the sketch's size, as in a drawing that was traced or
/// taken from a picture; nothing tells any more where anything was. Arcs go as a whole and take another radius, so they
/// still are arcs. What is fixed stays.
void shake(SketchData& sketch, double part, unsigned seed);

}  // namespace holdfast::solver::detail
