#include "calibration/calibrationdata.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <span>
#include <utility>

#include <android/log.h>

#include "calibration/Crc16Ccitt.h"
#include "calibration/FileAccess.h"
#include "formats/HexText.h"
#include "platform/DevicePath.h"
#include "platforminfo/CFile.h"
#include "platforminfo/Log.h"

#define CALIBRATION_LOG(priority, ...) __android_log_print(priority, "CalibrationData", __VA_ARGS__)

namespace {

constexpr std::array<std::uint16_t, 3> kDataSizes = {419, 2048, 4096};
constexpr std::size_t kCrcSize = 2;

}  // namespace

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

    const std::span<const unsigned char> bytes(mContent);
    const std::size_t size = bytes.size();
    const std::size_t masterLength = bytes[0];
    const std::size_t slaveLength = bytes[masterLength + 1];
    mMasterFuseId += UpperHex(bytes.subspan(1, masterLength));
    mSlaveFuseId += UpperHex(bytes.subspan(masterLength + 2, slaveLength));

    const std::size_t headerSize = 2 + masterLength + slaveLength;
    std::size_t checkedSize = 0;
    for (const std::uint16_t dataSize : kDataSizes) {
        if (headerSize + dataSize + kCrcSize == size) {
            mHasCrc = true;
            checkedSize = size - kCrcSize;
        } else if (headerSize + dataSize == size) {
            CALIBRATION_LOG(ANDROID_LOG_DEBUG, "factory source file");
            checkedSize = size;
        } else {
            continue;
        }
        mDataSize = dataSize;
        break;
    }
    if (mDataSize == 0) {
        for (const std::uint16_t dataSize : kDataSizes) {
            CALIBRATION_LOG(ANDROID_LOG_ERROR, "%s: fileSize(%d) != (1 + %d + 1 + %d + %d)", path,
                            static_cast<int>(size), static_cast<int>(masterLength),
                            static_cast<int>(slaveLength), dataSize);
        }
        return false;
    }

    mCrc = CRC16CCITT(bytes.data(), static_cast<int>(checkedSize)).process();
    if (mHasCrc) {
        const auto stored = static_cast<unsigned>(bytes[size - 2] << 8 | bytes[size - 1]);
        if (stored != mCrc) {
            CALIBRATION_LOG(ANDROID_LOG_ERROR, "mismatch crc (0x%04X, 0x%04X)", stored,
                            static_cast<unsigned>(mCrc));
            return false;
        }
    }
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "file_byte=%d, data_byte=%d, crc=0x%04x\n", static_cast<int>(size),
                    mDataSize, static_cast<unsigned>(mCrc));
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "fuse byte=%d, id=%s\n", static_cast<int>(masterLength),
                    mMasterFuseId.c_str());
    CALIBRATION_LOG(ANDROID_LOG_DEBUG, "fuse byte=%d, id=%s\n", static_cast<int>(slaveLength),
                    mSlaveFuseId.c_str());
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
    const std::size_t end = mContent.size() - (mHasCrc ? kCrcSize : 0);
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
    std::printf("contents:\n%s\n", UpperHex(mContent).c_str());
}
