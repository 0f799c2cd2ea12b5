#include "formats/DualCalibrationFile.h"

#include "formats/Bytes.h"
#include "formats/Crc16.h"

namespace formats {

std::vector<std::uint8_t> Encode(const DualCalibrationFile& file) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(2 + file.masterFuseId.size() + file.slaveFuseId.size() + file.block.size() + kCrcSize);
    AppendFuseId(bytes, file.masterFuseId);
    AppendFuseId(bytes, file.slaveFuseId);
    AppendBytes(bytes, file.block);
    if (file.crc) {
        AppendCrc(bytes);
    }
    return bytes;
}

bool FuseIdsLeadOutside(std::span<const std::uint8_t> bytes) {
    if (bytes.empty() || bytes[0] + 1U >= bytes.size()) {
        return true;
    }
    return bytes[0] + bytes[bytes[0] + 1U] + 2U >= bytes.size();
}

DualCalibrationReading ReadDualCalibrationFile(std::span<const std::uint8_t> bytes) {
    using Trouble = DualCalibrationReading::Trouble;
    DualCalibrationReading reading;
    if (FuseIdsLeadOutside(bytes)) {
        reading.trouble = Trouble::FuseIdsLeadOutside;
        return reading;
    }
    const std::size_t masterLength = bytes[0];
    const std::size_t slaveLength = bytes[masterLength + 1];
    const auto master = bytes.subspan(1, masterLength);
    const auto slave = bytes.subspan(masterLength + 2, slaveLength);
    const auto rest = bytes.subspan(2 + masterLength + slaveLength);

    reading.trouble = Trouble::BlockSize;
    reading.file.masterFuseId.assign(master.begin(), master.end());
    reading.file.slaveFuseId.assign(slave.begin(), slave.end());
    reading.file.block.assign(rest.begin(), rest.end());
    for (const std::size_t size : kCalibrationBlockSizes) {
        if (rest.size() == size || rest.size() == size + kCrcSize) {
            reading.trouble = Trouble::None;
            reading.file.crc = rest.size() != size;
            reading.file.block.resize(size);
            break;
        }
    }
    if (reading.trouble == Trouble::None) {
        reading.computedCrc = Crc16Kermit(bytes.first(bytes.size() - (reading.file.crc ? kCrcSize : 0)));
    }
    if (reading.file.crc) {
        reading.storedCrc =
            static_cast<std::uint16_t>(bytes[bytes.size() - 2] << 8 | bytes[bytes.size() - 1]);
        reading.trouble = reading.storedCrc == reading.computedCrc ? Trouble::None : Trouble::Crc;
    }
    return reading;
}

}  // namespace formats
