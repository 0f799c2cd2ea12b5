#pragma once

#include <cstdint>

/// Android HAL pixel formats, with the numbers of Android's graphics definitions.
inline constexpr std::int64_t HAL_PIXEL_FORMAT_RAW16 = 0x20;
inline constexpr std::int64_t HAL_PIXEL_FORMAT_BLOB = 0x21;                    ///< JPEG
inline constexpr std::int64_t HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED = 0x22;  ///< PRIVATE
inline constexpr std::int64_t HAL_PIXEL_FORMAT_YCBCR_420_888 = 0x23;
inline constexpr std::int64_t HAL_PIXEL_FORMAT_RAW10 = 0x25;
inline constexpr std::int64_t HAL_PIXEL_FORMAT_YV12 = 0x32315659;
inline constexpr std::int64_t HAL_PIXEL_FORMAT_Y16 = 0x20363159;

/// Directions of a stream configuration, as Android's scaler tags number them.
inline constexpr std::int64_t STREAM_OUTPUT = 0;
inline constexpr std::int64_t STREAM_INPUT = 1;

/// Frame durations in nanoseconds.
inline constexpr std::int64_t FRAME_DURATION_20_FPS = 50'000'000;
inline constexpr std::int64_t FRAME_DURATION_30_FPS = 33'333'333;
inline constexpr std::int64_t FRAME_DURATION_60_FPS = 16'666'666;
