#pragma once

#include "document/Document.h"
#include "editing/Session.h"

namespace holdfast::editing {

/// By how much a cut or a fillet has to leave a drawing freer, whatever is tied: the numbers of its new curves without
/// what they need not choose (pieces stay on one curve, new ends on their edges, an arc touches both its curves), and
/// what was held by the constraints that the cut makes false. Below 0 where it ties what was free.
///
/// What those constraints held is counted in the drawing as it was: with them it has so much less freedom. Cost: two
/// diagnoses of the drawing, four of its curves alone.
int needOfCut(const EditResult& result, const Document& before, const Document& after);

}  // namespace holdfast::editing
