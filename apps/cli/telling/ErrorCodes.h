#pragma once

#include <string_view>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

// What the program's processes answer.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFaults = 1;    ///< faults of a drawing were told, and it was not written
inline constexpr int kExitBadInput = 2;  ///< wrong use, or a file or a text that cannot be read, or not be written
inline constexpr int kExitRefused = 3;   ///< an edit was read, and the drawing does not allow it

/// What went wrong, for programs.
enum class ErrorCode {
    usage,
    unreadableFile,
    badDrawing,
    badScript,
    badEdit,
    wrongWord,
    impossibleEdit,
    constraintsInTheWay,
    notSolved,
    notWritten,
    outOfMemory,
    failed
};

/// "usage", "unreadable_file", ...: once published, a name stays.
std::string_view codeName(ErrorCode code);
/// What the process answers to it.
int exitOf(ErrorCode code);

}  // namespace holdfast::cli
