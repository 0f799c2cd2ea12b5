#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "formats/Bytes.h"

namespace formats {

/// A YUV size that the framework may use for its zoom switch on a sensor that zooms inside. The record lies
/// in the tag's blob as it lies in memory: little-endian, back to back, no header.
struct FakeSatSize {
    float zoomStart;
    float zoomStop;
    std::int32_t type;
    std::int32_t width;   ///< pixels
    std::int32_t height;  ///< pixels
    std::int32_t reserved = 0;
};
static_assert(sizeof(FakeSatSize) == 24);
static_assert(std::endian::native == std::endian::little);

/// The records of a tag's blob; what is less than a record at its end is left out.
inline std::vector<FakeSatSize> ParseFakeSatSizes(std::span<const std::uint8_t> blob) {
    return ReadRecords<FakeSatSize>(blob);
}

}  // namespace formats
