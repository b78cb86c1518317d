#pragma once

#include "workbench/evaluator/HostFigure.h"

namespace holdfast {

/// The constraints that no choice of the other elements can satisfy when some elements are transformed as they are.
/// In drawing order; nothing is moved.
std::vector<int> constraintsAgainst(const HostFigure& host, const std::vector<int>& edited,
                                    const YxGeMatrix3d& transform);

}  // namespace holdfast
