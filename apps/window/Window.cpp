#include "apps/window/Window.h"

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

void waitForTheEnd(const Interrupts& interrupts, const Tabs& tabs, OpenDrawing& drawing, const WindowOptions& options) {
    while (!interrupts.hasCome() && !tabs.goneFor(options.linger))
        if (const std::string failure = drawing.keep(); !failure.empty())
            options.complain("edits cannot be kept beside the drawing: " + failure);
}

}  // namespace

void showWindow(DrawingFile file, Document document, const WindowOptions& options) {
    const Interrupts interrupts;
    OpenDrawing drawing(std::move(file), std::move(document));
    Tabs tabs;
    {
        const Server server(drawing, tabs, options.port);
        options.tell(server.address());
        if (options.showsBrowser && !showInBrowser(server.address()))
            options.complain("there is no browser to open; open the address above in one");
        waitForTheEnd(interrupts, tabs, drawing, options);
    }
    if (const std::string failure = drawing.keep(); !failure.empty())
        options.complain("unsaved edits were lost: " + failure);
    for (const std::filesystem::path& kept : drawing.keptIn())
        options.tell("edits that were not saved are kept in " + kept.string() + "; open " +
                     (kept.stem().extension() == ".unsaved" ? "the drawing again" : "that") + " to go on");
}

}  // namespace holdfast::window
