#pragma once

#include <nlohmann/json_fwd.hpp>

#include "apps/cli/Uses.h"
#include "document/Document.h"

namespace holdfast::cli {

// The lists of "show": a table each, as text and as JSON. Throw UnsolvableDocument for what the solver cannot read.

/// Every entity with where it is, its sizes, how it can move and the constraints on it; then every constraint.
void tellList(const Document& document);
/// Entities and constraints as a drawing file has them, with what the list tells besides.
nlohmann::ordered_json listJson(const Document& document);

/// What the drawing lacks for being fully determined, as edits that would add it, with the reasons.
void tellMissing(const Document& document);
nlohmann::ordered_json missingJson(const Document& document);

}  // namespace holdfast::cli
