#include <iostream>
#include <map>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/FileIo.h"
#include "workbench/drawing/Names.h"
#include "workbench/report/Svg.h"

namespace holdfast {

namespace {

void tellCounts(const char* title, const std::map<std::string, int>& counts) {
    int total = 0;
    for (const auto& [name, count] : counts)
        total += count;
    std::cout << title << ": " << total << '\n';
    for (const auto& [name, count] : counts)
        std::cout << "  " << name << ": " << count << '\n';
}

}  // namespace

int show(const ShowOptions& options) {
    const Document document = readAnyDrawing(options.drawing);
    if (!options.output.empty())
        writeFile(options.output, writePicture(document));
    std::map<std::string, int> entities, constraints;
    for (const Entity& entity : document.entities)
        ++entities[std::string(typeName(entity.shape))];
    for (const Constraint& constraint : document.constraints)
        ++constraints[std::string(typeName(constraint.type))];
    std::cout << document.name << '\n';
    tellCounts("entities", entities);
    tellCounts("constraints", constraints);
    return kExitDone;
}

}  // namespace holdfast
