#pragma once

#include <cstddef>
#include <string>

#include "editing/EditError.h"
#include "editing/Uses.h"
#include "geometry/Vec2.h"

namespace holdfast::hosting {
class Drawing;
}  // namespace holdfast::hosting

namespace holdfast::editing {

/// The entity that a user names by a point, "@4,0.5".
struct EntityAt {
    std::string name;
    std::string remark{};  ///< that it is far from the point, in a sentence; empty when it is not
};

/// The entity that comes nearest to a point. RefusedWord, which points at the column, for a drawing without entities
/// and where several are equally near. Cost: linear in the drawing.
EntityAt entityAt(const Drawing& drawing, Vec2 point, std::size_t column);

}  // namespace holdfast::editing
