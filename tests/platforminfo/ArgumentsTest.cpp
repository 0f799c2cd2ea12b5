// Any number and null where a path stands: a failure that is logged, and nothing read, written or waited for.

#include <climits>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>

#include "calibration/calibrationdata.h"
#include "platform/IMetadataProvider.h"
#include "tables/CameraPairs.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Arguments, AnyNumberForARoleASensorOrADevice) {
    for (const int number : {INT_MIN, INT_MIN + 1, -1, 1 << 16, INT_MAX - 1, INT_MAX}) {
        SCOPED_TRACE(number);
        const TestPhone phone(PhoneOf({{7, Eeprom()}}).devices({{}}));
        TestPlugin plugin;
        std::vector<int> param(6, 9);
        std::uint8_t byte = 9;
        EXPECT_EQ(plugin.GetRoleIdBySensorIdx(number), -1);
        EXPECT_EQ(plugin.GetDevIdByRoleId(number), -1);
        EXPECT_EQ(plugin.GetSensorIdxByRoleId(number), -1);
        EXPECT_EQ(plugin.GetCamCalAllData(number), nullptr);
        EXPECT_EQ(plugin.MemCpyCamCalData(number, &byte, 0, 1), -1);
        EXPECT_EQ(plugin.GetVendorId(number), 255);
        EXPECT_EQ(plugin.GetLensId(number), 255);
        EXPECT_EQ(plugin.GetSensorId(number), 255);
        EXPECT_EQ(plugin.getPropertyFuseid(number), "");
        EXPECT_EQ(plugin.readOTPOisParam(number, param.data()), -1);
        EXPECT_THAT(param, ElementsAre(0, 0, 0, 0, 200, 200));
        EXPECT_EQ(plugin.MemCpyCamCalData(0, &byte, number, 1), -1);
        EXPECT_EQ(plugin.MemCpyCamCalData(0, &byte, 0, number), -1);
        EXPECT_EQ(byte, 9);

        plugin.MetadataUpdate(NSCam::NSMetadataProviderManager::valueForByDeviceId(0), number);
        std::vector<unsigned> tags;
        const Record record = phone.record();
        for (const record::Tag& tag : record.devices.at(0).metadata) {
            tags.push_back(tag.tag);
        }
        // The role, none, and what every device gets.
        EXPECT_THAT(tags, ElementsAre(ZELVAN_HDHDR_SUPPORTED, ZELVAN_BEAUTY_MAKEUP, ZELVAN_BEAUTY_VERSION,
                                      ZELVAN_CAMERA_ROLEID, ZELVAN_CAMERA_CIQLUT_CONFIG_MAKS,
                                      ZELVAN_FOCAL_LENGTH_35MM, ZELVAN_CUSTOM_QUALITY_SUPPORTED,
                                      ZELVAN_BEAUTY_OPTIONCONFIG));
    }
}

TEST(Arguments, AnyNumberForASize) {
    const TestPhone phone;
    TestPlugin plugin;
    for (const int width : {INT_MIN, -1, INT_MAX}) {
        for (const int height : {INT_MIN, 1, INT_MAX}) {
            const bool all = width > 0 && height == INT_MAX;
            NSCam::IMetadata meta;
            plugin.updateStreamConfigurationWithDuration(meta, width, height, INT_MIN);
            plugin.updateStreamConfiguration(meta);
            plugin.updateStreamConfigurationZelvan(meta, INT_MAX, width, height, INT_MAX);
            plugin.updateSuperResolutionStreamConfiguration(meta, INT_MIN, width, height);
            plugin.updateMaxJpegSizeConfiguration(meta, width, height);
            EXPECT_EQ(meta.entryFor(SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS).count(),
                      all ? 6U * (3 + 2 * 47) : 6U * 3);
            EXPECT_EQ(meta.entryFor(ZELVAN_SCALER_STREAM_CONFIGURATIONS).count(),
                      4U * ((all ? 6 + 5 * 47 : 6) + (width <= 2559 && height <= 1919 ? 1 : 0)));
        }
    }
}

/// The last error line.
std::string Error(const TestPhone& phone) {
    const std::vector<std::string> errors = phone.errors();
    return errors.empty() ? "none" : errors.back();
}

