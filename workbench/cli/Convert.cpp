#include <cmath>
#include <utility>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/OutputFiles.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/DrawingError.h"
#include "workbench/drawing/Polylines.h"

namespace holdfast {

int convert(const ConvertOptions& options) {
    if (!(options.tolerance > 0.0) || !std::isfinite(options.tolerance))
        throw DrawingError("--tolerance", {"", shortNumber(options.tolerance), "a length above 0, such as 0.01"});
    OutputFiles outputs{drawingNamed(options.output)};
    Document document = readAnyDrawing(options.input);
    if (options.polylines) {
        PolylineConversion conversion = chainsToPolylines(document);
        if (conversion.chains.empty())
            complain(options.input +
                     ": no lines or arcs have coincident ends, so there is no polyline to make; in a plain drawing "
                     "\"holdfast infer --polylines\" finds where they meet");
        document = std::move(conversion.document);
    }
    outputs.addDrawing(options.output, document, options.tolerance);
    outputs.write();
    return kExitDone;
}

}  // namespace holdfast
