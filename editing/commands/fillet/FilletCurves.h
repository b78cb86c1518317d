#pragma once

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "editing/commands/fillet/FilletGeometry.h"

namespace holdfast::editing {

// The host's half of fillets of curves that are no polylines.

/// A ray that gets a second end, or a construction line that gets one, becomes an entity of another kind. The host
/// puts a new entity in its place; what held on the former one goes with it. Returns the name of the new entity, or
/// that of the curve when it stays.
std::string replaceOtherKind(EditContext& context, const FilletSide& side, const Shape& shape);

/// Adds the arc between two entities as one of its own: helper geometry where both are. Linear in the drawing.
void addFilletArc(EditContext& context, const ArcShape& arc, const std::string& first, const std::string& second);

/// Fillets two curves; the arc becomes an entity of its own.
void filletTwoCurves(EditContext& context, const FilletSide& a, const FilletSide& b, double radius);

}  // namespace holdfast::editing
