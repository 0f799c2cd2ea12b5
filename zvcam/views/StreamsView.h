#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

#include "analysis/Devices.h"

namespace zvcam {

/// Prints what streams a device offers as a table: format, size, direction, frame and stall time.
/// @param format only this one.
void PrintStreams(std::ostream& out, const analysis::Device& device, std::optional<std::int64_t> format);

/// Prints one line a device: the largest size, and how many configurations each format has.
void PrintStreamOverview(std::ostream& out, const std::vector<analysis::Device>& devices,
                         std::optional<std::int64_t> format);

/// Prints the table as comma-separated values, without the heading, which is kStreamColumns.
void PrintStreamsAsCsv(std::ostream& out, const analysis::Device& device, std::optional<std::int64_t> format);

inline constexpr const char* kStreamColumns =
    "device,member,format,width,height,direction,frame_ms,stall_ms,again";

}  // namespace zvcam
