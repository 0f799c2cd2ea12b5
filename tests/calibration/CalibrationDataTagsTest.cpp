#include <map>

#include "tables/CameraPairs.h"
#include "tables/PublishedTags.h"
#include "tests/calibration/CalibrationBytes.h"
#include "tests/support/Describe.h"

namespace {

using NSCam::IMetadata;
using testing::ElementsAre;

constexpr const char* kWideUltra = "/data/vendor/camera/com.zelvan.dcal.wu.data";
constexpr const char* kWideTele = "/data/vendor/camera/com.zelvan.dcal.wt.data";

/// The phone with its logical devices; device 8 is one that the phone does not have.
PhoneBuilder Phone() {
    const auto device = [](const std::string& name, const std::vector<int>& sensorIds) {
        return LogicalDevice{
            .sensorIds = sensorIds, .multiSensor = sensorIds.size() > 1, .name = "SENSOR_DRVNAME_" + name};
    };
    return RearPhone().devices({device("HALCYRION_BACK_3PARTSAT", {0, 3}),
                                device("HALCYRION_FRONT_MAIN", {1}), device("HALCYRION_BACK_TELE", {2}),
                                device("HALCYRION_BACK_ULTRA", {3}), device("HALCYRION_BACK_SAT", {0, 3, 2}),
                                device("HALCYRION_2XBACK_BOKEH", {2, 0}),
                                device("HALCYRION_BACK_BOKEH", {0, 3}), device("HALCYRION_BACK_WIDE", {0}),
                                device("FURTHER_FRONT_BOKEH", {0, 3})});
}

/// The calibration blocks of a metadata set, by tag.
std::map<std::string, Bytes> Blocks(const IMetadata& meta) {
    std::map<std::string, Bytes> blocks;
    for (const std::uint32_t tag : {ZELVAN_BOKEH_CALIBRATION_DATA, ZELVAN_SAT_CALIBRATION_DATA}) {
        if (const IMetadata::IEntry entry = meta.entryFor(tag); !entry.isEmpty()) {
            EXPECT_EQ(entry.count(), 1U);
            blocks[TagText(tag)] = BlobOf(entry);
        }
    }
    return blocks;
}

TEST(CalibrationDataTags, BootPublishesTheBlocksOfTheDevices) {
    TestPhone phone(Phone());
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
    const TestPhone phone(Phone());
    phone.write(kWideUltra, {0xF5, 0x02});
    TestPlugin plugin;
    plugin.DeviceId2RoleId[8] = {.roleId = 81, .sensorNames = "ov13b10;imx707", .drvName = "A_FRONT_BOKEH"};
    DualCameraCalDataInfo pair{};
    EXPECT_EQ(plugin.GetDualCameraCalDataInfo(plugin.DeviceId2RoleId[8], pair), 0);
    EXPECT_EQ(pair.dataCamera, 21);
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
        return RearPhone().devices({{.multiSensor = true, .name = name}});
    };
    const std::string open = "[GetCalibDataFromDumpFile] [READCALI] fail to open ";
    const std::string unread = lead + "read dual camera calib data failded!";
    const std::string noMatch = lead + "Cannot find match device!";
    const std::string noList = lead + "Cannot get sensor device list";
    const std::string refused = lead + "ZV IMetadata::update(), tag:-1862205375 err:-5";
    const auto errorsOf = [](const PhoneBuilder& fitted, int device) {
        const TestPhone phone(fitted);
        phone.write(kWideUltra, Block(4096));
        TestPlugin plugin;
        IMetadata meta;
        const int result = plugin.MetedataUpdateCalibData(meta, device);
        EXPECT_EQ(result, phone.errors().empty() ? 0 : -1);
        EXPECT_EQ(phone.log().back() == "I [MetedataUpdateCalibData] exit", phone.errors().empty());
        EXPECT_TRUE(DescribeAll(meta).empty());
        return phone.errors();
    };
    EXPECT_EQ(errorsOf(Phone(), 1), Lines());
    EXPECT_EQ(errorsOf(Phone(), 6), Lines());
    EXPECT_EQ(errorsOf(Phone(), 5), (Lines{open + kWideTele, unread}));
    EXPECT_EQ(errorsOf(Phone(), 8), Lines{lead + "find DeviceId2RoleId[8] error!"});
    EXPECT_EQ(errorsOf(Phone().faults({.moduleFactory = true}), 4), Lines{noList});
    EXPECT_EQ(errorsOf(Phone().faults({.logicalDeviceList = true}), 4), Lines{noList});
    EXPECT_EQ(errorsOf(Phone().faults({.metadataUpdate = {{0x91010041, -5}}}), 4), Lines{refused});
    EXPECT_EQ(errorsOf(devices("SENSOR_DRVNAME_HALCYRION_OTHER_SAT"), 0), Lines{noMatch});
    EXPECT_EQ(errorsOf(devices("BACK_SAT"), 0), Lines{noMatch});
    // The name decides whose pair is taken; a single chip is half a pair.
    EXPECT_EQ(errorsOf(devices("A_BACK_ULTRA"), 0), (Lines{open + "(null)", unread}));
}

}  // namespace
