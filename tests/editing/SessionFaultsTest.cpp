// Every call that the host receives in an edit fails once: thrown, and refused.

#include <gtest/gtest.h>

#include <iostream>

#include "hosting/DocumentSketch.h"
#include "tests/editing/SweptEdits.h"

namespace holdfast::editing {
namespace {

int callsOf(const std::string& edit) {
    Session session(sweptDrawing());
    session.drawing().process().watch(true);
    session.drawing().process().faults().clear();
    EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
    return session.drawing().process().faults().calls();
}

/// An edit that opens the drawing anew is over with its calls before that.
int callsBeforeReopening(const std::string& edit) {
    int calls = 1;
    for (;; ++calls) {
        Session session(sweptDrawing());
        session.drawing().process().watch(true);
        session.drawing().process().faults().throwFromCall(calls);
        if (session.apply(edit).outcome.done())
            return calls - 1;
    }
}

int countedCalls(const std::string& edit) {
    const int calls = callsOf(edit);
    return calls > 0 ? calls : callsBeforeReopening(edit);
}

TEST(HostFailure, InAnyCallOfAnEditLeavesDrawingAndHostAsTheyWere) {
    const Untouched untouched;
    int all = 0;
    for (const std::string& edit : sweptEdits()) {
        const int calls = countedCalls(edit);
        ASSERT_GT(calls, 0) << edit;
        all += calls;
        for (int nth = 1; nth <= calls; ++nth) {
            SCOPED_TRACE(edit + ", call " + std::to_string(nth) + " of " + std::to_string(calls) + " throws");
            Session session(untouched.document);
            session.drawing().process().watch(true);
            session.drawing().process().faults().throwFromCall(nth);
            const EditResult& result = session.apply(edit);
            EXPECT_EQ(result.outcome.error,
                      "\"" + edit + "\" is not possible: the host failed in it; the drawing is as it was");
            EXPECT_TRUE(result.fates.entities.empty() && result.fates.constraints.empty());
            untouched.expectIn(session);
            expectNextEditWorks(session);
            if (testing::Test::HasFailure())
                return;
        }
    }
    std::cout << all << " host calls of " << sweptEdits().size() << " edits thrown from\n";
}

/// Constraints that were kept although they do not hold any more.
std::string brokenIn(const Document& before, const Document& after) {
    const std::vector<double> missesBefore = DocumentSketch(before).shortfalls();
    const std::vector<double> misses = DocumentSketch(after).shortfalls();
    std::string broken;
    for (std::size_t i = 0; i < after.constraints.size(); ++i)
        for (std::size_t k = 0; k < before.constraints.size(); ++k)
            if (before.constraints[k].id == after.constraints[i].id && missesBefore[k] < 1e-6 && misses[i] > 1e-4)
                broken += spokenConstraint(after.constraints[i]) + " ";
    return broken;
}

TEST(HostRefusal, OfAnyCallIsToldOrLeavesADrawingWhoseConstraintsHold) {
    const Untouched untouched;
    int all = 0, told = 0;
    for (const std::string& edit : sweptEdits()) {
        const int calls = countedCalls(edit);
        all += calls;
        for (int nth = 1; nth <= calls; ++nth) {
            SCOPED_TRACE(edit + ", call " + std::to_string(nth) + " of " + std::to_string(calls) + " is refused");
            Session session(untouched.document);
            session.drawing().process().watch(true);
            session.drawing().process().faults().refuseCall(nth);
            const bool done = session.apply(edit).outcome.done();
            session.drawing().process().watch(false);
            told += done ? 0 : 1;
            if (done) {
                EXPECT_EQ(session.document(), session.drawing().document());
                EXPECT_EQ(brokenIn(untouched.document, session.document()), "");
            } else {
                untouched.expectIn(session);
                expectNextEditWorks(session);
            }
            if (testing::Test::HasFailure())
                return;
        }
    }
    std::cout << all << " host calls of " << sweptEdits().size() << " edits refused, " << told << " told\n";
}

TEST(Session, RecordsAnEditThatTheHostThrewFromAsRefused) {
    Session session(sweptDrawing());
    session.drawing().process().watch(true);
    session.drawing().process().faults().throwFromCall(5);
    session.apply("break base at 4,0");
    ASSERT_EQ(session.results().size(), 1u);
    EXPECT_FALSE(session.results().front().outcome.done());
    EXPECT_EQ(session.apply("undo").outcome.error, "there is no edit to take back");
}

TEST(Drawing, RefusesToChangeWhatItDoesNotHave) {
    Drawing drawing(sweptDrawing());
    EXPECT_THROW(drawing.write("nobody", LineShape{}), std::invalid_argument);
    EXPECT_THROW(drawing.erase("nobody"), std::invalid_argument);
    EXPECT_THROW(drawing.removeConstraint("nothing"), std::invalid_argument);
    EXPECT_THROW(drawing.setMeasure("nothing", 1.0), std::invalid_argument);
}

}  // namespace
}  // namespace holdfast::editing
