#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/Polylines.h"

namespace holdfast {

int convert(const ConvertOptions& options) {
    Document document = readAnyDrawing(options.input);
    if (options.polylines)
        document = chainsToPolylines(document).document;
    writeAnyDrawing(document, options.output, options.tolerance);
    return kExitDone;
}

}  // namespace holdfast
