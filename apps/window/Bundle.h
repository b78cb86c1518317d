#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "apps/window/Uses.h"

namespace holdfast::window {

/// The text of a file of the page, which there is.
std::string_view textOfAsset(std::string_view name);

using TextOfModule = std::function<std::string_view(std::string_view name)>;

/// A module of the page with all that it imports as one script, for a file cannot import another one from a disk.
/// Throws std::logic_error for a way of importing or exporting that it does not know.
std::string bundled(std::string_view main, const TextOfModule& textOf = textOfAsset);

/// An element under an id that holds JSON for the page's script. No HTML reader takes a part of it for the element's
/// end, no XML reader for markup. More than people look at is packed as gzip does it, in the letters of base64;
/// data-packed says so.
std::string heldJson(std::string_view id, std::string_view json);

}  // namespace holdfast::window
