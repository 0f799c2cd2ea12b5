#include "virtualphone/DeviceFiles.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/DevicePath.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/internal/FolderLock.h"
#include "virtualphone/internal/PhoneState.h"

namespace virtualphone {

namespace fs = std::filesystem;

namespace {

/// The folder of the camera stack's own files, which a phone has at start.
constexpr const char* kCameraDataFolder = "/data/vendor/camera";

constexpr fs::perms kLaidMode =
    fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;

/// The clock of file times may stand still for so long: what is written twice meanwhile has one time.
constexpr std::chrono::milliseconds kClockStep{10};

[[noreturn]] void Fail(const std::string& path, const std::string& action, const std::string& reason) {
    throw PhoneFileError(path + ": cannot " + action + ": " + reason);
}

[[noreturn]] void FailRoot(const fs::path& root, const std::string& reason) {
    Fail(root.string(), "use the folder as a phone's root", reason);
}

/// The root as an absolute path without a slash at its end; "/", or what leads to it, is none.
fs::path UsableRoot(const fs::path& root) {
    std::error_code error;
    fs::path absolute = fs::absolute(root, error).lexically_normal();
    if (error) {
        FailRoot(root, error.message());
    }
    if (!absolute.has_filename()) {
        absolute = absolute.parent_path();
    }
    fs::create_directories(absolute, error);
    if (error) {
        FailRoot(absolute, error.message());
    }
    if (fs::equivalent(absolute, absolute.root_path(), error)) {
        FailRoot(absolute, "it is this machine's own");
    }
    return absolute;
}

}  // namespace

DeviceFiles::DeviceFiles(const fs::path& root, const std::map<std::string, std::vector<std::uint8_t>>& files,
                         bool clean)
    : mRoot(UsableRoot(root)), mPrefix(mRoot.string()) {
    auto lock = FolderLock::Take(mRoot, FolderLock::OtherOwner::Refuse);
    if (!lock) {
        FailRoot(mRoot,
                 errno == EWOULDBLOCK ? "another phone has it" : std::generic_category().message(errno));
    }
    mLock = std::make_unique<FolderLock>(std::move(*lock));
    if (clean) {
        std::error_code error;
        for (fs::directory_iterator entry(mRoot, error); !error && entry != fs::directory_iterator();
             entry.increment(error)) {
            fs::remove_all(entry->path(), error);
            if (error) {
                break;
            }
        }
        if (error) {
            FailRoot(mRoot, "it cannot be emptied: " + error.message());
        }
    }
    makeFolders(kCameraDataFolder);
    for (const auto& [path, bytes] : files) {
        lay(path, bytes);
    }
    // What cannot be read is foreign, and said after the run only if it changed.
    std::vector<std::string> ignored;
    mAtStart = readTree(ignored);
    mForeignFiles =
        static_cast<std::size_t>(std::count_if(mAtStart.begin(), mAtStart.end(), [&files](const auto& file) {
            return !files.contains(file.first);
        }));
    // A file that an earlier boot has only just written must show when this one writes it again.
    const fs::file_time_type now = fs::file_time_type::clock::now();
    if (std::any_of(mAtStart.begin(), mAtStart.end(), [now](const auto& file) {
            return file.second.written > now - kClockStep && file.second.written <= now;
        })) {
        std::this_thread::sleep_for(kClockStep);
    }
}

DeviceFiles::~DeviceFiles() = default;

void DeviceFiles::makeFolders(const fs::path& phonePath) const {
    std::error_code error;
    fs::create_directories(locate(phonePath.c_str()), error);
    if (error) {
        Fail(phonePath.string(), "make the folder", error.message());
    }
}

void DeviceFiles::lay(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const {
    const fs::path path = locate(phonePath.c_str());
    makeFolders(fs::path(phonePath).parent_path());
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(path, error))) {
        Fail(phonePath, "lay the file", "a folder of that name is there");
    }
    // A fresh file: a link would lead elsewhere, opening a pipe could wait for ever.
    fs::remove(path, error);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        Fail(phonePath, "lay the file", std::generic_category().message(errno));
    }
    fs::permissions(path, kLaidMode, error);
    if (error) {
        Fail(phonePath, "set the file's mode", error.message());
    }
    // Laid long before the boot, which may write it again.
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(1), error);
}

DeviceFiles::Tree DeviceFiles::readTree(std::vector<std::string>& troubles) const {
    Tree tree;
    std::vector<fs::path> folders{mRoot};
    while (!folders.empty()) {
        const fs::path folder = std::move(folders.back());
        folders.pop_back();
        std::error_code error;
        for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
             entry.increment(error)) {
            std::error_code gone;
            const fs::file_status status = entry->symlink_status(gone);
            if (fs::is_directory(status)) {
                folders.push_back(entry->path());
            } else if (fs::is_regular_file(status)) {
                const std::string path = entry->path().string();
                FileContent content = ReadWholeFile(path, /*regularOnly=*/true);
                FileState& state = tree[path.substr(mPrefix.size())];
                state = {.mode = static_cast<unsigned>(status.permissions()),
                         .bytes = std::move(content.bytes),
                         .error = std::move(content.error),
                         .size = 0,
                         .written = {}};
                state.written = entry->last_write_time(gone);
                state.size = state.error.empty() ? 0 : entry->file_size(gone);
            }
        }
        if (error) {
            troubles.push_back(folder.string().substr(mPrefix.size()) +
                               "/: cannot be listed: " + error.message());
        }
    }
    return tree;
}

bool DeviceFiles::FileState::isAs(const FileState& before) const {
    return mode == before.mode && bytes == before.bytes && error == before.error && size == before.size &&
           (error.empty() || written == before.written);
}

void DeviceFiles::tell(record::BootRecord& boot) const {
    boot.foreignFiles = mForeignFiles;
    for (auto& [path, state] : readTree(boot.troubles)) {
        const auto before = mAtStart.find(path);
        const bool asBefore = before != mAtStart.end() && state.isAs(before->second);
        if (asBefore && state.written == before->second.written) {
            continue;
        }
        if (state.error.empty()) {
            (asBefore ? boot.rewritten : boot.files)
                .push_back({.path = path, .mode = state.mode, .bytes = std::move(state.bytes)});
        } else {
            boot.troubles.push_back(path + ": changed, and cannot be read: " + state.error);
        }
    }
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
