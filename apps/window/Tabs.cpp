#include "apps/window/Tabs.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "apps/window/DroppedFile.h"
#include "apps/window/OpenDrawing.h"
#include "document/text/DrawingError.h"
#include "formats/FileIo.h"

namespace holdfast::window {

namespace {

/// Entities and constraints that one of the two has and the other one has not so; none where it cannot be read.
std::optional<std::size_t> differencesOf(const std::filesystem::path& kept, const Document& opened) {
    const auto differing = [](const auto& now, const auto& before) {
        std::unordered_map<std::string_view, std::size_t> places;
        for (std::size_t i = 0; i < before.size(); ++i)
            places.emplace(before[i].id, i);
        std::size_t same = 0, found = 0;
        for (const auto& each : now)
            if (const auto place = places.find(each.id); place != places.end()) {
                ++found;
                same += each == before[place->second] ? 1 : 0;
            }
        return now.size() - same + before.size() - found;
    };
    try {
        const Document now = readDrawing(kept);
        return differing(now.entities, opened.entities) + differing(now.constraints, opened.constraints);
    } catch (const DrawingError&) {
        return std::nullopt;
    }
}

}  // namespace

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

/// Tabs that were closed are forgotten; what they have not saved waits for another one. With the lock held.
void Tabs::forgetClosed() {
    const Clock::time_point now = Clock::now();
    for (auto seat = m_seats.begin(); seat != m_seats.end();) {
        const bool isClosed = seat->second.listening == 0 && now - seat->second.heard > kPatience;
        if (isClosed && seat->second.drawing->hasUnsaved())
            m_waiting.push_back(std::move(seat->second.drawing));
        seat = isClosed ? m_seats.erase(seat) : std::next(seat);
    }
}

/// What nobody works on, and where there is no such thing, nothing.
std::shared_ptr<OpenDrawing> Tabs::goOnWith() {
    forgetClosed();
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

std::vector<Tabs::KeptEdits> Tabs::listKept(const std::string& tab) {
    std::vector<KeptEdits> all;
    if (m_file->file().isReadOnly)
        return all;
    const std::shared_ptr<OpenDrawing> own = of(tab);
    {
        const std::lock_guard lock(m_mutex);
        forgetClosed();
    }
    keep();
    struct Work {
        KeptEdits::User user;
        std::optional<std::size_t> edits;
    };
    std::map<std::filesystem::path, Work> works;
    for (const std::shared_ptr<OpenDrawing>& drawing : drawings())
        for (const std::filesystem::path& path : drawing->keptIn())
            works[path] = {drawing == own ? KeptEdits::User::asker : KeptEdits::User::another, drawing->editCount()};
    {
        const std::lock_guard lock(m_mutex);
        for (const std::shared_ptr<OpenDrawing>& drawing : m_waiting)
            for (const std::filesystem::path& path : drawing->keptIn())
                works[path].user = KeptEdits::User::nobody;
    }
    for (std::filesystem::path& path : m_file->allKept()) {
        std::error_code missing;
        KeptEdits kept{.path = path,
                       .written = std::filesystem::last_write_time(path, missing),
                       .isDropped = m_file->isDropped(path)};
        if (const auto work = works.find(path); work != works.end()) {
            kept.user = work->second.user;
            kept.edits = work->second.edits;
        }
        all.push_back(std::move(kept));
    }
    return all;
}

std::vector<Tabs::KeptEdits> Tabs::allKept(const std::string& tab) {
    std::vector<KeptEdits> all = listKept(tab);
    for (KeptEdits& kept : all)
        if (!kept.edits && !kept.isDropped)
            kept.differs = differencesOf(kept.path, *m_file->content().document);
    return all;
}

/// By their name alone: what is not on the list is not looked for.
Tabs::FreeKept Tabs::freeKept(const std::string& tab, const std::string& name) {
    for (KeptEdits& kept : listKept(tab)) {
        if (kept.path.filename() != name)
            continue;
        if (kept.user == KeptEdits::User::asker)
            return {.error = name + " is what is shown"};
        if (kept.user == KeptEdits::User::another)
            return {.error = "another tab works on " + name};
        return {.path = std::move(kept.path), .isDropped = kept.isDropped};
    }
    return {.error = "there are no kept edits of that name any more"};
}

/// Of what no tab works on; none: no drawing has it.
std::shared_ptr<OpenDrawing> Tabs::takeWaiting(const std::filesystem::path& kept) {
    const std::lock_guard lock(m_mutex);
    for (auto drawing = m_waiting.begin(); drawing != m_waiting.end(); ++drawing) {
        const std::vector<std::filesystem::path> paths = (*drawing)->keptIn();
        if (std::find(paths.begin(), paths.end(), kept) == paths.end())
            continue;
        std::shared_ptr<OpenDrawing> taken = std::move(*drawing);
        m_waiting.erase(drawing);
        return taken;
    }
    return nullptr;
}

std::string Tabs::goOnWithKept(const std::string& tab, const std::string& name) {
    const FreeKept kept = freeKept(tab, name);
    if (!kept.error.empty())
        return kept.error;
    const std::shared_ptr<OpenDrawing> before = of(tab);
    std::shared_ptr<OpenDrawing> drawing = takeWaiting(kept.path);
    try {
        if (!drawing && kept.isDropped) {
            const nlohmann::json told =
                nlohmann::json::parse(before->takeDropped({.name = name, .bytes = formats::readFile(kept.path)}));
            return told["error"].get<std::string>();
        }
        if (!drawing)
            if (OpenedFile::Place place = m_file->claimed(kept.path))
                drawing = std::make_shared<OpenDrawing>(m_file, std::move(place));
    } catch (const std::exception& failure) {
        return failure.what();
    }
    if (!drawing || drawing->keptIn().empty())
        return name + " cannot be read";
    const std::lock_guard lock(m_mutex);
    Seat& seat = m_seats[tab];
    if (before->hasUnsaved())
        m_waiting.push_back(before);
    seat.drawing = std::move(drawing);
    seat.state = seat.drawing->number();
    return {};
}

std::string Tabs::forgetKept(const std::string& tab, const std::string& name) {
    const FreeKept kept = freeKept(tab, name);
    if (!kept.error.empty())
        return kept.error;
    takeWaiting(kept.path);  // it would be kept again
    std::error_code failure;
    std::filesystem::remove(kept.path, failure);
    return failure ? name + ": " + failure.message() : std::string();
}

std::vector<std::filesystem::path> Tabs::keptIn() const {
    std::vector<std::filesystem::path> kept;
    for (const std::shared_ptr<OpenDrawing>& drawing : drawings())
        for (std::filesystem::path& path : drawing->keptIn())
            kept.push_back(std::move(path));
    return kept;
}

}  // namespace holdfast::window
