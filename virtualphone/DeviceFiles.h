#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "record/BootRecord.h"
#include "virtualphone/Api.h"

namespace virtualphone {

class FolderLock;

/// What boots have put under a root that may be used again, each path with a zero byte behind it.
inline constexpr const char* kFileList = "/.virtualphone";

/// The phone's file system under its root folder.
class VIRTUALPHONE_API DeviceFiles {
  public:
    using Contents = std::map<std::string, std::vector<std::uint8_t>>;  ///< by phone path

    /// What lies under the root already.
    enum class Root {
        Fresh,   ///< nothing, and nobody will use it again
        Kept,    ///< stays; a file that no boot has laid or written is not laid over
        Emptied  ///< is removed first; links are removed, not followed
    };

    /// Makes the root and the camera's data folder, and lays `files` with mode 0644. A root that may be used
    /// again gets a list of the files that boots put there, kFileList.
    /// @throws PhoneFileError when that fails, or another phone has the root; of what lies under the root it
    /// names the phone's path.
    DeviceFiles(const std::filesystem::path& root, const Contents& files, Root use = Root::Kept);

    /// What a boot has left of the tree.
    struct Traces {
        std::vector<std::string> files;  ///< paths of files that changed, came or were written again
        bool more = true;  ///< anything else: files that went, folders, links, what is unreadable
    };

    /// Tells what became of the regular files since they were laid: `files`, `rewritten` and `foreignFiles`
    /// of the record, and a line of its `troubles` for each file or folder that cannot be read. Symbolic
    /// links are not followed.
    Traces tell(record::BootRecord& boot) const;

    /// Makes the tree what it would be if it were emptied and `files` were laid, the order included in which
    /// a folder lists its files, but touches only the folders that have something else in them.
    /// @param traces what `tell` has found, or the default when that is not known.
    /// @throws PhoneFileError; the tree is then any.
    void renew(const Contents& files, const Traces& traces);

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
    /// All under the root, by phone path.
    struct Tree {
        std::map<std::string, FileState> files;   ///< regular ones
        std::map<std::string, unsigned> folders;  ///< with their modes
        bool others = false;                      ///< links, pipes, what cannot be listed
    };

    void makeFolders(const std::filesystem::path& phonePath) const;
    void empty() const;
    void layAll(const Contents& files);
    void lay(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const;
    void refuseToLayOver(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const;
    Tree readTree(std::vector<std::string>& troubles) const;
    void readList();
    /// Adds to the list of files that boots put there, in the root too.
    /// @return why it cannot.
    std::error_code list(const std::vector<std::string>& phonePaths) const;

    std::filesystem::path mRoot;
    std::string mPrefix;
    Root mUse;
    std::unique_ptr<FolderLock> mLock;
    std::set<std::string> mListed;
    Tree mAtStart;
    std::size_t mForeignFiles = 0;
};

}  // namespace virtualphone
