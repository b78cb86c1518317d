#include "workbench/cli/Progress.h"

#include <chrono>
#include <iostream>

#include "workbench/cli/Terminal.h"

namespace holdfast {

Progress::Progress(std::string what, std::size_t steps) : m_what(std::move(what)), m_steps(steps) {
    if (isErrorTerminal())
        m_teller = std::thread([this] { tell(); });
}

Progress::~Progress() {
    if (!m_teller.joinable())
        return;
    {
        const std::scoped_lock lock(m_mutex);
        m_isOver = true;
    }
    m_wake.notify_all();
    m_teller.join();
}

void Progress::step() {
    const std::scoped_lock lock(m_mutex);
    ++m_done;
}

void Progress::tell() {
    std::unique_lock lock(m_mutex);
    bool hasTold = false;
    for (int seconds = 1; !m_wake.wait_for(lock, std::chrono::seconds(1), [this] { return m_isOver; }); ++seconds) {
        std::cerr << "\r\x1b[K" << m_what;
        if (m_steps > 0)
            std::cerr << ", " << m_done << " of " << m_steps;
        std::cerr << ", " << seconds << " s" << std::flush;
        hasTold = true;
    }
    if (hasTold)
        std::cerr << "\r\x1b[K" << std::flush;
}

}  // namespace holdfast
