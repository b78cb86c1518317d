#pragma once

#include "tests/reach/Trial.h"

namespace holdfast::reach {

/// The worst of all constraints and of the elements' own rules, as a part of the size that the sketch had before.
double worstResidual(const SketchData& before, const SketchData& after);

/// True when nothing has collapsed below a hundredth of what it was, no arc, bulge or tangency has turned over and
/// nothing lies farther away than 1e4 times the drawing's size. Both have the same elements.
bool isSoundAfter(const SketchData& before, const SketchData& after);

/// How many lengths of lines and radii changed although the same edit with them as constants can be solved, those that
/// did not change held as well. `after` has the constraints and values behind the edit; targets are what it asked for.
/// Costs a solve for each changed size, of which a dozen are tried, fewer in a large drawing.
int sizesInVain(const SketchData& before, const SketchData& after, const std::vector<Target>& targets);

/// True when the named constraints cannot hold together, with the targets, and any one of them left out frees the
/// others, in one go, on a way or from another place. Constraints are those of `after`, values those of the drawing
/// before.
bool isProvenConflict(const SketchData& before, const SketchData& asked, const std::vector<int>& constraints);

}  // namespace holdfast::reach
