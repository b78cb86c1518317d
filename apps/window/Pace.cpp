#include "apps/window/Pace.h"

#include <algorithm>

namespace holdfast::window {

bool Pace::allows(const std::string& tab, Clock::time_point now) {
    const std::lock_guard lock(m_mutex);
    fill(m_all, kOfAll, now);
    if (m_tabs.size() >= kMostTabs)
        forgetQuiet(now);
    // More tabs than there can be: they share what one may ask.
    const bool isKnown = m_tabs.contains(tab) || m_tabs.size() < kMostTabs;
    Bucket& own = m_tabs.try_emplace(isKnown ? tab : std::string(), Bucket{kOfTab, now}).first->second;
    fill(own, kOfTab, now);
    if (m_all.left < 1.0 || own.left < 1.0)
        return false;
    m_all.left -= 1.0;
    own.left -= 1.0;
    return true;
}

void Pace::fill(Bucket& bucket, double rate, Clock::time_point now) {
    const std::chrono::duration<double> since = now - bucket.filled;
    bucket.left = std::min(rate, bucket.left + rate * std::max(0.0, since.count()));
    bucket.filled = now;
}

void Pace::forgetQuiet(Clock::time_point now) {
    std::erase_if(m_tabs, [&](const auto& each) { return now - each.second.filled > std::chrono::seconds(1); });
}

}  // namespace holdfast::window
