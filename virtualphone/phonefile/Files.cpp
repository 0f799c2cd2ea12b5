#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "formats/DualCalibrationFile.h"
#include "formats/OisCalibrationFile.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

/// The folder of the camera stack's own files, which a phone has at start.
constexpr std::string_view kPhoneFolder = "/data/vendor/camera";

using Bytes = std::vector<std::uint8_t>;

/// Bytes that a phone file writes down: one byte repeated ("fill", "size"), over which others may lie by
/// offset
/// ("bytes"); or hexadecimal text ("hex").
struct InlineBytes {
    std::optional<std::uint8_t> fill;
    std::optional<std::size_t> size;
    std::optional<JsonValue> patches;
    std::optional<Bytes> hex;

    using Key = std::pair<std::string_view, JsonValue::Reader>;
    Key fillKey() {
        return {"fill", [this](const JsonValue& v) { fill = v.integer<std::uint8_t>(); }};
    }
    Key sizeKey() {
        return {"size", [this](const JsonValue& v) { size = v.integer<std::uint32_t>(0, kLargestFile); }};
    }
    Key bytesKey() {
        return {"bytes", [this](const JsonValue& v) { patches = v; }};
    }
    Key hexKey() {
        return {"hex", [this](const JsonValue& v) { hex = v.hex(); }};
    }
    bool isFill() const { return fill || size || patches; }
    /// Fails for one of the two keys that belong together.
    void check(const JsonValue& value) const {
        if (isFill() && !(fill && size)) {
            value.fail(R"("fill" and "size" together)", fill   ? "fill alone"
                                                        : size ? "size alone"
                                                               : "neither");
        }
    }
    Bytes bytes() const {
        if (hex) {
            return *hex;
        }
        Bytes filled(size.value_or(0), fill.value_or(0));
        if (patches) {
            ReadBytesByOffset(*patches, filled);
        }
        return filled;
    }
};

Bytes ReadBlock(const JsonValue& value) {
    InlineBytes block;
    value.readKeys({block.fillKey(), block.sizeKey(), block.bytesKey(), block.hexKey()});
    if (block.hex && block.isFill()) {
        value.fail(R"(either "hex" or "fill" and "size")", "both");
    }
    block.check(value);
    return block.bytes();
}

Bytes ReadFuseId(const JsonValue& value) {
    Bytes fuseId = value.hex();
    if (fuseId.size() > formats::kLongestFuseId) {
        value.fail("a fuse id of at most " + std::to_string(formats::kLongestFuseId) + " bytes",
                   std::to_string(fuseId.size()));
    }
    return fuseId;
}

Bytes ReadDualCalibration(const JsonValue& value) {
    formats::DualCalibrationFile file;
    value.readKeys({
        {"master", [&](const JsonValue& v) { file.masterFuseId = ReadFuseId(v); }},
        {"slave", [&](const JsonValue& v) { file.slaveFuseId = ReadFuseId(v); }},
        {"block", [&](const JsonValue& v) { file.block = ReadBlock(v); }},
        {"crc", [&](const JsonValue& v) { file.crc = v.boolean(); }},
    });
    return formats::Encode(file);
}

Bytes ReadOisCalibration(const JsonValue& value) {
    formats::OisCalibrationFile file;
    value.readKeys({
        {"version", [&](const JsonValue& v) { file.version = v.integer<std::uint8_t>(); }},
        {"fuseId", [&](const JsonValue& v) { file.fuseId = ReadFuseId(v); }},
        {"gainX", [&](const JsonValue& v) { file.gainX = v.integer<std::uint32_t>(); }},
        {"gainY", [&](const JsonValue& v) { file.gainY = v.integer<std::uint32_t>(); }},
    });
    return formats::Encode(file);
}

Bytes TextBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

