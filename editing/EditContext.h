#pragma once

#include <memory>
#include <string>
#include <vector>

#include "editing/Uses.h"
#include "editing/text/EditText.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

/// What an editing command works on, and what it tells about its work.
struct EditContext {
    Drawing& drawing;
    HostEvaluator& evaluator;
    std::vector<std::string> edited{};  ///< the entities that the user edited, by name
    /// The session is to open the drawing anew afterwards, in which arcs are seen from above again.
    bool opensAgain = false;
};

/// EditError for a name that no entity has, which stands so many words before the reading place. It may be meant for
/// the name of one, or for one of the words that end a list of them.
[[noreturn]] void refuseUnknown(const EditText& text, const EditContext& context, const std::string& name,
                                std::size_t back = 1, std::span<const std::string_view> ends = {});

/// Takes the name of an entity that the drawing has; for one that it has not, EditError with the nearest name.
std::string takeEntity(EditText& text, const EditContext& context, std::string_view what = "an entity");

/// The same for several entities, up to an ending word.
std::vector<std::string> takeEntities(EditText& text, const EditContext& context, std::string_view what,
                                      std::span<const std::string_view> ends);

/// "(4, 0.5)", or "4.25", with as many digits as a message bears.
std::string spoken(Vec2 point);
std::string spoken(double number);

/// The parameter of a point that the user says lies on a curve; EditError with the nearest point when it does not.
double paramOnCurve(const Shape& shape, std::string_view name, Vec2 point);

/// EditError for points and texts: "p is no curve; only curves can be broken".
void refuseNoCurve(const std::string& name, const Shape& shape, std::string_view done);

/// Refuses what the drawing may not move.
void refuseFixed(const EditContext& context, const std::string& name);

}  // namespace holdfast::editing
