#include "apps/cli/batch/ScriptFiles.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>

#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/telling/ErrorReport.h"

namespace holdfast::cli {

namespace {

namespace fs = std::filesystem;

fs::path oneNameOf(const std::string& path) {
    std::error_code error;
    return fs::weakly_canonical(path, error);
}

bool isFile(const std::string& path) {
    return !path.empty() && path != kStandardStream;
}

/// Who has saved a file last, and who has opened it since.
struct FileUse {
    std::optional<std::size_t> saver;
    std::vector<std::size_t> openers;
};

/// Of a file that is not there: none.
std::optional<fs::file_time_type> timeOf(const std::string& path) {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(path, error);
    return error ? std::nullopt : std::optional(time);
}

}  // namespace

std::vector<std::vector<std::size_t>> filesBefore(const std::vector<ScriptPart>& parts) {
    std::map<fs::path, FileUse> uses;
    std::vector<std::vector<std::size_t>> before(parts.size());
    for (std::size_t i = 0; i < parts.size(); ++i) {
        FileUse& opened = uses[oneNameOf(parts[i].drawing)];
        if (opened.saver)
            before[i].push_back(*opened.saver);
        if (isFile(parts[i].output)) {
            FileUse& saved = uses[oneNameOf(parts[i].output)];
            before[i].insert(before[i].end(), saved.openers.begin(), saved.openers.end());
            if (saved.saver)
                before[i].push_back(*saved.saver);
            saved = {i, {}};
        }
        uses[oneNameOf(parts[i].drawing)].openers.push_back(i);
    }
    return before;
}

bool isSavedAlready(const ScriptPart& part, const std::string& script) {
    if (!isFile(part.output))
        return false;
    const auto saved = timeOf(part.output), drawn = timeOf(part.drawing), written = timeOf(script);
    return saved && drawn && written && *saved > *drawn && *saved > *written;
}

void refuseToResume(const std::vector<ScriptPart>& parts, const std::string& script) {
    if (script == kStandardStream)
        throw UsageError("--resume", "a script from standard input", "a file, whose time tells what was done since");
    std::set<fs::path> touched;
    for (const ScriptPart& part : parts) {
        touched.insert(oneNameOf(part.drawing));
        if (isFile(part.output) && !touched.insert(oneNameOf(part.output)).second)
            throw ReportedError({.code = ErrorCode::usage,
                                 .message = scriptPlace(script, part.line) + "saves " + part.output +
                                            ", which it has opened or saved before; --resume cannot tell what was done "
                                            "to it, so save it under a name of its own",
                                 .file = script,
                                 .line = part.line});
    }
}

}  // namespace holdfast::cli
