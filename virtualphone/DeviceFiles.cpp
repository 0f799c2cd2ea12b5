#include "virtualphone/DeviceFiles.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <system_error>
#include <thread>
#include <unistd.h>
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

/// @return what is in the way. Standard libraries have two names for a file there: this is one of them.
std::error_code MakeFolders(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    return error == std::errc::file_exists ? std::make_error_code(std::errc::not_a_directory) : error;
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
    error = MakeFolders(absolute);
    if (error) {
        FailRoot(absolute, error.message());
    }
    if (fs::equivalent(absolute, absolute.root_path(), error)) {
        FailRoot(absolute, "it is this machine's own");
    }
    return absolute;
}

/// Writes a file as it is long before the boot, which may write it again.
/// @param phonePath for messages.
void Write(const std::string& phonePath, const fs::path& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream) {
        Fail(phonePath, "lay the file", std::generic_category().message(errno));
    }
    std::error_code ignored;
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(1), ignored);
}

}  // namespace

DeviceFiles::DeviceFiles(const fs::path& root, const Contents& files, Root use)
    : mRoot(UsableRoot(root)), mPrefix(mRoot.string()), mUse(use) {
    auto lock = FolderLock::Take(mRoot, FolderLock::OtherOwner::Refuse);
    if (!lock) {
        FailRoot(mRoot,
                 errno == EWOULDBLOCK ? "another phone has it" : std::generic_category().message(errno));
    }
    mLock = std::make_unique<FolderLock>(std::move(*lock));
    if (use == Root::Emptied) {
        empty();
    } else if (use == Root::Kept) {
        readList();
    }
    layAll(files);
    // A file that an earlier boot has only just written must show when this one writes it again.
    const fs::file_time_type now = fs::file_time_type::clock::now();
    if (std::any_of(mAtStart.files.begin(), mAtStart.files.end(), [now](const auto& file) {
            return file.second.written > now - kClockStep && file.second.written <= now;
        })) {
        std::this_thread::sleep_for(kClockStep);
    }
}

DeviceFiles::~DeviceFiles() = default;

void DeviceFiles::empty() const {
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

void DeviceFiles::makeFolders(const fs::path& phonePath) const {
    if (const std::error_code error = MakeFolders(locate(phonePath.c_str()))) {
        Fail(phonePath.string(), "make the folder", error.message());
    }
}

void DeviceFiles::layAll(const Contents& files) {
    makeFolders(kCameraDataFolder);
    std::vector<std::string> paths;
    // Backwards: a folder in memory lists the newest first.
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        const auto& [path, bytes] = *file;
        if (mUse == Root::Kept) {
            refuseToLayOver(path, bytes);
        }
        makeFolders(fs::path(path).parent_path());
        lay(path, bytes);
        paths.push_back(path);
    }
    if (const std::error_code error = list(paths)) {
        FailRoot(mRoot, std::string(kFileList) +
                            ", its list of what boots put there, cannot be written: " + error.message());
    }
    // What cannot be read is foreign, and said after the run only if it changed.
    std::vector<std::string> ignored;
    mAtStart = readTree(ignored);
    mForeignFiles = static_cast<std::size_t>(
        std::count_if(mAtStart.files.begin(), mAtStart.files.end(),
                      [&files](const auto& file) { return !files.contains(file.first); }));
}

void DeviceFiles::refuseToLayOver(const std::string& phonePath,
                                  const std::vector<std::uint8_t>& bytes) const {
    const fs::path path = locate(phonePath.c_str());
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (fs::exists(status) && !fs::is_directory(status) && !mListed.contains(phonePath) &&
        !(fs::is_regular_file(status) && ReadWholeFile(path, /*regularOnly=*/true).bytes == bytes)) {
        Fail(phonePath, "lay the file", "one that no boot has put there is there");
    }
}

void DeviceFiles::lay(const std::string& phonePath, const std::vector<std::uint8_t>& bytes) const {
    const fs::path path = locate(phonePath.c_str());
    std::error_code error;
    if (fs::is_directory(fs::symlink_status(path, error))) {
        Fail(phonePath, "lay the file", "a folder of that name is there");
    }
    // A fresh file: a link would lead elsewhere, opening a pipe could wait for ever.
    fs::remove(path, error);
    Write(phonePath, path, bytes);
    fs::permissions(path, kLaidMode, error);
    if (error) {
        Fail(phonePath, "set the file's mode", error.message());
    }
}

