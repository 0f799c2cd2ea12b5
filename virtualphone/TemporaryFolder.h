#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "virtualphone/Api.h"

namespace virtualphone {

class FolderLock;

/// A fresh folder, removed with all that lies in it: under TMPDIR where that is set, else under /dev/shm
/// where much is free, else under /tmp.
///
/// It lies in a folder that its owner has locked. The first one of a program removes those whose owner is
/// gone: what a killed program left.
class VIRTUALPHONE_API TemporaryFolder {
  public:
    /// @throws std::system_error when it cannot be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return mPath; }

  private:
    explicit TemporaryFolder(std::size_t reserve);

    /// Kept back, so that there is memory to remove the folder with when a boot finds no more.
    std::vector<char> mReserve;
    std::string mFolder;  ///< the one that is locked
    std::filesystem::path mPath;
    std::unique_ptr<FolderLock> mLock;
};

}  // namespace virtualphone
