#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"
#include "report/picture/Svg.h"

namespace holdfast::report {

/// A completed report with its constraints and entities at hand by their ids. Borrows the report.
class ReportIndex {
public:
    explicit ReportIndex(const FateReport& report);

    /// As it stands after the edits, or as it stood before where it is gone; null where neither drawing has it.
    const Constraint* constraint(const std::string& id) const;
    const Entity* entity(const std::string& id) const;
    /// The kind of an entity or of what is drawn as a whole, in words and as drawing files have it: "elliptical arc"
    /// and "elliptical_arc", "insert". Empty where neither drawing has it.
    std::string_view kindOf(const std::string& entity) const;
    std::string_view typeOf(const std::string& entity) const;

    /// Every entity that the constraint names before or after.
    std::vector<std::string> entitiesOf(const std::string& constraint) const;

    /// What the pictures show: the drawing before with what was lost, the drawing after with what is new.
    PictureNotes notesBefore() const;
    PictureNotes notesAfter() const;

private:
    PictureNotes notes(bool after) const;

    const FateReport& m_report;
    std::unordered_map<std::string_view, const Constraint*> m_constraintsBefore, m_constraintsAfter;
    std::unordered_map<std::string_view, const Entity*> m_entities;
    std::unordered_map<std::string_view, const BlockReference*> m_references;
};

/// "c12: coincident g3.end  g7.start", as far as it is known.
std::string titleOf(const ReportIndex& index, const std::string& constraint);

/// All that is said about an outcome beside its fate: "g3.end -> g12.end; the end of g3 moved ...".
std::string explanation(const ConstraintOutcome& outcome, std::string_view arrow);

/// "moved by up to 3.2 mm, radius 10 -> 16.3" for an entity that was edited or followed, as far as it applies; else
/// empty.
std::string explanation(const EntityOutcome& outcome, const std::string& unit, std::string_view arrow);

}  // namespace holdfast::report
