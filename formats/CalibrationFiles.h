#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace formats {

/// A dual-camera calibration file: the fuse ids of both sensors of a pair, and their calibration block.
struct DualCalibrationFile {
    std::vector<std::uint8_t> masterFuseId;  ///< at most 255 bytes
    std::vector<std::uint8_t> slaveFuseId;   ///< at most 255 bytes
    std::vector<std::uint8_t> block;
    bool crc = false;  ///< a CRC closes the file
};

/// An optical image stabilisation file: the fuse id of the sensor that it was made for, and its gains.
struct OisCalibrationFile {
    std::uint8_t version = 1;
    std::vector<std::uint8_t> fuseId;  ///< at most 255 bytes
    std::uint32_t gainX = 0;
    std::uint32_t gainY = 0;
};

/// Longest fuse id that a calibration file can carry, in bytes.
inline constexpr std::size_t kLongestFuseId = 255;

/// The file's bytes. Multi-byte numbers, the CRC included, stand high byte first.
std::vector<std::uint8_t> Encode(const DualCalibrationFile& file);
std::vector<std::uint8_t> Encode(const OisCalibrationFile& file);

}  // namespace formats
