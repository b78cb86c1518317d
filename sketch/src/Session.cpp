#include "holdfast/sketch/Session.h"

#include <utility>

#include "editing/Session.h"

namespace holdfast::sketch {

namespace {

/// A document that the host can open.
Document checked(Document document) {
    checkDocument(document, document.name.empty() ? "the drawing" : document.name);
    return document;
}

EditResult resultOf(const editing::EditResult& done) {
    EditResult result{.text = done.outcome.text,
                      .error = done.outcome.error,
                      .edit = done.edit,
                      .constraints = done.fates.constraints,
                      .entities = done.fates.entities,
                      .shortfall = done.outcome.shortfall,
                      .remarks = done.outcome.remarks,
                      .time = done.time};
    if (done.freedom) {
        result.freedomBefore = done.freedom->before;
        result.freedomAfter = done.freedom->after;
    }
    return result;
}

/// What is there after a change, and the ids of what is not.
template <class Change, class Thing>
void takeSides(const std::vector<Change>& changes, std::vector<Thing>& there, std::vector<std::string>& gone) {
    for (const Change& change : changes)
        if (change.after)
            there.push_back(*change.after);
        else if (change.before)
            gone.push_back(change.before->id);
}

}  // namespace

Session::Session(Document document) : m_session(std::make_unique<editing::Session>(checked(std::move(document)))) {}
Session::~Session() = default;
Session::Session(Session&&) noexcept = default;
Session& Session::operator=(Session&&) noexcept = default;

const Document& Session::document() const {
    return m_session->document();
}

Document Session::original() const {
    return m_session->original();
}

EditResult Session::apply(const Edit& edit) {
    return resultOf(m_session->apply(edit));
}

EditResult Session::apply(std::string_view edit) {
    return resultOf(m_session->apply(edit));
}

EditResult Session::undo() {
    return apply(Undo{});
}

EditResult Session::redo() {
    return apply(Redo{});
}

Trial Session::trial(std::string_view edit) {
    const editing::Trial tried = m_session->trial(edit);
    Trial trial{.result = resultOf(tried.result)};
    takeSides(tried.change.entities, trial.entities, trial.erased);
    takeSides(tried.change.constraints, trial.constraints, trial.deleted);
    return trial;
}

std::optional<Refusal> Session::check(const Edit& edit) {
    return m_session->check(edit);
}

void Session::tellFreedom(bool tells) {
    m_session->tellFreedom(tells);
}

void Session::giveTies(bool gives) {
    m_session->giveTies(gives);
}

FateReport Session::report() const {
    return m_session->report();
}

}  // namespace holdfast::sketch
