#include "apps/cli/Signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "formats/TemporaryFiles.h"

namespace holdfast::cli {

namespace {

bool isIgnored(int signal) {
    struct sigaction now {};
    return ::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

void endBy(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t own;
    sigemptyset(&own);
    sigaddset(&own, signal);
    pthread_sigmask(SIG_UNBLOCK, &own, nullptr);
    ::kill(::getpid(), signal);
    for (;;)
        ::pause();
}

void waitForSignal(sigset_t signals) {
    int signal = 0;
    if (sigwait(&signals, &signal) != 0)
        return;
    endTemporaryFiles();
    endBy(signal);
}

}  // namespace

void keepStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0 && ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0)
            return;                 // neither can do what it is for, but no file takes its place
    std::signal(SIGXFSZ, SIG_IGN);  // a limit of file sizes is an error like a full disk, not the end
    std::signal(SIGPIPE, SIG_IGN);  // and so is a pipe that nobody reads
}

void endCleanlyOnSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        if (!isIgnored(signal))
            sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread(waitForSignal, signals).detach();
}

}  // namespace holdfast::cli
