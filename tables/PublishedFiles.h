#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "tables/PublishingOperations.h"

/// The files that the plug-in reads and writes, by the phone's paths.
namespace tables {

/// Where recalibrations leave their files.
inline constexpr const char* kPersistFolder = "/mnt/vendor/persist/camera/";
inline constexpr const char* kOisFilePath = "/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin";

/// Whether an entry of that folder, whatever it is, counts as a dual-camera calibration file.
constexpr bool IsDualCalibrationFileName(std::string_view name) {
    return name.find("bin") != std::string_view::npos && name.find("dcal") != std::string_view::npos;
}

/// Bytes of the largest calibration file that is read; real ones have some kilobytes.
inline constexpr std::size_t kLargestCalibrationFile = 16U << 20;

/// Start of a module dump's path; the name of its role follows.
inline constexpr const char* kEepromDumpPath = "/data/vendor/camera/eeprom_raw_data_dump_";

/// What is known of a published file.
struct PublishedFile {
    const char* path;
    bool perRole;  ///< `path` is a start: one file for each role that a module can have, its name at the end
    PublishingOperation operation;
    const char* content;  ///< in Markdown
};

std::span<const PublishedFile> PublishedFiles();

/// The row of a file, or null for one that the plug-in does not publish.
/// @param path the phone's.
const PublishedFile* FindPublishedFile(std::string_view path);

}  // namespace tables
