#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

#include "tables/EepromLayouts.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/phonefile/JsonValue.h"

namespace virtualphone {

/// Reads the "eeprom" object of a sensor. The image starts as a side file or as one repeated byte, then takes
/// single bytes, then the checksums of a layout.
/// @param folder where relative side files lie.
EepromDescription ReadEeprom(const JsonValue& value, const std::filesystem::path& folder);

/// The layout with this EEPROM driver name; null where there is none.
const EepromCheckSumDesc* FindEepromLayout(std::string_view eepromName);

/// Makes every checksum byte of a layout good.
void StoreCheckSums(const EepromCheckSumDesc& layout, std::vector<std::uint8_t>& image);

}  // namespace virtualphone
