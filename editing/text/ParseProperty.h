#pragma once

#include "editing/Edit.h"
#include "editing/Uses.h"
#include "editing/commands/values/Properties.h"
#include "editing/text/EditText.h"

namespace holdfast::editing {

/// A text with a fault in the name of a property or behind it. Who knows the drawing can tell whether the entity has
/// such a property at all, and which it has.
class PropertyFault : public EditSyntaxError {
public:
    PropertyFault(const EditSyntaxError& error, Name entity, Sourced<std::string> word)
        : EditSyntaxError(error), m_entity(std::move(entity)), m_word(std::move(word)) {}

    const Name& entity() const { return m_entity; }
    const Sourced<std::string>& word() const { return m_word; }

private:
    Name m_entity;
    Sourced<std::string> m_word;
};

/// The names of all properties.
std::vector<std::string_view> propertyWords();

/// A property as users call it, whatever entity it belongs to.
struct PropertyWord {
    Sourced<Property> property;
    ValueKind valueKind = ValueKind::length;
    bool isListed = false;  ///< an index follows it
};

/// Takes the name of a property; of words that are none, the message offers all properties that there are.
PropertyWord takeProperty(EditText& text, const Name& entity);

/// Takes a value of this kind: "x,y" or "x 3" for points, else a number.
std::variant<Vec2, Coordinate, double> takePropertyValue(EditText& text, ValueKind kind);

}  // namespace holdfast::editing
