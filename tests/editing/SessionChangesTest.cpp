// A session is told what an edit changed instead of reading the drawing again: it must know the same.

#include <gtest/gtest.h>

#include "editing/fates/Freedom.h"
#include "host/model/HostAudit.h"
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

TEST(SessionDocument, GoesBackAndForthEditByEdit) {
    Session session(sweptDrawing());
    std::vector<Document> states{session.document()};
    for (const std::string& edit : sweptEdits())
        if (session.apply(edit).outcome.done())
            states.push_back(session.document());
    const auto expectState = [&](std::size_t number, const char* verb) {
        ASSERT_EQ(session.apply(verb).outcome.error, "");
        EXPECT_EQ(session.document(), states[number]) << verb << " to state " << number;
        EXPECT_EQ(auditHost(session.drawing().process()), std::vector<std::string>());
        // What opening alone makes, numbers of vertices, is told with the next edit.
        EXPECT_EQ(withoutVertexNumbers(session.drawing().document()), withoutVertexNumbers(states[number]));
    };
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = states.size() - 1; i > 0; --i)
            expectState(i - 1, "undo");
        for (std::size_t i = 1; i < states.size(); ++i)
            expectState(i, "redo");
    }
}

TEST(SessionDocument, GoesBackOverARefusedEditThatHadBegun) {
    Session session(sweptDrawing());
    std::vector<Document> states{session.document()};
    for (const std::string& edit : sweptEdits())
        if (session.apply(edit).outcome.done())
            states.push_back(session.document());
    while (states.size() > 1) {
        session.drawing().write("cut", LineShape{{1, 1}, {2, 2}});
        session.apply("break nothing at 1,1");  // which puts the drawing back to what the session has
        ASSERT_EQ(session.document(), states.back());
        ASSERT_EQ(session.apply("undo").outcome.error, "");
        states.pop_back();
        EXPECT_EQ(session.document(), states.back());
        EXPECT_EQ(session.document(), session.drawing().document());
    }
}

TEST(SessionFreedom, OfTheTouchedPartsIsThatOfTheWholeDrawings) {
    Session session(sweptDrawing());
    session.tellFreedom();
    std::vector<std::string> edits = sweptEdits();
    edits.insert(edits.end(), {"undo", "undo", "redo", "undo", "undo"});
    for (const std::string& edit : edits) {
        const std::optional<int> before = degreesOfFreedom(session.document());
        const EditResult& result = session.apply(edit);
        if (result.outcome.done()) {
            EXPECT_EQ(result.freedom, (FreedomChange{before, degreesOfFreedom(session.document())})) << edit;
        }
    }
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
            if (outcome.fate != ConstraintFate::changed)  // why only the edit knows
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
