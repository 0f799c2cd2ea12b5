#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace formats {

/// Longest fuse id that a calibration file can carry, in bytes.
inline constexpr std::size_t kLongestFuseId = 255;

/// The sizes of a calibration block, in the order in which a file's size is held against them.
inline constexpr std::array<std::uint16_t, 3> kCalibrationBlockSizes = {419, 2048, 4096};

/// A dual-camera calibration file: the fuse ids of both sensors of a pair, and their stereo calibration
/// block.
///
///     offset        size  field
///     0             1     L1, bytes of the master fuse id
///     1             L1    master fuse id
///     1 + L1        1     L2, bytes of the slave fuse id
///     2 + L1        L2    slave fuse id
///     2 + L1 + L2   D     calibration block: 419, 2048 or 4096 bytes
///     then          2     "maintain" layout only: CRC-16/KERMIT of all bytes before it, high byte first
///
/// Factory files have no CRC ("factor" layout). Neither D nor the layout is stated: both follow from the
/// size.
struct DualCalibrationFile {
    std::vector<std::uint8_t> masterFuseId;  ///< at most kLongestFuseId bytes
    std::vector<std::uint8_t> slaveFuseId;   ///< at most kLongestFuseId bytes
    std::vector<std::uint8_t> block;
    bool crc = false;  ///< a CRC closes the file
};

/// The file's bytes.
std::vector<std::uint8_t> Encode(const DualCalibrationFile& file);

/// Whether a file's two length bytes lead to its end or beyond it.
bool FuseIdsLeadOutside(std::span<const std::uint8_t> bytes);

/// What reading a dual-camera calibration file showed.
struct DualCalibrationReading {
    enum class Trouble {
        None,
        FuseIdsLeadOutside,  ///< nothing else was read
        BlockSize,  ///< what follows the fuse ids has none of kCalibrationBlockSizes; it is in `file.block`
        Crc,        ///< the stored CRC is not the computed one
    };

    Trouble trouble = Trouble::None;
    DualCalibrationFile file;
    std::uint16_t computedCrc = 0;  ///< of all bytes but a stored CRC; 0 where the block's size is unknown
    std::uint16_t storedCrc = 0;    ///< 0 where there is none
};

/// Reads any bytes.
DualCalibrationReading ReadDualCalibrationFile(std::span<const std::uint8_t> bytes);

}  // namespace formats
