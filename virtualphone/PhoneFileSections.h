#pragma once

#include <filesystem>

#include "virtualphone/JsonValue.h"
#include "virtualphone/PhoneDescription.h"

namespace virtualphone {

// One reader for each larger part of a phone file. `folder` is where relative side files lie.

void ReadFiles(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone);
void ReadSensors(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone);
/// Needs the sensors.
void ReadSensorAliases(const JsonValue& value, PhoneDescription& phone);
void ReadLogicalDevices(const JsonValue& value, PhoneDescription& phone);
void ReadStaticMetadata(const JsonValue& value, PhoneDescription& phone);
void ReadFaults(const JsonValue& value, PhoneDescription& phone);

}  // namespace virtualphone
