#include "apps/cli/telling/Progress.h"

#include <chrono>

#include "apps/cli/telling/Terminal.h"

namespace holdfast::cli {

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
    for (int seconds = 1; !m_wake.wait_for(lock, std::chrono::seconds(1), [this] { return m_isOver; }); ++seconds) {
        std::string line = m_what;
        if (m_steps > 0)
            line += ", " + std::to_string(m_done) + " of " + std::to_string(m_steps);
        showPassingLine(line + ", " + std::to_string(seconds) + " s");
    }
    wipePassingLine();
}

}  // namespace holdfast::cli
