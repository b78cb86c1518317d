#pragma once

#include "editing/EditContext.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// Brings formulas and what they name together again, whatever an edit has changed of either: parameters are
/// calculated anew, dimensions are led to what they are calculated to be, with everything that hangs on them.
///
/// The edit wins. A formula that names what the edit has deleted leaves its value behind as a plain number; so does the
/// formula of a dimension that the edit itself gave another value. EditError when the constraints do not let the
/// dimensions follow, and when a measured dimension goes on changing with what is calculated from it. Cost: nothing for
/// a drawing without formulas, else all formulas and what follows.
void followFormulas(EditContext& context);

}  // namespace holdfast::editing
