// Any bytes as a stabiliser file, as they are and with the CRC that they should have. What a good file
// without unread bytes says makes the same file again.

#include "formats/Bytes.h"
#include "formats/OisCalibrationFile.h"
#include "fuzz/support/Fuzzing.h"

namespace {

void Read(const std::vector<std::uint8_t>& bytes) {
    const formats::OisCalibrationReading reading = formats::ReadOisCalibrationFile(bytes);
    const std::size_t unreadFree = 2 + reading.file.fuseId.size() + 8 + formats::kCrcSize;
    if (reading.crcGood && bytes.size() == unreadFree) {
        Require(formats::Encode(reading.file) == bytes);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> bytes(data, data + size);
    Read(bytes);
    formats::AppendCrc(bytes);
    Read(bytes);
    Require(formats::ReadOisCalibrationFile(bytes).crcGood);
    return 0;
}
