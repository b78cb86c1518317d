#pragma once

#include <string>
#include <vector>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

/// The edits of one drawing in a script.
struct ScriptPart {
    std::string drawing;
    int line = 0;  ///< where it is opened, counted from 1
    std::vector<std::string> edits;
    std::vector<int> lines;  ///< where each edit stands, counted from 1
    std::vector<bool> ties;  ///< whether each edit gives ties
    std::string output;      ///< where the edited drawing goes; empty: nowhere
};

/// Reads a file of edits, one a line. "open DRAWING" begins a drawing, "save DRAWING" ends it and says where its result
/// goes; both names take the rest of the line, in quotes or not, and are relative to the script. After "ties off" edits
/// give no ties, after "ties on" they do again; each drawing begins with ties. Empty lines and what follows a # at the
/// beginning of a line or after a blank do not count.
/// The script itself may be "-", standard input, and so may drawings in it.
/// ReportedError names script and line of a word that begins no edit (with the one that was probably meant), of an edit
/// before any drawing or after its save, and of a drawing without a name.
std::vector<ScriptPart> readScript(const std::string& path);

/// "cut.edit, line 3: "
std::string scriptPlace(const std::string& path, int line);

}  // namespace holdfast::cli
