#pragma once

#include <cstddef>

#include "apps/cli/Uses.h"
#include "apps/cli/telling/ErrorReport.h"
#include "editing/Session.h"

namespace holdfast::cli {

/// The report on a session's edits, with the sketches of its constraint network as it is now.
FateReport reportOf(const Session& session);

/// What programs are to be told of an edit that was refused; of its file and line the caller knows.
ErrorReport reportOf(const EditResult& refused, std::size_t edit);

}  // namespace holdfast::cli
