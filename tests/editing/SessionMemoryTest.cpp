// Every allocation of an edit fails once. A program of its own: it replaces operator new.

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <new>

#include "tests/editing/SweptEdits.h"

namespace {

/// How many allocations go well before one fails; below 0: all do.
long g_untilFailure = -1;
bool g_failed = false;

void* allocate(std::size_t size) {
    if (g_untilFailure == 0) {
        g_untilFailure = -1;
        g_failed = true;
        return nullptr;
    }
    if (g_untilFailure > 0)
        --g_untilFailure;
    return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
    if (void* memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace holdfast::editing {
namespace {

/// Does an edit while the allocation after so many fails; true when there was one.
bool applyFailing(Session& session, const std::string& edit, long allocations) {
    g_failed = false;
    g_untilFailure = allocations;
    session.apply(edit);
    g_untilFailure = -1;
    return g_failed;
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
