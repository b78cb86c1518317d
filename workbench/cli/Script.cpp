#include "workbench/cli/Script.h"

#include <algorithm>
#include <sstream>

#include "workbench/drawing/FileIo.h"
#include "workbench/editing/EditText.h"

namespace holdfast {

std::vector<ScriptPart> readScript(const std::string& path) {
    std::vector<ScriptPart> parts;
    const std::string folder = path.substr(0, path.find_last_of('/') + 1);
    std::istringstream lines(readFile(path));
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        line.erase(std::min(line.find(" #"), line.size()));
        EditText words(line);
        if (words.atEnd() || words.peek().starts_with("#"))
            continue;
        if (words.accept("open")) {
            parts.push_back({folder + words.word("a drawing"), {}, {}});
            words.expectEnd();
            continue;
        }
        if (parts.empty())
            throw EditError(path + ", line " + std::to_string(number) +
                            ": expected \"open DRAWING\" before the first edit");
        if (words.accept("save")) {
            parts.back().output = folder + words.word("a drawing");
            words.expectEnd();
        } else {
            parts.back().edits.push_back(line);
        }
    }
    if (parts.empty())
        throw EditError(path + ": expected \"open DRAWING\" on the first line, found no line at all");
    return parts;
}

}  // namespace holdfast
