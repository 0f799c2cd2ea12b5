#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "virtualphone/PhoneDescription.h"
#include "virtualphone/phonefile/JsonValue.h"

namespace virtualphone {

// One reader for each larger part of a phone file. `folder` is where relative side files lie.

void ReadFiles(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone);
void ReadSensors(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone);
/// Needs the sensors.
void ReadSensorAliases(const JsonValue& value, PhoneDescription& phone);
void ReadLogicalDevices(const JsonValue& value, PhoneDescription& phone);
void ReadStaticMetadata(const JsonValue& value, PhoneDescription& phone);
void ReadFaults(const JsonValue& value, PhoneDescription& phone);

/// Reads the file that a phone file names; a relative path starts at `folder`.
/// @throws PhoneFileError when it cannot be read.
std::vector<std::uint8_t> ReadSideFile(const JsonValue& name, const std::filesystem::path& folder);

}  // namespace virtualphone
