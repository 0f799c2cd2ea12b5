#include <cstdio>
#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "calibration/calibrationdata.h"
#include "tests/calibration/CalibrationBytes.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"

namespace {

const Bytes kMaster{0x0A, 0xBC};
const Bytes kSlave{0x01, 0x02, 0xFF};
const std::string kTag = "CalibrationData: ";

std::string Format(const char* format, unsigned value) {
    char text[16];
    std::snprintf(text, sizeof(text), format, value);
    return text;
}

/// The block as hexadecimal text, or "none" as it was before.
std::string DataOf(const CalibrationData& file) {
    std::string data = "none";
    EXPECT_EQ(file.getData(data), file.valid());
    return file.valid() ? HexText(Bytes(data.begin(), data.end())) : data;
}

TEST(CalibrationData, ReadsWritesAndPrintsBothLayoutsOfAllSizes) {
    const TestPhone phone("{}");
    for (const std::size_t dataSize : {419U, 2048U, 4096U}) {
        const Bytes factory = DualFile(kMaster, kSlave, Block(dataSize));
        const unsigned crc = BitwiseCrc(factory.data(), factory.size());
        for (const Bytes& bytes : {factory, WithCrc(factory)}) {
            const bool maintain = bytes != factory;
            const std::size_t logged = phone.log().size();
            phone.write("/data/c", bytes);
            phone.write("/data/copy", Bytes(5000, 9));
            CalibrationData file;
            EXPECT_TRUE(file.parse("/data/c"));
            EXPECT_TRUE(file.write("/data/copy"));
            EXPECT_EQ(file.getMasterFuseId(), "0ABC");
            EXPECT_EQ(file.getSlaveFuseId(), "0102FF");
            EXPECT_EQ(DataOf(file), HexText(Block(dataSize)));
            EXPECT_EQ(phone.file("/data/copy"), WithCrc(factory));
            std::vector<std::string> log{
                "D " + kTag + "file_byte=" + std::to_string(bytes.size()) +
                    ", data_byte=" + std::to_string(dataSize) + ", crc=" + Format("0x%04x\n", crc),
                "D " + kTag + "fuse byte=2, id=0ABC\n", "D " + kTag + "fuse byte=3, id=0102FF\n",
                "D " + kTag + "successfully write to file /data/copy\n"};
            if (!maintain) {
                log.insert(log.begin(), "D " + kTag + "factory source file");
            }
            const std::vector<std::string> all = phone.log();
            EXPECT_EQ(std::vector(all.begin() + static_cast<std::ptrdiff_t>(logged), all.end()), log);

            testing::internal::CaptureStdout();
            file.dump();
            const std::string head =
                maintain ? "maintain format:\n|1 byte |len byte|1 byte |len byte|#byte|2 byte|\n"
                           "|fuselen|fuseId  |fuselen|fuseId  |data     |crc   |\n"
                         : "factor format:\n|1 byte |len byte|1 byte |len byte|#byte|\n"
                           "|fuselen|fuseId  |fuselen|fuseId  |data     |\n";
            std::string expected = "/data/c:\n" + head + "contents:\n" + HexText(bytes) + "\n";
            expected.replace(expected.find('#'), 1, std::to_string(dataSize) + " ");
            EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
        }
    }
}

TEST(CalibrationData, RejectsWhatDoesNotCheck) {
    const std::vector<std::string> outside{kTag +
                                           "parse dual calibration file failed. Check the file: /data/c"};
    const auto misfit = [](const std::string& size, const std::string& header) {
        std::vector<std::string> lines;
        for (const char* const dataSize : {"419", "2048", "4096"}) {
            lines.push_back(kTag + "/data/c: fileSize(" + size + ") != (" + header + dataSize + ")");
        }
        return lines;
    };
    const Bytes factory = DualFile(kMaster, kSlave, Block(419));
    const unsigned crc = BitwiseCrc(factory.data(), factory.size());
    const unsigned swapped = (crc << 8 & 0xFF00) | crc >> 8;
    const auto mismatch = [crc](unsigned stored) {
        return std::vector{kTag + "mismatch crc (" + Format("0x%04X", stored) + ", " +
                           Format("0x%04X)", crc)};
    };
    const struct {
        Bytes bytes;
        bool outOfBounds;
        std::vector<std::string> errors;
    } kCases[] = {
        {{}, true, outside},
        {{0}, true, outside},
        {{0, 0}, true, outside},
        {{1, 0xAA}, true, outside},
        {{1, 0xAA, 0}, true, outside},
        {{1, 0xAA, 1, 0xBB}, true, outside},
        {{255, 1, 2}, true, outside},
        {{0, 255, 1, 2}, true, outside},
        {{0, 0, 7}, false, misfit("3", "1 + 0 + 1 + 0 + ")},
        {{1, 0xAA, 2, 0xBB, 0xCC, 7}, false, misfit("6", "1 + 1 + 1 + 2 + ")},
        {factory + Bytes{1}, false, misfit("427", "1 + 2 + 1 + 3 + ")},
        {factory + Bytes{0, 2}, false, mismatch(2)},
        {factory + BigEndian(swapped, 2), false, mismatch(swapped)},
    };
    for (const auto& [bytes, outOfBounds, errors] : kCases) {
        const TestPhone phone("{}");
        phone.write("/data/c", bytes);
        CalibrationData file;
        EXPECT_FALSE(file.parse("/data/c"));
        EXPECT_EQ(DataOf(file), "none");
        EXPECT_EQ(phone.errors(), errors) << HexText(bytes);
        EXPECT_EQ(CalibrationData::checkOutOfBoundsRisk(bytes), outOfBounds) << HexText(bytes);
    }
}

TEST(CalibrationData, FailedWriteLeavesNoFile) {
    TestPhone phone("{}");
    const std::string root = phone.phone().root().string();
    phone.write("/data/c", DualFile(kMaster, kSlave, Block(419)));
    std::filesystem::create_symlink("/dev/full", root + "/data/full");
    CalibrationData file;
    EXPECT_FALSE(file.write("/data/early"));
    file.dump();
    ASSERT_TRUE(file.parse("/data/c"));
    EXPECT_FALSE(file.write("/data/full"));
    EXPECT_FALSE(file.write("/none/c"));
    EXPECT_FALSE(std::filesystem::exists(root + "/data/early"));
    EXPECT_FALSE(std::filesystem::is_symlink(root + "/data/full"));
    EXPECT_THAT(phone.errors(), testing::ElementsAre(kTag + "failed to write file /data/full\n",
                                                     kTag + "failed to open file /none/c\n"));
}

TEST(CalibrationData, ParsingAgainAddsFuseIdsAndReplacesTheBlock) {
    const TestPhone phone("{}");
    phone.write("/data/1", WithCrc(DualFile(kMaster, kSlave, Block(4096))));
    phone.write("/data/2", DualFile(kSlave, kMaster, Block(419, 5)));
    phone.write("/data/3", DualFile(kMaster, {}, Block(20)));
    CalibrationData file;
    EXPECT_TRUE(file.parse("/data/1"));
    EXPECT_TRUE(file.parse("/data/2"));
    EXPECT_EQ(file.getMasterFuseId(), "0ABC0102FF");
    EXPECT_EQ(file.getSlaveFuseId(), "0102FF0ABC");
    // What can't be read changes nothing; what can't be used takes the file's place.
    EXPECT_FALSE(file.parse("/data/none"));
    EXPECT_EQ(DataOf(file), HexText(Block(419, 5)));
    EXPECT_FALSE(file.parse("/data/3"));
    EXPECT_EQ(DataOf(file), "none");
    EXPECT_EQ(phone.errors().front(), kTag + "failed to open file /data/none");
}

TEST(CalibrationData, RandomBytesOfEveryLength) {
    const TestPhone phone("{}");
    std::mt19937 random(7);
    int accepted = 0;
    for (std::size_t size = 0; size <= 600; ++size) {
        Bytes bytes(size);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
        // Most sizes that can be a factory file get length bytes that say so.
        const std::size_t fuseBytes = size < 421 ? 0 : size - 421;
        if (size >= 421 && size % 3 != 0) {
            bytes[0] = static_cast<std::uint8_t>(fuseBytes / 2);
            bytes[fuseBytes / 2 + 1] = static_cast<std::uint8_t>(fuseBytes - fuseBytes / 2);
        }
        phone.write("/data/c", bytes);
        CalibrationData file;
        if (file.parse("/data/c")) {
            ++accepted;
            EXPECT_EQ(DataOf(file), HexText(std::span(bytes).last(419))) << size;
            EXPECT_EQ(file.getMasterFuseId().size() + file.getSlaveFuseId().size(), 2 * fuseBytes);
        }
    }
    EXPECT_EQ(accepted, 120);
}

}  // namespace
