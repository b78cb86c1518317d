#include "editing/fates/Freedom.h"

#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

std::optional<int> degreesOfFreedom(const Document& document) {
    try {
        return DocumentSketch(document).diagnose().freedom;
    } catch (const UnsolvableDocument&) {
        return std::nullopt;
    }
}

}  // namespace holdfast::editing
