#pragma once

#include <functional>
#include <optional>
#include <string>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/slvs/SlvsPlane.h"
#include "formats/slvs/SlvsRecords.h"

namespace holdfast::formats {

/// What a sketch knows of handles that its constraints name.
class SlvsPlaces {
public:
    virtual ~SlvsPlaces() = default;

    /// The place of a point or a whole curve; nothing where the drawing has none.
    virtual std::optional<Place> place(SlvsHandle entity) = 0;
    virtual const Shape& shapeOf(const std::string& entity) const = 0;
    /// The fixed entity that stands for an axis, or for the origin.
    virtual Place axis(bool isX) = 0;
    virtual Place origin() = 0;
    virtual const SlvsFile& file() const = 0;
    virtual const SlvsPlane& plane() const = 0;
    virtual SlvsHandle workplane() const = 0;
};

/// A constraint as drawings say it, without id; nothing for what has no counterpart there. Whether it can hold is for
/// the drawing to say.
std::optional<Constraint> constraintIn(const SlvsConstraint& record, SlvsPlaces& places);

/// "comment", "projected distance", "kind 77".
std::string spokenSlvsKind(int kind);

}  // namespace holdfast::formats
