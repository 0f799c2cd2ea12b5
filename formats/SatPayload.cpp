#include "formats/SatPayload.h"

#include <algorithm>

#include "formats/Bytes.h"

namespace formats {

SatPayloadHeader MakeSatPayloadHeader(const DualCameraCalDataInfo& pair) {
    return {.roles = static_cast<std::uint32_t>(pair.masterCameraRole) << 16 |
                     (static_cast<std::uint32_t>(pair.slaveCameraRole) & 0xFFFFU),
            .length = static_cast<std::uint32_t>(pair.length)};
}

std::optional<SatPayloadHeader> ParseSatPayloadHeader(std::span<const std::uint8_t> payload) {
    const auto headers =
        ReadRecords<SatPayloadHeader>(payload.first(std::min(payload.size(), sizeof(SatPayloadHeader))));
    return headers.empty() ? std::nullopt : std::optional(headers.front());
}

}  // namespace formats
