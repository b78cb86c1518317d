#include "apps/cli/telling/Terminal.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <mutex>

#include <sys/ioctl.h>
#include <unistd.h>

#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/telling/ErrorReport.h"

namespace holdfast::cli {

namespace {

std::mutex g_errorLine;  // held while something is written to standard error
bool g_passes = false;   // the last line there is a passing one
thread_local KeptComplaints* t_kept = nullptr;

std::size_t widthOf(int descriptor) {
    winsize size{};
    if (isatty(descriptor) == 0 || ioctl(descriptor, TIOCGWINSZ, &size) != 0)
        return 0;
    return size.ws_col;
}

/// Some terminals only print: they know no colours and take no line back.
bool isDumb() {
    const char* kind = std::getenv("TERM");
    return kind != nullptr && std::string_view(kind) == "dumb";
}

/// As much of a line as stands in one row, whole characters only.
std::string_view fitting(std::string_view line, std::size_t columns) {
    std::size_t taken = 0;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const bool begins = (static_cast<unsigned char>(line[at]) & 0xC0U) != 0x80U;
        if (begins && taken++ == columns)
            return line.substr(0, at);
    }
    return line;
}

void wipe() {
    if (g_passes)
        std::cerr << "\r\x1b[K";
    g_passes = false;
}

}  // namespace

std::size_t terminalWidth() {
    return widthOf(STDOUT_FILENO);
}

bool isErrorTerminal() {
    return isatty(STDERR_FILENO) != 0 && !isDumb();
}

bool wantsColours() {
    const char* none = std::getenv("NO_COLOR");
    return isatty(STDOUT_FILENO) != 0 && !isDumb() && (none == nullptr || *none == '\0');
}

void showPassingLine(std::string_view line) {
    const std::scoped_lock lock(g_errorLine);
    wipe();
    const std::size_t width = widthOf(STDERR_FILENO);
    std::cerr << fitting(line, width > 1 ? width - 1 : line.size()) << std::flush;
    g_passes = true;
}

void wipePassingLine() {
    const std::scoped_lock lock(g_errorLine);
    wipe();
    std::cerr << std::flush;
}

KeptComplaints::KeptComplaints() {
    t_kept = this;
}

KeptComplaints::~KeptComplaints() {
    t_kept = nullptr;
}

void complain(std::string_view message) {
    if (t_kept != nullptr) {
        t_kept->m_messages.emplace_back(message);
        return;
    }
    const std::scoped_lock lock(g_errorLine);
    wipe();
    std::cerr << "holdfast: " << message << '\n';
}

void flushStandardOutput() {
    std::cout.flush();
    if (!std::cout)
        throw ReportedError({.code = ErrorCode::notWritten,
                             .message = "standard output did not take all that was told, and no file was written",
                             .file = kStandardStream});
}

}  // namespace holdfast::cli
