#pragma once

#include "apps/cli/Uses.h"

namespace holdfast::cli {

/// The form in which a command tells its findings on standard output.
struct TellingOptions {
    bool json = false;    ///< one object for all
    bool lines = false;   ///< one object for each drawing, a line each, as soon as it is known
    bool hasText = true;  ///< there is something to tell in other forms as well
    bool isForPrograms() const { return json || lines; }
};

}  // namespace holdfast::cli
