#include "virtualphone/internal/FolderLock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace virtualphone {

std::optional<FolderLock> FolderLock::Take(const std::filesystem::path& folder, OtherOwner otherOwner) {
    FolderLock lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const int operation = otherOwner == OtherOwner::Refuse ? LOCK_EX | LOCK_NB : LOCK_EX;
    if (lock.mFile < 0 || flock(lock.mFile, operation) != 0) {
        return std::nullopt;
    }
    return lock;
}

FolderLock::FolderLock(FolderLock&& other) noexcept : mFile(std::exchange(other.mFile, -1)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    std::swap(mFile, other.mFile);
    return *this;
}

FolderLock::~FolderLock() {
    if (mFile >= 0) {
        const int error = errno;
        close(mFile);
        errno = error;
    }
}

bool FolderLock::valid() const {
    struct stat status {};
    return fstat(mFile, &status) == 0 && status.st_nlink > 0 && status.st_uid == geteuid();
}

}  // namespace virtualphone
