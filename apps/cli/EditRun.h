#pragma once

#include "apps/cli/Uses.h"
#include "editing/Session.h"

namespace holdfast::cli {

/// The report on a session's edits, with the sketches of its constraint network as it is now.
FateReport reportOf(const Session& session);

}  // namespace holdfast::cli
