#include "formats/OisFile.h"

#include "formats/Crc16.h"
#include "formats/HexText.h"
#include "tables/Stabiliser.h"

namespace {

constexpr std::size_t kFuseIdAt = 2;
constexpr std::size_t kCrcSize = 2;

constexpr bool GainInRange(std::uint32_t gain) {
    return gain >= tables::kLeastGain && gain <= tables::kGreatestGain;
}

}  // namespace

std::uint16_t OisFile::computedCrc() const {
    return mBytes.size() < kCrcSize ? std::uint16_t{0}
                                    : formats::Crc16Kermit(std::span(mBytes).first(mBytes.size() - kCrcSize));
}

std::uint16_t OisFile::storedCrc() const {
    if (mBytes.size() < kCrcSize) {
        return byteAt(0);
    }
    const std::size_t at = mBytes.size() - kCrcSize;
    return static_cast<std::uint16_t>(mBytes[at] << 8 | mBytes[at + 1]);
}

bool OisFile::crcGood() const {
    return mBytes.size() >= kCrcSize && computedCrc() == storedCrc();
}

std::string OisFile::fuseIdHex() const {
    std::vector<unsigned char> fuseId(static_cast<std::size_t>(fuseIdLength()));
    for (std::size_t i = 0; i < fuseId.size(); ++i) {
        fuseId[i] = byteAt(kFuseIdAt + i);
    }
    return UpperHex(fuseId);
}

std::uint32_t OisFile::gainX() const {
    return bigEndian32At(kFuseIdAt + static_cast<std::size_t>(fuseIdLength()));
}

std::uint32_t OisFile::gainY() const {
    return bigEndian32At(kFuseIdAt + 4 + static_cast<std::size_t>(fuseIdLength()));
}

std::uint32_t OisFile::bigEndian32At(std::size_t offset) const {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | byteAt(offset + i);
    }
    return value;
}

bool OisGainsInRange(std::uint32_t gainX, std::uint32_t gainY) {
    return GainInRange(gainX) && GainInRange(gainY);
}

int OisSensitivityMillionths(int fixedPoint) {
    return static_cast<int>(static_cast<float>(fixedPoint) / 4096.0F * 1000000.0F);
}
