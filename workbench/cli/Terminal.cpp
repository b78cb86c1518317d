#include "workbench/cli/Terminal.h"

#include <cstdlib>
#include <iostream>

#include <sys/ioctl.h>
#include <unistd.h>

namespace holdfast {

std::size_t terminalWidth() {
    winsize size{};
    if (isatty(STDOUT_FILENO) == 0 || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0)
        return 0;
    return size.ws_col;
}

bool isErrorTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

bool wantsColours() {
    return isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr;
}

void complain(std::string_view message) {
    std::cerr << "holdfast: " << message << '\n';
}

}  // namespace holdfast
