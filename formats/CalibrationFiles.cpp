#include "formats/CalibrationFiles.h"

#include "formats/Crc16.h"

namespace formats {

namespace {

void AppendBytes(std::vector<std::uint8_t>& to, const std::vector<std::uint8_t>& bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

/// A fuse id behind its length byte.
void AppendFuseId(std::vector<std::uint8_t>& to, const std::vector<std::uint8_t>& fuseId) {
    to.push_back(static_cast<std::uint8_t>(fuseId.size()));
    AppendBytes(to, fuseId);
}

void AppendUint32(std::vector<std::uint8_t>& to, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        to.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

/// The CRC of all bytes so far.
void AppendCrc(std::vector<std::uint8_t>& to) {
    const unsigned crc = Crc16Kermit(to);
    to.push_back(static_cast<std::uint8_t>(crc >> 8));
    to.push_back(static_cast<std::uint8_t>(crc & 0xFF));
}

}  // namespace

std::vector<std::uint8_t> Encode(const DualCalibrationFile& file) {
    std::vector<std::uint8_t> bytes;
    AppendFuseId(bytes, file.masterFuseId);
    AppendFuseId(bytes, file.slaveFuseId);
    AppendBytes(bytes, file.block);
    if (file.crc) {
        AppendCrc(bytes);
    }
    return bytes;
}

std::vector<std::uint8_t> Encode(const OisCalibrationFile& file) {
    std::vector<std::uint8_t> bytes{file.version};
    AppendFuseId(bytes, file.fuseId);
    AppendUint32(bytes, file.gainX);
    AppendUint32(bytes, file.gainY);
    AppendCrc(bytes);
    return bytes;
}

}  // namespace formats
