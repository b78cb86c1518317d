#include "editing/Session.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "document/ConstraintNumbers.h"
#include "editing/Check.h"
#include "editing/Commands.h"
#include "editing/Evaluation.h"
#include "editing/Refusal.h"
#include "editing/RefusedEdit.h"
#include "editing/aftermath/Aftermath.h"
#include "editing/aftermath/FormulaFollowing.h"
#include "editing/commands/drag/Pull.h"
#include "editing/constraints/HoldingConstraints.h"
#include "editing/fates/Freedom.h"
#include "editing/fates/TouchedFreedom.h"
#include "editing/text/Parse.h"
#include "editing/ties/Ties.h"
#include "hosting/Drawing.h"
#include "hosting/evaluator/HostEvaluator.h"

namespace holdfast::editing {

namespace {

constexpr const char* kNothingToTakeBack = "there is no edit to take back";
constexpr const char* kNothingToDoAgain =
    "there is no edit to do again; redo does what was taken back last, until another edit is done";
constexpr const char* kNothingToTry = "undo and redo cannot be tried; what they do is known";

/// The host keeps what was erased and deleted until its process ends. So many objects of trials, and as many more as
/// the drawing has, stay there at most: a megabyte or so, and a new process for every few hundred small trials.
constexpr std::size_t kLeftBehind = 2000;

/// Does any command; undo and redo are the session's own.
struct Performer {
    EditContext& context;

