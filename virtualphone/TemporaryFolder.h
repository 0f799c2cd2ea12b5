#pragma once

#include <filesystem>

#include "virtualphone/Api.h"

namespace virtualphone {

/// A fresh folder under the system's temporary folder, removed with all that lies in it.
class VIRTUALPHONE_API TemporaryFolder {
  public:
    /// @throws std::filesystem::filesystem_error when it cannot be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return mPath; }

  private:
    std::filesystem::path mPath;
};

}  // namespace virtualphone
