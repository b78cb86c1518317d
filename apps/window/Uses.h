#pragma once

#include <nlohmann/json_fwd.hpp>

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}
namespace holdfast::document {}
namespace holdfast::formats {}
namespace holdfast::hosting {}
namespace holdfast::editing {}
namespace holdfast::report {}
namespace holdfast::forms {}

namespace holdfast::window {
using namespace geometry;
using namespace document;
using namespace formats;
using namespace hosting;
using namespace editing;
using namespace report;
using namespace forms;

using Json = nlohmann::ordered_json;  ///< tells fields in the order in which they were given
}  // namespace holdfast::window
