#include "formats/OisCalibrationFile.h"

#include <cstddef>

#include "formats/Bytes.h"
#include "formats/Crc16.h"
#include "tables/Stabiliser.h"

namespace formats {

namespace {

constexpr std::size_t kFuseIdAt = 2;

bool GainInRange(std::uint32_t gain) {
    return gain >= tables::kLeastGain && gain <= tables::kGreatestGain;
}

void AppendBigEndian32(std::vector<std::uint8_t>& to, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        to.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

}  // namespace

bool OisCalibrationFile::gainsInRange() const {
    return GainInRange(gainX) && GainInRange(gainY);
}

std::vector<std::uint8_t> Encode(const OisCalibrationFile& file) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(2 + file.fuseId.size() + 8 + kCrcSize);
    bytes.push_back(file.version);
    AppendFuseId(bytes, file.fuseId);
    AppendBigEndian32(bytes, file.gainX);
    AppendBigEndian32(bytes, file.gainY);
    AppendCrc(bytes);
    return bytes;
}

OisCalibrationReading ReadOisCalibrationFile(std::span<const std::uint8_t> bytes) {
    const auto byteAt = [bytes](std::size_t offset) {
        return offset < bytes.size() ? bytes[offset] : std::uint8_t{0};
    };
    const auto bigEndian32At = [byteAt](std::size_t offset) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            value = value << 8 | byteAt(offset + i);
        }
        return value;
    };
    OisCalibrationReading reading{};
    reading.file.version = byteAt(0);
    const std::size_t fuseIdLength = byteAt(1);
    for (std::size_t i = 0; i < fuseIdLength; ++i) {
        reading.file.fuseId.push_back(byteAt(kFuseIdAt + i));
    }
    reading.file.gainX = bigEndian32At(kFuseIdAt + fuseIdLength);
    reading.file.gainY = bigEndian32At(kFuseIdAt + 4 + fuseIdLength);
    if (bytes.size() < kCrcSize) {
        reading.storedCrc = byteAt(0);
        return reading;
    }
    const std::size_t crcAt = bytes.size() - kCrcSize;
    reading.computedCrc = Crc16Kermit(bytes.first(crcAt));
    reading.storedCrc = static_cast<std::uint16_t>(bytes[crcAt] << 8 | bytes[crcAt + 1]);
    reading.crcGood = reading.computedCrc == reading.storedCrc;
    return reading;
}

int OisSensitivityMillionths(int fixedPoint) {
    return static_cast<int>(static_cast<float>(fixedPoint) / 4096.0F * 1000000.0F);
}

}  // namespace formats
