#include <iostream>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/Infer.h"

namespace holdfast {

int convert(const ConvertOptions& options) {
    writeAnyDrawing(readAnyDrawing(options.input), options.output, options.tolerance);
    return kExitDone;
}

int infer(const InferCommandOptions& options) {
    const Inference inference = inferConstraints(readAnyDrawing(options.input), {.length = options.length});
    if (!options.output.empty())
        writeAnyDrawing(inference.document, options.output);
    std::cout << inference.added << " constraints put on " << inference.document.entities.size()
              << " entities, tolerance " << inference.length << ' ' << inference.document.lengthUnit << '\n';
    return kExitDone;
}

}  // namespace holdfast
