#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// The points of an entity that dimensions can be given from and to, which its own values are: ends, vertices, centres,
/// control points. Linear in it.
std::vector<Place> pointsOf(const Entity& entity);

/// A constraint that a drawing might get, and the words for why.
struct Proposal {
    Constraint constraint;
    std::string reason;
    bool mayBeImpliedInPart = false;  ///< it is taken also where others say a part of it
};

/// The places from which the rest of a drawing is measured along x and along y: one point mostly.
struct Datum {
    Place x, y;
    std::optional<Place> toBeFixed{};  ///< nothing holds it yet
    bool isHeldInPart = false;         ///< but for one direction
};

/// What holds ellipses whose diameters nothing draws: no dimension takes their axes. These come before all else, so
/// that nothing has tied a part of them.
std::vector<Proposal> heldEllipses(const Document& document);

/// Upright texts, rays and lines without ends, and texts along lines.
std::vector<Proposal> uprightProposals(const Document& document, double same);

/// What holds texts that slant: a direction along a line or across it, as drawn. Linear but for a sort of the lines.
std::vector<Proposal> slantedTexts(const Document& document, double same);

/// All dimensions that might be missing, those that a designer would give first: radii, lengths, the longest first,
/// where each part of the drawing lies from the datum, where centres lie, angles, then every other point from the
/// datum; control points are fixed in pairs of coordinates. Values are not measured yet.
///
/// `parts` are the entities that hang together, by number; nearly linear.
std::vector<Proposal> proposedDimensions(const Document& document, const Datum& datum,
                                         const std::vector<std::vector<std::size_t>>& parts, double same);

}  // namespace holdfast::editing
