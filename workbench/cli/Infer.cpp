#include <algorithm>
#include <iostream>
#include <unordered_set>

#include "workbench/cli/Commands.h"
#include "workbench/cli/DrawingFiles.h"
#include "workbench/cli/Progress.h"
#include "workbench/cli/Terminal.h"
#include "workbench/drawing/Infer.h"
#include "workbench/drawing/Polylines.h"
#include "workbench/evaluator/Diagnose.h"
#include "workbench/evaluator/FigureFromDocument.h"
#include "workbench/evaluator/Solve.h"

namespace holdfast {

namespace {

/// Takes out the new constraints that the others imply altogether, so that the drawing is not over-constrained. What a
/// constraint implies only together with one that goes is found in the next round. Returns how many went.
std::size_t dropImplied(Document& document, std::size_t firstNew) {
    std::size_t dropped = 0;
    for (;;) {
        // Within the tolerance the constraints hold only nearly, and seem to say more than they do.
        Figure figure = figureFrom(document);
        solve(figure, {.namesConflicts = false});
        std::unordered_set<std::string> implied;
        for (const Redundancy& redundancy : diagnose(figure).redundant)
            if (redundancy.isWhole && static_cast<std::size_t>(redundancy.constraint) >= firstNew)
                implied.insert(document.constraints[static_cast<std::size_t>(redundancy.constraint)].id);
        if (implied.empty())
            return dropped;
        dropped += std::erase_if(document.constraints,
                                 [&](const Constraint& constraint) { return implied.contains(constraint.id); });
    }
}

}  // namespace

int infer(const InferCommandOptions& options) {
    Document plain = readAnyDrawing(options.input);
    const std::size_t given = plain.constraints.size();
    const Progress progress("inferring constraints of " + plain.name);
    Inference inference = inferConstraints(plain, {.length = options.length});
    const std::size_t implied = dropImplied(inference.document, given);
    Document& document = inference.document;
    const std::size_t added = document.constraints.size() - given;
    if (options.polylines)
        document = chainsToPolylines(document).document;
    if (!options.output.empty())
        writeAnyDrawing(document, options.output);
    std::cout << added << " constraints put on " << document.entities.size() << " entities, tolerance "
              << inference.length << ' ' << document.lengthUnit;
    if (implied > 0)
        std::cout << "; " << implied << " more left out, which these imply";
    std::cout << '\n';
    return kExitDone;
}

}  // namespace holdfast
