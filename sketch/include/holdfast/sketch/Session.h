#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "holdfast/sketch/Drawing.h"
#include "holdfast/sketch/Edits.h"
#include "holdfast/sketch/Export.h"
#include "holdfast/sketch/Fates.h"

namespace holdfast::editing {
class Session;
}  // namespace holdfast::editing

namespace holdfast::sketch {

/// What became of one edit.
struct EditResult {
    std::string text;                            ///< the edit as a user types it
    std::string error{};                         ///< why it was refused, in one sentence; empty: it was done
    std::optional<Edit> edit{};                  ///< none when the text could not be read
    std::vector<ConstraintOutcome> constraints;  ///< deleted, re-pointed, added and restored ones; the others are kept
    std::vector<EntityOutcome> entities;         ///< with ways and sizes; those that are left out are untouched
    Shortfall shortfall{};                       ///< how far a drag ended from where it was asked to, and why
    std::vector<std::string> remarks{};          ///< what to know about an edit that was done, a sentence each
    /// How long it took, done or refused, without the degrees of freedom.
    std::chrono::duration<double> time{};
    /// Of the whole drawing; only when the session was asked to tell them and the solver can read the drawing.
    std::optional<int> freedomBefore{}, freedomAfter{};

    bool done() const { return error.empty(); }
};

/// What an edit would do, told without doing it.
struct Trial {
    EditResult result;                      ///< as apply() would tell it, without degrees of freedom
    std::vector<Entity> entities{};         ///< those that would be made or be others, as they would be
    std::vector<std::string> erased{};      ///< the ids of entities that would go
    std::vector<Constraint> constraints{};  ///< the same of constraints
    std::vector<std::string> deleted{};
};

/// A drawing that is being edited. Every edit is one transaction: it is done whole, or the drawing is as it was, bit
/// for bit, and the result says why.
///
/// There may be many sessions, in as many threads. One thread at a time uses a session. One that was moved from can
/// only be assigned to and destroyed.
class HOLDFAST_SKETCH_EXPORT Session {
public:
    /// Throws DrawingError for a document that checkDocument refuses. Cost: linear in the drawing.
    explicit Session(Document document);
    ~Session();
    Session(Session&&) noexcept;
    Session& operator=(Session&&) noexcept;

    /// The drawing as it is now, valid until the next edit. Cost: what was edited since this was asked last; one pass
    /// when something was made or erased.
    const Document& document() const;
    /// The drawing as it was given. Cost: a copy.
    Document original() const;

    /// Does one edit. What cannot be done is no exception but a result with an error. Throws std::bad_alloc, and
    /// nothing has changed, when there is no memory even to say that. Undo{} and Redo{} are undo() and redo().
    EditResult apply(const Edit& edit);
    /// The same for an edit as a user types it; errors point at the word that is wrong.
    EditResult apply(std::string_view edit);

    /// Takes the last edit back that was done; its entities and constraints are told as restored. Refused when there is
    /// none. Cost: what the edit touched.
    EditResult undo();
    /// Does the edit again that was taken back last, with the fates that it had. Refused when there is none, or when
    /// another edit has been done since. Cost: what the edit touched.
    EditResult redo();

    /// What apply() would do now with an edit as a user types it, without doing it: the drawing stays, undo and redo
    /// are where they were, the report knows nothing of it. Refused are undo and redo. Cost: that of the edit, and of
    /// opening anew what it touches.
    Trial trial(std::string_view edit);

    /// Why an edit cannot be understood on the drawing as it is, without doing it; nothing when apply() would try it.
    /// Constraints that do not allow it show only when it is done. Cost: linear in the entities that the edit names,
    /// for Stretch in the drawing.
    std::optional<Refusal> check(const Edit& edit);

    /// From now on results tell degrees of freedom. The first one counts those of the whole drawing, which costs more
    /// than most edits; after it an edit counts those of the parts that it touches.
    void tellFreedom(bool tells = true);

    /// From now on edits give ties, as they do from the beginning, or leave the drawing barer: constraints for what
    /// holds as drawn after a cut (an end on its cutter, pieces in line, the tangencies of a fillet), for what still
    /// holds although a cut took it, and for what another piece of a curve carries on. Nothing moves for a tie, none
    /// says what others say already, and undo takes them back with their edit.
    void giveTies(bool gives = true);

    /// All edits so far in one report, refused ones included. Cost: linear in the drawing and in what they did.
    FateReport report() const;

private:
    std::unique_ptr<editing::Session> m_session;
};

}  // namespace holdfast::sketch
