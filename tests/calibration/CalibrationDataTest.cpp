#include <cstdio>
#include <filesystem>

#include "calibration/calibrationdata.h"
#include "tests/calibration/CalibrationBytes.h"

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
    const TestPhone phone;
    for (const std::size_t dataSize : {419U, 2048U, 4096U}) {
        const Bytes factory = DualFile(kMaster, kSlave, Block(dataSize));
        const unsigned crc = BitwiseCrc(factory.data(), factory.size());
        for (const Bytes& bytes : {factory, WithCrc(factory)}) {
            const bool maintain = bytes != factory;
            const auto logged = std::ssize(phone.log());
            phone.write("/data/c", bytes);
            phone.write("/data/copy", Bytes(5000, 9));
            CalibrationData file;
            EXPECT_TRUE(file.parse("/data/c"));
            EXPECT_TRUE(file.write("/data/copy"));
            EXPECT_EQ(file.getMasterFuseId(), "0ABC");
            EXPECT_EQ(file.getSlaveFuseId(), "0102FF");
            EXPECT_EQ(DataOf(file), HexText(Block(dataSize)));
            EXPECT_EQ(phone.file("/data/copy"), WithCrc(factory));
            Lines log{"D " + kTag + "file_byte=" + std::to_string(bytes.size()) +
                          ", data_byte=" + std::to_string(dataSize) + ", crc=" + Format("0x%04x\n", crc),
                      "D " + kTag + "fuse byte=2, id=0ABC\n", "D " + kTag + "fuse byte=3, id=0102FF\n",
                      "D " + kTag + "successfully write to file /data/copy\n"};
            if (!maintain) {
                log.insert(log.begin(), "D " + kTag + "factory source file");
            }
            const Lines all = phone.log();
            EXPECT_EQ(Lines(all.begin() + logged, all.end()), log);

            testing::internal::CaptureStdout();
            file.dump();
            EXPECT_EQ(testing::internal::GetCapturedStdout(),
                      std::string("/data/c:\n") + (maintain ? "maintain" : "factor") +
                          " format:\n|1 byte |len byte|1 byte |len byte|" + std::to_string(dataSize) +
                          (maintain ? " byte|2 byte|\n" : " byte|\n") +
                          "|fuselen|fuseId  |fuselen|fuseId  |data     |" + (maintain ? "crc   |\n" : "\n") +
                          "contents:\n" + HexText(bytes) + "\n");
        }
    }
}

TEST(CalibrationData, RejectsWhatDoesNotCheck) {
    const auto errorsOf = [](const Bytes& bytes, bool outOfBounds) {
        SCOPED_TRACE(HexText(bytes));
        const TestPhone phone;
        phone.write("/data/c", bytes);
        CalibrationData file;
        EXPECT_FALSE(file.parse("/data/c"));
        EXPECT_EQ(DataOf(file), "none");
        EXPECT_EQ(CalibrationData::checkOutOfBoundsRisk(bytes), outOfBounds);
        return phone.errors();
    };
    for (const Bytes& bytes : {Bytes{}, Bytes{0}, Bytes{0, 0}, Bytes{1, 0xAA}, Bytes{1, 0xAA, 0},
                               Bytes{1, 0xAA, 1, 0xBB}, Bytes{255, 1, 2}, Bytes{0, 255, 1, 2}}) {
        EXPECT_EQ(errorsOf(bytes, true),
                  Lines{kTag + "parse dual calibration file failed. Check the file: /data/c"});
    }
    const auto misfit = [](const std::string& size, const std::string& header) {
        const std::string lead = kTag + "/data/c: fileSize(" + size + ") != (" + header;
        return Lines{lead + "419)", lead + "2048)", lead + "4096)"};
    };
    const Bytes factory = DualFile(kMaster, kSlave, Block(419));
    EXPECT_EQ(errorsOf({0, 0, 7}, false), misfit("3", "1 + 0 + 1 + 0 + "));
    EXPECT_EQ(errorsOf({1, 0xAA, 2, 0xBB, 0xCC, 7}, false), misfit("6", "1 + 1 + 1 + 2 + "));
    EXPECT_EQ(errorsOf(factory + Bytes{1}, false), misfit("427", "1 + 2 + 1 + 3 + "));
    const unsigned crc = BitwiseCrc(factory.data(), factory.size());
    const unsigned swapped = (crc << 8 & 0xFF00) | crc >> 8;
    for (const unsigned stored : {2U, swapped}) {
        EXPECT_EQ(errorsOf(factory + BigEndian(stored, 2), false),
                  Lines{kTag + "mismatch crc (" + Format("0x%04X, ", stored) + Format("0x%04X)", crc)});
    }
}

TEST(CalibrationData, FailedWriteLeavesNoFile) {
    TestPhone phone;
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
    const TestPhone phone;
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

}  // namespace
