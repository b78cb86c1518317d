#include "apps/window/Pace.h"

#include <gtest/gtest.h>

namespace holdfast::window {

namespace {

using namespace std::chrono_literals;

/// How many of so many requests are answered that a tab makes at even intervals.
int answered(Pace& pace, const std::string& tab, int requests, Pace::Clock::time_point from,
             std::chrono::microseconds each) {
    int count = 0;
    for (int i = 0; i < requests; ++i)
        count += pace.allows(tab, from + i * each) ? 1 : 0;
    return count;
}

const Pace::Clock::time_point kBegin = Pace::Clock::time_point{} + 1h;

TEST(Pace, AnswersAPullThatNeverPausesForAnHour) {
    Pace pace;
    EXPECT_EQ(answered(pace, "a", 250 * 3600, kBegin, 4000us), 250 * 3600);
}

TEST(Pace, AnswersSoManyOfOneTabASecond) {
    Pace pace;
    EXPECT_EQ(answered(pace, "a", 1000, kBegin, 0us), 400);
    EXPECT_EQ(answered(pace, "a", 1000, kBegin + 500ms, 0us), 200);
    EXPECT_EQ(answered(pace, "a", 1000, kBegin + 1h, 0us), 400);
}

TEST(Pace, AnswersOthersMeanwhile) {
    Pace pace;
    answered(pace, "a", 1000, kBegin, 0us);
    EXPECT_EQ(answered(pace, "b", 300, kBegin, 0us), 300);
}

TEST(Pace, AnswersSoManyOfAllTabsASecond) {
    Pace pace;
    int count = 0;
    for (const char* tab : {"a", "b", "c", "d", "e"})
        count += answered(pace, tab, 400, kBegin, 0us);
    EXPECT_EQ(count, 1200);
}

TEST(Pace, KnowsNoMoreTabsThanThereCanBe) {
    Pace pace;
    int count = 0;
    for (int tab = 0; tab < 100'000; ++tab)
        count += pace.allows("tab" + std::to_string(tab), kBegin + tab * 10ms) ? 1 : 0;
    EXPECT_EQ(count, 100'000);  // as slow as that, everybody is answered
    count = 0;
    for (int tab = 0; tab < 5000; ++tab)
        count += pace.allows("other" + std::to_string(tab), kBegin + 1h) ? 1 : 0;
    EXPECT_LE(count, 64 + 400);  // those beyond the 64th share what one may ask
}

}  // namespace

}  // namespace holdfast::window
