#pragma once

#include <iosfwd>
#include <string>

#include "analysis/CalibrationFiles.h"
#include "zvcam/views/Text.h"

namespace zvcam {

/// Prints what a calibration file holds and whether it is sound.
/// @param owners whom its fuse ids name on a phone; null where nobody says.
void PrintCalibrationFile(std::ostream& out, const std::string& name,
                          const analysis::CalibrationContent& content, const analysis::FuseIdOwners* owners,
                          const Style& style);

/// Prints every file that a persist folder offers, and which are taken.
void PrintCalibrationFolder(std::ostream& out, const std::string& name,
                            const analysis::CalibrationFolder& folder, const analysis::FuseIdOwners* owners,
                            const Style& style);

}  // namespace zvcam
