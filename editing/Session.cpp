#include "editing/Session.h"

#include <utility>

#include "editing/Aftermath.h"
#include "editing/Check.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/fates/Freedom.h"
#include "editing/Refusal.h"
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

const EditResult& Session::apply(std::string_view edit) {
    return transact(edit, [&] { return parseFor(edit, *m_drawing); });
}

const EditResult& Session::apply(const Edit& edit) {
    return transact(toText(edit), [&] { return edit; });
}

std::optional<Refusal> Session::check(const Edit& edit) const {
    const HostProcess::Scope bound(m_drawing->process());
    if (std::holds_alternative<Undo>(edit) && m_undo.empty())
        return Refusal{kNothingToTakeBack};
    return editing::check(edit, *m_drawing);
}

const EditResult& Session::transact(std::string_view text, const std::function<Edit()>& read) {
    const HostProcess::Scope bound(m_drawing->process());
    EditResult result;
    result.outcome.text = text;
    m_results.push_back(result);
    const std::optional<int> before = m_tellsFreedom ? degreesOfFreedom(m_document) : std::nullopt;
    const auto start = std::chrono::steady_clock::now();
    attempt(text, read);
    m_results.back().time = std::chrono::steady_clock::now() - start;
    if (m_tellsFreedom && m_results.back().outcome.done())
        m_results.back().freedom = {before, degreesOfFreedom(m_document)};
    return m_results.back();
}

void Session::attempt(std::string_view text, const std::function<Edit()>& read) {
    DeletionReasons reasons(m_document);
    EditContext context{*m_drawing, *m_evaluator, reasons};
    std::string& error = m_results.back().outcome.error;
    try {
        run(m_results.back().edit.emplace(read()), context);
        return;
    } catch (const RefusedWord& refusal) {
        error = errorOf(sentenceOf(refusal.refusal(), text), context.edited);
    } catch (const GeometryError& refusal) {
        error = errorOf(impossible(text, refusal), context.edited);
    } catch (const std::invalid_argument& refusal) {
        error = errorOf(impossible(text, refusal), context.edited);
    } catch (const std::runtime_error& refusal) {
        error = errorOf(refusal.what(), context.edited);
    }
    openAgain();
}

/// When the evaluator has failed it knows better what was in the way than the command that gave up.
std::string Session::errorOf(const std::string& reason, const std::vector<std::string>& edited) const {
    return m_evaluator->last().solved ? reason : refusalOf(m_evaluator->last(), m_document, edited);
}

void Session::run(const Edit& edit, EditContext& context) {
    if (std::holds_alternative<Undo>(edit))
        return undo();
    std::visit(Performer{context}, edit);
    finishCommand(context);
    settleOwnConstraints(*m_drawing, m_document);
    context.reasons.noteDeleted(*m_drawing);
    Document after = m_drawing->document();
    m_results.back().fates = fatesBetween(m_document, after, context.edited, m_results.size() - 1, context.reasons);
    m_undo.push_back(std::exchange(m_document, std::move(after)));
    if (context.opensAgain)
        openAgain();
}

/// What the commands have not solved themselves is solved now.
void Session::finishCommand(const EditContext& context) {
    m_drawing->dropLostConstraints();
    evaluate(context);
    m_drawing->process().endOfCommand();
    m_evaluator->endCommand();
}

void Session::undo() {
    if (m_undo.empty())
        throw EditError(kNothingToTakeBack);
    Document before = std::move(m_undo.back());
    m_undo.pop_back();
    m_results.back().fates = fatesBetween(m_document, before, {}, m_results.size() - 1);
    m_document = std::move(before);
    openAgain();
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
