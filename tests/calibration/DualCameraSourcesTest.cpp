#include <algorithm>
#include <filesystem>
#include <numeric>
#include <optional>
#include <sys/stat.h>

#include "platform/Properties.h"
#include "tables/CameraPairs.h"
#include "tests/calibration/CalibrationBytes.h"

namespace {

using testing::ElementsAre;

const std::string kPersist = "/mnt/vendor/persist/camera/";
const std::string kDump = "/data/vendor/camera/com.zelvan.dcal.wu.data";
const std::string kGolden = "/vendor/etc/camera/com.zelvan.dcal.wu.golden";

/// The wide and ultra-wide pair.
DualCameraCalDataInfo Pair(int length, int eepromOffset = -1) {
    DualCameraCalDataInfo pair = tables::kDualCameraPairs[0];
    pair.length = length;
    pair.eepromOffset = eepromOffset;
    return pair;
}

/// Takes the dump file's bytes away, if there is one.
std::optional<Bytes> TakeDump(TestPhone& phone) {
    const std::string path = phone.phone().root().string() + kDump;
    const std::optional<Bytes> bytes =
        std::filesystem::exists(path) ? std::optional(phone.file(kDump)) : std::nullopt;
    std::filesystem::remove(path);
    return bytes;
}

/// The last lines of the log, as many as there are in `expected`.
Lines LastLines(const TestPhone& phone, const Lines& expected) {
    const Lines log = phone.log();
    return {log.end() - std::ssize(expected), log.end()};
}

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

const Bytes kWide{0xAA, 0xBB};
const Bytes kTele{0xCC, 0xDD};
const Bytes kUltra{0x01, 0x02};
const Bytes kOther{0xAA};

TEST(DualCameraSources, PersistFileBelongsToFittedPair) {
    const struct {
        Bytes master, slave;
        bool matches;
    } kCases[] = {
        {kWide, kUltra, true}, {kUltra, kWide, true}, {kWide, {}, true},      {kUltra, {}, true},
        {{}, kWide, true},     {{}, kUltra, true},    {{}, {}, false},        {{}, kTele, false},
        {kWide, kTele, false}, {kTele, {}, false},    {kTele, kUltra, false}, {kWide, kWide, false},
        {kOther, {}, false},   {{}, kOther, false},   {kWide, kOther, false}, {kOther, kUltra, false},
    };
    const Lines yes{"I [MatchDualCameraPersistFile] dataCamera(21)'s persist data dump ==> " + kDump,
                    "I [MatchDualCameraPersistFile] exit : ret = 1",
                    "I [DualCameraDataFromPersist] [master(0):slave(21)] match persistFile is x.dcal.bin",
                    "I [DualCameraDataFromPersist] exit"};
    const Lines no{"I [MatchDualCameraPersistFile] exit : ret = 0", "I [DualCameraDataFromPersist] exit"};
    TestPhone phone(RearPhoneWithFuseIds());
    TestPlugin plugin;
    for (const auto& [master, slave, matches] : kCases) {
        phone.write(kPersist + "x.dcal.bin", DualFile(master, slave, Block(419)));
        DualCameraCalDataInfo pair = Pair(500);
        EXPECT_EQ(plugin.DualCameraDataFromPersist(pair), matches);
        EXPECT_EQ(TakeDump(phone), matches ? std::optional(Block(419) + Bytes(81, 0)) : std::nullopt);
        EXPECT_EQ(LastLines(phone, matches ? yes : no), matches ? yes : no);
    }
    // The pair's length decides what is taken of a longer block, and a dump that can't be opened is no match.
    phone.write(kPersist + "x.dcal.bin", DualFile(kWide, kUltra, Block(419)));
    DualCameraCalDataInfo pair = Pair(100);
    EXPECT_TRUE(plugin.DualCameraDataFromPersist(pair));
    EXPECT_EQ(TakeDump(phone), Block(100));
    std::filesystem::remove_all(phone.phone().root().string() + "/data/vendor/camera");
    EXPECT_FALSE(plugin.DualCameraDataFromPersist(pair));
    EXPECT_THAT(phone.errors(), ElementsAre("[DualCameraDataDumpFile] [DUALDUMP] fail to open " + kDump));
}

TEST(DualCameraSources, PersistFolderPassesOverWhatIsNoCalibrationFile) {
    TestPhone phone(RearPhoneWithFuseIds());
    TestPlugin plugin;
    const std::string folder = phone.phone().root().string() + kPersist;
    DualCameraCalDataInfo pair = Pair(419);
    EXPECT_FALSE(plugin.DualCameraDataFromPersist(pair));
    EXPECT_EQ(phone.log().back(), "I [DualCameraDataFromPersist] no dual camera calibration data in persist");

    const Bytes good = DualFile(kWide, kUltra, Block(419));
    std::filesystem::create_directories(folder + "folder.dcal.bin");
    ASSERT_EQ(mkfifo((folder + "fifo.dcal.bin").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder + "link.dcal.bin");
    phone.write(kPersist + "bin-dcal", {0});
    for (const char* const name : {"x.dcal", "x.bin", "DCAL.BIN"}) {
        phone.write(kPersist + name, good);
    }
    EXPECT_FALSE(plugin.DualCameraDataFromPersist(pair));
    const std::string open = "CalibrationData: failed to open file " + kPersist;
    EXPECT_THAT(
        phone.errors(),
        testing::UnorderedElementsAre(
            open + "folder.dcal.bin", open + "fifo.dcal.bin", open + "link.dcal.bin",
            "CalibrationData: parse dual calibration file failed. Check the file: " + kPersist + "bin-dcal"));
    phone.write(kPersist + "x.dcal.bin", good);
    EXPECT_TRUE(plugin.DualCameraDataFromPersist(pair));
}

TEST(DualCameraSources, RoleByFuseId) {
    const PhoneBuilder usual = RearPhoneWithFuseIds();
    // Device 4 is the SAT device, which has no fuse id.
    const PhoneBuilder sat = PhoneOf({{4}});
    const PhoneBuilder noList = PhoneBuilder().faults({.sensorList = true});
    /// The role, and the error if there is one; `wide` is the fuse id property of the first sensor.
    const auto roleOf = [](const char* fuseId, const PhoneBuilder& fitted, const char* wide) {
        const TestPhone phone(fitted);
        TestPlugin plugin;
        property_set("vendor.camera.sensor.w.fuseID", wide);
        const std::string role = std::to_string(plugin.GetRoleIdByFuseId(fuseId));
        Lines lines = phone.logOf("GetRoleIdByFuseId");
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "I enter"), 2);
        EXPECT_EQ(lines.back(), "I enter");
        EXPECT_LE(phone.errors().size(), 1U);
        return phone.errors().empty() ? role : role + " " + phone.errors()[0];
    };
    EXPECT_EQ(roleOf("AABB", usual, "semc0004AABB"), "0");
    EXPECT_EQ(roleOf("AABB", usual, "semc0004AABBCC"), "0");
    EXPECT_EQ(roleOf("AABBCC", usual, "semc0004AABBCC"), "-1");
    EXPECT_EQ(roleOf("AABB", usual, "semc0008AABB"), "0");
    EXPECT_EQ(roleOf("AABB", usual, "semc-001AABB"), "0");
    EXPECT_EQ(roleOf("aabb", usual, "semc0004AABB"), "-1");
    EXPECT_EQ(roleOf("0102", usual, "semc0004AABB"), "21");
    // What is no fuse id ends the search.
    for (const char* const wide : {"semcxxxxAABB", "semc000", ""}) {
        EXPECT_EQ(roleOf("0102", usual, wide), "-1") << wide;
    }
    EXPECT_EQ(roleOf("AABB", sat, "semc0004AABB"),
              "-1 [GetRoleIdByFuseId] find mRoleId2FuseIdDescriptorsMap[60] error!");
    EXPECT_EQ(roleOf("AABB", noList, ""), "-1 [GetRoleIdByFuseId] MAKE_HalSensorList is NULL!");
}

