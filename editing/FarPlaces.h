#pragma once

#include <optional>
#include <string>
#include <vector>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "geometry/CurveEnd.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

/// EditError when an end goes farther than 1e4 times the drawing's size to meet another curve: what lies parallel to
/// the last digit but one meets there by rounding alone. No place: nothing to refuse. `name` and `others` are the
/// curves that meet, for the message.
void refuseFarMeeting(EditContext& context, std::optional<Vec2> from, std::optional<Vec2> to, const std::string& name,
                      const std::string& others);

/// Two curves that meet, for messages.
struct MeetingCurves {
    std::string name, other;
};

/// The same for a curve that has been led to a corner by one of its ends. A curve of another kind than before was
/// endless, and has been picked where it is to stay: it is never refused.
void refuseFarCorner(EditContext& context, const MeetingCurves& curves, const Shape& was, const Shape& is,
                     CurveEnd end);

}  // namespace holdfast::editing
