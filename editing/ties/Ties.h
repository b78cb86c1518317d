#pragma once

#include <vector>

#include "document/DrawingChange.h"
#include "editing/Edit.h"
#include "editing/EditContext.h"
#include "editing/ties/Tie.h"

namespace holdfast::editing {

/// Gives the drawing what an edit that is done allows besides what the module has left: ends on their cutters, pieces
/// in line, constraints that still hold or that another piece carries, what joins the curves of a fillet. Nothing moves
/// for it, nothing is said twice, and what the user has deleted himself does not come back.
///
/// Each is judged before the first is added: what the solver cannot read gets none. Cost: that of withoutImplied, and
/// what the edit touched.
TieReasons giveTies(EditContext& context, const Edit& edit, const EditedPart& part,
                    const std::vector<Constraint>& deletedByUser);

}  // namespace holdfast::editing
