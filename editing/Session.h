#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/DrawingChange.h"
#include "editing/Edit.h"
#include "editing/EditError.h"
#include "editing/Glimpse.h"
#include "editing/RefusalFacts.h"
#include "editing/Uses.h"
#include "editing/fates/Fates.h"
#include "editing/fates/FreedomChange.h"
#include "editing/ties/Tie.h"
#include "geometry/Box.h"

namespace holdfast::hosting {
class Drawing;
class HostEvaluator;
}  // namespace holdfast::hosting

namespace holdfast::editing {

struct EditContext;
class Pull;

/// What became of one edit.
struct EditResult {
    EditOutcome outcome;
    std::optional<Edit> edit{};             ///< none when the text could not be read
    Fates fates;                            ///< empty when the edit was refused
    std::optional<RefusalFacts> refusal{};  ///< of an edit that was refused
    /// How long it took, done or refused, without the degrees of freedom.
    std::chrono::duration<double> time{};
    std::optional<FreedomChange> freedom{};  ///< of an edit that was done, when the session was asked to tell it
};

/// What an edit would do, told without doing it.
struct Trial {
    EditResult result;     ///< as apply() would tell it, without degrees of freedom
    DrawingChange change;  ///< from the drawing as it is to what it would be; empty when the edit was refused
};

/// A drawing that is being edited. Every edit is one transaction: it is done whole, or the drawing and the host are as
/// they were, bit for bit, whatever is thrown on the way and by whom.
///
/// There may be many. Each has a host process of its own, which is current while the session works and never else, so
/// that sessions in different threads know nothing of each other. One thread at a time uses a session.
class Session {
public:
    explicit Session(Document document);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The drawing as it is now. Cost: what was edited since this was asked last; one pass when something was made or
    /// erased.
    const Document& document() const;
    /// The drawing as the host holds it, for looking into.
    Drawing& drawing();
    /// The drawing as it was in the beginning. Cost: a copy.
    Document original() const;
    const std::vector<EditResult>& results() const { return m_results; }

    /// Does one edit as a user types it ("break g3 at 4,0"); "undo" takes the last one back that was done, "redo" does
    /// that again as long as no other edit has been done. Both cost what the edit has touched. A refused edit is
    /// recorded with its error. Throws std::bad_alloc, and nothing has changed, when there is no memory even to record
    /// that.
    const EditResult& apply(std::string_view edit);

    /// The same for an edit as a value; in the report it has the text of toText().
    const EditResult& apply(const Edit& edit);
    /// What apply() would do now, without doing it: the drawing stays, undo and redo are where they were, the report
    /// knows nothing of it. To undo and redo there is nothing to try: they are refused. Cost: that of the edit, and of
    /// opening anew in the host what it touches.
    Trial trial(std::string_view edit);
    /// What a drag would move, as trial() would tell it; for a hand that pulls, which asks for one drag after another
    /// of the same places, and looks at a part of the drawing: what neither lies nor would come to lie there is not
    /// told. Nothing for other edits, for those that are refused, and where only a trial tells. Cost: the first time
    /// the drawing, then the solve and what moves, as long as nothing else is asked of the session.
    std::optional<Glimpse> glimpse(std::string_view edit, const Box& seen = kEverywhere);
    /// What edits have done since document() was asked last, one change for each edit, in their order; valid until
    /// document() is asked again or another edit is done.
    const std::vector<DrawingChange>& changes() const { return m_pending; }
    /// Whether there is an edit to take back, and one to do again.
    bool canUndo() const { return !m_undo.empty(); }
    bool canRedo() const { return !m_redo.empty(); }
    /// Why an edit cannot be understood on the drawing as it is, without doing it; nothing when apply() would try it.
    std::optional<Refusal> check(const Edit& edit);

    /// From now on results tell degrees of freedom. The first one counts those of the whole drawing, which costs more
    /// than most edits; after it an edit counts those of the parts that it touches.
    void tellFreedom(bool tells = true) { m_tellsFreedom = tells; }

    /// From now on edits give ties, or leave the drawing as bare as the module does. They give them from the beginning:
    /// an end on its cutter, pieces in line, what still holds or what another piece of a curve carries on.
    void giveTies(bool gives = true) { m_givesTies = gives; }

    /// The report on all edits so far.
    FateReport report() const;

private:
    /// An edit that was done, and what the drawing counted on from before it and after it.
    struct Step {
        DrawingChange change;
        NextOrders before, after;
        std::size_t result = 0;  ///< in m_results
    };

    const EditResult& transact(std::string_view text, const std::function<Edit()>& read);
    void attempt(std::string_view text, const std::function<Edit()>& read, EditResult& result);
    void run(const Edit& edit, EditContext& context, EditResult& result);
    void undo(EditResult& result);
    void redo(EditResult& result);
    void put(const DrawingChange& change, const NextOrders& next);
    DrawingChange takenOut(Step step) noexcept;
    void takeFreedom(const std::optional<FreedomChange>& told);
    std::optional<FreedomChange> freedomOver(const DrawingChange& change, bool isMade);
    FreedomChange wholeFreedomOver(const DrawingChange& change) const;
    EditedPart partOf(const DrawingChange& change, double sizeBefore) const;
    void openAgain();
    void rollBack() noexcept;
    void makeRoom();
    void finishCommand(const EditContext& context);
    TieReasons tied(EditContext& context, const Edit& edit, double sizeBefore) const;
    std::vector<Constraint> deletedByUser() const;

    mutable OrderedDocument m_document;
    mutable std::vector<DrawingChange> m_pending;  ///< not in m_document yet, in the order in which they were made
    std::vector<Step> m_undo, m_redo;
    std::vector<std::string> m_said;       ///< remarks on an edit that is being read
    mutable std::size_t m_toldNumber = 0;  ///< that m_document knows of: the next number of a constraint
    std::size_t m_givenNumbers = 0;        ///< of constraints that were used up in the beginning
    NextOrders m_next;                     ///< of the drawing without the edit that is being done
    std::vector<EditResult> m_results;
    std::size_t m_tried = 0;  ///< objects that trials have left behind in the host
    bool m_tellsFreedom = false, m_givesTies = true;
    std::optional<int> m_freedom;  ///< of the drawing without the edit that is being done; none: not counted
    std::unique_ptr<Drawing> m_drawing;
    std::unique_ptr<HostEvaluator> m_evaluator;
    std::unique_ptr<Pull> m_pull;  ///< that was looked at last; of the drawing as it is
};

}  // namespace holdfast::editing
