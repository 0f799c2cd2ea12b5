#pragma once

#include <chrono>
#include <sys/types.h>
#include <system_error>
#include <utility>

namespace supervisor {

/// The error that the latest system call left in errno.
std::system_error Failure(const char* action);

/// An open file, closed at the end.
class File {
  public:
    /// @throws std::system_error for a negative number, the result of a failed call.
    File(int file, const char* action);
    ~File();
    File(File&& other) noexcept : mFile(std::exchange(other.mFile, -1)) {}
    File& operator=(File&& other) noexcept {
        std::swap(mFile, other.mFile);
        return *this;
    }
    int get() const { return mFile; }

  private:
    int mFile;
};

/// Forks while no signal is handled, so that no handler of this program acts in the child. There all signals
/// do again what they do by default, its group is its own, its standard output is this process's standard
/// error, its standard input is empty, and it dies with this thread.
/// @return 0 in the child.
/// @throws std::system_error
pid_t Fork();

/// Waits until a file is readable, its other side gone included, at most so long and until an ending signal.
/// @return whether it is readable.
bool WaitFor(int file, std::chrono::milliseconds timeout);

/// A process that this one forked, and what it leaves.
class Child {
  public:
    explicit Child(pid_t id = -1) : mId(id) {}
    ~Child() { end(); }
    Child(Child&& other) noexcept : mId(std::exchange(other.mId, -1)) {}
    Child& operator=(Child&& other) noexcept {
        std::swap(mId, other.mId);
        return *this;
    }

    pid_t id() const { return mId; }

    /// Ends what still runs, at once.
    /// @return the wait status, once.
    int end();

    /// Ends it with SIGTERM, for which it may take its time.
    void askToEnd() const;
    /// Waits for its end, and ends what it leaves.
    /// @return the wait status, once.
    int wait();

  private:
    pid_t mId;
};

}  // namespace supervisor
