#pragma once

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "platform/DevicePath.h"

/// A file descriptor that closes itself.
class UniqueFd {
  public:
    explicit UniqueFd(int fd) : mFd(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : mFd(other.release()) {}
    ~UniqueFd() {
        if (valid()) {
            close(mFd);
        }
    }
    UniqueFd& operator=(UniqueFd&&) = delete;

    bool valid() const { return mFd >= 0; }
    int get() const { return mFd; }
    /// Leaves the descriptor to the caller.
    int release() { return std::exchange(mFd, -1); }

  private:
    int mFd;
};

/// Opens a file of the phone without ever waiting for another process, as a pipe would have it.
/// @param path null counts as a file that does not exist.
/// @param flags as for open. What is made gets `mode`, less the umask.
/// @return no descriptor, with errno set, when the file can't be opened.
inline UniqueFd OpenWithoutWaiting(const char* path, int flags, mode_t mode) {
    if (path == nullptr) {
        errno = ENOENT;
        return UniqueFd(-1);
    }
    return UniqueFd(open(DevicePath(path).c_str(), flags | O_NONBLOCK | O_CLOEXEC, mode));
}

/// The same for a regular file alone; a folder, a pipe or a device can't be opened.
inline UniqueFd OpenRegularFile(const char* path, int flags, mode_t mode = 0) {
    UniqueFd file = OpenWithoutWaiting(path, flags, mode);
    struct stat status {};
    if (file.valid() && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
        return file;
    }
    return UniqueFd(-1);
}

/// Reads until `size` bytes, the end of the file or an error.
/// @return the number of bytes read.
inline std::size_t ReadUpTo(int fd, unsigned char* buffer, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = read(fd, buffer + done, size - done);
        if (got > 0) {
            done += static_cast<std::size_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}
