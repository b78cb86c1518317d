#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "apps/window/OpenedFile.h"
#include "apps/window/Uses.h"

namespace holdfast::window {

struct WindowOptions {
    int port = 0;  ///< 0: any that is free
    bool showsBrowser = true;
    /// How long to go on after the last tab has gone: long enough for one that is loaded again.
    std::chrono::duration<double> linger{10.0};
    std::function<void(const std::string&)> tell;      ///< a line for the user
    std::function<void(const std::string&)> complain;  ///< the same, of what went wrong
};

/// Shows a drawing in the browser until its last tab has gone or the user interrupts the program. What was not saved by
/// then is kept beside the drawing. Throws std::runtime_error when there is no port to listen on. To be called on the
/// program's only thread: interrupts are caught from here on.
void showWindow(DrawingFile file, Document document, const WindowOptions& options);

}  // namespace holdfast::window
