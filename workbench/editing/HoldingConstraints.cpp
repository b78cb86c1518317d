#include "workbench/editing/HoldingConstraints.h"

#include "workbench/evaluator/FigureFromDocument.h"
#include "workbench/evaluator/Measure.h"

namespace holdfast {

void addHolding(Drawing& drawing, const Document& document, std::size_t firstNew) {
    constexpr double kHolds = 1e-6;  // parts of the drawing's size
    const Figure figure = figureFrom(document);
    const std::vector<double> misses = missesOf(figure);
    const double holds = kHolds * figure.size();
    for (std::size_t i = firstNew; i < document.constraints.size(); ++i)
        if (misses[i] <= holds)
            drawing.addConstraint(document.constraints[i]);
}

}  // namespace holdfast
