#pragma once

#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "editing/EditError.h"
#include "editing/Uses.h"
#include "editing/fates/DeletionReasons.h"
#include "editing/fates/FateReport.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

/// What an editing command works on, and what it tells about its work.
struct EditContext {
    Drawing& drawing;
    HostEvaluator& evaluator;
    DeletionReasons& reasons;           ///< why constraints were deleted
    std::vector<std::string> edited{};  ///< the entities that the user edited, by name
    /// Entities whose constraints the host judges after the module, which looked at vertices that are no longer there.
    std::vector<std::string> judgedAnew{};
    Shortfall shortfall{};               ///< of an edit that comes as near as it can
    std::vector<std::string> remarks{};  ///< what else a user should know about the edit, a sentence each
    /// The point that stands for the corner which a fillet has rounded, if it is to be kept.
    std::optional<std::string> keptCorner{};
    bool givesTies = true;  ///< the session adds ties when the command has done its work
    /// Entities and the copies that the command has made to be tied to them.
    std::vector<std::pair<std::string, std::string>> copies{};
    /// The session is to open the drawing anew afterwards, in which arcs are seen from above again.
    bool opensAgain = false;
};

/// RefusedWord with the nearest name for one that no entity has. It may be meant for the name of one, or for one of the
/// words that end a list of them.
void requireEntity(const Drawing& drawing, const Name& name, std::span<const std::string_view> ends = {});
void requireEntities(const Drawing& drawing, const std::vector<Name>& names,
                     std::span<const std::string_view> ends = {});

/// What geometry and the host's builders say of shapes without names, with the edit that gives them one.
std::string impossible(std::string_view edit, const std::exception& refusal);

/// The names without their columns.
std::vector<std::string> valuesOf(const std::vector<Name>& names);

/// "(4, 0.5)", or "4.25", with as many digits as a message bears.
std::string spoken(Vec2 point);
std::string spoken(double number);

/// A dimension's value as users give and read it, angles in degrees, and as the drawing keeps it.
double spokenValue(ConstraintType type, double kept);
double keptValue(ConstraintType type, double spoken);

/// The parameter of the point of a curve that the user picked, or the one nearest to it. `remarks`, if given, takes a
/// word about a pick that is farther away than a picture is read; EditError for one that nobody can have meant for this
/// curve: farther from it than half the size of both.
double paramOnCurve(const Shape& shape, std::string_view name, Vec2 point, std::vector<std::string>* remarks = nullptr);

/// EditError for points and texts: "p is no curve; only curves can be broken".
void refuseNoCurve(const std::string& name, const Shape& shape, std::string_view done);

/// Refuses what the drawing may not move.
void refuseFixed(const Drawing& drawing, const std::string& name);

}  // namespace holdfast::editing
