#include "zvcam/files/PhoneFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>

#include "formats/EepromDump.h"
#include "supervisor/EndOnSignal.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/files/Output.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

/// Far beyond any pull of camera folders.
constexpr std::size_t kMostEntries = 65536;
constexpr std::uintmax_t kLargestGetprop = std::uintmax_t{4} << 20;

[[noreturn]] void ThrowUnwritable(const fs::path& path, const std::error_code& error) {
    throw std::runtime_error("cannot write " + path.string() + ": " + error.message());
}

/// All regular files below a folder, by path relative to it.
std::vector<fs::path> FilesBelow(const fs::path& folder, const std::string& name) {
    std::vector<fs::path> files;
    std::error_code error;
    std::size_t entries = 0;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (++entries > kMostEntries) {
            throw std::runtime_error(name + ": expected the folder of a pulled phone, got more than " +
                                     std::to_string(kMostEntries) + " files and folders");
        }
        std::error_code unknown;
        if (!entry->is_symlink(unknown) && entry->is_regular_file(unknown)) {
            files.push_back(entry->path().lexically_relative(folder));
        }
    }
    if (error) {
        throw std::runtime_error(name + ": expected a folder that can be read, got " + error.message());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// A folder of side files that disappears, and brings back the one whose place it took, unless it is kept.
class SideFolder {
  public:
    explicit SideFolder(fs::path target) : mTarget(std::move(target)), mDraft(mTarget.string() + ".XXXXXX") {
        if (mkdtemp(mDraft.data()) == nullptr) {
            ThrowUnwritable(mTarget, {errno, std::generic_category()});
        }
        chmod(mDraft.c_str(), NewFolderPermissions());
    }
    ~SideFolder() {
        std::error_code ignored;
        if (mPlaced && !mKept) {
            exchange();
        }
        fs::remove_all(mDraft, ignored);
    }
    SideFolder(const SideFolder&) = delete;
    SideFolder& operator=(const SideFolder&) = delete;

    template <typename Bytes>
    void write(const fs::path& name, const Bytes& bytes) const {
        const fs::path path = mDraft / name;
        std::error_code error;
        fs::create_directories(path.parent_path(), error);
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            ThrowUnwritable(mTarget / name, error ? error : std::error_code(errno, std::generic_category()));
        }
    }

    void place() {
        if (!exchange()) {
            ThrowUnwritable(mTarget, {errno, std::generic_category()});
        }
        mPlaced = true;
    }

    void keep() { mKept = true; }

  private:
    static mode_t NewFolderPermissions() {
        const mode_t mask = umask(0);
        umask(mask);
        return 0777U & ~mask;
    }

    /// Draft and target change places; the target may be missing.
    bool exchange() {
        return renameat2(AT_FDCWD, mDraft.c_str(), AT_FDCWD, mTarget.c_str(), RENAME_EXCHANGE) == 0 ||
               (errno == ENOENT &&
                renameat2(AT_FDCWD, mDraft.c_str(), AT_FDCWD, mTarget.c_str(), RENAME_NOREPLACE) == 0);
    }

    /// An ending signal waits until the draft is gone or in its place.
    supervisor::EndingWaits mWaits;
    fs::path mTarget;
    std::string mDraft;
    bool mPlaced = false;
    bool mKept = false;
};

}  // namespace

std::vector<analysis::PulledFile> ReadPulledFolder(const fs::path& folder, const std::string& name) {
    std::vector<analysis::PulledFile> pulled;
    std::size_t total = 0;
    for (const fs::path& path : FilesBelow(folder, name)) {
        const analysis::PulledKind kind = analysis::PulledKindOf(path.string());
        std::error_code error;
        if (kind.dumpOf == nullptr && kind.phonePath.empty()) {
            if (fs::file_size(folder / path, error) > kLargestGetprop || error) {
                continue;
            }
            virtualphone::FileContent content = virtualphone::ReadWholeFile(folder / path, true);
            if (analysis::ReadGetprop(
                    {reinterpret_cast<const char*>(content.bytes.data()), content.bytes.size()})) {
                pulled.push_back({.path = path.string(), .bytes = std::move(content.bytes)});
            }
            continue;
        }
        virtualphone::FileContent content = virtualphone::ReadWholeFile(folder / path, true);
        total += content.bytes.size();
        if (total > virtualphone::kLargestFile) {
            content.error = "more than " + std::to_string(virtualphone::kLargestFile) + " bytes up to it";
        }
        if (!content.error.empty()) {
            throw std::runtime_error((fs::path(name) / path).string() +
                                     ": expected a file that can be read, got " + content.instead());
        }
        pulled.push_back({.path = path.string(), .bytes = std::move(content.bytes)});
    }
    return pulled;
}

LikePhone ReadLikePhone(const std::string& file) {
    if (file.empty()) {
        return {.phone = virtualphone::ParsePhone(virtualphone::StartingPhoneFile(), "", "phone new"),
                .name = "`zvcam phone new`"};
    }
    return {.phone = virtualphone::ReadPhoneFile(file), .name = file};
}

fs::path SideFolderOf(const fs::path& path) {
    return path.parent_path() / (path.stem().string() + ".files");
}

void WritePhone(const fs::path& path, const virtualphone::PhoneDescription& phone, bool force) {
    const fs::path folder = SideFolderOf(path);
    const fs::path folderName = folder.filename();
    CheckMayReplace(path, force);
    std::error_code error;
    if (!force && fs::exists(fs::symlink_status(folder, error))) {
        throw std::runtime_error("cannot write " + folder.string() + ": it exists; --force replaces it");
    }
    SideFolder sideFolder(folder);
    virtualphone::SideFiles names;
    for (const auto& [phonePath, bytes] : phone.files) {
        const fs::path name = "root" + phonePath;
        sideFolder.write(name, bytes);
        names.files[phonePath] = (folderName / name).string();
    }
    for (std::size_t i = 0; i < phone.sensors.size(); ++i) {
        if (phone.sensors[i].eeprom) {
            const fs::path name = "eeprom/sensor" + std::to_string(i) + ".txt";
            sideFolder.write(name, formats::EepromDumpText(phone.sensors[i].eeprom->image));
            names.memories[tables::SensorIndex{static_cast<int>(i)}] = (folderName / name).string();
        }
    }
    sideFolder.place();
    const std::string text = virtualphone::PhoneFileText(phone, names);
    if (virtualphone::ParsePhone(text, path.parent_path(), path.string()) != phone) {
        throw std::runtime_error("cannot write " + path.string() +
                                 ": a name or value in it is no text of a phone file");
    }
    WriteFile(path.string(), [&](std::ostream& out) { out << text; });
    sideFolder.keep();
}

}  // namespace zvcam
