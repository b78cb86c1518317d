#pragma once

#include <string>
#include <string_view>

#include "host/model/Scene.h"

namespace holdfast {

/// "a", "a.end", "p[2].start", "s.control3", "t.position" as a place on an entity of the scene. Throws
/// std::invalid_argument that says what is wrong with the name.
BuiltPlace scenePlace(const Scene& scene, std::string_view text);

/// ".end", ".control3": what follows the curve's name.
std::string pointSuffix(const YxConstrainedImplicitPoint& point);

}  // namespace holdfast
