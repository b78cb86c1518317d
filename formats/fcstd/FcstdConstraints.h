#pragma once

#include <array>
#include <functional>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// The numbers of the kinds of constraints in a document.
enum class FcstdKind {
    none,
    coincident,
    horizontal,
    vertical,
    parallel,
    tangent,
    distance,
    distanceX,
    distanceY,
    angle,
    perpendicular,
    radius,
    equal,
    pointOnObject,
    symmetric,
    alignment,
    refraction,
    block,
    diameter,
    weight
};
/// "PointOnObject"; "kind 20" for numbers that none has.
std::string spokenKind(int kind);

/// The numbers of helpers that stay with their curve.
enum class FcstdAlignment { none = 0, majorDiameter = 1, minorDiameter, focus1, focus2, control = 9, knot = 10 };

/// That of a helper of an ellipse, by its role in drawings.
FcstdAlignment alignmentOf(std::string_view role);

/// A place as a document names it: the number of a piece of geometry and one of its points.
struct FcstdRef {
    static constexpr int kNothing = -2000;
    static constexpr int kXAxis = -1, kYAxis = -2, kFirstOutside = -3;  ///< outside geometry counts down from there
    enum Point { whole = 0, start = 1, end = 2, centre = 3 };

    int geometry = kNothing;
    int point = whole;

    bool isNothing() const { return geometry == kNothing; }
    bool isOutside() const { return geometry <= kFirstOutside && !isNothing(); }
    friend bool operator==(const FcstdRef&, const FcstdRef&) = default;
    friend auto operator<=>(const FcstdRef&, const FcstdRef&) = default;
};
using FcstdRefs = std::array<FcstdRef, 3>;

FcstdRefs refsIn(const pugi::xml_node& record);
void putRefs(pugi::xml_node record, const FcstdRefs& refs);

/// The place that a reference means in a drawing; a point of an axis is the origin unless directions are meant. Nothing
/// where the drawing has none.
using FcstdPlaces = std::function<std::optional<Place>(FcstdRef ref, bool isDirection)>;

/// A constraint of a drawing as a record says it, without id and formula; nothing for what has no counterpart. Whether
/// it can hold is for the drawing to say.
std::optional<Constraint> constraintIn(const pugi::xml_node& record, const FcstdPlaces& places,
                                       const std::function<const Shape*(const std::string& entity)>& shapes);

/// A constraint of a drawing in a document's terms.
struct FcstdConstraint {
    FcstdKind kind = FcstdKind::none;
    FcstdRefs refs{};
    std::optional<double> value{};  ///< of a dimension
    FcstdAlignment alignment = FcstdAlignment::none;
};

/// The constraint in a document's terms; nothing where these have none for it. Newer documents know distances of
/// circles and lengths of arcs.
std::optional<FcstdConstraint> inFcstdTerms(const Constraint& constraint, const EntityIndex& entities,
                                            const std::function<std::optional<FcstdRef>(const Place& place)>& refs,
                                            bool isNewer);

/// Writes terms into a record; what it says beside them (where its label stands) stays.
void putTerms(pugi::xml_node record, const FcstdConstraint& terms);
/// A record at the end of the list.
pugi::xml_node addConstraint(pugi::xml_node list);

}  // namespace holdfast::formats
