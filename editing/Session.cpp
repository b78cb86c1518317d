#include "editing/Session.h"

#include <new>

#include <yxbase/YxError.h>

#include "editing/Aftermath.h"
#include "editing/Evaluation.h"
#include "editing/Refusal.h"
#include "editing/Verbs.h"
#include "geometry/GeometryError.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

namespace {

template <class T>
void makeRoomIn(std::vector<T>& list) {
    if (list.size() == list.capacity())
        list.reserve(2 * list.size() + 8);
}

}  // namespace

Session::Session(Document document) : m_document(std::move(document)) {
    openAgain();
}

Session::~Session() = default;

void Session::openAgain() {
    document();
    openOn(m_document);
}

void Session::openOn(const OrderedDocument& document) {
    m_evaluator.reset();
    m_drawing.reset();  // the host process is one at a time
    m_drawing = std::make_unique<Drawing>(document);
    m_evaluator = std::make_unique<HostEvaluator>(*m_drawing);
}

Drawing& Session::drawing() {
    if (m_evaluator == nullptr)  // there was no memory to open it after a refused edit
        openAgain();
    return *m_drawing;
}

const Document& Session::document() const {
    while (!m_pending.empty()) {
        m_document.apply(m_pending.front());
        m_pending.erase(m_pending.begin());
    }
    return m_document.document;
}

Document Session::original() const {
    document();
    OrderedDocument original = m_document;
    for (auto change = m_undo.rbegin(); change != m_undo.rend(); ++change)
        original.apply(reversed(*change));
    return std::move(original.document);
}

/// What comes after the last thing that can fail needs no memory.
const EditResult& Session::apply(std::string_view edit) {
    EditResult result;
    std::vector<std::string> edited;
    try {
        makeRoom();
        result.outcome.text = edit;
        EditContext context{drawing(), *m_evaluator};
        try {
            perform(edit, context, result);
        } catch (...) {
            edited = std::move(context.edited);
            throw;
        }
    } catch (...) {
        std::string error = errorOf(edit, edited);
        rollBack();
        makeRoom();
        result.outcome = {std::string(edit), std::move(error)};
        result.fates = {};
    }
    m_results.push_back(std::move(result));
    return m_results.back();
}

void Session::makeRoom() {
    makeRoomIn(m_results);
    makeRoomIn(m_undo);
    makeRoomIn(m_pending);
}

/// Why an edit was refused, out of what is being thrown.
std::string Session::errorOf(std::string_view edit, const std::vector<std::string>& edited) const noexcept {
    try {
        return reasonOf(edit, edited);
    } catch (...) {
        return "out of memory";  // so short that it takes none
    }
}

std::string Session::reasonOf(std::string_view edit, const std::vector<std::string>& edited) const {
    // Geometry and the host's builders speak of shapes without names: the edit gives them one.
    const auto named = [&](const char* refusal) { return "\"" + std::string(edit) + "\" is not possible: " + refusal; };
    try {
        throw;
    } catch (const GeometryError& refusal) {
        return solversReason(named(refusal.what()), edited);
    } catch (const std::invalid_argument& refusal) {
        return solversReason(named(refusal.what()), edited);
    } catch (const std::runtime_error& refusal) {
        return solversReason(refusal.what(), edited);
    } catch (const std::bad_alloc&) {
        return named("there is not enough memory for it; the drawing is as it was");
    } catch (const std::exception& refusal) {
        return named("the program failed in it (") + refusal.what() + "); the drawing is as it was";
    } catch (const YxError&) {
        return named("the host failed in it; the drawing is as it was");
    } catch (...) {
        return named("the program failed in it; the drawing is as it was");
    }
}

/// When the evaluator has failed it knows better what was in the way than the command that gave up.
std::string Session::solversReason(const std::string& reason, const std::vector<std::string>& edited) const {
    if (m_evaluator == nullptr || m_evaluator->last().solved)
        return reason;
    return refusalOf(m_evaluator->last(), document(), edited);
}

/// The drawing as it was before an edit that was refused: it is opened anew unless nobody has touched it.
void Session::rollBack() noexcept {
    try {
        if (m_evaluator != nullptr && m_drawing->isUntouched()) {
            m_drawing->process().endOfCommand();
            m_evaluator->endCommand();
            if (hostState().copies.empty())  // else somebody left one behind
                return;
        }
        openAgain();
    } catch (...) {
        // Without memory the next edit opens it.
        m_evaluator.reset();
        m_drawing.reset();
    }
}

void Session::perform(std::string_view edit, EditContext& context, EditResult& result) {
    EditText text(edit);
    if (text.accept("undo")) {
        text.expectEnd();
        return undo(result);
    }
    const double sizeBefore = context.drawing.extent();
    takeVerb(text).run(text, context);
    finishCommand(context);
    settleOwnConstraints(context.drawing, partOf(context.drawing.change(), sizeBefore));
    DrawingChange change = context.drawing.change();
    const EditedPart part = partOf(change, sizeBefore);
    refuseBroken(part);
    result.fates = fatesBetween(part.before, part.after, context.edited, m_results.size());
    if (context.opensAgain)
        goOnFrom(change);
    else
        take(change);
    m_undo.push_back(std::move(change));
}

EditedPart Session::partOf(const DrawingChange& change, double sizeBefore) const {
    EditedPart part = m_drawing->editedPart(change);
    part.sizeBefore = sizeBefore;
    part.sizeAfter = m_drawing->extent();
    return part;
}

/// What the commands have not solved themselves is solved now.
void Session::finishCommand(const EditContext& context) {
    context.drawing.dropLostConstraints();
    evaluate(context);
    context.drawing.process().endOfCommand();
    context.evaluator.endCommand();
}

void Session::undo(EditResult& result) {
    if (m_undo.empty())
        throw EditError("there is no edit to take back");
    const DrawingChange change = reversed(m_undo.back());
    const EditedPart part = m_drawing->editedPart(change);
    result.fates = fatesBetween(part.before, part.after, {}, m_results.size());
    goOnFrom(change);
    m_undo.pop_back();
}

/// The drawing goes on as the host has it.
void Session::take(const DrawingChange& change) {
    DrawingChange pending = change;
    m_drawing->take(change);
    m_pending.push_back(std::move(pending));
}

/// The drawing goes on as the change leaves it, opened anew.
void Session::goOnFrom(const DrawingChange& change) {
    document();
    OrderedDocument next = m_document;
    next.apply(change);
    openOn(next);
    m_document = std::move(next);
}

FateReport Session::report() const {
    std::vector<EditOutcome> edits;
    std::vector<Fates> fates;
    for (const EditResult& result : m_results) {
        edits.push_back(result.outcome);
        fates.push_back(result.fates);
    }
    return runReport(original(), document(), edits, fates);
}

}  // namespace holdfast::editing
