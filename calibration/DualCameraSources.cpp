#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <unistd.h>
#include <utility>
#include <vector>

#include "calibration/FileAccess.h"
#include "formats/EepromImage.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
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
    const Operation self(__func__);
    LOGI(self, "enter");
    if (info.eepromOffset < 0) {
        LOGI(self, "eeprom dual cal offset < 0, so skip!");
        return false;
    }
    CamCalAllData* const image = GetCamCalAllData(info.dataCamera);
    if (image == nullptr) {
        return false;
    }
    const auto offset = static_cast<std::size_t>(info.eepromOffset);
    const auto length = static_cast<std::size_t>(std::max(info.length, 0));
    if (info.length < 0 || image->dataSize < offset + length || !BlockCheckSumGood(*image, offset, length)) {
        LOGI(self, "CheckSum error");
        return false;
    }
    LOGI(self, "dataCamera(%d)'s eeprom data dump ==> %s", info.dataCamera, OrNull(info.dumpPath));
    LOGI(self, "exit");
    return DualCameraDataDumpFile(info.dumpPath, image->data.data() + offset, info.length);
}

bool CameraPlatformInfoZelvan::DualCameraDataFromGolden(DualCameraCalDataInfo& info) {
    const Operation self(__func__);
    LOGI(self, "enter");
    bool dumped = false;
    std::optional<std::vector<unsigned char>> golden = ReadCalibrationFile(info.goldenPath);
    if (golden && std::cmp_less_equal(info.length, golden->size()) && info.length >= 0) {
        dumped = DualCameraDataDumpFile(info.dumpPath, golden->data(), info.length);
        LOGI(self, "use golden file ==> dump file : %s ==> %s", OrNull(info.goldenPath),
             OrNull(info.dumpPath));
    }
    LOGI(self, "exit");
    return dumped;
}

bool CameraPlatformInfoZelvan::DualCameraDataDumpFile(const char* path, unsigned char* buf, int count) {
    const Operation self(__func__);
    LOGI(self, "enter");
    // Not truncated: what an older, longer dump holds behind the block stays.
    const UniqueFd file = OpenRegularFile(path, O_RDWR | O_CREAT, 0600);
    if (!file.valid()) {
        LOGE(self, "[DUALDUMP] fail to open %s", OrNull(path));
        return false;
    }
    // Only the open decides: a short write counts as a dump.
    [[maybe_unused]] const ssize_t written =
        write(file.get(), buf, static_cast<std::size_t>(std::max(count, 0)));
    return true;
}

bool CameraPlatformInfoZelvan::GetCalibDataFromDumpFile(const char* path, unsigned char*& buf, int& count) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const UniqueFd file = OpenRegularFile(path, O_RDONLY);
    if (!file.valid()) {
        LOGE(self, "[READCALI] fail to open %s", OrNull(path));
        return false;
    }
    ReadUpTo(file.get(), buf, static_cast<std::size_t>(std::max(count, 0)));
    return true;
}
