#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "virtualphone/PhoneDescription.h"
#include "virtualphone/phonefile/internal/JsonValue.h"

namespace virtualphone {

// One reader for each larger part of a phone file. `folder` is where relative side files lie.

void ReadFiles(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone);
void ReadSensors(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone);
/// Needs the sensors.
void ReadSensorAliases(const JsonValue& value, PhoneDescription& phone);
void ReadLogicalDevices(const JsonValue& value, PhoneDescription& phone);
void ReadStaticMetadata(const JsonValue& value, PhoneDescription& phone);
void ReadFaults(const JsonValue& value, PhoneDescription& phone);

/// Reads the "eeprom" object of a sensor. The image starts as a side file or as one repeated byte, then takes
/// single bytes, then the checksums of a layout.
EepromDescription ReadEeprom(const JsonValue& value, const std::filesystem::path& folder);

/// Stores bytes that stand as an object, in hexadecimal by offset, into `image`.
void ReadBytesByOffset(const JsonValue& value, std::vector<std::uint8_t>& image);

/// The device bits that an index has when the file does not say.
tables::DeviceBits DefaultDeviceBits(tables::SensorIndex index);
/// The device id that an index has when the file does not say.
tables::DeviceId DefaultDeviceId(tables::SensorIndex index);

/// Reads the file that a phone file names; a relative path starts at `folder`.
/// @throws PhoneFileError when it cannot be read.
std::vector<std::uint8_t> ReadSideFile(const JsonValue& name, const std::filesystem::path& folder);

}  // namespace virtualphone
