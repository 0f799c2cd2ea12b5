#include <map>

#include "tables/PublishedTags.h"
#include "tests/calibration/CalibrationBytes.h"

namespace {

using NSCam::IMetadata;
using testing::ElementsAre;

constexpr const char* kWideUltra = "/data/vendor/camera/com.zelvan.dcal.wu.data";
constexpr const char* kWideTele = "/data/vendor/camera/com.zelvan.dcal.wt.data";

/// The phone's logical devices, as a further member; device 8 is one that the phone does not have.
constexpr const char* kDevices = R"(, "logicalDevices": [
    {"name": "SENSOR_DRVNAME_HALCYRION_BACK_3PARTSAT", "multiSensor": true, "sensorIds": [0, 3]},
    {"name": "SENSOR_DRVNAME_HALCYRION_FRONT_MAIN", "sensorIds": [1]},
    {"name": "SENSOR_DRVNAME_HALCYRION_BACK_TELE", "sensorIds": [2]},
    {"name": "SENSOR_DRVNAME_HALCYRION_BACK_ULTRA", "sensorIds": [3]},
    {"name": "SENSOR_DRVNAME_HALCYRION_BACK_SAT", "multiSensor": true, "sensorIds": [0, 3, 2]},
    {"name": "SENSOR_DRVNAME_HALCYRION_2XBACK_BOKEH", "multiSensor": true, "sensorIds": [2, 0]},
    {"name": "SENSOR_DRVNAME_HALCYRION_BACK_BOKEH", "multiSensor": true, "sensorIds": [0, 3]},
    {"name": "SENSOR_DRVNAME_HALCYRION_BACK_WIDE", "sensorIds": [0]},
    {"name": "SENSOR_DRVNAME_FURTHER_FRONT_BOKEH", "multiSensor": true, "sensorIds": [0, 3]}])";

/// The calibration blocks of a metadata set, by tag.
std::map<std::string, Bytes> Blocks(const IMetadata& meta) {
    std::map<std::string, Bytes> blocks;
    for (const std::uint32_t tag : {ZELVAN_BOKEH_CALIBRATION_DATA, ZELVAN_SAT_CALIBRATION_DATA}) {
        if (const IMetadata::IEntry entry = meta.entryFor(tag); !entry.isEmpty()) {
            EXPECT_EQ(entry.count(), 1U);
            const auto memory = entry.itemAt<IMetadata::Memory>(0);
            blocks[TagText(tag)] = Bytes(memory.array(), memory.array() + memory.size());
        }
    }
    return blocks;
}

TEST(CalibrationDataTags, BootPublishesTheBlocksOfTheDevices) {
    TestPhone phone(RearPhone(kDevices));
    phone.write("/vendor/etc/camera/com.zelvan.dcal.wu.golden", Block(4096, 1));
    phone.write("/vendor/etc/camera/com.zelvan.dcal.wt.golden", Block(4096, 2));
    TestPlugin plugin;
    plugin.ExposureModuleInfo();
    std::map<std::uint32_t, std::map<std::string, Bytes>> published;
    published[4]["0x91010041"] = Bytes{0x15, 0, 0, 0, 0, 0x10, 0, 0} + Block(4096, 1);
    published[5]["0x91010005"] = Block(4096, 2);
    for (std::uint32_t device = 0; device < 9; ++device) {
        EXPECT_EQ(Blocks(phone.phone().staticMetadata(device)), published[device]) << device;
    }
    EXPECT_THAT(phone.record().thirdCalibration, ElementsAre(Block(4096, 2)));
    EXPECT_THAT(phone.log(), testing::Contains("D [MetedataUpdateCalibData] masterCameraRole:0, "
                                               "slaveCameraRole:21, dualCamDataLength:4096, pType:21, "
                                               "pSize:0, dualdataArray.size:1"));
}

