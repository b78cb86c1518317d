#pragma once

#include <optional>
#include <string>
#include <vector>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "geometry/Vec2.h"

namespace holdfast::editing {

/// EditError when an end goes farther than 1e4 times the drawing's size to meet another curve: what lies parallel to
/// the last digit but one meets there by rounding alone. No place: nothing to refuse. `name` and `others` are the
/// curves that meet, for the message.
void refuseFarMeeting(EditContext& context, std::optional<Vec2> from, std::optional<Vec2> to, const std::string& name,
                      const std::string& others);

}  // namespace holdfast::editing
