#include "calibration/calibrationdata.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <utility>

#include <android/log.h>

#include "calibration/FileAccess.h"
#include "formats/Bytes.h"
#include "formats/DualCalibrationFile.h"
#include "formats/Hex.h"
#include "platform/DevicePath.h"
#include "platforminfo/CFile.h"
#include "platforminfo/Log.h"

#define CALIBRATION_LOG(priority, ...) __android_log_print(priority, "CalibrationData", __VA_ARGS__)

bool CalibrationData::parse(const char* path) {
    std::optional<std::vector<unsigned char>> content = ReadCalibrationFile(path);
    if (!content) {
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "failed to open file %s", OrNull(path));
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
    // A size that no int holds counts as negative.
    const int size = static_cast<int>(content.size());
    if (size < 1 || content[0] + 1 >= size) {
        return true;
    }
    return content[0] + content[content[0] + 1U] + 2 >= size;
}

bool CalibrationData::write(const char* path) const {
    if (!mValid) {
        return false;
    }
    CFilePtr file = OpenForWriting(path);
    if (file == nullptr) {
        CALIBRATION_LOG(ANDROID_LOG_ERROR, "failed to open file %s\n", OrNull(path));
        return false;
    }
    std::vector<unsigned char> bytes = mContent;
    if (!mHasCrc) {
        bytes.push_back(static_cast<unsigned char>(mCrc >> 8));
        bytes.push_back(static_cast<unsigned char>(mCrc & 0xFF));
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    // What the stream still holds may fail as late as here.
    if (std::fclose(file.release()) != 0 || !written) {
        std::remove(DevicePath(path).c_str());
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
