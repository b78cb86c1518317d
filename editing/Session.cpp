#include "editing/Session.h"

#include <utility>

#include "editing/Aftermath.h"
#include "editing/Evaluation.h"
#include "editing/Refusal.h"
#include "editing/Verbs.h"
#include "geometry/GeometryError.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

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
    const HostProcess::Scope bound(m_drawing->process());
    EditResult result;
    result.outcome.text = edit;
    m_results.push_back(result);
    EditContext context{*m_drawing, *m_evaluator};
    std::string& error = m_results.back().outcome.error;
    // Geometry and the host's builders speak of shapes without names: the edit gives them one.
    const auto named = [&](const std::exception& refusal) {
        return "\"" + std::string(edit) + "\" is not possible: " + refusal.what();
    };
    try {
        run(edit, context);
        return m_results.back();
    } catch (const GeometryError& refusal) {
        error = errorOf(named(refusal), context.edited);
    } catch (const std::invalid_argument& refusal) {
        error = errorOf(named(refusal), context.edited);
    } catch (const std::runtime_error& refusal) {
        error = errorOf(refusal.what(), context.edited);
    }
    openAgain();
    return m_results.back();
}

/// When the evaluator has failed it knows better what was in the way than the command that gave up.
std::string Session::errorOf(const std::string& reason, const std::vector<std::string>& edited) const {
    return m_evaluator->last().solved ? reason : refusalOf(m_evaluator->last(), m_document, edited);
}

void Session::run(std::string_view edit, EditContext& context) {
    EditText text(edit);
    if (text.accept("undo")) {
        text.expectEnd();
        return undo();
    }
    const EditVerb& verb = takeVerb(text);
    verb.run(text, context);
    finishCommand(context);
    settleOwnConstraints(*m_drawing, m_document);
    Document after = m_drawing->document();
    m_results.back().fates = fatesBetween(m_document, after, context.edited, m_results.size() - 1);
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
        throw EditError("there is no edit to take back");
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
