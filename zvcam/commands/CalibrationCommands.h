#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace zvcam {

// The commands below `zvcam calibration`.

/// Adds or mends a file's CRC.
void AddCalibrationSealCommand(CLI::App& calibration, std::function<int()>& chosen);
/// Makes a file for camera pairs.
void AddCalibrationMakeDualCommand(CLI::App& calibration, std::function<int()>& chosen);
/// Makes a file for the stabiliser.
void AddCalibrationMakeOisCommand(CLI::App& calibration, std::function<int()>& chosen);

}  // namespace zvcam
