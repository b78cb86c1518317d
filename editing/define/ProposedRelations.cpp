#include "editing/define/ProposedRelations.h"

#include <cstddef>
#include <utility>

#include "document/Places.h"
#include "inference/Infer.h"

namespace holdfast::editing {

namespace {

/// Directions may differ by more than rounding; the lengths decide.
constexpr double kNearlyAlong = 1e-6;

constexpr const char* kAsDrawn = "it holds as drawn";

Proposal asDrawn(ConstraintType type, std::vector<Place> refs) {
    Proposal proposal;
    proposal.constraint.type = type;
    proposal.constraint.refs = std::move(refs);
    proposal.reason = kAsDrawn;
    return proposal;
}

/// A constraint of two equations is followed by its halves, for where the drawing says one of them already.
void addWithHalves(std::vector<Proposal>& proposals, const Constraint& whole) {
    proposals.push_back(asDrawn(whole.type, whole.refs));
    switch (whole.type) {
        case ConstraintType::collinear:
            proposals.push_back(asDrawn(ConstraintType::parallel, whole.refs));
            proposals.push_back(asDrawn(ConstraintType::pointOnCurve, {startOfLine(whole.refs[1]), whole.refs[0]}));
            return;
        case ConstraintType::coincident:
        case ConstraintType::concentric:
            proposals.push_back(asDrawn(ConstraintType::horizontal, whole.refs));
            proposals.push_back(asDrawn(ConstraintType::vertical, whole.refs));
            return;
        default:
            return;
    }
}

}  // namespace

std::vector<Proposal> proposedRelations(const Document& document, double same) {
    std::vector<Proposal> proposals = heldEllipses(document);
    InferOptions options;
    options.length = same;
    options.angle = kNearlyAlong;
    options.relations = true;
    const Document inferred = inferConstraints(document, options).document;
    for (std::size_t i = document.constraints.size(); i < inferred.constraints.size(); ++i)
        addWithHalves(proposals, inferred.constraints[i]);
    for (auto directions : {uprightProposals, slantedTexts})
        for (Proposal& direction : directions(document, kHoldsAsDrawn)) {
            direction.reason = kAsDrawn;
            proposals.push_back(std::move(direction));
        }
    return proposals;
}

}  // namespace holdfast::editing
