#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace zvcam {

// What the commands share that write a calibration file.

/// Where a calibration file goes.
struct CalibrationOutput {
    std::string output;
    bool force = false;
};

/// Adds --force.
void AddForce(CLI::App& command, CalibrationOutput& options);
/// Adds --output and --force.
void AddCalibrationOutput(CLI::App& command, CalibrationOutput& options);

/// What is wrong with a fuse id, too long ones among them; empty for a good one.
std::string CheckFuseId(const std::string& text);

/// Writes a file and tells what it is.
/// @param inputs names of the files that it was made of.
/// @return the exit status.
/// @throws std::runtime_error for an output that exists or is an input, and one that cannot be written.
int WriteCalibration(const CalibrationOutput& options, const std::vector<std::string>& inputs,
                     const std::vector<std::uint8_t>& bytes);

}  // namespace zvcam
