#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <unistd.h>

#include "calibration/FileAccess.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/UniqueFd.h"

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
