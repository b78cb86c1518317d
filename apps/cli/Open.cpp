#include <iostream>

#include "apps/cli/Commands.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/SketchFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Terminal.h"
#include "apps/window/Window.h"

namespace holdfast::cli {

int open(const OpenOptions& options) {
    if (sketchPathOf(options.drawing))
        throw UsageError(options.drawing, "a sketch of a document, into which the window does not write",
                         "a .json file; \"holdfast convert\" makes one of it");
    Document document = readAnyDrawing({options.drawing});
    const std::string name = spokenName(document, options.drawing);
    window::showWindow({.opened = options.drawing, .name = name, .isReadOnly = options.readOnly}, std::move(document),
                       {.port = options.port,
                        .showsBrowser = !options.noBrowser,
                        .linger = std::chrono::duration<double>(options.linger),
                        .tell = [](const std::string& line) { std::cout << line << std::endl; },
                        .complain = [](const std::string& line) { complain(line); }});
    return kExitDone;
}

}  // namespace holdfast::cli
