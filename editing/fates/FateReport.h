#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"

namespace holdfast::editing {

/// What an edit did to a constraint, in the order in which a user cares. Changed: a dimension says something else,
/// or is calculated in another way.
/// Restored: an undo has brought it back.
enum class ConstraintFate { deleted, changed, rePointed, added, restored, kept };

/// What an edit did to an entity, in the order in which a user cares. Restored: an undo has brought it back.
enum class EntityFate { erased, edited, created, restored, followed, untouched };

/// One place of a constraint that went from one entity (or segment, or end) to another.
struct PlaceMove {
    Place from, to;
    friend bool operator==(const PlaceMove&, const PlaceMove&) = default;
};

struct ConstraintOutcome {
    std::string constraint;  ///< its id, in the drawing before (deleted), after (added) or both
    ConstraintFate fate = ConstraintFate::kept;
    std::string reason;  ///< in the user's words: "the end of g3 moved from (10, 0) to (4, 0)"; kept: may be empty
    std::vector<PlaceMove> moves;     ///< rePointed: which places went where
    std::optional<std::size_t> edit;  ///< which of FateReport::edits decided it; empty: not known
    friend bool operator==(const ConstraintOutcome&, const ConstraintOutcome&) = default;
};

/// What can be measured of one entity: lengths in the drawing's length unit, the angle over which an arc sweeps in
/// degrees.
enum class SizeKind { length, radius, majorRadius, minorRadius, sweep, height };

/// One size of an entity before and after an edit.
struct SizeChange {
    SizeKind size = SizeKind::length;
    double before = 0.0;
    double after = 0.0;
    friend bool operator==(const SizeChange&, const SizeChange&) = default;
};

struct EntityOutcome {
    std::string entity;
    EntityFate fate = EntityFate::untouched;
    double movedBy = 0.0;  ///< edited or followed: the longest way that one of its points went, in the length unit
    std::vector<SizeChange> sizes{};  ///< edited or followed: those that are others than before
    friend bool operator==(const EntityOutcome&, const EntityOutcome&) = default;
};

/// How far an edit that comes as near as it can stayed from what was asked.
struct Shortfall {
    double by = 0.0;                        ///< in the drawing's length unit, at worst; 0: none
    std::vector<std::string> heldBackBy{};  ///< ids of the constraints that cause it, in drawing order, if known
    std::vector<std::string> leftAlone{};   ///< ids of constraints that did not hold before and were not looked at
    friend bool operator==(const Shortfall&, const Shortfall&) = default;
};

struct EditOutcome {
    std::string text;   ///< as the user typed it
    std::string error;  ///< why it was refused; empty: it was done
    Shortfall shortfall{};
    std::vector<std::string> remarks{};  ///< what a user should know about an edit that was done, a sentence each
    bool done() const { return error.empty(); }
    friend bool operator==(const EditOutcome&, const EditOutcome&) = default;
};

/// What the solver had to say; each sketch only where it is known.
struct SolverFigures {
    std::optional<int> degreesOfFreedom;
    std::optional<int> iterations;
    std::optional<double> worstResidual;
    friend bool operator==(const SolverFigures&, const SolverFigures&) = default;
};

/// Everything that a report tells about a run of edits. A constraint or entity without an outcome counts as kept or
/// untouched when it is in both drawings; ids in outcomes that neither drawing knows are shown by their id alone.
struct FateReport {
    std::string title;  ///< what the reader calls the drawing; empty: the drawing's own name
    Document before, after;
    std::vector<EditOutcome> edits;
    std::vector<ConstraintOutcome> constraints;
    std::vector<EntityOutcome> entities;
    std::optional<SolverFigures> solver;
};

inline constexpr std::array kConstraintFates{ConstraintFate::deleted,   ConstraintFate::changed,
                                             ConstraintFate::rePointed, ConstraintFate::added,
                                             ConstraintFate::restored,  ConstraintFate::kept};
inline constexpr std::array kEntityFates{EntityFate::erased,   EntityFate::edited,   EntityFate::created,
                                         EntityFate::restored, EntityFate::followed, EntityFate::untouched};

/// "deleted", "changed", "re-pointed", "added", "restored", "kept".
std::string_view fateName(ConstraintFate fate);
/// "erased", "edited", "created", "restored", "followed", "untouched".
std::string_view fateName(EntityFate fate);

/// "length", "radius", "major_radius", "minor_radius", "sweep", "height".
std::string_view sizeName(SizeKind size);

/// How many outcomes have each fate, indexed by the fate's number.
std::array<std::size_t, kConstraintFates.size()> countFates(const std::vector<ConstraintOutcome>& outcomes);
std::array<std::size_t, kEntityFates.size()> countFates(const std::vector<EntityOutcome>& outcomes);

/// The report with an outcome for every constraint and entity that has none yet: one only in the drawing before is
/// deleted or erased, one only in the drawing after is added or created, one in both is kept or untouched. The outcomes
/// stand in the order of fates, and within one fate as they were given, then in the order of the drawings.
FateReport completed(FateReport report);

}  // namespace holdfast::editing
