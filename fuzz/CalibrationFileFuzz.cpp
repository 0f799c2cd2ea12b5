// Any bytes as a dual-camera calibration file and as the OIS file of the persist partition.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <android/log.h>

#include "calibration/calibrationdata.h"
#include "formats/OisCalibrationFile.h"
#include "platform/DevicePath.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

namespace {

constexpr const char* kFile = "/mnt/vendor/persist/camera/fuzz.dcal.bin";
constexpr const char* kCopy = "/data/vendor/camera/copy";

/// A file that parses must come back from `write` as one that parses to the same.
void RoundTrip(const CalibrationData& file) {
    std::string block;
    std::string copiedBlock;
    CalibrationData copy;
    if (!file.getData(block) || !file.write(kCopy) || !copy.parse(kCopy) || !copy.getData(copiedBlock) ||
        block != copiedBlock || file.getMasterFuseId() != copy.getMasterFuseId() ||
        file.getSlaveFuseId() != copy.getSlaveFuseId()) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const virtualphone::TemporaryFolder root;
    virtualphone::PhoneDescription phone;
    phone.files[kFile] = {data, data + size};
    const virtualphone::VirtualPhone running(std::move(phone), root.path());

    CalibrationData file;
    if (file.parse(kFile)) {
        RoundTrip(file);
    }
    // What a good file without unread bytes says makes the same file again.
    const std::vector<std::uint8_t> bytes(data, data + size);
    const formats::OisCalibrationReading ois = formats::ReadOisCalibrationFile(bytes);
    if (ois.crcGood && size == 12 + ois.file.fuseId.size() && formats::Encode(ois.file) != bytes) {
        std::abort();
    }
    return 0;
}
