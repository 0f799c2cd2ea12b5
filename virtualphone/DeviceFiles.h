#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "record/BootRecord.h"

namespace virtualphone {

/// The phone's file system under its root folder.
class DeviceFiles {
  public:
    /// Makes the root and the camera's data folder, and lays `files` (content by phone path) with mode 0644.
    /// @throws PhoneFileError when that fails.
    DeviceFiles(const std::filesystem::path& root,
                const std::map<std::string, std::vector<std::uint8_t>>& files);

    /// Regular files that are not as they were after laying, by ascending path.
    std::vector<record::ChangedFile> changed() const;

    /// Where a phone path lies.
    std::string locate(const char* phonePath) const { return mPrefix + phonePath; }
    const std::filesystem::path& root() const { return mRoot; }

  private:
    struct FileState {
        unsigned mode = 0;
        std::vector<std::uint8_t> bytes;
        bool operator==(const FileState&) const = default;
    };
    using Tree = std::map<std::string, FileState>;

    void lay(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const;
    /// All regular files by phone path.
    Tree readTree() const;

    std::filesystem::path mRoot;
    std::string mPrefix;
    Tree mAtStart;
};

}  // namespace virtualphone
