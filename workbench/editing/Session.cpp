#include "workbench/editing/Session.h"

#include "workbench/drawing/Drawing.h"
#include "workbench/editing/EditContext.h"
#include "workbench/editing/Verbs.h"
#include "workbench/geometry/GeometryError.h"

namespace holdfast {

Session::Session(Document document) : m_original(document), m_document(std::move(document)) {
    openAgain();
}

Session::~Session() = default;

void Session::openAgain() {
    m_drawing.reset();  // the host process is one at a time
    m_drawing = std::make_unique<Drawing>(m_document);
}

const EditResult& Session::apply(std::string_view edit) {
    EditResult result;
    result.outcome.text = edit;
    m_results.push_back(result);
    try {
        run(edit);
    } catch (const std::runtime_error& error) {  // EditError and GeometryError alike
        m_results.back().outcome.error = error.what();
        openAgain();
    } catch (const std::invalid_argument& error) {  // what the host's builders refuse
        m_results.back().outcome.error = error.what();
        openAgain();
    }
    return m_results.back();
}

void Session::run(std::string_view edit) {
    EditText text(edit);
    if (text.accept("undo")) {
        text.expectEnd();
        return undo();
    }
    const EditVerb& verb = takeVerb(text);
    EditContext context{*m_drawing, {}};
    verb.run(text, context);
    finishCommand(*m_drawing);
    Document after = m_drawing->document();
    m_results.back().fates = fatesBetween(m_document, after, context.edited, m_results.size() - 1);
    m_undo.push_back(std::exchange(m_document, std::move(after)));
}

void Session::finishCommand(Drawing& drawing) {
    drawing.dropLostConstraints();
    drawing.process().endOfCommand();
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

}  // namespace holdfast
