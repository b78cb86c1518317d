#include "editing/fates/Freedom.h"

#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/diagnosis/Diagnose.h"

namespace holdfast::editing {

std::optional<int> degreesOfFreedom(const Document& document) {
    try {
        return diagnose(sketchFrom(document)).freedom;
    } catch (const SketchError&) {
        return std::nullopt;
    }
}

}  // namespace holdfast::editing
