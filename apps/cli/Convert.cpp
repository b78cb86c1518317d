#include <cmath>
#include <filesystem>
#include <utility>

#include "apps/cli/Commands.h"
#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/files/OutputFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/Teller.h"
#include "apps/cli/telling/Terminal.h"
#include "document/Polylines.h"
#include "report/page/Wording.h"

namespace holdfast::cli {

namespace {

DrawingTarget targetFor(const std::string& drawing, const ConvertOptions& options) {
    std::error_code error;
    const bool isFolder = std::filesystem::is_directory(options.output, error);
    return {isFolder ? outputIn(options.output, drawing, options.to) : options.output, options.to};
}

int convertOne(const std::string& drawing, const ConvertOptions& options, Teller& teller) {
    const DrawingTarget target = targetFor(drawing, options);
    OutputFiles outputs({drawingNamed(target)}, teller.wantsJson());
    DrawingFile file = readDrawingFor(target, {drawing, options.from});
    Document& document = file.document;
    if (options.polylines) {
        PolylineConversion conversion = chainsToPolylines(document);
        if (conversion.chains.empty())
            complain(drawing +
                     ": no lines or arcs have coincident ends, so there is no polyline to make; in a plain drawing "
                     "\"holdfast infer --polylines\" finds where they meet");
        document = std::move(conversion.document);
    }
    outputs.addDrawing(target, document, file, options.tolerance);
    outputs.write([&] {
        if (teller.wantsJson())
            teller.tell({{"drawing", spokenName(document, drawing)}, {"written", target.path}});
    });
    return kExitDone;
}

}  // namespace

int convert(const ConvertOptions& options) {
    if (!(options.tolerance > 0.0) || !std::isfinite(options.tolerance))
        throw UsageError("--tolerance", shortNumber(options.tolerance), "a length above 0, such as 0.01");
    refuseSharedNames(options.drawings, options.output, options.to);
    return tellEach(options.drawings, options.telling,
                    [&](const std::string& drawing, Teller& teller) { return convertOne(drawing, options, teller); });
}

}  // namespace holdfast::cli
