#pragma once

#include <cstddef>
#include <optional>
#include <vector>

/// Bytes of the largest calibration file that is read; real ones have some kilobytes.
inline constexpr std::size_t kLargestCalibrationFile = 16U << 20;

/// Reads a whole file of the phone.
/// @return no value for a null path, and for what can't be opened, is no regular file or is larger than
/// kLargestCalibrationFile.
std::optional<std::vector<unsigned char>> ReadCalibrationFile(const char* path);
