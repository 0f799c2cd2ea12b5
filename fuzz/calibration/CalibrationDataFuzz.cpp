// Any bytes as a dual-camera file of the persist partition, as they are and with the CRC that they should
// have. A file that parses must come back from `write` as one that parses to the same.

#include "calibration/calibrationdata.h"
#include "formats/Bytes.h"
#include "fuzz/support/Fuzzing.h"

namespace {

constexpr const char* kFile = "/mnt/vendor/persist/camera/fuzz.dcal.bin";
constexpr const char* kCopy = "/data/vendor/camera/copy";

void RoundTrip(const std::vector<std::uint8_t>& bytes) {
    virtualphone::PhoneDescription phone;
    phone.files[kFile] = bytes;
    const FuzzPhone running(std::move(phone));
    CalibrationData file;
    if (file.parse(kFile)) {
        std::string block;
        std::string copiedBlock;
        CalibrationData copy;
        Require(file.getData(block) && file.write(kCopy) && copy.parse(kCopy) && copy.getData(copiedBlock));
        Require(block == copiedBlock && file.getMasterFuseId() == copy.getMasterFuseId() &&
                file.getSlaveFuseId() == copy.getSlaveFuseId());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> bytes(data, data + size);
    RoundTrip(bytes);
    formats::AppendCrc(bytes);
    RoundTrip(bytes);
    return 0;
}
