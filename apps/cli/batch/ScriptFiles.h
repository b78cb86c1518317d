#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/cli/Uses.h"
#include "apps/cli/batch/Script.h"

namespace holdfast::cli {

/// For each drawing of a script those before it that have to be done first: the one that saves the file that it opens
/// or saves, and those that open what it saves. Cost: near linear.
std::vector<std::vector<std::size_t>> filesBefore(const std::vector<ScriptPart>& parts);

/// True when a drawing of a script has been saved since the script and the drawing itself were written: files are
/// written whole or not at all. Equal times, which tell nothing, do not count as since.
bool isSavedAlready(const ScriptPart& part, const std::string& script);

/// ReportedError for a script that cannot be resumed: it comes from standard input, or it saves a file that it has
/// opened or saved before, so that the times of files do not tell what was done.
void refuseToResume(const std::vector<ScriptPart>& parts, const std::string& script);

}  // namespace holdfast::cli
