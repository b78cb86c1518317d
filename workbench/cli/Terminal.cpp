#include "workbench/cli/Terminal.h"

#include <cstdio>
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

std::string shortNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value == 0.0 ? 0.0 : value);
    return text;
}

void complain(std::string_view message) {
    std::cerr << "holdfast: " << message << '\n';
}

}  // namespace holdfast
