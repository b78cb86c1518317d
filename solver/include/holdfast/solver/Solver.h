#pragma once

// All of the solver's face.
#include <holdfast/solver/Constraints.h>  // IWYU pragma: export
#include <holdfast/solver/Diagnose.h>     // IWYU pragma: export
#include <holdfast/solver/Drag.h>         // IWYU pragma: export
#include <holdfast/solver/FreeMotion.h>   // IWYU pragma: export
#include <holdfast/solver/Ids.h>          // IWYU pragma: export
#include <holdfast/solver/OwnResidual.h>  // IWYU pragma: export
#include <holdfast/solver/Result.h>       // IWYU pragma: export
#include <holdfast/solver/Sketch.h>       // IWYU pragma: export
#include <holdfast/solver/Solve.h>        // IWYU pragma: export
