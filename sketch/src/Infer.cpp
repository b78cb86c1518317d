#include "holdfast/sketch/Infer.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "editing/InferredDrawing.h"
#include "geometry/Angles.h"

namespace holdfast::sketch {

namespace {

constexpr double kEighthOfATurn = 0.5 * geometry::kQuarterTurn;  // radians: beyond it level lines would be upright as well

std::string faultIn(const InferOptions& options) {
    if (!std::isfinite(options.length) || options.length < 0.0)
        return "the tolerance of lengths is no length; give one above 0, or 0 for a millionth of the drawing";
    if (!std::isfinite(options.angle) || options.angle <= 0.0 || options.angle > kEighthOfATurn)
        return "the tolerance of directions is no angle above 0 and not above an eighth of a turn";
    return {};
}

std::string tooCoarse(double length, const std::string& unit) {
    char number[40];
    std::snprintf(number, sizeof number, "%.6g", length);
    return std::string("what is the same within ") + number + " " + unit +
           " cannot be the same exactly; choose a smaller tolerance";
}

}  // namespace

Inferred infer(const Document& drawing, const InferOptions& options) {
    checkDocument(drawing, drawing.name.empty() ? "the drawing" : drawing.name);
    if (std::string fault = faultIn(options); !fault.empty())
        return {.error = std::move(fault), .document = drawing};
    inference::InferOptions found{.length = options.length, .angle = options.angle, .kinds = options.kinds};
    const Document plain = options.polylines ? editing::withPolylines(drawing, found) : drawing;
    editing::InferredDrawing inferred = editing::inferredDrawing(plain, found);
    if (!inferred.thinning.holds)
        return {.error = inferred.thinning.ownHold ? tooCoarse(inferred.length, drawing.lengthUnit)
                                                   : "the drawing's own constraints cannot hold together",
                .document = drawing,
                .length = inferred.length};
    Inferred result{.document = std::move(inferred.document),
                    .implied = inferred.thinning.implied,
                    .contrary = inferred.thinning.contrary,
                    .length = inferred.length};
    result.added = result.document.constraints.size() - inferred.firstNew;
    return result;
}

}  // namespace holdfast::sketch
