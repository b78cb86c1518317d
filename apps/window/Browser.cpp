#include "apps/window/Browser.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace holdfast::window {

namespace {

#if defined(__APPLE__)
constexpr std::array<const char*, 1> kOpeners{"open"};
#else
constexpr std::array<const char*, 4> kOpeners{"xdg-open", "sensible-browser", "x-www-browser", "chromium"};
#endif

constexpr int kNotThere = 127;  // as a shell says it

bool isThere(std::string_view program) {
    if (program.find('/') != std::string_view::npos)
        return access(std::string(program).c_str(), X_OK) == 0;
    const char* found = std::getenv("PATH");
    std::string_view folders = found == nullptr ? std::string_view() : found;
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        folders.remove_prefix(folder.size() == folders.size() ? folder.size() : folder.size() + 1);
        if (access((std::string(folder) + "/" + std::string(program)).c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

/// In a session of its own, so that Ctrl-C here does not end the browser; nobody waits for it.
void start(const char* program, const std::string& address) {
    const pid_t child = fork();
    if (child > 0)
        waitpid(child, nullptr, 0);
    if (child != 0)
        return;
    setsid();
    if (fork() == 0) {
        execlp(program, program, address.c_str(), static_cast<char*>(nullptr));
        _exit(kNotThere);
    }
    _exit(0);
}

}  // namespace

bool showInBrowser(const std::string& address) {
    if (const char* own = std::getenv("BROWSER"); own != nullptr && isThere(own)) {
        start(own, address);
        return true;
    }
    for (const char* opener : kOpeners)
        if (isThere(opener)) {
            start(opener, address);
            return true;
        }
    return false;
}

}  // namespace holdfast::window
