#include "formats/ZoomScale.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <string>

#include "formats/Bytes.h"

static_assert(std::endian::native == std::endian::little);

namespace formats {

ZoomScaleRecord MakeZoomScaleRecord(float length, std::istream& ratios, int type) {
    ZoomScaleRecord record{.type = static_cast<std::uint8_t>(type), .count = 0};
    for (std::string token; record.count < kZoomScaleCapacity && std::getline(ratios, token, ':');) {
        record.ratios[record.count++] = std::strtof(token.c_str(), nullptr);
    }
    if (record.count > 0) {
        const float first = record.ratios[0];
        const float scale = length / std::log(record.ratios[record.count - 1U] / first);
        for (std::size_t i = 0; i < record.count; ++i) {
            record.positions[i] = scale * std::log(record.ratios[i] / first);
        }
    }
    return record;
}

std::vector<ZoomScaleRecord> ParseZoomScaleRecords(std::span<const std::uint8_t> blob) {
    return ReadRecords<ZoomScaleRecord>(blob);
}

}  // namespace formats
