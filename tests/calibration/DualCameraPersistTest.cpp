#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

#include "platform/Properties.h"
#include "tests/calibration/DualCameraPair.h"

namespace {

using testing::ElementsAre;

const Bytes kOther{0xAA};

TEST(DualCameraPersist, FileBelongsToFittedPair) {
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

TEST(DualCameraPersist, FolderPassesOverWhatIsNoCalibrationFile) {
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

TEST(DualCameraPersist, RoleByFuseId) {
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

}  // namespace
