#include <cmath>
#include <utility>

#include "apps/cli/Commands.h"
#include "apps/cli/DrawingFiles.h"
#include "apps/cli/ErrorReport.h"
#include "apps/cli/OutputFiles.h"
#include "apps/cli/Terminal.h"
#include "document/Polylines.h"

namespace holdfast::cli {

int convert(const ConvertOptions& options) {
    if (!(options.tolerance > 0.0) || !std::isfinite(options.tolerance))
        throw UsageError("--tolerance", shortNumber(options.tolerance), "a length above 0, such as 0.01");
    OutputFiles outputs{drawingNamed(options.output)};
    DrawingFile file = readDrawingFor(options.output, options.input);
    Document& document = file.document;
    if (options.polylines) {
        PolylineConversion conversion = chainsToPolylines(document);
        if (conversion.chains.empty())
            complain(options.input.path +
                     ": no lines or arcs have coincident ends, so there is no polyline to make; in a plain drawing "
                     "\"holdfast infer --polylines\" finds where they meet");
        document = std::move(conversion.document);
    }
    outputs.addDrawing(options.output, document, file, options.tolerance);
    outputs.write();
    return kExitDone;
}

}  // namespace holdfast::cli
