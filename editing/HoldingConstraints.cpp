#include "editing/HoldingConstraints.h"

#include "geometry/Tolerances.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

void addHolding(Drawing& drawing, const Document& document, std::size_t firstNew) {
    const std::vector<double> misses = DocumentSketch(document).shortfalls();
    const double holds = kHolds * drawing.extent();
    for (std::size_t i = firstNew; i < document.constraints.size(); ++i)
        if (misses[i] <= holds)
            drawing.addConstraint(document.constraints[i]);
}

}  // namespace holdfast::editing
