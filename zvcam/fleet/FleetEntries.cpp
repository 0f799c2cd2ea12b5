#include "zvcam/fleet/FleetEntries.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "analysis/DevicePull.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/files/BootSource.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowUnreadable(const fs::path& path, const char* expected, const std::string& found) {
    throw std::runtime_error(virtualphone::InputName(path) + ": expected " + expected + ", got " + found);
}

/// What a folder holds, sorted by name; nothing that is hidden or a link.
std::vector<fs::directory_entry> Contents(const fs::path& folder, std::error_code& error) {
    std::vector<fs::directory_entry> contents;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code unknown;
        if (!entry->path().filename().string().starts_with('.') && !entry->is_symlink(unknown)) {
            contents.push_back(*entry);
        }
    }
    std::sort(contents.begin(), contents.end());
    return contents;
}

/// Whether a folder is the top of what was pulled from a device.
bool LooksPulled(const fs::path& folder, const std::vector<fs::directory_entry>& contents) {
    constexpr std::array<const char*, 4> kCameraFolders = {"mnt/vendor/persist/camera", "persist/camera",
                                                           "vendor/etc/camera", "data/vendor/camera"};
    std::error_code unknown;
    return std::any_of(kCameraFolders.begin(), kCameraFolders.end(),
                       [&](const char* name) { return fs::is_directory(folder / name, unknown); }) ||
           std::any_of(contents.begin(), contents.end(), [](const fs::directory_entry& entry) {
               return analysis::PulledKindOf(entry.path().filename().string()).dumpOf != nullptr;
           });
}

void Search(const fs::path& folder, const fs::path& name, std::vector<std::string>& paths) {
    std::error_code error;
    const std::vector<fs::directory_entry> contents = Contents(folder, error);
    if (error && name.empty()) {
        ThrowUnreadable(folder, "a folder that can be read", error.message());
    }
    // One below that cannot be read is an entry, whose reason the run tells.
    if (error || LooksPulled(folder, contents)) {
        paths.push_back(name.empty() ? "." : name.string());
        return;
    }
    for (const fs::directory_entry& entry : contents) {
        const fs::path path = name / entry.path().filename();
        std::error_code unknown;
        if (entry.is_directory(unknown)) {
            const bool ofPhoneFile = path.extension() == ".files" &&
                                     fs::exists(fs::path(entry.path()).replace_extension(".json"), unknown);
            if (!ofPhoneFile) {
                Search(entry.path(), path, paths);
            }
        } else if (path.extension() == ".json") {
            paths.push_back(path.string());
        }
    }
}

/// One name for a path, however it was written: "made", "./made" and "made/" are the same.
std::string PlainPath(const fs::path& path) {
    const fs::path plain = path.lexically_normal();
    return (plain.has_filename() || plain == plain.root_path() ? plain : plain.parent_path()).string();
}

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Whether a text begins as a phone file does, which may have comments first. A path
/// may begin as a comment does, but nothing that begins with a brace follows it.
bool IsJson(std::string_view text) {
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
        const bool line = text.starts_with("//");
        if (!line && !text.starts_with("/*")) {
            return text.starts_with('{');
        }
        const std::string_view close = line ? "\n" : "*/";
        const std::size_t end = text.find(close, 2);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + close.size());
    }
}

std::vector<std::string> LinesOf(const std::string& source) {
    const virtualphone::FileContent content = virtualphone::ReadInput(source);
    if (!content.error.empty()) {
        ThrowUnreadable(source, "a list of phones or a folder", content.error);
    }
    std::string_view text(reinterpret_cast<const char*>(content.bytes.data()), content.bytes.size());
    text.remove_prefix(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    constexpr const char* kExpected = "a list of phones, one path a line";
    if (IsJson(text)) {
        ThrowUnreadable(source, kExpected, "JSON; `zvcam run` boots a single phone");
    }
    if (text.find('\0') != std::string_view::npos) {
        ThrowUnreadable(source, kExpected, "bytes that are no text");
    }
    std::vector<std::string> lines;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (!line.empty()) {
            lines.push_back(PlainPath(line));
        }
    }
    return lines;
}

void KeepEachOnce(FleetEntries& entries) {
    std::unordered_set<std::string> seen;
    entries.repeated =
        std::erase_if(entries.paths, [&](const std::string& path) { return !seen.insert(path).second; });
}

}  // namespace

FleetEntries ReadFleetEntries(const std::string& source) {
    FleetEntries entries;
    std::error_code error;
    entries.source = source == "-" ? source : PlainPath(fs::absolute(source));
    if (source != "-" && fs::is_directory(source, error)) {
        entries.folder = source;
        Search(source, "", entries.paths);
    } else {
        entries.folder = source == "-" ? fs::path() : fs::path(source).parent_path();
        entries.paths = LinesOf(source);
        KeepEachOnce(entries);
    }
    if (entries.paths.empty()) {
        ThrowUnreadable(source, "phone files or folders pulled from devices", "none");
    }
    return entries;
}

Shard ReadShard(const std::string& text) {
    Shard shard;
    const char* const end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), end, shard.number);
    const bool divided = number.ec == std::errc() && number.ptr != end && *number.ptr == '/';
    const auto count = std::from_chars(divided ? number.ptr + 1 : end, end, shard.count);
    if (!divided || count.ec != std::errc() || count.ptr != end || shard.number < 1 ||
        shard.number > shard.count) {
        throw std::runtime_error("--shard: expected I/N with 1 <= I <= N, such as 1/4, got \"" + text + "\"");
    }
    return shard;
}

void KeepShard(const Shard& shard, FleetEntries& entries) {
    std::vector<std::string> kept;
    for (std::size_t i = shard.number - 1; i < entries.paths.size();
         i += std::min(shard.count, entries.paths.size())) {
        kept.push_back(std::move(entries.paths[i]));
    }
    entries.paths = std::move(kept);
}

virtualphone::PhoneDescription ReadFleetPhone(const fs::path& path, const LikePhone& like) {
    // The path stands beside the messages, and would only keep equal ones apart.
    std::error_code error;
    if (fs::is_directory(path, error)) {
        analysis::DevicePull pull =
            analysis::PhoneFromDevice(ReadPulledFolder(path, "pulled folder"), like.phone, like.name);
        if (!pull.trouble.empty()) {
            throw std::runtime_error(pull.trouble);
        }
        pull.phone.name = fs::weakly_canonical(path, error).filename().string();
        return std::move(pull.phone);
    }
    const virtualphone::FileContent content = virtualphone::ReadWholeFile(path, /*regularOnly=*/true);
    if (!content.error.empty()) {
        throw std::runtime_error("expected a phone file or a folder, got " + content.error);
    }
    const std::string_view text(reinterpret_cast<const char*>(content.bytes.data()), content.bytes.size());
    if (IsReport(text)) {
        throw std::runtime_error("expected a phone file or a folder, got the report of a boot");
    }
    // The path stands beside the message, and would only keep equal messages apart.
    return virtualphone::ParsePhone(text, path.parent_path(), "phone file");
}

}  // namespace zvcam
