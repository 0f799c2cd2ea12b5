#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "virtualphone/PhoneDescription.h"
#include "zvcam/files/PhoneFolder.h"

namespace zvcam {

/// The phones of a fleet: phone files, and folders pulled from devices.
struct FleetEntries {
    std::filesystem::path folder;    ///< where relative paths start
    std::string source;              ///< what named them: the absolute path of a list or folder, or "-"
    std::vector<std::string> paths;  ///< each once, in order
    std::size_t repeated = 0;        ///< that stood there once more
};

/// Reads a list, one path a line, or searches a folder.
///
/// Found in a folder are phone files, "*.json", and pulled folders: those that hold an EEPROM dump or one of
/// the camera folders. What lies in a pulled folder belongs to it, what lies in "x.files" beside "x.json" to
/// that phone file. Links and hidden files are passed over; the order is that of the paths.
/// @param source a list, a folder, or "-": a list on standard input.
/// @throws std::runtime_error for what cannot be read or names no phone.
FleetEntries ReadFleetEntries(const std::string& source);

/// Which of several machines is at work: every `count`-th entry from the `number`-th on, counted from 1.
struct Shard {
    std::size_t number = 1;
    std::size_t count = 1;
};

/// Reads "2/8".
/// @throws std::runtime_error for another text.
Shard ReadShard(const std::string& text);

/// The shard's share.
void KeepShard(const Shard& shard, FleetEntries& entries);

/// Reads a phone file or a pulled folder.
/// @param like what a pulled folder takes its sensors and devices from.
/// @throws std::runtime_error for one that cannot be read.
virtualphone::PhoneDescription ReadFleetPhone(const std::filesystem::path& path, const LikePhone& like);

}  // namespace zvcam
