#pragma once

#include <vector>

#include "editing/ties/Tie.h"
#include "editing/ties/TieScene.h"

namespace holdfast::editing {

/// What an edit has taken away although it can stand: constraints whose places have not moved, whose ends moved
/// together, or whose places another piece of the curve has now; a driving length between the outer ends of a line that
/// was cut. Of a curve on which a point lay or which another one touched, the piece at that point carries it, and
/// nothing does where that was cut away. Each under its own id. Whether they hold is for others to see.
///
/// Linear in what was deleted.
std::vector<Tie> carriedConstraints(const TieScene& scene);

/// The same, carried on by others: what was tied to an end that has moved away is tied to another one that was in the
/// same point, or to the curve that has been led on through it; what was as long as a curve that is shorter now, to
/// another one that was. Linear in what was deleted.
std::vector<Tie> constraintsOfStandIns(const TieScene& scene);

/// What was kept, but on a piece that has no longer the point on it, or the touch: the same on the other piece. Linear
/// in the constraints on the curves that were cut.
std::vector<Tie> rePointedConstraints(const TieScene& scene);

}  // namespace holdfast::editing
