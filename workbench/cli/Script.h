#pragma once

#include <string>
#include <vector>

namespace holdfast {

/// The edits of one drawing in a script.
struct ScriptPart {
    std::string drawing;
    std::vector<std::string> edits;
    std::string output;  ///< where the edited drawing goes; empty: nowhere
};

/// Reads a file of edits, one a line. "open DRAWING" begins a drawing, "save DRAWING" says where its result goes; both
/// names are relative to the script. Empty lines and what follows a # after a space do not count. EditError names
/// script and line when an edit comes before any drawing, or when there is none at all.
std::vector<ScriptPart> readScript(const std::string& path);

}  // namespace holdfast
