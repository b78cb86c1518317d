#include "editing/FarPlaces.h"

#include "editing/EditError.h"

namespace holdfast::editing {

namespace {

/// Sizes of the drawing beyond which nobody looks for a point; the solver's bound is the same.
constexpr double kFar = 1e4;

}  // namespace

void refuseFarMeeting(EditContext& context, std::optional<Vec2> from, std::optional<Vec2> to, const std::string& name,
                      const std::string& others) {
    if (!from || !to || distance(*from, *to) <= kFar * context.drawing.extent())
        return;
    throw EditError(name + " and " + others + " are as good as parallel: they would meet " +
                    spoken(distance(*from, *to)) + " away");
}

}  // namespace holdfast::editing
