#include "virtualphone/DeviceFiles.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "platform/DevicePath.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/PhoneState.h"

namespace virtualphone {

namespace fs = std::filesystem;

namespace {

/// The folder of the camera stack's own files, which a phone has at start.
constexpr const char* kCameraDataFolder = "/data/vendor/camera";

constexpr fs::perms kLaidMode =
    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;

[[noreturn]] void Fail(const std::string& path, const std::string& action, const std::string& reason) {
    throw PhoneFileError(path + ": cannot " + action + ": " + reason);
}

void MakeFolders(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        Fail(folder, "make the folder", error.message());
    }
}

}  // namespace

DeviceFiles::DeviceFiles(const fs::path& root,
                         const std::map<std::string, std::vector<std::uint8_t>>& files) {
    std::error_code error;
    mRoot = fs::absolute(root, error).lexically_normal();
    if (error) {
        Fail(root.string(), "use the folder as a phone's root", error.message());
    }
    if (!mRoot.has_filename()) {
        mRoot = mRoot.parent_path();
    }
    if (mRoot == mRoot.root_path()) {
        Fail(mRoot.string(), "use the folder as a phone's root", "it is this machine's own");
    }
    mPrefix = mRoot.string();
    MakeFolders(locate(kCameraDataFolder));
    for (const auto& [path, bytes] : files) {
        lay(path, bytes);
    }
    mAtStart = readTree();
}

void DeviceFiles::lay(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const {
    const fs::path path = locate(phonePath.c_str());
    MakeFolders(path.parent_path().string());
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(path, error))) {
        Fail(path.string(), "lay the file", "a folder of that name is there");
    }
    // A fresh file: a link would lead elsewhere, opening a pipe could wait for ever.
    fs::remove(path, error);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        Fail(path.string(), "lay the file", std::generic_category().message(errno));
    }
    fs::permissions(path, kLaidMode, error);
    if (error) {
        Fail(path.string(), "set the file's mode", error.message());
    }
}

DeviceFiles::Tree DeviceFiles::readTree() const {
    Tree tree;
    std::error_code error;
    fs::recursive_directory_iterator entry(mRoot, error);
    while (!error && entry != fs::recursive_directory_iterator()) {
        const std::string path = entry->path().string();
        const fs::file_status status = entry->symlink_status(error);
        if (!error && fs::is_regular_file(status)) {
            FileContent content = ReadWholeFile(path, /*regularOnly=*/true);
            if (!content.error.empty()) {
                Fail(path, "read the file", content.error);
            }
            tree[path.substr(mPrefix.size())] = {.mode = static_cast<unsigned>(status.permissions()),
                                                 .bytes = std::move(content.bytes)};
        }
        if (!error) {
            entry.increment(error);
        }
    }
    if (error) {
        Fail(mPrefix, "list the phone's files", error.message());
    }
    return tree;
}

std::vector<record::ChangedFile> DeviceFiles::changed() const {
    std::vector<record::ChangedFile> changed;
    for (auto& [path, state] : readTree()) {
        const auto before = mAtStart.find(path);
        if (before == mAtStart.end() || before->second != state) {
            changed.push_back({.path = path, .mode = state.mode, .bytes = state.bytes});
        }
    }
    return changed;
}

}  // namespace virtualphone

std::string DevicePath(const char* path) {
    const virtualphone::PhoneState* phone = virtualphone::CurrentPhone();
    if (phone == nullptr) {
        return path;
    }
    phone->sink.take(record::PathOpened{.path = path});
    return phone->files.locate(path);
}