/// The content of one file. An object without any key is an empty file.
Bytes ReadContent(const JsonValue& value, const std::filesystem::path& folder) {
    InlineBytes written;
    std::optional<Bytes> made;
    int kinds = 0;
    const auto make = [&](Bytes bytes) {
        made = std::move(bytes);
        ++kinds;
    };
    value.readKeys({
        written.fillKey(),
        written.sizeKey(),
        written.bytesKey(),
        written.hexKey(),
        {"text", [&](const JsonValue& v) { make(TextBytes(v.text())); }},
        {"file", [&](const JsonValue& v) { make(ReadSideFile(v, folder)); }},
        {"dualcal", [&](const JsonValue& v) { make(ReadDualCalibration(v)); }},
        {"oiscal", [&](const JsonValue& v) { make(ReadOisCalibration(v)); }},
    });
    kinds += (written.isFill() ? 1 : 0) + (written.hex ? 1 : 0);
    if (kinds > 1) {
        value.fail(R"(one of "fill" with "size", "hex", "text", "file", "dualcal" and "oiscal")",
                   std::to_string(kinds) + " of them");
    }
    written.check(value);
    return made ? std::move(*made) : written.bytes();
}

/// Whether a path is absolute and names one file in one way only.
bool IsPhonePath(std::string_view path) {
    const std::filesystem::path parsed(path);
    return path.starts_with('/') && !path.ends_with('/') && path.find("//") == std::string_view::npos &&
           parsed == parsed.lexically_normal();
}

/// Fails for a key that is no path of a file.
void CheckPath(const JsonValue& content, std::string_view path) {
    // What a file system takes; a root folder has its own share of a whole path.
    constexpr std::size_t kLongestName = 255;
    constexpr std::size_t kLongestPath = 4095 - 256;
    if (path.find('\0') != std::string_view::npos) {
        content.fail("an absolute path as the key", "a key with a zero byte");
    }
    if (!IsPhonePath(path)) {
        content.fail(R"(an absolute path as the key, without ".", ".." or empty parts)", "another path");
    }
    if (path.size() > kLongestPath) {
        content.fail("a path of at most " + std::to_string(kLongestPath) + " bytes",
                     std::to_string(path.size()));
    }
    for (const std::filesystem::path& name : std::filesystem::path(path)) {
        if (name.native().size() > kLongestName) {
            content.fail("names of at most " + std::to_string(kLongestName) + " bytes in the path",
                         std::to_string(name.native().size()));
        }
    }
    if (kPhoneFolder.starts_with(path) &&
        (kPhoneFolder.size() == path.size() || kPhoneFolder[path.size()] == '/')) {
        content.fail("the path of a file", "a folder that the phone has");
    }
    if (path == kFileList || path.starts_with(std::string(kFileList) + "/")) {
        content.fail("a file of the phone", "the virtual phone's own list");
    }
}

/// Fails for a file that stands where the path to another one needs a folder.
void CheckFolders(const JsonValue& content, std::string_view path, const PhoneDescription& phone) {
    for (std::size_t end = path.rfind('/'); end > 0; end = path.rfind('/', end - 1)) {
        const std::string folder(path.substr(0, end));
        if (phone.files.contains(folder)) {
            content.fail("a path through folders", "one through the file " + folder);
        }
    }
}

}  // namespace

std::vector<std::uint8_t> ReadSideFile(const JsonValue& name, const std::filesystem::path& folder) {
    const std::filesystem::path path = folder / name.plainText();
    FileContent content = ReadWholeFile(path, /*regularOnly=*/true);
    if (!content.error.empty()) {
        name.fail("a readable file", path.string() + ": " + content.error);
    }
    return std::move(content.bytes);
}

void ReadFiles(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone) {
    std::size_t total = 0;
    for (const auto& [path, content] : value.members()) {
        CheckPath(content, path);
        Bytes& bytes = phone.files[std::string(path)] = ReadContent(content, folder);
        total += bytes.size();
        if (total > kLargestFile) {
            content.fail("at most " + std::to_string(kLargestFile) + " bytes in all files up to this one",
                         std::to_string(total));
        }
    }
    for (const auto& [path, content] : value.members()) {
        CheckFolders(content, path, phone);
    }
}

}  // namespace virtualphone
