#pragma once

#include <bit>
#include <cstdint>
#include <optional>
#include <span>

#include "tables/CameraPairs.h"

namespace formats {

/// What stands before the calibration block in the SAT payload, as the platform's 32-bit integers lie in
/// memory: little-endian.
struct SatPayloadHeader {
    std::uint32_t roles;   ///< slave role in the low half, master role in the high half
    std::uint32_t length;  ///< of the block, bytes

    int masterRole() const { return static_cast<int>(roles >> 16); }
    int slaveRole() const { return static_cast<int>(roles & 0xFFFFU); }
};
static_assert(sizeof(SatPayloadHeader) == 8);
static_assert(std::endian::native == std::endian::little);

SatPayloadHeader MakeSatPayloadHeader(const DualCameraCalDataInfo& pair);

/// The header of a payload; no value for fewer bytes than it has.
std::optional<SatPayloadHeader> ParseSatPayloadHeader(std::span<const std::uint8_t> payload);

}  // namespace formats
