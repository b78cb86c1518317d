#include "apps/window/Window.h"

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

#include <csignal>
#include <utility>

#include "apps/window/Browser.h"
#include "apps/window/Server.h"
#include "apps/window/Tabs.h"

namespace holdfast::window {

namespace {

/// How often the program looks round: for tabs that have gone, and for edits to keep.
constexpr long kRoundNanoseconds = 250'000'000;

/// Signals that end the program. Threads that are started later leave them to whoever waits here.
class Interrupts {
public:
    Interrupts() {
        sigemptyset(&m_signals);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            sigaddset(&m_signals, signal);
        pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
        std::signal(SIGPIPE, SIG_IGN);  // a tab that goes while it is written to
    }

    /// True when one has come, false after a round.
    bool hasCome() const {
        const timespec round{0, kRoundNanoseconds};
        return sigtimedwait(&m_signals, nullptr, &round) > 0;
    }

private:
    sigset_t m_signals{};
};

/// What a step of a pull needs, the next one needs again: given back to the system in between it would be asked for,
/// and cleared, a hundred times in a second.
void keepMemory() {
#ifdef M_TRIM_THRESHOLD
    constexpr int most = 256 << 20, large = 64 << 20;  // bytes
    mallopt(M_TRIM_THRESHOLD, most);
    mallopt(M_MMAP_THRESHOLD, large);
#endif
}

void waitForTheEnd(const Interrupts& interrupts, Tabs& tabs, const WindowOptions& options) {
    while (!interrupts.hasCome() && !tabs.goneFor(options.linger))
        for (const std::string& failure : tabs.keep())
            options.complain("edits cannot be kept beside the drawing: " + failure);
}

/// The next window takes it up when it shows the drawing again; else it is opened by its own name.
bool goesOnByItself(const std::filesystem::path& kept) {
    return kept.stem().extension().string().starts_with(".unsaved");
}

}  // namespace

void showWindow(DrawingFile file, Document document, const WindowOptions& options) {
    const Interrupts interrupts;
    keepMemory();
    const std::string name = file.fileName();
    Tabs tabs(std::make_shared<OpenedFile>(std::move(file), std::move(document)));
    for (const std::filesystem::path& kept : tabs.behind())
        options.complain(kept.string() + " holds edits from before " + name +
                         " was written last; it is left as it is, open that to see them");
    {
        const Server server(tabs, options.port);
        options.tell(server.address());
        if (options.showsBrowser && !showInBrowser(server.address()))
            options.complain("there is no browser to open; open the address above in one");
        waitForTheEnd(interrupts, tabs, options);
    }
    for (const std::string& failure : tabs.keep())
        options.complain("unsaved edits were lost: " + failure);
    for (const std::filesystem::path& kept : tabs.keptIn())
        options.tell("edits that were not saved are kept in " + kept.string() + "; open " +
                     (goesOnByItself(kept) ? "the drawing again" : "that") + " to go on");
}

}  // namespace holdfast::window
