#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "document/DrawingChange.h"
#include "editing/Uses.h"
#include "editing/fates/Fates.h"

namespace holdfast::editing {

class Drawing;
class HostEvaluator;
struct EditContext;

/// What became of one edit.
struct EditResult {
    EditOutcome outcome;
    Fates fates;  ///< empty when the edit was refused
};

/// A drawing that is being edited. Every edit is one transaction: it is done whole, or the drawing and the host are as
/// they were, bit for bit, whatever is thrown on the way and by whom.
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

    /// The report on all edits so far.
    FateReport report() const;

private:
    void perform(std::string_view edit, EditContext& context, EditResult& result);
    void finishCommand(const EditContext& context);
    void undo(EditResult& result);
    EditedPart partOf(const DrawingChange& change, double sizeBefore) const;
    void take(const DrawingChange& change);
    void goOnFrom(const DrawingChange& change);
    void openAgain();
    void openOn(const OrderedDocument& document);
    void rollBack() noexcept;
    void makeRoom();
    std::string errorOf(std::string_view edit, const std::vector<std::string>& edited) const noexcept;
    std::string reasonOf(std::string_view edit, const std::vector<std::string>& edited) const;
    std::string solversReason(const std::string& reason, const std::vector<std::string>& edited) const;

    mutable OrderedDocument m_document;
    mutable std::vector<DrawingChange> m_pending;  ///< not in m_document yet, in the order in which they were made
    std::vector<DrawingChange> m_undo;
    std::vector<EditResult> m_results;
    std::unique_ptr<Drawing> m_drawing;
    std::unique_ptr<HostEvaluator> m_evaluator;
};

}  // namespace holdfast::editing
