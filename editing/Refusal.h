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
/// Edited entities that are determined are named where nothing else is known: no smaller step helps them.
std::string refusalOf(const Evaluation& evaluation, const Document& document, const std::vector<std::string>& edited,
                      const std::vector<Constraint>& added = {}, const std::vector<std::string>& determined = {});

/// It tells neither which constraints were in the way, nor what would come of the edit, nor how far it went.
bool isUnexplained(const Evaluation& evaluation);

/// Those of the entities that the constraints leave no freedom; none in a drawing so large that it would take long to
/// find out. Cost: see DocumentSketch::freeMotions.
std::vector<std::string> determinedAmong(const Document& document, const std::vector<std::string>& entities);

/// What a user should know about an edit that was done, but not as it was asked; empty when there is nothing to tell.
std::vector<std::string> remarksOn(const Shortfall& shortfall, const Document& document,
                                   const std::vector<std::string>& edited);

/// A constraint as people name it: "c7 (distance g1.start g2, 12.5)", "c9 (radius g5, 8 = width / 10)".
std::string spokenConstraint(const Constraint& constraint);

}  // namespace holdfast::editing