TEST(DualCameraSources, OverrideStateBySourcesOfThePairs) {
    const std::pair<std::string, Bytes> kFiles[] = {
        {kPersist + "a.dcal.bin", DualFile(kUltra, kWide, Block(4096))},
        {kPersist + "b.dcal.bin", WithCrc(DualFile(kWide, kTele, Block(2048)))},
        {kGolden, Bytes(4096, 90)},
        {"/vendor/etc/camera/com.zelvan.dcal.wt.golden", Bytes(4096, 91)},
    };
    const std::string error = "[OverriderDualCamCalData] error!";
    const std::string fatal = "[OverriderDualCamCalData] Fatal Error: calibration persist file lost!";
    const std::string lost = "[OverriderDualCamCalData] CameraRoleId 0 lost persist file";
    const struct {
        std::vector<std::size_t> files;
        std::string state, detail;
        unsigned long mask;
        Lines errors;
    } kCases[] = {
        {{}, "3", "<unset>", 0x10, {error, error}},
        {{2, 3}, "2", "2", 0x11, {fatal, lost, lost}},
        {{0, 1, 2, 3}, "0", "0", 0x11, {}},
        {{0, 2, 3}, "2", "2", 0x11, {fatal, lost}},
        {{0}, "0", "0", 0x10, {error}},
        {{3}, "2", "2", 0x10, {error, fatal, lost}},
    };
    for (const auto& [files, state, detail, mask, errors] : kCases) {
        TestPhone phone(RearPhoneWithFuseIds());
        for (const std::size_t file : files) {
            phone.write(kFiles[file].first, kFiles[file].second);
        }
        SCOPED_TRACE(testing::PrintToString(files));
        TestPlugin plugin;
        plugin.mDataBinExistMask = 0x11;
        plugin.OverriderDualCamCalData();
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.dualcal.state"), state);
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.dualcal.detail"), detail);
        EXPECT_EQ(plugin.mDataBinExistMask, mask);
        EXPECT_EQ(phone.errors(), errors);
        if (files.size() >= 3) {
            EXPECT_EQ(TakeDump(phone), Block(4096));
            EXPECT_EQ(phone.file("/data/vendor/camera/com.zelvan.dcal.wt.data"),
                      files.size() == 3 ? Bytes(4096, 91) : Block(2048) + Bytes(2048, 0));
        }
    }
}

}  // namespace
