#include <filesystem>
#include <numeric>

#include "tests/calibration/DualCameraPair.h"

namespace {

using testing::ElementsAre;

TEST(DualCameraSources, EepromBlockUnderItsChecksum) {
    const struct {
        int offset, length;
        int sumFirst, sumEnd, storedAt;  ///< what the checksum covers, and its place
        bool good;
    } kCases[] = {
        {0, 8, 0, 9, 9, true},
        {0, 8, 0, 8, 9, false},
        {0, 0, 0, 1, 1, true},
        {4, 8, 4, 9, 9, true},  // neither end moves with the offset
        {20, 8, 0, 0, 9, true},
        {0, 16382, 0, 16383, 16383, true},
        {0, 16383, 0, 16384, 100, false},  // the stored byte would lie behind the image
        {16380, 4, 0, 0, 5, true},
        {16381, 4, 0, 0, 5, false},
    };
    const Lines dumped{"I [DualCameraDataFromEeprom] dataCamera(21)'s eeprom data dump ==> " + kDump,
                       "I [DualCameraDataFromEeprom] exit", "I [DualCameraDataDumpFile] enter"};
    const Lines failed{"I [DualCameraDataFromEeprom] CheckSum error"};
    for (const auto& [offset, length, sumFirst, sumEnd, storedAt, good] : kCases) {
        TestPhone phone(RearPhone());
        TestPlugin plugin;
        Bytes bytes = Block(16384);
        const unsigned sum = std::accumulate(bytes.begin() + sumFirst, bytes.begin() + sumEnd, 0U);
        bytes.begin()[storedAt] = static_cast<std::uint8_t>(sum % 255 + 1);
        plugin.mCamCalData[21] = MakeCamCalAllData();
        std::copy(bytes.begin(), bytes.end(), plugin.mCamCalData[21]->data.begin());
        plugin.mCamCalData[21]->dataSize = 16384;

        DualCameraCalDataInfo pair = Pair(length, offset);
        EXPECT_EQ(plugin.DualCameraDataFromEeprom(pair), good) << offset << " " << length;
        EXPECT_EQ(LastLines(phone, good ? dumped : failed), good ? dumped : failed);
        const auto block = bytes.begin() + offset;
        EXPECT_EQ(TakeDump(phone), good ? std::optional(Bytes(block, block + length)) : std::nullopt);
    }
    const TestPhone phone(RearPhone());
    TestPlugin plugin;
    DualCameraCalDataInfo pair = Pair(8, 0);
    EXPECT_FALSE(plugin.DualCameraDataFromEeprom(pair));
    EXPECT_EQ(phone.log().back(), "I [GetCamCalAllData] exit");
}

TEST(DualCameraSources, GoldenNeedsTheWholeBlock) {
    TestPhone phone;
    TestPlugin plugin;
    const std::string root = phone.phone().root().string();
    DualCameraCalDataInfo pair = Pair(100);
    EXPECT_FALSE(plugin.DualCameraDataFromGolden(pair));
    for (const std::size_t size : {0U, 99U, 100U, 101U}) {
        phone.write(kGolden, Block(size));
        EXPECT_EQ(plugin.DualCameraDataFromGolden(pair), size >= 100) << size;
        EXPECT_EQ(TakeDump(phone), size >= 100 ? std::optional(Block(100)) : std::nullopt) << size;
    }
    ASSERT_TRUE(plugin.DualCameraDataFromGolden(pair));
    EXPECT_EQ(std::filesystem::status(root + kDump).permissions(), std::filesystem::perms(0600));
    phone.write(kDump, Bytes(103, 0xEE));
    ASSERT_TRUE(plugin.DualCameraDataFromGolden(pair));
    EXPECT_EQ(TakeDump(phone), Block(100) + Bytes(3, 0xEE));
    EXPECT_THAT(phone.errors(), ElementsAre());

    std::filesystem::remove_all(root + "/data/vendor/camera");
    EXPECT_FALSE(plugin.DualCameraDataFromGolden(pair));
    const Lines last{
        "E [DualCameraDataDumpFile] [DUALDUMP] fail to open " + kDump,
        "I [DualCameraDataFromGolden] use golden file ==> dump file : " + kGolden + " ==> " + kDump,
        "I [DualCameraDataFromGolden] exit"};
    EXPECT_EQ(LastLines(phone, last), last);
}

}  // namespace
