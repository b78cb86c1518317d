#include "editing/RefusedEdit.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include <yxbase/YxError.h>

#include "editing/EditContext.h"
#include "editing/EditError.h"
#include "editing/Refusal.h"
#include "editing/Session.h"
#include "geometry/GeometryError.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

std::string RefusedEdit::sentence() const noexcept {
    try {
        return reason();
    } catch (...) {
        return "out of memory";  // so short that it takes none
    }
}

/// Out of what is being thrown.
std::string RefusedEdit::reason() const {
    const auto failed = [&](const std::string& what) {
        return "\"" + std::string(text) + "\" is not possible: " + what + "; the drawing is as it was";
    };
    try {
        throw;
    } catch (const RefusedWord& refusal) {
        return solversReason(sentenceOf(refusal.refusal(), text));
    } catch (const GeometryError& refusal) {
        return solversReason(impossible(text, refusal));
    } catch (const std::invalid_argument& refusal) {
        return solversReason(impossible(text, refusal));
    } catch (const std::runtime_error& refusal) {
        return solversReason(refusal.what());
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

RefusalFacts RefusedEdit::facts() const noexcept {
    try {
        return blame();
    } catch (...) {
        return {RefusalCause::memory};
    }
}

RefusalFacts RefusedEdit::blame() const {
    try {
        throw;
    } catch (const EditSyntaxError& refusal) {
        return {RefusalCause::text, refusal.column()};
    } catch (const RefusedWord& refusal) {
        return solversFacts().value_or(RefusalFacts{RefusalCause::word, refusal.refusal().column});
    } catch (const std::bad_alloc&) {
        return {RefusalCause::memory};
    } catch (const std::invalid_argument&) {
        return solversFacts().value_or(RefusalFacts{});
    } catch (const std::runtime_error&) {
        return solversFacts().value_or(RefusalFacts{});
    } catch (...) {
        return {RefusalCause::failure};
    }
}

std::optional<RefusalFacts> RefusedEdit::solversFacts() const {
    if (evaluation.solved)
        return std::nullopt;
    RefusalFacts facts{.cause = RefusalCause::constraints, .followed = evaluation.followed};
    std::vector<std::string> inTheWay = evaluation.conflicting;
    if (inTheWay.empty())
        inTheWay.push_back(evaluation.worst);
    for (const Constraint& constraint :
         session.document().constraints)  // what the edit has added is none of the drawing's
        if (constraint.active && std::find(inTheWay.begin(), inTheWay.end(), constraint.id) != inTheWay.end())
            facts.constraints.push_back(constraint.id);
    return facts;
}

std::string RefusedEdit::solversReason(const std::string& reason) const {
    if (evaluation.solved)
        return reason;
    Document concerned;
    for (const Constraint& constraint : session.document().constraints)
        if (constraint.id == evaluation.worst || std::find(evaluation.conflicting.begin(), evaluation.conflicting.end(),
                                                           constraint.id) != evaluation.conflicting.end())
            concerned.constraints.push_back(constraint);
    // What the edit has added is in the way, too, but nothing that could be deleted.
    const auto isThere = [&](const std::string& id) {
        return std::any_of(concerned.constraints.begin(), concerned.constraints.end(),
                           [&](const Constraint& constraint) { return constraint.id == id && constraint.active; });
    };
    std::vector<Constraint> added;
    for (const std::string& id : evaluation.conflicting)
        if (std::optional<Constraint> found = isThere(id) ? std::nullopt : drawing.constraint(id))
            added.push_back(std::move(*found));
    const std::vector<std::string> determined =
        isUnexplained(evaluation) ? determinedAmong(session.document(), edited) : std::vector<std::string>();
    return refusalOf(evaluation, concerned, edited, added, determined);
}

}  // namespace holdfast::editing
