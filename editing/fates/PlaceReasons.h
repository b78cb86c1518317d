#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/DrawingChange.h"
#include "editing/Uses.h"
#include "editing/aftermath/LostVertices.h"
#include "editing/fates/EditedCurves.h"

namespace holdfast::editing {

/// Why a constraint goes whose places were edited, by the rules of the module: with a point that moved, with the length
/// of a line when it is equal to another, with everything on a curve that became one of another kind. Points that the
/// module takes for one have not moved.
///
/// Refers to the change, which stays as it is meanwhile. Cost of a question: the logarithm of the polylines that it is
/// about.
class PlaceReasons {
public:
    PlaceReasons(const DrawingChange& change, const EditedCurves& edited);

    /// The first of the constraint's places that decides, in words; empty when none does.
    std::string deciding(const Constraint& constraint);
    /// The same for one place of it.
    std::string decidingAt(const Constraint& constraint, const Place& place);
    /// For a constraint that goes although no place decides: what was done to the first edited curve that it is on.
    std::string doneTo(const Constraint& constraint, bool atOnce) const;
    /// For a place that is gone.
    std::string lost(const Place& place);

private:
    using Entities = std::unordered_map<std::string_view, const Entity*>;
    const Entity* before(const std::string& name) const;
    std::vector<const Entity*> leftOf(const std::string& name) const;
    std::string onSegment(const Constraint& constraint, const Place& place, const PolylineShape& was,
                          const std::vector<const Entity*>& left);

    Entities m_before, m_now;
    const EditedCurves& m_edited;
    LostVertices m_lost;
};

}  // namespace holdfast::editing
