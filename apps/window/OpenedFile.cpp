#include "apps/window/OpenedFile.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "document/text/DrawingError.h"
#include "formats/FileIo.h"

namespace holdfast::window {

namespace fs = std::filesystem;

namespace {

/// So many drawings are looked for that earlier windows may have kept.
constexpr int kMostKept = 99;

constexpr const char* kUnsaved = ".unsaved";
constexpr const char* kDropped = ".dropped";

}  // namespace

OpenedFile::OpenedFile(DrawingFile file, Document document)
    : m_file(std::move(file)), m_content{std::make_shared<const Document>(std::move(document)), timeOnDisk()} {}

OpenedFile::Time OpenedFile::timeOnDisk() const {
    std::error_code missing;
    return fs::last_write_time(m_file.opened, missing);
}

/// Only a .json file is read again: of the others remarks would have to be told, and they take no saves.
OpenedFile::Content OpenedFile::content() {
    const std::lock_guard lock(m_mutex);
    const Time written = timeOnDisk();
    if (written == m_content.written || m_file.opened.extension() != ".json")
        return m_content;
    try {
        m_content = {std::make_shared<const Document>(readDrawing(m_file.opened)), written};
    } catch (const DrawingError&) {
        return m_content;  // saving will ask, since the time is another one
    }
    return m_content;
}

OpenedFile::Written OpenedFile::write(const Document& document, Time known, bool isOver) {
    if (!isOver && isOther(known))
        return {otherInWords(), true};
    const std::lock_guard lock(m_mutex);
    try {
        writeDrawing(document, m_file.opened);
    } catch (const DrawingError& failure) {
        return {failure.what()};
    }
    m_content = {std::make_shared<const Document>(document), timeOnDisk()};
    return {.content = m_content};
}

bool OpenedFile::isOther(Time known) const {
    return timeOnDisk() != known;
}

std::string OpenedFile::otherInWords() const {
    const std::lock_guard lock(m_mutex);
    const bool isOurs = timeOnDisk() == m_content.written;
    return (isOurs ? "another tab has saved " : "somebody else has written ") + m_file.fileName() +
           " since this one read it";
}

fs::path OpenedFile::numbered(const char* what, int number) const {
    fs::path path = m_file.opened;
    if (path.extension() == ".json")
        path.replace_extension();  // a plate.json beside a plate.dxf has its own
    path += what;
    if (number > 1)
        path += "-" + std::to_string(number);
    return path += ".json";
}

/// To be called with the lock held.
OpenedFile::Place OpenedFile::claim(fs::path path) {
    m_claimed.insert(path);
    const auto letGo = [self = shared_from_this()](const fs::path* claimed) {
        const std::unique_ptr<const fs::path> owned(claimed);
        const std::lock_guard lock(self->m_mutex);
        self->m_claimed.erase(*owned);
    };
    return {std::make_unique<const fs::path>(std::move(path)).release(), letGo};
}

OpenedFile::Place OpenedFile::freePlace(bool isDropped) {
    const std::lock_guard lock(m_mutex);
    for (int number = 1;; ++number) {
        fs::path path = numbered(isDropped ? kDropped : kUnsaved, number);
        if (!m_claimed.contains(path) && !fs::exists(path))
            return claim(std::move(path));
    }
}

OpenedFile::Kept OpenedFile::kept() {
    const std::lock_guard lock(m_mutex);
    Kept kept;
    for (int number = 1; number <= kMostKept; ++number) {
        fs::path path = numbered(kUnsaved, number);
        std::error_code missing;
        const Time written = fs::last_write_time(path, missing);
        if (missing)
            continue;
        if (written < m_content.written)
            kept.behind.push_back(std::move(path));
        else
            kept.goesOn.push_back(claim(std::move(path)));
    }
    return kept;
}

std::vector<fs::path> OpenedFile::allKept() const {
    std::vector<std::pair<Time, fs::path>> found;
    for (const char* what : {kUnsaved, kDropped})
        for (int number = 1; number <= kMostKept; ++number) {
            fs::path path = numbered(what, number);
            std::error_code missing;
            if (const Time written = fs::last_write_time(path, missing); !missing)
                found.emplace_back(written, std::move(path));
        }
    std::sort(found.begin(), found.end(), std::greater<>());
    std::vector<fs::path> paths;
    for (auto& [written, path] : found)
        paths.push_back(std::move(path));
    return paths;
}

OpenedFile::Place OpenedFile::claimed(const fs::path& path) {
    const std::lock_guard lock(m_mutex);
    return m_claimed.contains(path) ? nullptr : claim(path);
}

bool OpenedFile::isDropped(const fs::path& kept) const {
    return kept.stem().extension().string().starts_with(kDropped);
}

}  // namespace holdfast::window
