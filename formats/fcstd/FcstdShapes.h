#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "formats/Uses.h"
#include "geometry/Shapes.h"

namespace holdfast::formats {

// The records of a sketch's list of geometry: <Geometry type="Part::GeomLineSegment" ...><LineSegment .../></Geometry>.
// Arcs and ellipses whose plane looks down run clockwise there; they are read as what is seen from above.

/// A number as records write it, whatever the user's language; nothing for what is none.
std::optional<double> numberIn(const pugi::xml_node& node, const char* attribute);
/// Keeps the text of a number that is the same.
void putNumber(pugi::xml_node node, const char* attribute, double value);
/// Attributes that may be missing are 0 then.
int integerIn(const pugi::xml_node& node, const char* attribute, int missing = 0);

/// The kind of a record without the words that all have: "LineSegment", "ArcOfHyperbola".
std::string_view kindOf(const pugi::xml_node& record);

/// Its shape; nothing for kinds without a counterpart and for records that lack numbers.
std::optional<Shape> shapeIn(const pugi::xml_node& record);

/// True for shapes that a record can be of.
bool canBeRecord(const Shape& shape);

/// Gives a record another shape, also of another kind; what does not say the shape stays.
void putShape(pugi::xml_node record, const Shape& shape);

/// Adds a copy of a record with an identifier of its own or, of none, a record without a shape that looks as others do.
pugi::xml_node addRecord(pugi::xml_node list, const pugi::xml_node& like, long identifier);
/// All above are free. Cost: linear in the list.
long highestIdentifier(const pugi::xml_node& list);

// What a record says of its use in the sketch, in newer documents by an extension.

bool isConstruction(const pugi::xml_node& record);
void putConstruction(pugi::xml_node record, bool isOne);
void putBlocked(pugi::xml_node record, bool isOne);
/// The number of the alignment to an ellipse or spline; 0: none.
void putAlignment(pugi::xml_node record, int alignment);

}  // namespace holdfast::formats
