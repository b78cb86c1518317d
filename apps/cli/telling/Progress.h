#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

/// Tells on standard error that work goes on, from the second second on and only on a terminal. The line is wiped when
/// the work ends. Work that can count its steps says how far it is.
class Progress {
public:
    explicit Progress(std::string what, std::size_t steps = 0);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// One more step is done.
    void step();

private:
    void tell();

    std::string m_what;
    std::size_t m_steps;
    std::size_t m_done = 0;
    bool m_isOver = false;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_teller;
};

}  // namespace holdfast::cli
