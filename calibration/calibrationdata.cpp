#include "calibration/calibrationdata.h"

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <optional>
#include <utility>

#include <android/log.h>

#include "calibration/FileAccess.h"
#include "formats/Bytes.h"
#include "formats/DualCalibrationFile.h"
#include "formats/Hex.h"
#include "platform/DevicePath.h"

#define CALIBRATION_LOG(priority, ...) __android_log_print(priority, "CalibrationData", __VA_ARGS__)

bool CalibrationData::parse(const char* path) {
    std::optional<std::vector<unsigned char>> content = ReadCalibrationFile(path);
    if (!content) {
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "failed to open file %s", path);
        return false;
    }
    if (checkOutOfBoundsRisk(*content)) {
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "parse dual calibration file failed. Check the file: %s", path);
        return false;
    }
    mContent = std::move(*content);
    mValid = false;
    mDataSize = 0;
    mHasCrc = false;

    using Trouble = formats::DualCalibrationReading::Trouble;
    const formats::DualCalibrationReading reading = formats::ReadDualCalibrationFile(mContent);
    const auto& [master, slave, block, hasCrc] = reading.file;
    const auto size = static_cast<int>(mContent.size());
    const auto masterLength = static_cast<int>(master.size());
    const auto slaveLength = static_cast<int>(slave.size());
    mMasterFuseId += formats::UpperHex(master);
    mSlaveFuseId += formats::UpperHex(slave);
    if (reading.trouble == Trouble::BlockSize) {
        for (const std::uint16_t dataSize : formats::kCalibrationBlockSizes) {
            CALIBRATION_LOG(ANDROID_LOG_ERROR, "%s: fileSize(%d) != (1 + %d + 1 + %d + %d)", path, size,
                            masterLength, slaveLength, dataSize);
        }
        return false;
    }
    mHasCrc = hasCrc;
    mDataSize = static_cast<std::uint16_t>(block.size());
    mCrc = reading.computedCrc;
    if (!mHasCrc) {
        CALIBRATION_LOG(ANDROID_LOG_DEBUG, "factory source file");
    }
    if (reading.trouble == Trouble::Crc) {
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "mismatch crc (0x%04X, 0x%04X)",
                        static_cast<unsigned>(reading.storedCrc), static_cast<unsigned>(mCrc));
        return false;
    }
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "file_byte=%d, data_byte=%d, crc=0x%04x\n", size, mDataSize,
                    static_cast<unsigned>(mCrc));
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "fuse byte=%d, id=%s\n", masterLength, mMasterFuseId.c_str());
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "fuse byte=%d, id=%s\n", slaveLength, mSlaveFuseId.c_str());
    mFilePath = path;
    mValid = true;
    return true;
}

bool CalibrationData::checkOutOfBoundsRisk(const std::vector<unsigned char>& content) {
    const std::size_t size = content.size();
    if (size < 1 || content[0] + 1U >= size) {
        return true;
    }
    return content[0] + content[content[0] + 1U] + 2U >= size;
}

bool CalibrationData::write(const char* path) const {
    if (!mValid) {
        return false;
    }
    const std::string devicePath = DevicePath(path);
    std::ofstream file(devicePath, std::ios::binary | std::ios::trunc);
    if (!file.is_open()) {
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "failed to open file %s\n", path);
        return false;
    }
    file.write(reinterpret_cast<const char*>(mContent.data()), static_cast<std::streamsize>(mContent.size()));
    if (!mHasCrc) {
        file.put(static_cast<char>(mCrc >> 8));
        file.put(static_cast<char>(mCrc & 0xFF));
    }
    file.close();
    if (!file) {
        std::remove(devicePath.c_str());
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "failed to write file %s\n", path);
        return false;
    }
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "successfully write to file %s\n", path);
    return true;
}

bool CalibrationData::getData(std::string& out) const {
    if (!mValid) {
        return false;
    }
    const std::size_t end = mContent.size() - (mHasCrc ? formats::kCrcSize : 0);
    out.assign(reinterpret_cast<const char*>(mContent.data()) + end - mDataSize, mDataSize);
    return true;
}

void CalibrationData::dump() const {
    if (!mValid) {
        return;
    }
    std::printf("%s:\n", mFilePath);
    if (mHasCrc) {
        std::printf("maintain format:\n");
        std::printf("|1 byte |len byte|1 byte |len byte|%d byte|2 byte|\n", mDataSize);
        std::printf("|fuselen|fuseId  |fuselen|fuseId  |data     |crc   |\n");
    } else {
        std::printf("factor format:\n");
        std::printf("|1 byte |len byte|1 byte |len byte|%d byte|\n", mDataSize);
        std::printf("|fuselen|fuseId  |fuselen|fuseId  |data     |\n");
    }
    std::printf("contents:\n%s\n", formats::UpperHex(mContent).c_str());
}
