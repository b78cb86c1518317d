#include "editing/FarPlaces.h"

#include "editing/EditError.h"
#include "geometry/curves/Parameters.h"

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

void refuseFarCorner(EditContext& context, const MeetingCurves& curves, const Shape& was, const Shape& is,
                     CurveEnd end) {
    if (was.index() != is.index())
        return;
    const auto at = [end](const Shape& shape) { return end == CurveEnd::start ? startPoint(shape) : endPoint(shape); };
    refuseFarMeeting(context, at(was), at(is), curves.name, curves.other);
}

}  // namespace holdfast::editing
