#include "apps/window/Tabs.h"

namespace holdfast::window {

bool Tabs::enter() {
    const std::lock_guard lock(m_mutex);
    if (m_count == kMost)
        return false;
    ++m_count;
    m_wasAny = true;
    return true;
}

void Tabs::leave() {
    const std::lock_guard lock(m_mutex);
    --m_count;
    m_left = Clock::now();
}

void Tabs::tell(std::uint64_t state) {
    {
        const std::lock_guard lock(m_mutex);
        m_latest.state = state;
    }
    m_news.notify_all();
}

void Tabs::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_latest.isOver = true;
    }
    m_news.notify_all();
}

Tabs::News Tabs::wait(std::uint64_t known, std::chrono::milliseconds atMost) {
    std::unique_lock lock(m_mutex);
    m_news.wait_for(lock, atMost, [&] { return m_latest.state != known || m_latest.isOver; });
    return m_latest;
}

bool Tabs::goneFor(std::chrono::duration<double> time) const {
    const std::lock_guard lock(m_mutex);
    return m_wasAny && m_count == 0 && Clock::now() - m_left > time;
}

}  // namespace holdfast::window
