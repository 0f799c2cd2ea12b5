#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "analysis/DevicePull.h"

namespace zvcam {

/// Reads what counts in a folder that was pulled from a device: the files of its camera folders, EEPROM
/// dumps, and small files that may be getprop output. Sorted by path; links are not followed.
/// @param name what messages call the folder.
/// @throws std::runtime_error for a folder or a file that cannot be read.
std::vector<analysis::PulledFile> ReadPulledFolder(const std::filesystem::path& folder,
                                                   const std::string& name);

/// A phone that others are made like, and how messages call it.
struct LikePhone {
    virtualphone::PhoneDescription phone;
    std::string name;
};

/// @param file a phone file; empty: the phone of `zvcam phone new`.
/// @throws virtualphone::PhoneFileError
LikePhone ReadLikePhone(const std::string& file);

/// Where the side files of a phone file go: "new.files" of "new.json".
std::filesystem::path SideFolderOf(const std::filesystem::path& path);

/// Writes a phone file, and beside it the folder of its side files: "new.json" and "new.files". Both appear
/// whole or not at all.
/// @param force replaces what is there; the folder too, with all that it holds.
/// @throws std::runtime_error when they cannot be written, or exist without `force`.
void WritePhone(const std::filesystem::path& path, const virtualphone::PhoneDescription& phone, bool force);

}  // namespace zvcam
