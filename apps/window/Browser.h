#pragma once

#include <string>

#include "apps/window/Uses.h"

namespace holdfast::window {

/// Asks the desktop to show an address: the browser that BROWSER names, else what the system opens addresses with.
/// Returns at once; false when there is no such program.
bool showInBrowser(const std::string& address);

}  // namespace holdfast::window
