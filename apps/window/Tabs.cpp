#include "apps/window/Tabs.h"

#include <algorithm>
#include <utility>

#include "apps/window/OpenDrawing.h"

namespace holdfast::window {

Tabs::Tabs(std::shared_ptr<OpenedFile> file) : m_file(std::move(file)) {
    if (!m_file->file().isReadOnly) {
        OpenedFile::Kept kept = m_file->kept();
        for (OpenedFile::Place& place : kept.goesOn)
            m_waiting.push_back(std::make_shared<OpenDrawing>(m_file, std::move(place)));
        m_behind = std::move(kept.behind);
    }
    if (m_waiting.empty())
        m_waiting.push_back(std::make_shared<OpenDrawing>(m_file));
}

Tabs::~Tabs() = default;

std::shared_ptr<OpenDrawing> Tabs::of(const std::string& tab) {
    const std::lock_guard lock(m_mutex);
    auto seat = m_seats.find(tab);
    if (seat == m_seats.end()) {
        std::shared_ptr<OpenDrawing> drawing = goOnWith();
        if (!drawing && m_seats.size() < kMost)
            drawing = std::make_shared<OpenDrawing>(m_file);
        if (!drawing)
            return nullptr;
        seat = m_seats.emplace(tab, Seat{.drawing = std::move(drawing)}).first;
        seat->second.state = seat->second.drawing->number();
    }
    seat->second.heard = Clock::now();
    return seat->second.drawing;
}

/// What nobody works on, and where there is no such thing, nothing. Tabs that were closed are forgotten.
std::shared_ptr<OpenDrawing> Tabs::goOnWith() {
    const Clock::time_point now = Clock::now();
    for (auto seat = m_seats.begin(); seat != m_seats.end();) {
        const bool isClosed = seat->second.listening == 0 && now - seat->second.heard > kPatience;
        if (isClosed && seat->second.drawing->hasUnsaved())
            m_waiting.push_back(std::move(seat->second.drawing));
        seat = isClosed ? m_seats.erase(seat) : std::next(seat);
    }
    if (m_waiting.empty() || m_seats.size() >= kMost)
        return nullptr;
    std::shared_ptr<OpenDrawing> drawing = std::move(m_waiting.front());
    m_waiting.erase(m_waiting.begin());
    return drawing;
}

bool Tabs::enter(const std::string& tab) {
    const std::lock_guard lock(m_mutex);
    const auto seat = m_seats.find(tab);
    if (m_count == kMost || seat == m_seats.end())
        return false;
    ++m_count;
    ++seat->second.listening;
    m_wasAny = true;
    return true;
}

void Tabs::leave(const std::string& tab) {
    const std::lock_guard lock(m_mutex);
    --m_count;
    m_left = Clock::now();
    if (const auto seat = m_seats.find(tab); seat != m_seats.end()) {
        --seat->second.listening;
        seat->second.heard = m_left;
    }
}

void Tabs::tell(const std::string& tab, std::uint64_t state) {
    {
        const std::lock_guard lock(m_mutex);
        if (const auto seat = m_seats.find(tab); seat != m_seats.end())
            seat->second.state = std::max(seat->second.state, state);
    }
    m_news.notify_all();
}

void Tabs::tellWritten() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_writes;
    }
    m_news.notify_all();
}

void Tabs::close() {
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_news.notify_all();
}

Tabs::News Tabs::wait(const std::string& tab, const News& known, std::chrono::milliseconds atMost) {
    std::unique_lock lock(m_mutex);
    News news;
    m_news.wait_for(lock, atMost, [&] {
        const auto seat = m_seats.find(tab);
        news = {seat == m_seats.end() ? 0 : seat->second.state, m_writes, m_isOver};
        return news != known;
    });
    return news;
}

bool Tabs::goneFor(std::chrono::duration<double> time) const {
    const std::lock_guard lock(m_mutex);
    return m_wasAny && m_count == 0 && Clock::now() - m_left > time;
}

std::vector<std::shared_ptr<OpenDrawing>> Tabs::drawings() const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::shared_ptr<OpenDrawing>> all = m_waiting;
    for (const auto& [tab, seat] : m_seats)
        all.push_back(seat.drawing);
    return all;
}

std::vector<std::string> Tabs::keep() {
    std::vector<std::string> failures;
    for (const std::shared_ptr<OpenDrawing>& drawing : drawings())
        if (std::string failure = drawing->keep(); !failure.empty())
            failures.push_back(std::move(failure));
    return failures;
}

std::vector<std::filesystem::path> Tabs::keptIn() const {
    std::vector<std::filesystem::path> kept;
    for (const std::shared_ptr<OpenDrawing>& drawing : drawings())
        for (std::filesystem::path& path : drawing->keptIn())
            kept.push_back(std::move(path));
    return kept;
}

}  // namespace holdfast::window
