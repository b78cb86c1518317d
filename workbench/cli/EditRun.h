#pragma once

#include "workbench/editing/Session.h"

namespace holdfast {

/// The report on a session's edits, with the figures of its constraint network as it is now.
FateReport reportOf(const Session& session);

}  // namespace holdfast
