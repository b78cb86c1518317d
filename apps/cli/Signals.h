#pragma once

#include "apps/cli/Uses.h"

namespace holdfast::cli {

/// What cannot be told or written is an error from now on, and not the end of the program: a closed pipe, a limit of
/// file sizes. A standard stream that was closed from the beginning stays so: else the first file that is opened would
/// take its place, and what is told would go into it.
void keepStandardStreams();

/// From now on SIGINT, SIGTERM and SIGHUP take away the files that are on their way to their places, and then end the
/// program as they would have. One that the program was started to ignore is ignored further on. To be called once, on
/// the program's only thread.
void endCleanlyOnSignals();

}  // namespace holdfast::cli
