#pragma once

#include <vector>

#include "editing/ties/Tie.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

/// The ties among some that can stand: between places that there are, holding as drawn to a billionth of its size, and
/// saying what neither the drawing's constraints nor the ties before them say. A tie of two equations of which one is
/// said already becomes the other one. Of ties under one id the first that holds is taken; one whose constraint is
/// there takes the place of that.
///
/// They are judged together, on ranks, beside what stands within a few constraints around them; what lies farther away
/// is held, which only makes the judgement stricter. Where something seems to be said already the search goes farther,
/// at last to all that hangs together. Cost: one elimination of the equations of what was looked at, and as much again
/// for each time it grows.
std::vector<Tie> withoutImplied(Drawing& drawing, std::vector<Tie> ties);

}  // namespace holdfast::editing