    void operator()(const Undo&) const {}
    void operator()(const Redo&) const {}
    template <class Command>
    void operator()(const Command& command) const {
        perform(command, context);
    }
};

/// Ties know better than the comparison of two drawings why they are there.
void tellTies(Fates& fates, const TieReasons& ties) {
    for (ConstraintOutcome& outcome : fates.constraints)
        if (const auto tie = ties.find(outcome.constraint); tie != ties.end() && !tie->second.empty())
            outcome.reason = tie->second;
}

template <class T>
void makeRoomIn(std::vector<T>& list) {
    if (list.size() == list.capacity())
        list.reserve(2 * list.size() + 8);
}

}  // namespace

Session::Session(Document document) : m_document(std::move(document)) {
    const HostProcess::Scope keepsTheFormer;
    m_givenNumbers = m_document.document.constraintNumbers;
    m_next.constraintId = m_givenNumbers + 1;
    m_toldNumber = m_next.constraintId;
    openAgain();
    m_toldNumber = m_next.constraintId;
}

Session::~Session() = default;

void Session::openAgain() {
    document();
    m_pull.reset();
    m_evaluator.reset();
    m_drawing.reset();
    m_drawing = std::make_unique<Drawing>(m_document, m_next);
    m_evaluator = std::make_unique<HostEvaluator>(*m_drawing);
    m_next = m_drawing->next();
    m_tried = 0;
}

Drawing& Session::drawing() {
    if (m_evaluator == nullptr)  // there was no memory to open it after a refused edit
        openAgain();
    return *m_drawing;
}

const Document& Session::document() const {
    bool isTold = m_toldNumber == m_next.constraintId;
    while (!m_pending.empty()) {
        m_document.apply(m_pending.front());
        isTold = isTold && std::none_of(m_pending.front().constraints.begin(), m_pending.front().constraints.end(),
                                        [](const ConstraintChange& change) { return !change.before || !change.after; });
        m_pending.erase(m_pending.begin());
    }
    if (!isTold)
        keepConstraintNumbers(m_document.document, m_next.constraintId - 1);
    m_toldNumber = m_next.constraintId;
    return m_document.document;
}

Document Session::original() const {
    document();
    OrderedDocument original = m_document;
    for (auto step = m_undo.rbegin(); step != m_undo.rend(); ++step)
        original.apply(reversed(step->change));
    original.document.constraintNumbers = m_givenNumbers;
    return std::move(original.document);
}

const EditResult& Session::apply(std::string_view edit) {
    return transact(edit, [&] { return parseFor(edit, *m_drawing, &m_said); });
}

const EditResult& Session::apply(const Edit& edit) {
    return transact(toText(edit), [&] { return edit; });
}

/// The edit is done as any other, and taken out again as if it had not been.
Trial Session::trial(std::string_view edit) {
    document();  // what is pending afterwards is of this edit
    Drawing::ToSolve toSolve = drawing().toSolve();
    std::vector<Step> redo;
    redo.swap(m_redo);
    const bool told = std::exchange(m_tellsFreedom, false);
    const std::optional<int> freedom = m_freedom;
    const std::size_t steps = m_undo.size();
    Trial trial;
    std::exception_ptr failure;
    try {
        transact(edit, [&] {
            Edit read = parseFor(edit, *m_drawing, &m_said);
            if (std::holds_alternative<Undo>(read) || std::holds_alternative<Redo>(read))
                throw EditError(kNothingToTry);
            return read;
        });
        trial.result = std::move(m_results.back());
        m_results.pop_back();
    } catch (...) {
        failure = std::current_exception();
    }
    if (m_undo.size() > steps) {
        Step step = std::move(m_undo.back());
        m_undo.pop_back();
        trial.change = takenOut(std::move(step));
    }
    if (m_drawing != nullptr)
        m_drawing->takeToSolve(std::move(toSolve));
    m_redo.swap(redo);
    m_tellsFreedom = told;
    m_freedom = freedom;
    if (failure)
        std::rethrow_exception(failure);
    return trial;
}

/// What cannot be looked at so is told by a trial, with the reason.
std::optional<Glimpse> Session::glimpse(std::string_view edit, const Box& seen) {
    const HostProcess::Scope bound(drawing().process());
    try {
        const Edit read = parseFor(edit, *m_drawing);
        const auto* drag = std::get_if<Drag>(&read);
        if (drag == nullptr || drag->steps.value != 1)
            return std::nullopt;
        if (m_pull == nullptr || !m_pull->holds(*drag))
            m_pull = std::make_unique<Pull>(*drag, *m_drawing, *m_evaluator, document());
        return m_pull->by(drag->by, seen);
    } catch (...) {
        m_pull.reset();
        return std::nullopt;
    }
}

/// A step's change, which the document has not heard of and the host forgets.
DrawingChange Session::takenOut(Step step) noexcept {
    m_pending.clear();
    m_next = step.before;
    try {
        const HostProcess::Scope bound(m_drawing->process());
        m_tried += step.change.entities.size() + step.change.constraints.size();
        if (m_tried > kLeftBehind + m_document.document.entities.size() + m_document.document.constraints.size())
            openAgain();
        else
            m_drawing->put(reversed(step.change), step.before);
    } catch (...) {
        // The next edit opens it.
        m_evaluator.reset();
        m_drawing.reset();
    }
    return std::move(step.change);
}

std::optional<Refusal> Session::check(const Edit& edit) {
    const HostProcess::Scope bound(drawing().process());
    if (std::holds_alternative<Undo>(edit) && m_undo.empty())
        return Refusal{kNothingToTakeBack};
    if (std::holds_alternative<Redo>(edit) && m_redo.empty())
        return Refusal{kNothingToDoAgain};
    return editing::check(edit, *m_drawing);
}

/// What comes after the last thing that can fail needs no memory.
const EditResult& Session::transact(std::string_view text, const std::function<Edit()>& read) {
    const HostProcess::Scope bound(drawing().process());
    const auto start = std::chrono::steady_clock::now();
    m_pull.reset();
    EditResult result;
    attempt(text, read, result);
    result.time = std::chrono::steady_clock::now() - start;
    m_results.push_back(std::move(result));
    return m_results.back();
}

void Session::makeRoom() {
    makeRoomIn(m_results);
    makeRoomIn(m_undo);
    makeRoomIn(m_redo);
    makeRoomIn(m_pending);
}

void Session::attempt(std::string_view text, const std::function<Edit()>& read, EditResult& result) {
    std::vector<std::string> edited;
    std::optional<Drawing::ToSolve> toSolve;
    try {
        toSolve = m_drawing->toSolve();
        makeRoom();
        result.outcome.text = text;
        DeletionReasons reasons;
        EditContext context{*m_drawing, *m_evaluator, reasons};
        context.givesTies = m_givesTies;
        try {
            m_said.clear();
            const Edit& edit = result.edit.emplace(read());
            context.remarks = std::move(m_said);
            run(edit, context, result);
            return;
        } catch (...) {
            edited = std::move(context.edited);
            throw;
        }
    } catch (...) {
        const RefusedEdit refused{text, edited, *this, *m_drawing, m_evaluator->last()};
        std::string error = refused.sentence();
        RefusalFacts facts = refused.facts();
        rollBack();
        if (toSolve && m_drawing != nullptr)
            m_drawing->takeToSolve(std::move(*toSolve));
        makeRoom();
        result.outcome = {std::string(text), std::move(error)};
        result.refusal = std::move(facts);
        result.fates = {};
        result.freedom.reset();
    }
}

/// The drawing as it was before an edit that was refused: it is opened anew unless nobody has touched it.
void Session::rollBack() noexcept {
    try {
        if (m_evaluator != nullptr && m_drawing->isUntouched()) {
            m_drawing->process().endOfCommand();
            m_evaluator->endCommand();
            // Else somebody left a copy behind, or an object open.
            if (hostState().copies.empty() && HostAccess::openCount(m_drawing->process().database()) == 0)
                return;
        }
        openAgain();
    } catch (...) {
        // Without memory the next edit opens it.
        m_evaluator.reset();
        m_drawing.reset();
    }
}

void Session::run(const Edit& edit, EditContext& context, EditResult& result) {
    if (std::holds_alternative<Undo>(edit))
        return undo(result);
    if (std::holds_alternative<Redo>(edit))
        return redo(result);
    const double sizeBefore = context.drawing.extent();
    std::visit(Performer{context}, edit);
    if (context.shortfall.leftAlone.empty())
        context.shortfall.leftAlone = m_evaluator->last().leftAlone;
    result.outcome.shortfall = context.shortfall;
    if (context.shortfall != Shortfall{})
        result.outcome.remarks = remarksOn(context.shortfall, document(), context.edited);
    finishCommand(context);
    settleOwnConstraints(context, partOf(context.drawing.change(), sizeBefore));
    const TieReasons ties = tied(context, edit, sizeBefore);
    followFormulas(context);
    context.reasons.noteDeleted(context.drawing);
    DrawingChange change = context.drawing.change();
    const EditedPart part = partOf(change, sizeBefore);
    refuseBoundless(part, context.drawing.lengthUnit());
    refuseBroken(part);
    result.outcome.remarks.insert(result.outcome.remarks.end(), context.remarks.begin(), context.remarks.end());
    result.fates = fatesBetween(part.before, part.after, context.edited, m_results.size(), context.reasons);
    tellTies(result.fates, ties);
    result.freedom = freedomOver(change, true);
    Step step{change, m_next, context.drawing.next(), m_results.size()};
    if (context.opensAgain)
        context.drawing.put(change, step.after);
    else
        context.drawing.take(change);
    // Nothing that can fail comes after the host's drawing has taken the change.
    m_pending.push_back(std::move(change));
    m_next = step.after;
    m_undo.push_back(std::move(step));
    m_redo.clear();
    takeFreedom(result.freedom);
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
    putBackHolding(context);
    evaluate(context);
    context.drawing.process().endOfCommand();
    context.evaluator.endCommand();
}

TieReasons Session::tied(EditContext& context, const Edit& edit, double sizeBefore) const {
    if (!m_givesTies)
        return {};
    return editing::giveTies(context, edit, partOf(context.drawing.change(), sizeBefore), deletedByUser());
}

/// By edits that are not taken back. What was switched off is as unwanted.
std::vector<Constraint> Session::deletedByUser() const {
    const auto isByUser = [](const Edit& edit) {
        const auto* set = std::get_if<SetActive>(&edit);
        return std::holds_alternative<Delete>(edit) || (set != nullptr && !set->active);
    };
    std::vector<Constraint> deleted;
    for (const Step& step : m_undo)
        if (const std::optional<Edit>& edit = m_results[step.result].edit; edit && isByUser(*edit))
            for (const ConstraintChange& change : step.change.constraints)
                if (change.before && (!change.after || !change.after->active))
                    deleted.push_back(*change.before);
    return deleted;
}

void Session::undo(EditResult& result) {
    if (m_undo.empty())
        throw EditError(kNothingToTakeBack);
    const DrawingChange change = reversed(m_undo.back().change);
    const EditedPart part = m_drawing->editedPart(change);
    result.fates = fatesOfUndo(part.before, part.after, m_results.size());
    result.freedom = freedomOver(change, false);
    put(change, m_undo.back().before);
    m_redo.push_back(std::move(m_undo.back()));
    m_undo.pop_back();
    takeFreedom(result.freedom);
}

/// What is told of it is what was told when it was done first.
void Session::redo(EditResult& result) {
    if (m_redo.empty())
        throw EditError(kNothingToDoAgain);
    const Step& step = m_redo.back();
    const EditResult& first = m_results[step.result];
    result.fates = first.fates;
    for (ConstraintOutcome& outcome : result.fates.constraints)
        outcome.edit = m_results.size();
    result.outcome.shortfall = first.outcome.shortfall;
    result.outcome.remarks = first.outcome.remarks;
    result.freedom = freedomOver(step.change, false);
    put(step.change, step.after);
    m_undo.push_back(std::move(m_redo.back()));
    m_redo.pop_back();
    takeFreedom(result.freedom);
}

/// The drawing goes on as the change leaves it. Nothing that can fail comes after the host's drawing is there.
void Session::put(const DrawingChange& change, const NextOrders& next) {
    DrawingChange pending = change;
    m_drawing->put(change, next);
    m_pending.push_back(std::move(pending));
    m_next = next;
}

/// Over a change that the host's drawing has made already, or not yet.
std::optional<FreedomChange> Session::freedomOver(const DrawingChange& change, bool isMade) {
    if (!m_tellsFreedom)
        return std::nullopt;
    if (!m_freedom)
        m_freedom = degreesOfFreedom(document());
    const FreedomChange touched = freedomOfTouched(*m_drawing, change, isMade);
    if (m_freedom && touched.before && touched.after)
        return FreedomChange{m_freedom, *m_freedom - *touched.before + *touched.after};
    return wholeFreedomOver(change);
}

FreedomChange Session::wholeFreedomOver(const DrawingChange& change) const {
    document();
    OrderedDocument next = m_document;
    next.apply(change);
    return {m_freedom, degreesOfFreedom(next.document)};
}

void Session::takeFreedom(const std::optional<FreedomChange>& told) {
    m_freedom = told ? told->after : std::nullopt;
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
