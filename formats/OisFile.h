#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// One OIS calibration file: the gains of a recalibrated stabiliser and the sensor they were made for.
///
///     offset    size  field
///     0         1     format version, 1
///     1         1     L, bytes of the fuse id
///     2         L     fuse id
///     2 + L     4     gain X, unsigned, big-endian
///     6 + L     4     gain Y, unsigned, big-endian
///     ...             not read
///     size - 2  2     CRC-16/KERMIT of all bytes before it, high byte first
///
/// A file may be of any length: what lies beyond its end reads as 0.
class OisFile {
  public:
    explicit OisFile(std::vector<unsigned char> bytes) : mBytes(std::move(bytes)) {}

    bool empty() const { return mBytes.empty(); }
    std::uint16_t computedCrc() const;
    std::uint16_t storedCrc() const;
    /// False for files too short to carry a CRC.
    bool crcGood() const;

    int version() const { return byteAt(0); }
    int fuseIdLength() const { return byteAt(1); }
    /// Upper-case hexadecimal, two characters a byte.
    std::string fuseIdHex() const;
    std::uint32_t gainX() const;
    std::uint32_t gainY() const;

  private:
    unsigned char byteAt(std::size_t offset) const { return offset < mBytes.size() ? mBytes[offset] : 0; }
    std::uint32_t bigEndian32At(std::size_t offset) const;

    std::vector<unsigned char> mBytes;
};

inline constexpr int kOisFileVersion = 1;

/// Whether both gains lie in the range that the stabiliser accepts, tables::kLeastGain to
/// tables::kGreatestGain.
bool OisGainsInRange(std::uint32_t gainX, std::uint32_t gainY);

/// A sensitivity as the stabiliser's algorithm takes it: fixed point with 12 fraction bits, to millionths in
/// single precision, towards zero.
int OisSensitivityMillionths(int fixedPoint);
