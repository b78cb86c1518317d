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
#include "editing/Uses.h"
#include "editing/fates/Fates.h"

namespace holdfast::hosting {
class Drawing;
class HostEvaluator;
}  // namespace holdfast::hosting

namespace holdfast::editing {

struct EditContext;

/// The degrees of freedom of a drawing before and after an edit; nothing for one that the solver cannot read.
struct FreedomChange {
    std::optional<int> before, after;
    friend bool operator==(const FreedomChange&, const FreedomChange&) = default;
};

/// What became of one edit.
struct EditResult {
    EditOutcome outcome;
    std::optional<Edit> edit{};  ///< none when the text could not be read
    Fates fates;                 ///< empty when the edit was refused
    /// How long it took, done or refused, without the degrees of freedom.
    std::chrono::duration<double> time{};
    std::optional<FreedomChange> freedom{};  ///< of an edit that was done, when the session was asked to tell it
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

    /// Does one edit as a user types it ("break g3 at 4,0"); "undo" takes the last one back. A refused edit is
    /// recorded with its error. Throws std::bad_alloc, and nothing has changed, when there is no memory even to record
    /// that.
    const EditResult& apply(std::string_view edit);

    /// The same for an edit as a value; in the report it has the text of toText().
    const EditResult& apply(const Edit& edit);
    /// Why an edit cannot be understood on the drawing as it is, without doing it; nothing when apply() would try it.
    std::optional<Refusal> check(const Edit& edit);

    /// From now on results tell degrees of freedom, which costs more than most edits.
    void tellFreedom(bool tells = true) { m_tellsFreedom = tells; }

    /// The report on all edits so far.
    FateReport report() const;

private:
    const EditResult& transact(std::string_view text, const std::function<Edit()>& read);
    void attempt(std::string_view text, const std::function<Edit()>& read, EditResult& result);
    void run(const Edit& edit, EditContext& context, EditResult& result);
    void undo(EditResult& result);
    EditedPart partOf(const DrawingChange& change, double sizeBefore) const;
    std::optional<FreedomChange> freedomOver(const DrawingChange& change) const;
    void take(const DrawingChange& change);
    void goOnFrom(const DrawingChange& change);
    void openAgain();
    void openOn(const OrderedDocument& document);
    void rollBack() noexcept;
    void makeRoom();
    std::string errorOf(std::string_view text, const std::vector<std::string>& edited) const noexcept;
    std::string reasonOf(std::string_view text, const std::vector<std::string>& edited) const;
    std::string solversReason(const std::string& reason, const std::vector<std::string>& edited) const;
    void finishCommand(const EditContext& context);

    mutable OrderedDocument m_document;
    mutable std::vector<DrawingChange> m_pending;  ///< not in m_document yet, in the order in which they were made
    std::vector<DrawingChange> m_undo;
    std::vector<EditResult> m_results;
    bool m_tellsFreedom = false;
    std::unique_ptr<Drawing> m_drawing;
    std::unique_ptr<HostEvaluator> m_evaluator;
};

}  // namespace holdfast::editing
