#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "apps/window/Uses.h"

namespace holdfast::window {

/// The tabs that look at the drawing, and the news that they wait for: the number of its state. Any thread may call.
class Tabs {
public:
    using Clock = std::chrono::steady_clock;

    /// So many at once; a tab beyond them is refused, since each waits on a thread of the server's.
    static constexpr int kMost = 8;

    /// False when there are too many.
    bool enter();
    void leave();

    /// All are told of a new state, or that the server ends.
    void tell(std::uint64_t state);
    void close();

    struct News {
        std::uint64_t state = 0;
        bool isOver = false;  ///< the server ends
    };
    /// Waits until the state is another one than `known`, the server ends, or the time is up.
    News wait(std::uint64_t known, std::chrono::milliseconds atMost);

    /// True when there has been a tab, and there has been none for so long.
    bool goneFor(std::chrono::duration<double> time) const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_news;
    int m_count = 0;
    bool m_wasAny = false;
    Clock::time_point m_left{};
    News m_latest;
};

}  // namespace holdfast::window
