#pragma once

#include <array>
#include <bit>
#include <cstdint>

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

inline constexpr std::array<FakeSatSize, 9> kFakeSatSizes = {{
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 4000, .height = 3000},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 3968, .height = 2232},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 4000, .height = 1800},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 2, .width = 4000, .height = 3000},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 2, .width = 3968, .height = 2232},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 2, .width = 4000, .height = 1800},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 3, .width = 4000, .height = 3000},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 3, .width = 3968, .height = 2232},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 3, .width = 4000, .height = 1800},
}};
