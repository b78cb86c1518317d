#include "editing/HoldingConstraints.h"

#include "geometry/Tolerances.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::editing {

void addHolding(Drawing& drawing, const Document& document, std::size_t firstNew) {
    const SketchData sketch = sketchFrom(document);
    const std::vector<double> misses = violationsOf(sketch);
    const double holds = kHolds * drawing.extent();
    for (std::size_t i = firstNew; i < document.constraints.size(); ++i)
        if (misses[i] <= holds)
            drawing.addConstraint(document.constraints[i]);
}

}  // namespace holdfast::editing