TEST(Arguments, NoPath) {
    const TestPhone phone(PhoneOf({{7, Eeprom()}, {3, Eeprom({{0, "01"}, {5, "01"}})}}));
    TestPlugin plugin;
    unsigned char byte = 0;
    unsigned char* buf = &byte;
    int size = 1;
    EXPECT_THAT(plugin.GetDualCameraPersistFiles(nullptr), IsEmpty());
    EXPECT_FALSE(plugin.GetCalibDataFromDumpFile(nullptr, buf, size));
    EXPECT_EQ(Error(phone), "[GetCalibDataFromDumpFile] [READCALI] fail to open (null)");
    EXPECT_FALSE(plugin.DualCameraDataDumpFile(nullptr, buf, size));
    EXPECT_EQ(Error(phone), "[DualCameraDataDumpFile] [DUALDUMP] fail to open (null)");
    EXPECT_EQ(plugin.allocBufAndReadFromFile(nullptr, &buf, &size, 0), -1);
    EXPECT_EQ(Error(phone),
              "[allocBufAndReadFromFile] Beauty: failed to open file (null),err=2 No such file or "
              "directory");
    CalibrationData file;
    EXPECT_FALSE(file.parse(nullptr));
    EXPECT_EQ(Error(phone), "CalibrationData: failed to open file (null)");
    EXPECT_THROW(plugin.matchDrvNameToPlatformDrvName("a_b_c", nullptr), std::out_of_range);
    EXPECT_THROW(plugin.matchDrvNameToPlatformDrvName(nullptr, "a_b_c"), std::out_of_range);

    DualCameraCalDataInfo pair{};
    pair.dataCamera = 21;
    pair.length = 4;
    pair.eepromOffset = 1;
    EXPECT_FALSE(plugin.DualCameraDataFromEeprom(pair));
    EXPECT_EQ(phone.log().end()[-3], "I [DualCameraDataFromEeprom] exit");
    EXPECT_FALSE(plugin.DualCameraDataFromGolden(pair));
    phone.write("/data/golden", {1, 2, 3, 4});
    pair.goldenPath = "/data/golden";
    EXPECT_FALSE(plugin.DualCameraDataFromGolden(pair));
    EXPECT_EQ(phone.log().end()[-2],
              "I [DualCameraDataFromGolden] use golden file ==> dump file : /data/golden ==> (null)");
}

TEST(Arguments, NegativeLengthsAndCounts) {
    const std::string path = "/mnt/vendor/persist/camera/x.dcal.bin";
    // A good image of zeros: byte 1 of the sum over none would be the stored one of an empty block.
    TestPhone phone(PhoneOf({{7, Eeprom()}, {3, Eeprom({}, 1)}})
                        .property("vendor.camera.sensor.w.fuseID", "semc0004AABB"));
    Bytes file(2 + 2 + 419, 5);
    file[0] = 2, file[1] = 0xAA, file[2] = 0xBB, file[3] = 0;
    phone.write(path, file);
    phone.write("/data/golden", {1});
    TestPlugin plugin;
    for (const int length : {-1, INT_MIN}) {
        DualCameraCalDataInfo pair = tables::kDualCameraPairs[0];
        pair.eepromOffset = 1;
        pair.length = length;
        pair.goldenPath = "/data/golden";
        EXPECT_FALSE(plugin.DualCameraDataFromEeprom(pair));
        EXPECT_EQ(phone.log().back(), "I [DualCameraDataFromEeprom] CheckSum error");
        EXPECT_FALSE(plugin.MatchDualCameraPersistFile(path, pair));
        EXPECT_EQ(phone.log().back(), "I [MatchDualCameraPersistFile] exit : ret = 0");
        EXPECT_FALSE(plugin.DualCameraDataFromGolden(pair));
        EXPECT_FALSE(std::filesystem::exists(phone.phone().root().string() + pair.dumpPath));
        pair.length = 0;
        EXPECT_TRUE(plugin.MatchDualCameraPersistFile(path, pair));
        EXPECT_TRUE(plugin.DualCameraDataFromGolden(pair));
        EXPECT_TRUE(std::filesystem::remove(phone.phone().root().string() + pair.dumpPath));
    }
    unsigned char byte = 9;
    unsigned char* buf = &byte;
    int count = -1;
    EXPECT_TRUE(plugin.DualCameraDataDumpFile("/data/dump", buf, count));
    EXPECT_THAT(phone.file("/data/dump"), IsEmpty());
    EXPECT_TRUE(plugin.GetCalibDataFromDumpFile("/data/golden", buf, count));
    EXPECT_EQ(byte, 9);
    EXPECT_EQ(buf, &byte);
    EXPECT_EQ(count, -1);
}

TEST(Arguments, CalibrationFilesAreRegularOnes) {
    TestPhone phone;
    const std::string root = phone.phone().root().string();
    TestPlugin plugin;
    unsigned char byte = 9;
    unsigned char* buf = &byte;
    int count = 1;
    ASSERT_EQ(mkfifo((root + "/data/pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", root + "/data/device");
    phone.write("/data/huge", {});
    std::filesystem::resize_file(root + "/data/huge", (16U << 20) + 1);
    for (const char* const path : {"/data/pipe", "/data/device", "/data"}) {
        EXPECT_FALSE(plugin.GetCalibDataFromDumpFile(path, buf, count)) << path;
        EXPECT_FALSE(plugin.DualCameraDataDumpFile(path, buf, count)) << path;
        EXPECT_EQ(byte, 9);
    }
    for (const char* const path : {"/data/pipe", "/data/device", "/data", "/data/huge"}) {
        DualCameraCalDataInfo pair = tables::kDualCameraPairs[0];
        pair.length = 1;
        pair.goldenPath = path;
        EXPECT_FALSE(plugin.DualCameraDataFromGolden(pair)) << path;
    }
}

}  // namespace
