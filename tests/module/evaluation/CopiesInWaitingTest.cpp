#include "evaluation/CopiesInWaiting.h"

#include <gtest/gtest.h>

#include <optional>

#include "evaluation/EntityOpening.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kWaiting = "line b 0,0 4,0; line a 0,0 0,3; dependency a; dependency b";

TEST(CopiesInWaiting, AreFreedWhenNobodyTookThem) {
    FeedingScene scene(kWaiting);
    {
        CopiesInWaiting waiting;
        waiting.keep(copyOf(*scene.pointer("a")));
        waiting.keep(copyOf(*scene.pointer("a")));
        EXPECT_EQ(scene.copies(), 2);
    }
    EXPECT_EQ(scene.copies(), 0);
}

TEST(CopiesInWaiting, BelongToTheHeaderOnceHandedOver) {
    FeedingScene scene(kWaiting);
    YxDbEntity* copy = copyOf(*scene.pointer("a"));
    {
        CopiesInWaiting waiting;
        waiting.keep(copy);
        waiting.handOver(copy, scene.header());
        waiting.handOver(copy, scene.header());
    }
    EXPECT_EQ(scene.copies(), 1);
    EXPECT_TRUE(HostAccess::adopted(scene.header()).contains(copy));
}

TEST(CopiesInWaiting, StayWithTheirFirstHeader) {
    FeedingScene scene(kWaiting);
    YxDbEntity* copy = copyOf(*scene.pointer("a"));
    CopiesInWaiting waiting;
    waiting.keep(copy);
    waiting.handOver(copy, scene.header("near"));
    waiting.handOver(copy, scene.header("far"));
    EXPECT_TRUE(HostAccess::adopted(scene.header("near")).contains(copy));
    EXPECT_TRUE(HostAccess::adopted(scene.header("far")).empty());
}

TEST(CopiesInWaiting, AreSharedByCopiesOfTheirKeeper) {
    FeedingScene scene(kWaiting);
    YxDbEntity* copy = copyOf(*scene.pointer("a"));
    std::optional<CopiesInWaiting> first(std::in_place);
    first->keep(copy);
    CopiesInWaiting second(*first);
    first.reset();
    EXPECT_EQ(scene.copies(), 1);
    second.handOver(copy, scene.header());
    EXPECT_TRUE(HostAccess::adopted(scene.header()).contains(copy));
}

TEST(CopiesInWaiting, AreNeverAHeadersWhenTheyAreNullOrNotKept) {
    FeedingScene scene(kWaiting);
    CopiesInWaiting waiting;
    waiting.keep(nullptr);
    waiting.handOver(nullptr, scene.header());
    waiting.handOver(scene.pointer("a"), scene.header());
    EXPECT_TRUE(HostAccess::adopted(scene.header()).empty());
}

}  // namespace
}  // namespace holdfast::module
