#include "editing/InferredDrawing.h"

#include <string>
#include <unordered_set>
#include <utility>

#include "document/Polylines.h"

namespace holdfast::editing {

Document withPolylines(const Document& plain, InferOptions& options) {
    InferOptions joints = options;
    joints.kinds = {ConstraintType::coincident};
    const std::size_t given = plain.constraints.size();
    const Inference joined = inferConstraints(plain, joints);
    options.length = joined.length;
    std::unordered_set<std::string> added;
    for (std::size_t i = given; i < joined.document.constraints.size(); ++i)
        added.insert(joined.document.constraints[i].id);
    Document chained = chainsToPolylines(joined.document, joined.length).document;
    std::erase_if(chained.constraints, [&](const Constraint& constraint) { return added.contains(constraint.id); });
    return chained;
}

InferredDrawing inferredDrawing(const Document& plain, const InferOptions& options) {
    Inference inference = inferConstraints(plain, options);
    InferredDrawing found{std::move(inference.document), plain.constraints.size(), inference.length, {}};
    found.thinning = thinOut(found.document, found.firstNew);
    return found;
}

}  // namespace holdfast::editing
