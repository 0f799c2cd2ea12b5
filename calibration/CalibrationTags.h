#pragma once

#include <cstdint>

/// Vendor tags of the calibration updaters.

inline constexpr std::uint32_t ZELVAN_BOKEH_CALIBRATION_DATA = 0x91010005;
inline constexpr std::uint32_t ZELVAN_CALIBTOOL_TYPE = 0x91010022;
inline constexpr std::uint32_t ZELVAN_CALIBTOOL_FILE_NAME = 0x91010023;
inline constexpr std::uint32_t ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES = 0x91010024;
inline constexpr std::uint32_t ZELVAN_SAT_CALIBRATION_DATA = 0x91010041;
