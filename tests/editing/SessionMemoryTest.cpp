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

/// Every allocation of an undo or a redo fails once, and the drawing is as it was; then it is done.
void failThroughout(Session& session, const std::string& edit, const Document& result) {
    const Document before = session.document();
    long nth = 0;
    for (; applyFailing(session, edit, nth); ++nth) {
        ASSERT_NE(session.results().back().outcome.error, "") << nth;
        ASSERT_EQ(session.document(), before) << nth;
        ASSERT_EQ(session.drawing().document(), before) << nth;
    }
    EXPECT_EQ(session.document(), result);
    EXPECT_GT(nth, 10);
}

TEST(OutOfMemory, InAnyAllocationOfAnUndoLeavesTheEditDone) {
    Session session(sweptDrawing());
    session.apply("break base at 4,0 to 6,0");
    failThroughout(session, "undo", sweptDrawing());
}

TEST(OutOfMemory, InAnyAllocationOfARedoLeavesTheEditUndone) {
    Session session(sweptDrawing());
    session.apply("break base at 4,0 to 6,0");
    const Document edited = session.document();
    session.apply("undo");
    failThroughout(session, "redo", edited);
}

}  // namespace
}  // namespace holdfast::editing
