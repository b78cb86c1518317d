#pragma once

#include <optional>
#include <string>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "editing/commands/fillet/FilletGeometry.h"

namespace holdfast::editing {

// The host's half of fillets of curves that are no polylines.

/// A ray that gets a second end, or a construction line that gets one, becomes an entity of another kind. The host
/// puts a new entity in its place; what held on the former one goes with it. Returns the name of the new entity, or
/// that of the curve when it stays.
std::string replaceOtherKind(EditContext& context, const FilletSide& side, const Shape& shape);

/// Adds what comes between two entities as one of its own: helper geometry where both are. Linear in the drawing.
/// Returns its name.
std::string addBetween(EditContext& context, const Shape& shape, const std::string& first, const std::string& second);

/// What two curves and the entity between them are called afterwards.
struct LedTogether {
    std::string first, second;
    std::string between;  ///< empty where nothing came between them
};

/// Gives two curves the shapes in which they lead to each other, or to what comes between them, and deletes what the
/// module finds false after that.
LedTogether leadTogether(EditContext& context, const FilletSide& a, const Shape& first, const FilletSide& b,
                         const Shape& second, const std::optional<Shape>& between);

/// Fillets two curves; the arc becomes an entity of its own.
void filletTwoCurves(EditContext& context, const FilletSide& a, const FilletSide& b, double radius);

}  // namespace holdfast::editing
