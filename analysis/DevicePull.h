#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/CameraModules.h"
#include "virtualphone/PhoneDescription.h"

/// A phone from what was pulled from a device: folders and files as `adb pull` and `adb shell` leave them.
namespace analysis {

/// What a file of a pulled folder is by its path.
struct PulledKind {
    const tables::ModuleRole* dumpOf =
        nullptr;            ///< the memory of this role's module, as the plug-in dumps it
    std::string phonePath;  ///< a file of one of the camera folders; else empty
};

/// @param path below the pulled folder; what stands above "mnt/vendor/persist/camera", "persist/camera",
/// "vendor/etc/camera" or "data/vendor/camera" means nothing.
PulledKind PulledKindOf(std::string_view path);

/// A file of a pulled folder.
struct PulledFile {
    std::string path;
    std::vector<std::uint8_t> bytes;
};

/// The properties of `getprop` output, by name; none where the text begins otherwise. Values may have several
/// lines.
std::optional<std::map<std::string, std::string>> ReadGetprop(std::string_view text);

/// A phone, and how it came to be.
struct DevicePull {
    virtualphone::PhoneDescription phone;
    std::vector<std::string> found;
    std::vector<std::string> leftOut;  ///< found, but not of a phone that has not booted yet
    std::vector<std::string> assumed;
    std::string trouble;  ///< why there is no phone; else empty
};

/// Puts a phone together. A module without a dump cannot be read: the plug-in dumps every other one. Files
/// and properties that a boot makes are left out, so that it makes them again.
/// @param files sorted by path; where two are the same, the first counts.
/// @param like a phone of the same build, for what no folder holds: sensors, aliases, logical devices, static
/// metadata, faults.
/// @param likeName what the notes call it.
DevicePull PhoneFromDevice(std::span<const PulledFile> files, const virtualphone::PhoneDescription& like,
                           const std::string& likeName);

}  // namespace analysis
