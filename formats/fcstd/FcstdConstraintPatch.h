#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "document/EntityIndex.h"
#include "formats/Uses.h"
#include "formats/fcstd/FcstdGeometryPatch.h"
#include "formats/fcstd/FcstdSketch.h"

namespace holdfast::formats {

/// Makes the records of a sketch's constraints those of a drawing that was edited, and knows by which number each of
/// them goes then. Records that stay follow the numbers of the geometry; new ones stand behind them, and behind these
/// the alignments of the circles at control points that constraints are on.
///
/// Calls:  apply  uses  constraintBefore* constraintNow* constraintIn* numberNow* numberOf*
/// Borrows all that it is given; the geometry is patched already, and notes are added to those that are there. Serves
/// one edited drawing.
class FcstdConstraintPatch {
public:
    FcstdConstraintPatch(FcstdSketch& sketch, const Document& after, FcstdGeometryPatch& geometry,
                         std::vector<std::string>& notes);

    void apply();

    /// What the constraints that there are now make of the geometry.
    FcstdUses uses() const;

    /// The constraint of the drawing as it was, which had one by this id.
    const Constraint& constraintBefore(const std::string& id) const { return *m_before.at(id); }
    /// That of the edited drawing; null where it has none.
    const Constraint* constraintNow(const std::string& id) const;
    /// That of a record; null where it has gone or was never read: the id of such a record is free for a new
    /// constraint.
    const Constraint* constraintIn(std::size_t record) const;

    /// The number of the record that had another before the edits; nothing for what has gone.
    std::optional<std::size_t> numberNow(std::size_t before) const { return m_numbers[before]; }
    /// The number of a constraint of the edited drawing; nothing for what has no record.
    std::optional<std::size_t> numberOf(const std::string& id) const;

private:
    using ById = std::map<std::string, const Constraint*, std::less<>>;
    static ById byId(const std::vector<Constraint>& constraints);

    void patchRecords();
    bool patch(const FcstdConstraintRecord& each);
    bool renumber(const FcstdConstraintRecord& each);
    void noteLost(const FcstdConstraintRecord& each);
    bool putConstraint(pugi::xml_node record, const Constraint& constraint);
    void noteNoTerms(const Constraint& constraint);
    bool isFixedEnd(const Constraint& constraint, PlaceKind end) const;
    void gatherFixedEnds();
    void addNew();
    void alignNewCircles();

    FcstdSketch& m_sketch;
    const Document& m_after;
    FcstdGeometryPatch& m_geometry;
    EntityIndex m_entities;
    ById m_before, m_now;
    pugi::xml_node m_list;
    std::vector<std::optional<std::size_t>> m_numbers;           // of records, now
    std::unordered_map<std::string, std::size_t> m_numbersById;  // now
    std::size_t m_count = 0;                                     // of records, now
    std::vector<const Constraint*> m_new;
    std::list<Constraint> m_blocks;  // in the place of new ones
    std::vector<std::string>& m_notes;
};

}  // namespace holdfast::formats
