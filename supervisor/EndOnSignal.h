#pragma once

#include <csignal>

namespace supervisor {

/// While it lives, signals that end a program (all but SIGKILL and those of a fault, with SIGABRT and SIGSYS)
/// end the boots in progress first, their temporary folders included, and then the program, as the signal
/// would have. A file that becomes larger than the process may make it (SIGXFSZ) is one that cannot be
/// written. Where the program ignores or handles one of them, that stays. A program has at most one, made
/// before its boots; one that wants none gets no handler changed.
class EndOnSignal {
  public:
    EndOnSignal();
    ~EndOnSignal();
    EndOnSignal(const EndOnSignal&) = delete;
    EndOnSignal& operator=(const EndOnSignal&) = delete;

    /// In a fork of a program that has or had one: makes this process one that has none, and no boots.
    static void forget();
};

/// A boot in progress, or another piece of work that must not be left as it is, for which an ending signal
/// waits. The last one to go ends the program.
class EndingWaits {
  public:
    EndingWaits();
    ~EndingWaits();
    EndingWaits(const EndingWaits&) = delete;
    EndingWaits& operator=(const EndingWaits&) = delete;

    /// Becomes and stays readable when a signal has arrived; -1 without an `EndOnSignal`.
    static int pollFd();
    /// Whether a signal has arrived.
    static bool arrived();
};

}  // namespace supervisor
