#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <span>
#include <vector>

namespace formats {

inline constexpr std::size_t kZoomScaleCapacity = 10;

/// Where the zoom ratios at which the framework changes lens lie on a zoom control, on a logarithmic scale.
/// The record lies in the tag's blob as it lies in memory, little-endian.
struct ZoomScaleRecord {
    std::uint8_t type;
    std::uint8_t count;  ///< ratios in use
    std::uint8_t capacity = kZoomScaleCapacity;
    std::uint8_t one = 1;
    std::array<float, kZoomScaleCapacity> ratios{};
    /// In the control's units: 0 for the first ratio, the control's length for the last.
    std::array<float, kZoomScaleCapacity> positions{};
};
static_assert(offsetof(ZoomScaleRecord, ratios) == 4);
static_assert(offsetof(ZoomScaleRecord, positions) == 44);
static_assert(sizeof(ZoomScaleRecord) == 84);

/// Lays ratios out on a control.
/// @param length of the control.
/// @param ratios such as "0.6:1:2:5:10:20"; the first ten count. A single ratio has no scale: its position is
/// not a number.
/// @param type kept in its low 8 bits.
ZoomScaleRecord MakeZoomScaleRecord(float length, std::istream& ratios, int type);

/// The records of a tag's blob; what is less than a record at its end is left out. `count` may say more than
/// the record has room for.
std::vector<ZoomScaleRecord> ParseZoomScaleRecords(std::span<const std::uint8_t> blob);

}  // namespace formats
