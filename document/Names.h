#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

/// The type of an entity as drawing files name it: line, arc, ..., text, mtext.
std::string_view typeName(const Shape& shape);

/// The type of a constraint as drawing files name it: coincident, point_on_curve, ...
std::string_view typeName(ConstraintType type);
std::optional<ConstraintType> constraintTypeNamed(std::string_view name);

/// All names in the order of their enumerators (entities: of the alternatives of Shape, text before mtext).
std::span<const std::string_view> entityTypeNames();
std::span<const std::string_view> constraintTypeNames();

/// True for the kinds that carry a value.
bool isDimension(ConstraintType type);

/// True for the kinds that own other constraints.
bool ownsMembers(ConstraintType type);

/// The place on its entity, as a drawing file writes it: "start", "control:3", "segment:2.end".
std::string placeText(const Place& place);

/// Kind and index of a place's text, without an entity; empty when no place is spelt like that.
std::optional<Place> parsePlace(std::string_view text);

/// "g3.start", or "g3" for the whole entity: the way that people name a place.
std::string spokenPlace(const Place& place);

}  // namespace holdfast::document
