#pragma once

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

struct CFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A C stream that closes itself.
using CFilePtr = std::unique_ptr<std::FILE, CFileCloser>;

/// Opens a stream without ever waiting for another process, as a pipe would have it.
/// @param mode as for fdopen, matching `flags`.
/// @return null, with errno set, when the file can't be opened.
inline CFilePtr OpenWithoutWaiting(const char* path, int flags, const char* mode) {
    constexpr mode_t kPermissions = 0666;  // less the umask, as for fopen
    const int fd = open(path, flags | O_NONBLOCK | O_CLOEXEC, kPermissions);
    if (fd < 0) {
        return nullptr;
    }
    CFilePtr file(fdopen(fd, mode));
    if (file == nullptr) {
        close(fd);
    }
    return file;
}

/// Opens a file for binary reading. A pipe without a writer reads as empty.
inline CFilePtr OpenForReading(const char* path) {
    return OpenWithoutWaiting(path, O_RDONLY, "rb");
}

/// Makes or empties a file for writing. A pipe without a reader can't be opened.
inline CFilePtr OpenForWriting(const char* path) {
    return OpenWithoutWaiting(path, O_WRONLY | O_CREAT | O_TRUNC, "w");
}
