#pragma once

#include <cerrno>
#include <cstddef>
#include <unistd.h>

/// A file descriptor that closes itself.
class UniqueFd {
  public:
    explicit UniqueFd(int fd) : mFd(fd) {}
    ~UniqueFd() {
        if (valid()) {
            close(mFd);
        }
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    bool valid() const { return mFd >= 0; }
    int get() const { return mFd; }

  private:
    const int mFd;
};

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
