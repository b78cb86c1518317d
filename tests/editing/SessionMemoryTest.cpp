// Every allocation of an edit fails once. A program of its own, since operator new is replaced.

#include <gtest/gtest.h>

#include <iostream>

#include "tests/editing/SweptEdits.h"
#include "tests/support/FailingAllocations.h"

namespace holdfast::editing {
namespace {

/// Does an edit while the allocation after so many fails; true when there was one.
bool applyFailing(Session& session, const std::string& edit, long allocations) {
    failAllocationAfter(allocations);
    session.apply(edit);
    return stopFailing();
}

TEST(OutOfMemory, InAnyAllocationOfAnEditLeavesDrawingAndHostAsTheyWere) {
    const Untouched untouched;
    long all = 0;
    for (const std::string& edit : sweptEdits()) {
        Session session(untouched.document);
        long nth = 0;
        for (; applyFailing(session, edit, nth); ++nth) {
            SCOPED_TRACE(edit + ", allocation " + std::to_string(nth + 1));
            ASSERT_NE(session.results().back().outcome.error, "");
            EXPECT_TRUE(session.results().back().fates.entities.empty());
            untouched.expectIn(session);
            if (testing::Test::HasFailure())
                return;
        }
        EXPECT_EQ(session.results().back().outcome.error, "") << edit;
        expectNextEditWorks(session);
        all += nth;
    }
    std::cout << all << " allocations of " << sweptEdits().size() << " edits failed\n";
}

TEST(OutOfMemory, InAnyAllocationOfAnUndoLeavesTheEditDone) {
    Session session(sweptDrawing());
    session.apply("break base at 4,0 to 6,0");
    const Document edited = session.document();
    long nth = 0;
    for (; applyFailing(session, "undo", nth); ++nth) {
        ASSERT_NE(session.results().back().outcome.error, "") << nth;
        ASSERT_EQ(session.document(), edited) << nth;
    }
    EXPECT_EQ(session.document(), sweptDrawing());
    EXPECT_GT(nth, 10);
}

}  // namespace
}  // namespace holdfast::editing
