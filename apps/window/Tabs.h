#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "apps/window/OpenedFile.h"
#include "apps/window/Uses.h"

namespace holdfast::window {

class OpenDrawing;

/// The tabs, each with its drawing, and the news that they wait for. A tab that comes goes on with edits that nobody
/// works on: those that an earlier window has kept, or those of a tab that was closed. Any thread may call.
class Tabs {
public:
    using Clock = std::chrono::steady_clock;

    /// So many at once; a tab beyond them is refused, since each waits on a thread of the server's.
    static constexpr int kMost = 8;
    /// How long after its last word a tab counts as closed, whose edits another one may go on with: long enough for
    /// one that is loaded again, or whose browser looks for a lost connection.
    static constexpr std::chrono::seconds kPatience{10};

    /// Takes up what earlier windows have kept.
    explicit Tabs(std::shared_ptr<OpenedFile> file);
    ~Tabs();

    /// The drawing of a tab, by the name that the tab has for itself; none when there are too many.
    std::shared_ptr<OpenDrawing> of(const std::string& tab);

    /// It listens to the news. False when too many do.
    bool enter(const std::string& tab);
    void leave(const std::string& tab);

    /// A tab is told of its drawing's new state, all that the file was written, or that the server ends.
    void tell(const std::string& tab, std::uint64_t state);
    void tellWritten();
    void close();

    struct News {
        std::uint64_t state = 0, writes = 0;
        bool isOver = false;  ///< the server ends
        bool operator==(const News&) const = default;
    };
    /// Waits until there are others than those, or the time is up.
    News wait(const std::string& tab, const News& known, std::chrono::milliseconds atMost);

    /// True when there has been a tab, and there has been none for so long.
    bool goneFor(std::chrono::duration<double> time) const;

    /// Keeps the edits of all tabs; what could not be kept, and why.
    std::vector<std::string> keep();
    /// Where edits are kept that were not saved.
    std::vector<std::filesystem::path> keptIn() const;
    /// Edits that are kept beside the file.
    struct KeptEdits {
        std::filesystem::path path;
        OpenedFile::Time written{};
        /// Who works on them: nobody, the tab that asks, or another one.
        enum class User { nobody, asker, another } user = User::nobody;
        bool isDropped = false;                ///< of a drawing that was dropped on the page
        std::optional<std::size_t> edits{};    ///< where this window has done them all
        std::optional<std::size_t> differs{};  ///< else entities and constraints that are not as the file has them
    };
    /// All that there are, for a tab; newest first. Cost: reading what others have kept.
    std::vector<KeptEdits> allKept(const std::string& tab);
    /// The tab shows those from now on; what it showed is kept. Empty, or why it cannot be.
    std::string goOnWithKept(const std::string& tab, const std::string& name);
    /// They are deleted. Empty, or why they cannot be.
    std::string forgetKept(const std::string& tab, const std::string& name);
    /// Edits that earlier windows have kept, but from before the file was written last; nobody goes on with them.
    const std::vector<std::filesystem::path>& behind() const { return m_behind; }

private:
    struct Seat {
        std::shared_ptr<OpenDrawing> drawing;
        std::uint64_t state = 0;
        int listening = 0;
        Clock::time_point heard{};
    };
    void forgetClosed();
    std::shared_ptr<OpenDrawing> goOnWith();
    /// Without what differs, for which files are read.
    std::vector<KeptEdits> listKept(const std::string& tab);
    struct FreeKept {
        std::filesystem::path path{};
        bool isDropped = false;
        std::string error{};  ///< why they are not free; empty: they are
    };
    FreeKept freeKept(const std::string& tab, const std::string& name);
    std::shared_ptr<OpenDrawing> takeWaiting(const std::filesystem::path& kept);
    std::vector<std::shared_ptr<OpenDrawing>> drawings() const;

    const std::shared_ptr<OpenedFile> m_file;
    std::vector<std::filesystem::path> m_behind;
    mutable std::mutex m_mutex;
    std::condition_variable m_news;
    std::vector<std::shared_ptr<OpenDrawing>> m_waiting;  ///< nobody's yet
    std::map<std::string, Seat> m_seats;
    int m_count = 0;
    bool m_wasAny = false, m_isOver = false;
    std::uint64_t m_writes = 0;
    Clock::time_point m_left{};
};

}  // namespace holdfast::window
