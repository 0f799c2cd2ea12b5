#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "tables/EepromLayouts.h"

/// The calibration image of one camera module.
struct CamCalAllData {
    std::array<std::uint8_t, tables::kEepromImageSize> data;  ///< the EEPROM from its offset 0
    std::uint32_t dataSize;                                   ///< valid bytes: 0 before a read, all after it
};
static_assert(sizeof(CamCalAllData) == tables::kEepromImageSize + 4);

struct CamCalAllDataDeleter {
    void operator()(CamCalAllData* image) const { std::free(image); }
};

/// An image on the C heap.
using CamCalAllDataPtr = std::unique_ptr<CamCalAllData, CamCalAllDataDeleter>;

/// An image of zeros with no valid byte; null when memory is out.
inline CamCalAllDataPtr MakeCamCalAllData() {
    return CamCalAllDataPtr(static_cast<CamCalAllData*>(std::calloc(1, sizeof(CamCalAllData))));
}
