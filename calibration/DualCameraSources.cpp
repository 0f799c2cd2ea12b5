#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

#include "formats/EepromImage.h"
#include "platform/DevicePath.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/UniqueFd.h"
#include "tables/CameraPairs.h"

namespace {

/// The checksum covers the image bytes from `offset` through `length` and stands behind them: the range's end
/// and the stored byte are counted from the start of the image, not of the block.
bool BlockCheckSumGood(const CamCalAllData& image, std::size_t offset, std::size_t length) {
    const std::size_t storedAt = length + 1;
    return storedAt < image.data.size() &&
           formats::EepromCheckSum(image.data, offset, length) == image.data[storedAt];
}

}  // namespace

bool CameraPlatformInfoZelvan::DualCameraDataFromEeprom(DualCameraCalDataInfo& info) {
    LOGI("enter");
    if (info.eepromOffset < 0) {
        LOGI("eeprom dual cal offset < 0, so skip!");
        return false;
    }
    CamCalAllData* const image = GetCamCalAllData(info.dataCamera);
    if (image == nullptr) {
        return false;
    }
    const auto offset = static_cast<std::size_t>(info.eepromOffset);
    const auto length = static_cast<std::size_t>(std::max(info.length, 0));
    if (image->dataSize < offset + length || !BlockCheckSumGood(*image, offset, length)) {
        LOGI("CheckSum error");
        return false;
    }
    LOGI("dataCamera(%d)'s eeprom data dump ==> %s", info.dataCamera, info.dumpPath);
    LOGI("exit");
    return DualCameraDataDumpFile(info.dumpPath, image->data.data() + offset, info.length);
}

bool CameraPlatformInfoZelvan::DualCameraDataFromGolden(DualCameraCalDataInfo& info) {
    LOGI("enter");
    bool dumped = false;
    std::vector<unsigned char> block(static_cast<std::size_t>(std::max(info.length, 0)));
    const UniqueFd golden(open(DevicePath(info.goldenPath).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (golden.valid() && ReadUpTo(golden.get(), block.data(), block.size()) == block.size()) {
        dumped = DualCameraDataDumpFile(info.dumpPath, block.data(), info.length);
        LOGI("use golden file ==> dump file : %s ==> %s", info.goldenPath, info.dumpPath);
    }
    LOGI("exit");
    return dumped;
}

bool CameraPlatformInfoZelvan::DualCameraDataDumpFile(const char* path, unsigned char* buf, int count) {
    LOGI("enter");
    // Not truncated: what an older, longer dump holds behind the block stays.
    const UniqueFd file(open(DevicePath(path).c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600));
    if (!file.valid()) {
        LOGE("[DUALDUMP] fail to open %s", path);
        return false;
    }
    // Only the open decides: a short write counts as a dump.
    [[maybe_unused]] const ssize_t written =
        write(file.get(), buf, static_cast<std::size_t>(std::max(count, 0)));
    return true;
}

bool CameraPlatformInfoZelvan::GetCalibDataFromDumpFile(const char* path, unsigned char*& buf, int& count) {
    LOGI("enter");
    const UniqueFd file(path == nullptr ? -1
                                        : open(DevicePath(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.valid()) {
        LOGE("[READCALI] fail to open %s", path == nullptr ? "(null)" : path);
        return false;
    }
    ReadUpTo(file.get(), buf, static_cast<std::size_t>(std::max(count, 0)));
    return true;
}
