#include <random>
#include <utility>

#include "calibration/calibrationdata.h"
#include "formats/OisCalibrationFile.h"
#include "tests/calibration/CalibrationBytes.h"

namespace {

constexpr std::size_t kLongest = 600;

Bytes RandomBytes(std::mt19937& random, std::size_t size) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

TEST(RandomFiles, DualCameraFilesOfEveryLength) {
    const TestPhone phone;
    std::mt19937 random(7);
    int accepted = 0;
    for (std::size_t size = 0; size <= kLongest; ++size) {
        Bytes bytes = RandomBytes(random, size);
        // Most sizes that can be a factory file get length bytes that say so.
        const std::size_t fuseBytes = size < 421 ? 0 : size - 421;
        if (size >= 421 && size % 3 != 0) {
            bytes[0] = static_cast<std::uint8_t>(fuseBytes / 2);
            bytes[fuseBytes / 2 + 1] = static_cast<std::uint8_t>(fuseBytes - fuseBytes / 2);
        }
        phone.write("/data/c", bytes);
        CalibrationData file;
        std::string block;
        if (file.parse("/data/c") && file.getData(block)) {
            ++accepted;
            EXPECT_EQ(Bytes(block.begin(), block.end()), Bytes(bytes.end() - 419, bytes.end())) << size;
            EXPECT_EQ(file.getMasterFuseId().size() + file.getSlaveFuseId().size(), 2 * fuseBytes);
        }
    }
    EXPECT_EQ(accepted, 120);
}

TEST(RandomFiles, OisFilesOfEveryLength) {
    const TestPhone phone(RearPhoneWithFuseIds());
    TestPlugin plugin;
    std::mt19937 random(11);
    for (std::size_t size = 0; size <= kLongest; ++size) {
        Bytes bytes = RandomBytes(random, size);
        // Every other file goes on past its CRC and version, to gains that lie anywhere or nowhere in it.
        const bool checks = size >= 4 && size % 2 == 0;
        if (checks) {
            bytes[0] = 1;
            bytes = WithCrc(Bytes(bytes.begin(), bytes.end() - 2));
        }
        phone.write("/mnt/vendor/persist/camera/com.zelvan.oiscal.w.bin", bytes);
        int gainX = -1;
        int gainY = -2;
        EXPECT_STREQ(plugin.GetOisParamFromPersist(gainX, gainY), "2") << size;
        EXPECT_EQ(std::pair(gainX, gainY), std::pair(-1, -2));

        const formats::OisCalibrationReading reading = formats::ReadOisCalibrationFile(bytes);
        EXPECT_EQ(reading.crcGood, checks) << size;
        const Bytes padded = bytes + Bytes(300, 0);
        const auto gainAt = padded.begin() + 2 + padded[1];
        EXPECT_EQ(BigEndian(reading.file.gainX, 4) + BigEndian(reading.file.gainY, 4),
                  Bytes(gainAt, gainAt + 8))
            << size;
    }
}

}  // namespace
