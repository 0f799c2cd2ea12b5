#pragma once

#include <cstdio>
#include <fcntl.h>
#include <memory>

#include "platforminfo/UniqueFd.h"

struct CFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A C stream that closes itself.
using CFilePtr = std::unique_ptr<std::FILE, CFileCloser>;

/// A stream over a descriptor.
/// @param mode as for fdopen, matching how the file was opened.
/// @return null, with errno set, for a file that could not be opened.
inline CFilePtr StreamOver(UniqueFd fd, const char* mode) {
    CFilePtr file(fd.valid() ? fdopen(fd.get(), mode) : nullptr);
    if (file != nullptr) {
        fd.release();
    }
    return file;
}

/// Opens a file of the phone for binary reading. A pipe without a writer reads as empty.
inline CFilePtr OpenForReading(const char* path) {
    return StreamOver(OpenWithoutWaiting(path, O_RDONLY, 0), "rb");
}

/// Makes or empties a file of the phone for writing. A pipe without a reader can't be opened.
inline CFilePtr OpenForWriting(const char* path) {
    constexpr mode_t kPermissions = 0666;  // as for fopen
    return StreamOver(OpenWithoutWaiting(path, O_WRONLY | O_CREAT | O_TRUNC, kPermissions), "w");
}
