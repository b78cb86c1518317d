#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>
#include <unordered_map>

#include "apps/window/Uses.h"

namespace holdfast::window {

/// How many requests are answered: so many a second from one tab, and so many from all of them. A pull asks no oftener
/// than a screen is drawn, and waits for each answer; what comes faster is no hand. Any thread may call.
class Pace {
public:
    using Clock = std::chrono::steady_clock;

    /// In a second. A page that loads asks for some thirty files at once, a pull at most for 250 places (its page waits
    /// four milliseconds between two), so that both together stay below.
    static constexpr double kOfTab = 400.0, kOfAll = 1200.0;

    /// Whether a request may be answered that comes from this tab now. What is refused does not count.
    bool allows(const std::string& tab, Clock::time_point now = Clock::now());

private:
    /// What may come at once at most is what may come in a second; it fills up again as time goes by.
    struct Bucket {
        double left;
        Clock::time_point filled;
    };
    /// Tabs that have been quiet are forgotten: nobody can fill the memory with names of tabs.
    static constexpr std::size_t kMostTabs = 64;

    static void fill(Bucket& bucket, double rate, Clock::time_point now);
    void forgetQuiet(Clock::time_point now);

    std::mutex m_mutex;
    Bucket m_all{kOfAll, {}};
    std::unordered_map<std::string, Bucket> m_tabs;
};

}  // namespace holdfast::window
