#include "supervisor/EndOnSignal.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace supervisor {

namespace {

/// Whether a signal, unless the program says otherwise, ends the program from outside: people, timers,
/// limits, a pipe that nobody reads. Those of a fault do so from inside, where nothing can be trusted any
/// more.
bool IsEnding(int signal) {
    constexpr std::array kOthers = {SIGKILL, SIGSTOP, SIGTSTP,  SIGTTIN, SIGTTOU, SIGCONT,
                                    SIGCHLD, SIGURG,  SIGWINCH, SIGXFSZ, SIGSEGV, SIGBUS,
                                    SIGFPE,  SIGILL,  SIGABRT,  SIGTRAP, SIGSYS};
    return std::find(kOthers.begin(), kOthers.end(), signal) == kOthers.end();
}

// A signal handler is a plain function, so it finds what it needs here.
std::atomic<int> gPending = 0;  ///< the first signal that arrived
std::atomic<int> gBoots = 0;    ///< in progress
std::atomic<int> gEvent = -1;

/// By signal: whether its handling is this program's to change, and was changed.
std::array<bool, NSIG> gHandled;
bool gIgnoresLargeFiles = false;

/// Changes what a signal does unless the program has said already what it does.
bool Handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    // The C library refuses the signals that it keeps for itself.
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) {
        return false;
    }
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    return sigaction(signal, &action, nullptr) == 0;
}

void EndAs(int signal) {
    std::signal(signal, SIG_DFL);
    // Within its handler a signal is blocked.
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

void EndWhenNoBootRuns(int signal) {
    const int formerError = errno;
    int none = 0;
    gPending.compare_exchange_strong(none, signal);
    if (gBoots == 0) {
        EndAs(signal);
    }
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(gEvent, &one, sizeof one);
    errno = formerError;
}

}  // namespace

EndOnSignal::EndOnSignal() {
    gEvent = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (gEvent < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make an event");
    }
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        gHandled[static_cast<std::size_t>(signal)] = IsEnding(signal) && Handle(signal, EndWhenNoBootRuns);
    }
    gIgnoresLargeFiles = Handle(SIGXFSZ, SIG_IGN);
}

EndOnSignal::~EndOnSignal() {
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        if (gHandled[static_cast<std::size_t>(signal)]) {
            std::signal(signal, SIG_DFL);
        }
    }
    if (gIgnoresLargeFiles) {
        std::signal(SIGXFSZ, SIG_DFL);
    }
    close(gEvent.exchange(-1));
}

void EndOnSignal::forget() {
    gPending = 0;
    gBoots = 0;
    if (const int event = gEvent.exchange(-1); event >= 0) {
        close(event);
    }
}

EndingWaits::EndingWaits() {
    ++gBoots;
}

EndingWaits::~EndingWaits() {
    if (--gBoots == 0 && gPending != 0) {
        EndAs(gPending);
    }
}

int EndingWaits::pollFd() {
    return gEvent;
}

bool EndingWaits::arrived() {
    return gPending != 0;
}

}  // namespace supervisor
