#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "virtualphone/Api.h"

namespace virtualphone {

/// Largest file that is read or made: far beyond any file of a phone, and no threat to memory.
inline constexpr std::size_t kLargestFile = std::size_t{64} << 20;

/// A whole file, or why there is none.
struct FileContent {
    std::vector<std::uint8_t> bytes;
    std::string error;        ///< empty: the file has been read
    bool unreadable = false;  ///< the error is the system's, and not what the file is

    /// What was found in place of a file, for a message of what was expected: "a folder", "nothing that can
    /// be read (Permission denied)".
    std::string instead() const { return unreadable ? "nothing that can be read (" + error + ")" : error; }
};

/// Reads a file of at most kLargestFile bytes. Folders are refused, and with `regularOnly` pipes and devices
/// too.
VIRTUALPHONE_API FileContent ReadWholeFile(const std::filesystem::path& path, bool regularOnly);

/// Reads what a person named as input: a file, a device, a pipe that someone writes to, or "-" for standard
/// input. A pipe that nobody writes to is refused and never waited for.
VIRTUALPHONE_API FileContent ReadInput(const std::filesystem::path& path);

/// How messages call an input: the path, or "standard input" for "-".
VIRTUALPHONE_API std::string InputName(const std::filesystem::path& path);

}  // namespace virtualphone
