#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace zvcam {

// The commands below `zvcam phone`.

/// Tells what phone files have, and what is wrong with them.
void AddPhoneCheckCommand(CLI::App& phone, std::function<int()>& chosen);
/// Writes a phone file to start from.
void AddPhoneNewCommand(CLI::App& phone, std::function<int()>& chosen);
/// Makes a phone file of what was pulled from a device.
void AddPhoneFromDeviceCommand(CLI::App& phone, std::function<int()>& chosen);
/// Writes the JSON Schema of phone files.
void AddPhoneSchemaCommand(CLI::App& phone, std::function<int()>& chosen);

}  // namespace zvcam