void DeviceFiles::renew(const Contents& files, const Traces& traces) {
    // A folder may list its files in the order in which they came: none of those that stay is laid again.
    const bool sameFiles =
        std::equal(files.begin(), files.end(), mAtStart.files.begin(), mAtStart.files.end(),
                   [](const auto& a, const auto& b) { return a.first == b.first; });
    const bool touched = std::any_of(traces.files.begin(), traces.files.end(),
                                     [&](const std::string& path) { return files.contains(path); });
    if (traces.more || !sameFiles || touched) {
        empty();
        layAll(files);
        return;
    }
    for (const std::string& path : traces.files) {
        if (std::error_code error; !fs::remove(locate(path.c_str()), error)) {
            FailRoot(mRoot, path + " cannot be removed: " + error.message());
        }
    }
    for (const auto& [path, bytes] : files) {
        FileState& state = mAtStart.files[path];
        if (state.bytes != bytes) {
            const std::string where = locate(path.c_str());
            Write(path, where, bytes);
            state.bytes = bytes;
            state.written = fs::last_write_time(where);
        }
    }
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
            const std::string path = entry->path().string();
            const std::string phonePath = path.substr(mPrefix.size());
            const auto mode = static_cast<unsigned>(status.permissions());
            if (fs::is_directory(status)) {
                folders.push_back(entry->path());
                tree.folders[phonePath] = mode;
            } else if (fs::is_regular_file(status)) {
                if (phonePath == kFileList && mUse != Root::Fresh) {
                    continue;
                }
                FileContent content = ReadWholeFile(path, /*regularOnly=*/true);
                FileState& state = tree.files[phonePath];
                state = {.mode = mode,
                         .bytes = std::move(content.bytes),
                         .error = std::move(content.error),
                         .size = 0,
                         .written = {}};
                state.written = entry->last_write_time(gone);
                state.size = state.error.empty() ? 0 : entry->file_size(gone);
            } else {
                tree.others = true;
            }
        }
        if (error) {
            tree.others = true;
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

DeviceFiles::Traces DeviceFiles::tell(record::BootRecord& boot) const {
    boot.foreignFiles = mForeignFiles;
    Tree tree = readTree(boot.troubles);
    Traces traces{.files = {}, .more = tree.others || tree.folders != mAtStart.folders};
    std::size_t stayed = 0;
    for (auto& [path, state] : tree.files) {
        const auto before = mAtStart.files.find(path);
        stayed += before == mAtStart.files.end() ? 0 : 1;
        const bool asBefore = before != mAtStart.files.end() && state.isAs(before->second);
        if (asBefore && state.written == before->second.written) {
            continue;
        }
        traces.files.push_back(path);
        if (state.error.empty()) {
            (asBefore ? boot.rewritten : boot.files)
                .push_back({.path = path, .mode = state.mode, .bytes = std::move(state.bytes)});
        } else {
            boot.troubles.push_back(path + ": changed, and cannot be read: " + state.error);
        }
    }
    traces.more |= stayed < mAtStart.files.size();
    if (const std::error_code error = list(traces.files)) {
        boot.troubles.push_back(std::string(kFileList) + ": cannot be written, so that another boot takes " +
                                "what this one wrote for somebody's own: " + error.message());
    }
    return traces;
}

void DeviceFiles::readList() {
    const std::vector<std::uint8_t> bytes = ReadWholeFile(locate(kFileList), /*regularOnly=*/true).bytes;
    for (auto start = bytes.begin(); start != bytes.end();) {
        const auto end = std::find(start, bytes.end(), '\0');
        mListed.emplace(start, end);
        start = end == bytes.end() ? end : end + 1;
    }
}

std::error_code DeviceFiles::list(const std::vector<std::string>& phonePaths) const {
    std::string added;
    for (const std::string& path : phonePaths) {
        if (!mListed.contains(path)) {
            added += path + '\0';
        }
    }
    if (mUse == Root::Fresh || added.empty()) {
        return {};
    }
    // The plug-in may have put a link or a pipe there.
    const int file = open(locate(kFileList).c_str(),
                          O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0644);
    if (file < 0) {
        return {errno, std::generic_category()};
    }
    errno = 0;
    const ssize_t written = write(file, added.data(), added.size());
    const int error = written == static_cast<ssize_t>(added.size()) ? 0 : errno == 0 ? ENOSPC : errno;
    close(file);
    return {error, std::generic_category()};
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
