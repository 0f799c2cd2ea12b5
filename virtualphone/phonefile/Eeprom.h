#pragma once

#include <filesystem>

#include "virtualphone/phonefile/JsonValue.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/phonefile/JsonValue.h"

namespace virtualphone {

/// Reads the "eeprom" object of a sensor. The image starts as a side file or as one repeated byte, then takes
/// single bytes, then the checksums of a layout.
/// @param folder where relative side files lie.
EepromDescription ReadEeprom(const JsonValue& value, const std::filesystem::path& folder);

}  // namespace virtualphone
