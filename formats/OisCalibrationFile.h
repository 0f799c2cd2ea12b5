#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace formats {

/// The version of the format below.
inline constexpr std::uint8_t kOisFileVersion = 1;

/// A stabiliser calibration file: the gains of a recalibrated stabiliser and the sensor they were made for.
///
///     offset    size  field
///     0         1     format version, 1
///     1         1     L, bytes of the fuse id
///     2         L     fuse id
///     2 + L     4     gain X, unsigned, big-endian
///     6 + L     4     gain Y, unsigned, big-endian
///     ...             not read
///     size - 2  2     CRC-16/KERMIT of all bytes before it, high byte first
struct OisCalibrationFile {
    std::uint8_t version = kOisFileVersion;
    std::vector<std::uint8_t> fuseId;  ///< at most 255 bytes
    std::uint32_t gainX = 0;
    std::uint32_t gainY = 0;

    /// Whether the stabiliser accepts both gains: tables::kLeastGain to tables::kGreatestGain.
    bool gainsInRange() const;
};

/// The file's bytes.
std::vector<std::uint8_t> Encode(const OisCalibrationFile& file);

/// What reading a stabiliser calibration file showed.
struct OisCalibrationReading {
    OisCalibrationFile file;
    std::uint16_t computedCrc;
    std::uint16_t storedCrc;
    bool crcGood;  ///< false for files too short to carry a CRC
};

/// Reads any bytes: what lies beyond their end reads as 0.
OisCalibrationReading ReadOisCalibrationFile(std::span<const std::uint8_t> bytes);

/// A sensitivity as the stabiliser's algorithm takes it: fixed point with 12 fraction bits, to millionths in
/// single precision, towards zero.
int OisSensitivityMillionths(int fixedPoint);

}  // namespace formats
