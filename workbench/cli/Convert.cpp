#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/OutputFiles.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/Polylines.h"

namespace holdfast {

int convert(const ConvertOptions& options) {
    OutputFiles outputs{drawingNamed(options.output)};
    Document document = readAnyDrawing(options.input);
    if (options.polylines)
        document = chainsToPolylines(document).document;
    outputs.addDrawing(options.output, document, options.tolerance);
    outputs.write();
    return kExitDone;
}

}  // namespace holdfast