TEST(CalibrationDataTags, ShortDumpReadsAsZerosAndFrontBokehStaysAtHome) {
    const TestPhone phone(RearPhone(kDevices));
    phone.write(kWideUltra, {0xF5, 0x02});
    TestPlugin plugin;
    plugin.DeviceId2RoleId[8] = {.roleId = 81, .sensorNames = "ov13b10;imx707", .drvName = "A_FRONT_BOKEH"};
    IMetadata meta;
    EXPECT_EQ(plugin.MetedataUpdateCalibData(meta, 8), 0);
    EXPECT_EQ(Blocks(meta)["0x91010005"], (Bytes{0xF5, 0x02} + Bytes(4094, 0)));
    EXPECT_TRUE(phone.record().thirdCalibration.empty());
    const char* const front =
        "D RoleIdFrontBokeh masterCameraRole:0, slaveCameraRole:21, length:4096, calibData:0x";
    EXPECT_THAT(phone.logOf("MetedataUpdateCalibData"), testing::Contains(testing::StartsWith(front)));
    // Bytes print unsigned.
    EXPECT_EQ(plugin.MetedataUpdateCalibData(meta, 4), 0);
    EXPECT_THAT(phone.log(), testing::Contains(testing::EndsWith("dualdataArray.size:245")));
}

TEST(CalibrationDataTags, WhatEndsTheUpdater) {
    const std::string lead = "[MetedataUpdateCalibData] ";
    const auto devices = [](const std::string& name) {
        return RearPhone(R"(, "logicalDevices": [{"multiSensor": true, "name": ")" + name + "\"}]");
    };
    const auto faults = [](const std::string& what) {
        return RearPhone(kDevices + (R"(, "faults": {)" + what + "}"));
    };
    const std::string open = "[GetCalibDataFromDumpFile] [READCALI] fail to open ";
    const std::string unread = lead + "read dual camera calib data failded!";
    const std::string noMatch = lead + "Cannot find match device!";
    const std::string noList = lead + "Cannot get sensor device list";
    const std::string refused = lead + "ZV IMetadata::update(), tag:-1862205375 err:-5";
    const auto errorsOf = [](const std::string& json, int device) {
        const TestPhone phone(json);
        phone.write(kWideUltra, Block(4096));
        TestPlugin plugin;
        IMetadata meta;
        const int result = plugin.MetedataUpdateCalibData(meta, device);
        EXPECT_EQ(result, phone.errors().empty() ? 0 : -1);
        EXPECT_EQ(phone.log().back() == "I [MetedataUpdateCalibData] exit", phone.errors().empty());
        EXPECT_EQ(meta.count(), 0U);
        return phone.errors();
    };
    EXPECT_EQ(errorsOf(RearPhone(kDevices), 1), Lines());
    EXPECT_EQ(errorsOf(RearPhone(kDevices), 6), Lines());
    EXPECT_EQ(errorsOf(RearPhone(kDevices), 5), (Lines{open + kWideTele, unread}));
    EXPECT_EQ(errorsOf(RearPhone(kDevices), 8), Lines{lead + "find DeviceId2RoleId[8] error!"});
    EXPECT_EQ(errorsOf(faults(R"("moduleFactory": true)"), 4), Lines{noList});
    EXPECT_EQ(errorsOf(faults(R"("logicalDeviceList": true)"), 4), Lines{noList});
    EXPECT_EQ(errorsOf(faults(R"("metadataUpdate": {"0x91010041": -5})"), 4), Lines{refused});
    EXPECT_EQ(errorsOf(devices("SENSOR_DRVNAME_HALCYRION_OTHER_SAT"), 0), Lines{noMatch});
    EXPECT_EQ(errorsOf(devices("BACK_SAT"), 0), Lines{noMatch});
    // The name decides whose pair is taken; a single chip is half a pair.
    EXPECT_EQ(errorsOf(devices("A_BACK_ULTRA"), 0), (Lines{open + "(null)", unread}));
}

}  // namespace
