#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "formats/Uses.h"
#include "formats/fcstd/FcstdConstraints.h"
#include "formats/fcstd/FcstdSketch.h"

namespace holdfast::formats {

/// A circle that marks a control point of a spline: the numbers of both, and that of the point in the spline.
struct FcstdControlCircle {
    int circle = 0, spline = 0, index = 0;
};

/// What constraints make of geometry, by its numbers.
struct FcstdUses {
    std::unordered_set<int> blocked;
    std::unordered_map<int, int> alignments;  ///< of helpers: the numbers of their alignments
};

/// Makes the records of a sketch's geometry those of a drawing that was edited, and knows by which number each of them
/// goes then. Entities keep their records, a first piece takes that of what it was made of, others stand behind all
/// records; helpers follow their splines.
///
/// Calls:  apply  refOf* numberNow*  newCircles  putUses
/// Borrows all that it is given; notes are added to those that are there. Serves one edited drawing.
class FcstdGeometryPatch {
public:
    FcstdGeometryPatch(FcstdSketch& sketch, const Document& after, std::vector<std::string>& notes);

    void apply();

    /// What a constraint says for a place of the edited drawing; nothing where the document has none for it. A control
    /// point that no circle marks yet gets one, at the end of the list.
    std::optional<FcstdRef> refOf(const Place& place);

    /// The number of geometry that had another before the edits; nothing for what has gone. Axes and outside geometry
    /// keep theirs.
    std::optional<int> numberNow(int before) const;

    /// Those that refOf made, which no constraint ties to their splines yet.
    const std::vector<FcstdControlCircle>& newCircles() const { return m_newCircles; }

    /// Records say themselves what constraints make of them.
    void putUses(const FcstdUses& uses);

private:
    struct Added {
        const Entity* entity = nullptr;
        std::optional<std::size_t> origin;  ///< the record of what it was made of
    };

    void sortEntities();
    void patchRecords();
    const SplineShape* splineOf(const FcstdGeometryRecord& helper) const;
    bool isHelperOfNothing(const FcstdGeometryRecord& each) const;
    void followSpline(const FcstdGeometryRecord& helper) const;
    void numberRecords();
    void addEntities();
    std::optional<int> numberOf(const std::string& entity) const;
    std::optional<FcstdRef> outsideRefOf(const Place& place) const;
    int circleOf(const Place& control);

    FcstdSketch& m_sketch;
    const Document& m_after;
    EntityIndex m_entitiesBefore, m_entities;
    pugi::xml_node m_list;
    long m_nextIdentifier;
    std::vector<const Entity*> m_inPlace;  // by record; null: none of the drawing
    std::vector<Added> m_added;
    std::set<std::size_t> m_gone;                          // records
    std::vector<std::optional<int>> m_numbers;             // of records, now
    int m_count = 0;                                       // of records, now
    std::unordered_map<std::string, int> m_entityNumbers;  // by id
    std::map<std::pair<std::string, int>, int> m_circles;  // at control points, by spline and number
    std::vector<FcstdControlCircle> m_newCircles;
    std::vector<std::string>& m_notes;
};

}  // namespace holdfast::formats
