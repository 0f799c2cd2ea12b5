#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platforminfo/CFile.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"

namespace {

struct FreeDeleter {
    void operator()(unsigned char* buffer) const { std::free(buffer); }
};
using CBuffer = std::unique_ptr<unsigned char, FreeDeleter>;

/// A zeroed buffer of `size` plus `extra` bytes; null with errno set when memory is out, or the sum is no
/// size that a caller's int can carry.
CBuffer AllocateZeroed(long size, int extra) {
    if (extra < 0 || size > INT_MAX - extra) {
        errno = EINVAL;
        return nullptr;
    }
    const std::size_t total = static_cast<std::size_t>(size) + static_cast<std::size_t>(extra);
    // No bytes at all still yield a buffer of their own.
    return CBuffer(static_cast<unsigned char*>(std::calloc(total == 0 ? 1 : total, 1)));
}

}  // namespace

int CameraPlatformInfoZelvan::allocBufAndReadFromFile(const char* path, unsigned char** buf, int* size,
                                                      int extra) {
    const Operation self(__func__);
    const CFilePtr file = OpenForReading(path);
    if (file == nullptr) {
        LOGE(self, "Beauty: failed to open file %s,err=%d %s", OrNull(path), errno, std::strerror(errno));
        return -1;
    }
    // Where the end cannot be reached, as in some folders, the position is not the size.
    const long fileSize = std::fseek(file.get(), 0, SEEK_END) == 0 ? std::ftell(file.get()) : -1;
    std::fseek(file.get(), 0, SEEK_SET);
    if (fileSize == -1) {
        LOGE(self, "Beauty: failed to get file size of %s,err=%d %s", path, errno, std::strerror(errno));
        return -1;
    }
    const auto bytes = static_cast<std::size_t>(fileSize);
    CBuffer buffer = AllocateZeroed(fileSize, extra);
    if (buffer == nullptr) {
        LOGE(self, "Beauty calloc failed size=%luerr=%d %s", static_cast<unsigned long>(bytes), errno,
             std::strerror(errno));
        return -1;
    }
    const std::size_t read = std::fread(buffer.get(), 1, bytes, file.get());
    if (read < bytes) {
        LOGE(self, "Beauty: read data from %s failed, size=%lureadout=%zu", path,
             static_cast<unsigned long>(bytes), read);
        return -1;
    }
    LOGI(self, "Beauty get data from %s, size=%lu", path, static_cast<unsigned long>(bytes));
    *size = static_cast<int>(fileSize) + extra;
    *buf = buffer.release();
    return 0;
}
