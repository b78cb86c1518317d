// A session is told what an edit changed instead of reading the drawing again: it must know the same.

#include <gtest/gtest.h>

#include "tests/editing/SweptEdits.h"

namespace holdfast::editing {
namespace {

TEST(SessionDocument, IsWhatTheHostHasAfterEveryEdit) {
    Session session(sweptDrawing());
    int done = 0;
    for (const std::string& edit : sweptEdits()) {
        done += session.apply(edit).outcome.done() ? 1 : 0;
        EXPECT_EQ(session.document(), session.drawing().document()) << edit;
    }
    EXPECT_GE(done, 10);
    EXPECT_EQ(session.original(), sweptDrawing());
}

TEST(SessionDocument, ComesBackEditByEdit) {
    Session session(sweptDrawing());
    std::vector<Document> states;
    for (const std::string& edit : sweptEdits()) {
        const Document before = session.document();
        if (session.apply(edit).outcome.done())
            states.push_back(before);
    }
    while (!states.empty()) {
        ASSERT_EQ(session.apply("undo").outcome.error, "");
        EXPECT_EQ(session.document(), states.back());
        EXPECT_EQ(session.document(), session.drawing().document());
        states.pop_back();
    }
    EXPECT_EQ(session.document(), sweptDrawing());
}

/// "" for a constraint that has no fate there, and for one without a reason.
std::string reasonIn(const Fates& fates, const std::string& constraint) {
    for (const ConstraintOutcome& outcome : fates.constraints)
        if (outcome.constraint == constraint)
            return outcome.reason;
    return "";
}

TEST(SessionFates, AreThoseOfTheWholeDrawingsBeforeAndAfter) {
    Session session(sweptDrawing());
    for (const std::string& edit : sweptEdits()) {
        const Document before = session.document();
        const EditResult result = session.apply(edit);
        if (!result.outcome.done())
            continue;
        std::vector<std::string> edited;
        for (const EntityOutcome& outcome : result.fates.entities)
            if (outcome.fate == EntityFate::edited)
                edited.push_back(outcome.entity);
        Fates whole = fatesBetween(before, session.document(), edited, session.results().size() - 1);
        for (ConstraintOutcome& outcome : whole.constraints)
            if (outcome.fate == ConstraintFate::deleted)  // why only the edit knows
                outcome.reason = reasonIn(result.fates, outcome.constraint);
        EXPECT_EQ(result.fates.constraints, whole.constraints) << edit;
        for (const ConstraintOutcome& outcome : result.fates.constraints)
            EXPECT_NE(outcome.reason, "") << edit << ": " << outcome.constraint;
        EXPECT_EQ(result.fates.entities, whole.entities) << edit;
    }
}

TEST(DrawingChange, GoesBothWaysInTheMiddleOfADocument) {
    const Document document = sweptDrawing();
    OrderedDocument ordered(document);
    DrawingChange change;
    change.entities.push_back({1, document.entities[1], std::nullopt});
    change.entities.push_back({3, document.entities[3], lineEntity("cut", {7, -2}, {7, 9})});
    change.entities.push_back({20, std::nullopt, lineEntity("new", {1, 1}, {2, 2})});
    change.constraints.push_back({0, document.constraints[0], std::nullopt});
    ordered.apply(change);
    EXPECT_EQ(ordered.document.entities.size(), document.entities.size());
    EXPECT_EQ(ordered.document.entities[1].id, document.entities[2].id);
    EXPECT_EQ(ordered.document.entities.back().id, "new");
    EXPECT_EQ(ordered.document.constraints.front().id, "c1");
    ordered.apply(reversed(change));
    EXPECT_EQ(ordered.document, document);
}

}  // namespace
}  // namespace holdfast::editing
