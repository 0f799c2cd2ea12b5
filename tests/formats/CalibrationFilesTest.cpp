#include <random>

#include <gtest/gtest.h>

#include "formats/DualCalibrationFile.h"
#include "formats/Hex.h"
#include "formats/OisCalibrationFile.h"

namespace formats {

namespace {

using Bytes = std::vector<std::uint8_t>;
using Trouble = DualCalibrationReading::Trouble;

Bytes RandomBytes(std::mt19937& random, std::size_t size) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

TEST(DualCalibrationFile, ReadsBackWhatItWrites) {
    std::mt19937 random(1);
    for (const std::size_t blockSize : {419U, 2048U, 4096U, 0U, 1U, 418U, 422U, 5000U}) {
        for (const bool crc : {false, true}) {
            const DualCalibrationFile file{.masterFuseId = RandomBytes(random, random() % 256),
                                           .slaveFuseId = RandomBytes(random, random() % 256),
                                           .block = RandomBytes(random, blockSize),
                                           .crc = crc};
            const Bytes bytes = Encode(file);
            const DualCalibrationReading reading = ReadDualCalibrationFile(bytes);
            const bool known = blockSize == 419 || blockSize == 2048 || blockSize == 4096;
            if (blockSize == 0 && !crc) {
                EXPECT_EQ(reading.trouble, Trouble::FuseIdsLeadOutside);
                continue;
            }
            SCOPED_TRACE(testing::Message() << blockSize << crc);
            EXPECT_EQ(reading.trouble, known ? Trouble::None : Trouble::BlockSize);
            EXPECT_EQ(reading.file.masterFuseId, file.masterFuseId);
            EXPECT_EQ(reading.file.slaveFuseId, file.slaveFuseId);
            EXPECT_EQ(reading.file.crc, known && crc);
            EXPECT_EQ(Encode(reading.file), bytes);
            if (!known) {
                EXPECT_EQ(reading.file.block.size(), blockSize + (crc ? 2 : 0));
                continue;
            }
            EXPECT_EQ(reading.storedCrc, crc ? reading.computedCrc : 0);
            // Any changed byte behind the fuse ids' lengths shows in the CRC.
            Bytes changed = bytes;
            changed[changed.size() - 1 - random() % (blockSize + 2)] ^= 0x10;
            EXPECT_EQ(ReadDualCalibrationFile(changed).trouble, crc ? Trouble::Crc : Trouble::None);
        }
    }
}

TEST(DualCalibrationFile, FuseIdsThatLeadOutside) {
    for (const Bytes& bytes : {Bytes{}, Bytes{0}, Bytes{0, 0}, Bytes{1, 0xAA}, Bytes{1, 0xAA, 0},
                               Bytes{1, 0xAA, 1, 0xBB}, Bytes{255, 1, 2}, Bytes{0, 255, 1, 2}}) {
        EXPECT_EQ(ReadDualCalibrationFile(bytes).trouble, Trouble::FuseIdsLeadOutside) << UpperHex(bytes);
    }
    EXPECT_EQ(ReadDualCalibrationFile(Bytes{1, 0xAA, 1, 0xBB, 7}).trouble, Trouble::BlockSize);
}

/// "version fuse id gains, CRC"
std::string Text(const OisCalibrationReading& reading) {
    return std::to_string(reading.file.version) + " " + UpperHex(reading.file.fuseId) + " " +
           std::to_string(reading.file.gainX) + " " + std::to_string(reading.file.gainY) + ", " +
           (reading.crcGood ? "good" : "bad");
}

TEST(OisCalibrationFile, ReadsBackWhatItWrites) {
    std::mt19937 random(2);
    for (const std::size_t fuseIdLength : {0U, 1U, 12U, 255U}) {
        const OisCalibrationFile file{.version = static_cast<std::uint8_t>(random()),
                                      .fuseId = RandomBytes(random, fuseIdLength),
                                      .gainX = 0x89ABCDEF,
                                      .gainY = 17000};
        Bytes bytes = Encode(file);
        EXPECT_EQ(Text(ReadOisCalibrationFile(bytes)),
                  Text({.file = file, .computedCrc = 0, .storedCrc = 0, .crcGood = true}));
        EXPECT_EQ(Encode(ReadOisCalibrationFile(bytes).file), bytes);
        bytes[random() % bytes.size()] ^= 1;
        EXPECT_FALSE(ReadOisCalibrationFile(bytes).crcGood);
    }
}

TEST(OisCalibrationFile, AnyBytes) {
    const struct {
        Bytes bytes;
        const char* text;
    } kCases[] = {
        {{}, "0  0 0, bad"},
        {{7}, "7  0 0, bad"},
        {{0, 0}, "0  0 0, good"},
        {{1, 3, 0xAA}, "1 AA0000 0 0, bad"},
        {{1, 1, 0xAA, 0, 0, 1, 2, 0xFF}, "1 AA 258 4278190080, bad"},
    };
    for (const auto& [bytes, text] : kCases) {
        EXPECT_EQ(Text(ReadOisCalibrationFile(bytes)), text);
    }
    EXPECT_EQ(ReadOisCalibrationFile(Bytes{7}).storedCrc, 7);
}

TEST(OisCalibrationFile, GainsInRange) {
    const std::array<std::pair<std::uint32_t, bool>, 6> cases{
        {{3999, false}, {4000, true}, {17000, true}, {17001, false}, {0, false}, {0xFFFFFFFF, false}}};
    for (const auto& [gain, good] : cases) {
        EXPECT_EQ((OisCalibrationFile{.fuseId = {}, .gainX = gain, .gainY = 5000}.gainsInRange()), good)
            << gain;
        EXPECT_EQ((OisCalibrationFile{.fuseId = {}, .gainX = 5000, .gainY = gain}.gainsInRange()), good)
            << gain;
    }
}

}  // namespace

}  // namespace formats
