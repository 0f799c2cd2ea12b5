#pragma once

#include <optional>
#include <vector>

/// Reads a whole file of the phone.
/// @return no value for a null path, and for what can't be opened, is no regular file or is larger than
/// tables::kLargestCalibrationFile.
std::optional<std::vector<unsigned char>> ReadCalibrationFile(const char* path);
