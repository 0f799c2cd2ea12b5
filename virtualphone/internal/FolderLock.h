#pragma once

#include <filesystem>
#include <memory>
#include <optional>

namespace virtualphone {

/// A folder that no other `FolderLock` has, of this process or another.
class FolderLock {
  public:
    enum class OtherOwner { Refuse, WaitFor };

    /// None where the folder cannot be opened or, with `Refuse`, has an owner; errno says which.
    static std::optional<FolderLock> Take(const std::filesystem::path& folder, OtherOwner otherOwner);

    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&& other) noexcept;
    ~FolderLock();

    /// Whether the folder is still there and of this user.
    bool valid() const;

  private:
    explicit FolderLock(int file) : mFile(file) {}

    int mFile;  ///< the open folder; -1 after a move
};

}  // namespace virtualphone
