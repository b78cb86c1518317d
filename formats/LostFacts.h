#pragma once

#include <initializer_list>
#include <string>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// What drawings have besides shapes, constraints and parameters.
enum class Fact { construction, fixedEntities, layers, colours, linetypes, widths, invisibility, plane };

/// A sentence on those that a drawing has and a form, which keeps some, has not; empty where nothing is lost. Cost:
/// linear.
std::string lostFacts(const Document& drawing, std::initializer_list<Fact> kept);

}  // namespace holdfast::formats
