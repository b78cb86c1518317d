#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "editing/fates/FateReport.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

/// Why an edit is refused that the constraints of the drawing do not allow: which ones stand in its way and what to do.
/// Of many, those on the edited entities are named first. What the edit itself has added is not among those to delete.
std::string refusalOf(const Evaluation& evaluation, const Document& document, const std::vector<std::string>& edited,
                      const std::vector<Constraint>& added = {});

/// What a user should know about an edit that was done, but not as it was asked; empty when there is nothing to tell.
std::vector<std::string> remarksOn(const Shortfall& shortfall, const Document& document,
                                   const std::vector<std::string>& edited);

/// A constraint as people name it: "c7 (distance g1.start g2, 12.5)", "c9 (radius g5, 8 = width / 10)".
std::string spokenConstraint(const Constraint& constraint);

}  // namespace holdfast::editing
