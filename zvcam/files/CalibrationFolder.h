#pragma once

#include <string>

#include "analysis/CalibrationFiles.h"

namespace zvcam {

/// Reads a folder of calibration files, such as persist/camera, in the order in which the plug-in does.
/// @throws std::runtime_error for a folder that cannot be read.
analysis::CalibrationFolder ReadCalibrationFolder(const std::string& path);

}  // namespace zvcam
