#pragma once

#include <optional>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "document/Uses.h"
#include "document/text/DrawingError.h"

namespace holdfast::document {

/// The first thing that keeps a constraint from meaning something: a reference to an entity or a place that does not
/// exist, the same place twice, a kind that cannot hold between such places, a value that is missing, needless or out
/// of range, a role that does not fit its helper. Members are checked with the whole document.
std::optional<Fault> faultIn(const Constraint& constraint, const EntityIndex& entities);

/// True when a constraint of this kind can hold between these places, which exist.
bool canHold(ConstraintType type, const std::vector<Place>& refs, const EntityIndex& entities);

}  // namespace holdfast::document
