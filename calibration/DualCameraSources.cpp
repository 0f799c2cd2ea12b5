#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "calibration/FileAccess.h"
#include "formats/EepromImage.h"
#include "platforminfo/CamCalAllData.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
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
