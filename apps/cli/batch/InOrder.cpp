#include "apps/cli/batch/InOrder.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace holdfast::cli {

namespace {

class Workshop {
public:
    Workshop(const WorkInOrder& pieces, unsigned threads) : m_pieces(pieces), m_isDone(pieces.after.size()) {
        const std::size_t useful = std::min<std::size_t>(std::max(threads, 1U), pieces.after.size());
        m_workers.reserve(useful);
        for (std::size_t i = 0; i < useful; ++i)
            m_workers.emplace_back([this] { work(); });
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;
    /// Ends when what has been begun is done.
    ~Workshop() {
        {
            const std::scoped_lock lock(m_mutex);
            m_next = m_isDone.size();
        }
        for (std::thread& worker : m_workers)
            worker.join();
    }

    void waitFor(std::size_t piece) {
        std::unique_lock lock(m_mutex);
        m_change.wait(lock, [&] { return m_isDone[piece]; });
    }

private:
    /// Pieces are begun in the order of their numbers and wait for lower ones only, so that none waits for ever.
    void work() {
        std::unique_lock lock(m_mutex);
        while (m_next < m_isDone.size()) {
            const std::size_t piece = m_next++;
            m_change.wait(lock, [&] { return areDone(m_pieces.after[piece]); });
            lock.unlock();
            m_pieces.work(piece);
            lock.lock();
            m_isDone[piece] = true;
            m_change.notify_all();
        }
    }

    bool areDone(const std::vector<std::size_t>& pieces) const {
        return std::all_of(pieces.begin(), pieces.end(), [&](std::size_t piece) { return m_isDone[piece]; });
    }

    const WorkInOrder& m_pieces;
    std::vector<bool> m_isDone;
    std::size_t m_next = 0;
    std::mutex m_mutex;
    std::condition_variable m_change;
    std::vector<std::thread> m_workers;
};

}  // namespace

void doInOrder(const WorkInOrder& pieces, unsigned threads) {
    Workshop workshop(pieces, threads);
    for (std::size_t piece = 0; piece < pieces.after.size(); ++piece) {
        workshop.waitFor(piece);
        pieces.ended(piece);
    }
}

}  // namespace holdfast::cli
