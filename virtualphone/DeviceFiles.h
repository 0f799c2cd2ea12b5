#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "record/BootRecord.h"
#include "virtualphone/Api.h"

namespace virtualphone {

class FolderLock;

/// The phone's file system under its root folder.
class VIRTUALPHONE_API DeviceFiles {
  public:
    /// Makes the root and the camera's data folder, and lays `files` (content by phone path) with mode 0644.
    /// @param clean removes first whatever lies under the root. Links are removed, not followed.
    /// @throws PhoneFileError when that fails, or another phone has the root; of what lies under the root it
    /// names the phone's path.
    DeviceFiles(const std::filesystem::path& root,
                const std::map<std::string, std::vector<std::uint8_t>>& files, bool clean = false);

    /// Tells what became of the regular files since they were laid: `files`, `rewritten` and `foreignFiles`
    /// of the record, and a line of its `troubles` for each file or folder that cannot be read. Symbolic
    /// links are not followed.
    void tell(record::BootRecord& boot) const;

    /// Where a phone path lies.
    std::string locate(const char* phonePath) const { return mPrefix + phonePath; }
    const std::filesystem::path& root() const { return mRoot; }

    ~DeviceFiles();
    DeviceFiles(const DeviceFiles&) = delete;
    DeviceFiles& operator=(const DeviceFiles&) = delete;

  private:
    struct FileState {
        unsigned mode = 0;
        std::vector<std::uint8_t> bytes;
        std::string error;        ///< why it cannot be read
        std::uintmax_t size = 0;  ///< of a file that cannot be read
        std::filesystem::file_time_type written = {};

        /// A file that cannot be read is told from its like by what the folder says of it.
        bool isAs(const FileState& before) const;
    };
    using Tree = std::map<std::string, FileState>;

    void lay(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const;
    void makeFolders(const std::filesystem::path& phonePath) const;
    /// All regular files by phone path.
    Tree readTree(std::vector<std::string>& troubles) const;

    std::filesystem::path mRoot;
    std::string mPrefix;
    std::unique_ptr<FolderLock> mLock;
    Tree mAtStart;
    std::size_t mForeignFiles = 0;
};

}  // namespace virtualphone
