#include "editing/Session.h"

#include <new>
#include <stdexcept>
#include <utility>

#include <yxbase/YxError.h>

#include "editing/Aftermath.h"
#include "editing/Check.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/Refusal.h"
#include "editing/fates/Freedom.h"
#include "editing/text/Parse.h"
#include "geometry/GeometryError.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

namespace {

constexpr const char* kNothingToTakeBack = "there is no edit to take back";

/// Does any command; an undo is the session's own.
struct Performer {
    EditContext& context;

    void operator()(const Undo&) const {}
    template <class Command>
    void operator()(const Command& command) const {
        perform(command, context);
    }
};

template <class T>
void makeRoomIn(std::vector<T>& list) {
    if (list.size() == list.capacity())
        list.reserve(2 * list.size() + 8);
}

}  // namespace

Session::Session(Document document) : m_original(document), m_document(std::move(document)) {
    const HostProcess::Scope keepsTheFormer;
    openAgain();
}

Session::~Session() = default;

void Session::openAgain() {
    m_evaluator.reset();
    m_drawing.reset();
    m_drawing = std::make_unique<Drawing>(m_document);
    m_evaluator = std::make_unique<HostEvaluator>(*m_drawing);
}

Drawing& Session::drawing() {
    if (m_evaluator == nullptr)  // there was no memory to open it after a refused edit
        openAgain();
    return *m_drawing;
}

const EditResult& Session::apply(std::string_view edit) {
    return transact(edit, [&] { return parseFor(edit, *m_drawing); });
}

const EditResult& Session::apply(const Edit& edit) {
    return transact(toText(edit), [&] { return edit; });
}

std::optional<Refusal> Session::check(const Edit& edit) {
    const HostProcess::Scope bound(drawing().process());
    if (std::holds_alternative<Undo>(edit) && m_undo.empty())
        return Refusal{kNothingToTakeBack};
    return editing::check(edit, *m_drawing);
}

/// What comes after the last thing that can fail needs no memory.
const EditResult& Session::transact(std::string_view text, const std::function<Edit()>& read) {
    const HostProcess::Scope bound(drawing().process());
    const auto start = std::chrono::steady_clock::now();
    EditResult result;
    attempt(text, read, result);
    result.time = std::chrono::steady_clock::now() - start;
    m_results.push_back(std::move(result));
    return m_results.back();
}

void Session::makeRoom() {
    makeRoomIn(m_results);
    makeRoomIn(m_undo);
}

void Session::attempt(std::string_view text, const std::function<Edit()>& read, EditResult& result) {
    std::vector<std::string> edited;
    try {
        makeRoom();
        result.outcome.text = text;
        DeletionReasons reasons(m_document);
        EditContext context{*m_drawing, *m_evaluator, reasons};
        try {
            run(result.edit.emplace(read()), context, result);
            return;
        } catch (...) {
            edited = std::move(context.edited);
            throw;
        }
    } catch (...) {
        std::string error = errorOf(text, edited);
        rollBack();
        makeRoom();
        result.outcome = {std::string(text), std::move(error)};
        result.fates = {};
        result.freedom.reset();
    }
}

/// The drawing as it was before an edit that was refused, opened anew.
void Session::rollBack() noexcept {
    try {
        openAgain();
    } catch (...) {
        // Without memory the next edit opens it.
        m_evaluator.reset();
        m_drawing.reset();
    }
}

/// Why an edit was refused, out of what is being thrown.
std::string Session::errorOf(std::string_view text, const std::vector<std::string>& edited) const noexcept {
    try {
        return reasonOf(text, edited);
    } catch (...) {
        return "out of memory";  // so short that it takes none
    }
}

std::string Session::reasonOf(std::string_view text, const std::vector<std::string>& edited) const {
    const auto failed = [&](const std::string& what) {
        return "\"" + std::string(text) + "\" is not possible: " + what + "; the drawing is as it was";
    };
    try {
        throw;
    } catch (const RefusedWord& refusal) {
        return solversReason(sentenceOf(refusal.refusal(), text), edited);
    } catch (const GeometryError& refusal) {
        return solversReason(impossible(text, refusal), edited);
    } catch (const std::invalid_argument& refusal) {
        return solversReason(impossible(text, refusal), edited);
    } catch (const std::runtime_error& refusal) {
        return solversReason(refusal.what(), edited);
    } catch (const std::bad_alloc&) {
        return failed("there is not enough memory for it");
    } catch (const std::exception& refusal) {
        return failed(std::string("the program failed in it (") + refusal.what() + ")");
    } catch (const YxError&) {
        return failed("the host failed in it");
    } catch (...) {
        return failed("the program failed in it");
    }
}

/// When the evaluator has failed it knows better what was in the way than the command that gave up.
std::string Session::solversReason(const std::string& reason, const std::vector<std::string>& edited) const {
    return m_evaluator->last().solved ? reason : refusalOf(m_evaluator->last(), m_document, edited);
}

void Session::run(const Edit& edit, EditContext& context, EditResult& result) {
    if (std::holds_alternative<Undo>(edit))
        return undo(result);
    std::visit(Performer{context}, edit);
    finishCommand(context);
    settleOwnConstraints(*m_drawing, m_document);
    context.reasons.noteDeleted(*m_drawing);
    Document after = m_drawing->document();
    result.fates = fatesBetween(m_document, after, context.edited, m_results.size(), context.reasons);
    if (m_tellsFreedom)
        result.freedom = {degreesOfFreedom(m_document), degreesOfFreedom(after)};
    goOnWith(std::move(after), context.opensAgain);
}

/// What the commands have not solved themselves is solved now.
void Session::finishCommand(const EditContext& context) {
    m_drawing->dropLostConstraints();
    evaluate(context);
    m_drawing->process().endOfCommand();
    m_evaluator->endCommand();
}

/// The document of now becomes the one before; when the drawing cannot be opened on the new one, nothing has changed.
void Session::goOnWith(Document next, bool opensAgain) {
    m_undo.push_back(std::exchange(m_document, std::move(next)));
    if (!opensAgain)
        return;
    try {
        openAgain();
    } catch (...) {
        m_document = std::move(m_undo.back());
        m_undo.pop_back();
        throw;
    }
}

void Session::undo(EditResult& result) {
    if (m_undo.empty())
        throw EditError(kNothingToTakeBack);
    result.fates = fatesBetween(m_document, m_undo.back(), {}, m_results.size());
    if (m_tellsFreedom)
        result.freedom = {degreesOfFreedom(m_document), degreesOfFreedom(m_undo.back())};
    std::swap(m_document, m_undo.back());
    try {
        openAgain();
    } catch (...) {
        std::swap(m_document, m_undo.back());
        throw;
    }
    m_undo.pop_back();
}

FateReport Session::report() const {
    std::vector<EditOutcome> edits;
    std::vector<Fates> fates;
    for (const EditResult& result : m_results) {
        edits.push_back(result.outcome);
        fates.push_back(result.fates);
    }
    return runReport(m_original, m_document, edits, fates);
}

}  // namespace holdfast::editing
