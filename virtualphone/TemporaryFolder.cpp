#include "virtualphone/TemporaryFolder.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "virtualphone/internal/FolderLock.h"

namespace virtualphone {

namespace fs = std::filesystem;

namespace {

/// Nobody else gives a folder such a name.
constexpr const char* kPrefix = "virtualphone-temporary-";

/// Bytes to remove a folder with: the C library takes 32 KiB to list one, and as much for each that it lies
/// in. So many at once go back to the kernel.
constexpr std::size_t kRemovalNeeds = std::size_t{1} << 20;

[[noreturn]] void Fail(const fs::path& path, int error) {
    throw std::system_error(error, std::generic_category(),
                            "cannot make a temporary folder: " + path.string());
}

/// Where temporary folders lie: where the environment says, else in memory where there is plenty of it (a
/// boot makes and removes some twenty files and folders, which costs a disk more than the boot), else in
/// /tmp.
fs::path Parent() {
    constexpr const char* kDisk = "/tmp";
    constexpr const char* kMemory = "/dev/shm";
    /// Several times what a phone's files may take.
    constexpr std::uintmax_t kPlenty = std::uintmax_t{512} << 20;
    const char* const named = std::getenv("TMPDIR");
    std::error_code error;
    if (named != nullptr && *named != '\0') {
        if (!fs::is_directory(named, error)) {
            Fail(named, error ? error.value() : ENOTDIR);
        }
        return fs::absolute(named);
    }
    const bool roomy = access(kMemory, W_OK | X_OK) == 0 && fs::space(kMemory, error).available >= kPlenty;
    return roomy && !error ? kMemory : kDisk;
}

/// Once for each parent, which may hold very many other things.
void RemoveOrphans(const fs::path& parent) {
    static std::mutex mutex;
    static std::set<fs::path> done;
    const std::lock_guard guard(mutex);
    if (!done.insert(parent).second) {
        return;
    }
    std::error_code error;
    for (fs::directory_iterator entry(parent, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code ignored;
        if (!entry->path().filename().string().starts_with(kPrefix) || entry->is_symlink(ignored)) {
            continue;
        }
        const auto lock = FolderLock::Take(entry->path(), FolderLock::OtherOwner::Refuse);
        if (lock && lock->valid()) {
            fs::remove_all(entry->path(), ignored);
        }
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() : TemporaryFolder(kRemovalNeeds) {
    // From here on the destructor removes what is left by an exception.
    const fs::path parent = Parent();
    RemoveOrphans(parent);
    while (mLock == nullptr) {
        std::string made = (parent / kPrefix).string() + "XXXXXX";
        if (mkdtemp(made.data()) == nullptr) {
            Fail(made, errno);
        }
        mFolder = std::move(made);
        // Another program may take it for an orphan before it is locked. Then the lock is that of nothing.
        auto lock = FolderLock::Take(mFolder, FolderLock::OtherOwner::WaitFor);
        if (!lock && errno != ENOENT) {
            Fail(mFolder, errno);
        }
        if (lock && lock->valid()) {
            mLock = std::make_unique<FolderLock>(std::move(*lock));
        }
    }
    mPath = fs::path(mFolder) / "root";
    if (std::error_code error; !fs::create_directory(mPath, error)) {
        Fail(mPath, error.value());
    }
}

TemporaryFolder::TemporaryFolder(std::size_t reserve) {
    mReserve.reserve(reserve);
}

TemporaryFolder::~TemporaryFolder() {
    std::vector<char>().swap(mReserve);
    try {
        fs::remove_all(mFolder);
    } catch (const std::exception&) {
        // Whoever makes the next one removes it.
    }
}

}  // namespace virtualphone
