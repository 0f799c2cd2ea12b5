#include "tests/metadata/MetadataTest.h"
#include "tests/support/Describe.h"

namespace {

using testing::IsEmpty;

constexpr const char* kFakeSat = "MetadataUpdateFakeSatSizes";
constexpr const char* kSmartFOV = "MetadataUpdateSmartFOVZoomRatio";

/// Sensors 0 (wide) and 2 (tele) zoom inside, 1 (front) says that it does not, 3 (ultra-wide) says nothing.
PhoneBuilder ZoomPhone() {
    const auto zoom = [](int deviceId, const std::vector<std::int32_t>& reply) {
        return FittedSensor{.deviceId = deviceId, .inSensorZoom = reply};
    };
    const auto multiSensor = [](const std::vector<int>& sensorIds) {
        return LogicalDevice{.sensorIds = sensorIds, .multiSensor = true};
    };
    return PhoneOf({zoom(7, {1, 255}), zoom(1, {255, 1}), zoom(2, {0}), {3}})
        .devices(
            {multiSensor({3, 0}), {{1}}, {{2}}, multiSensor({0}), multiSensor({0, 3}), {{2}}, {}, {{0}}});
}

TEST(ZoomTags, PerRole) {
    const Tags kModes = {{"0x91010002", "int32 [0]"}};
    const Tags kModesAndSizes = {{"0x91010002", "int32 [0]"}, {"0x91010004", "memory [216 bytes]"}};
    const struct {
        int instanceId, roleId;
        Tags tags;
    } kCases[] = {
        {0, 60, {}},  // the first sensor decides
        {4, 60, kModesAndSizes},
        {4, 64, kModesAndSizes},
        {7, 0, kModesAndSizes},
        {4, 61, kModes},
        {2, 20, kModes},
        {5, 60, kModes},  // no sensor index, so the role is unknown
        {1, 1, {{"0x91010086", "float [1, 1, 2, 1, 1, 0, 0, 0, 0, 0, 0]"}}},
        {1, 40, {{"0x91010086", "float [1, 2, 2, 0.6, 1, 0.8, 1.13981, 1, 1.40525, 0, 0]"}}},
        {0, 80, {{"0x91010086", "float [1, 4, 2, 0.6, 0.6, 0.8, 0.8, 1, 1, 2, 2]"}}},
    };
    for (const auto& [instanceId, roleId, tags] : kCases) {
        SCOPED_TRACE("instance " + std::to_string(instanceId) + ", role " + std::to_string(roleId));
        Updating device(ZoomPhone());
        device.plugin.DeviceId2RoleId[instanceId].roleId = roleId;
        EXPECT_EQ(device.plugin.MetadataUpdateFakeSatSizes(device.meta, instanceId), 0);
        EXPECT_EQ(device.plugin.MetadataUpdateSmartFOVZoomRatio(device.meta, instanceId), 0);
        EXPECT_EQ(device.tags(), tags);
        EXPECT_EQ(device.phone.logOf(kFakeSat).back(), "I exit");
        EXPECT_THAT(device.phone.logOf(kSmartFOV), IsEmpty());
    }
}

TEST(ZoomTags, FakeSatRecordsInTheBlobAndInTheLog) {
    Updating device(ZoomPhone());
    device.plugin.MetadataUpdateFakeSatSizes(device.meta, 4);
    const std::pair<const char*, const char*> kSizes[] = {
        {"A00F0000B80B0000", "width = 4000, height = 3000"},
        {"800F0000B8080000", "width = 3968, height = 2232"},
        {"A00F000008070000", "width = 4000, height = 1800"}};
    std::string bytes;
    Lines lines = {"I enter"};
    for (const std::string type : {"1", "2", "3"}) {
        for (const auto& [hex, text] : kSizes) {
            bytes += "00000040000020410" + type + "000000" + hex + "00000000";
            lines.push_back(
                "I fakeSatImageYuvSizesV2: instanceId 4, zoomStart = 2.000000, "
                "zoomStop = 10.000000, type = " +
                type + ", " + text);
        }
    }
    lines.emplace_back("I exit");
    EXPECT_EQ(HexText(BlobOf(device.meta.entryFor(ZELVAN_CAMERA_FAKESAT_FAKESATSIZE))), bytes);
    EXPECT_EQ(device.phone.logOf(kFakeSat), lines);
}

TEST(ZoomTags, FailuresWriteNothing) {
    const auto fail = [](const Faults& faults, int instanceId, const Lines& lines) {
        SCOPED_TRACE(instanceId);
        Updating device(ZoomPhone().faults(faults));
        EXPECT_EQ(device.plugin.MetadataUpdateFakeSatSizes(device.meta, instanceId), -1);
        EXPECT_EQ(device.plugin.MetadataUpdateSmartFOVZoomRatio(device.meta, instanceId), -1);
        EXPECT_EQ(device.tags(), Tags());
        EXPECT_EQ(device.phone.logOf(kSmartFOV), lines);
        EXPECT_EQ(device.phone.logOf(kFakeSat).back(), lines.empty() ? "I enter" : lines[0]);
    };
    fail({.logicalDeviceList = true}, 7, {"E Cannot get logical device list"});
    fail({.sensorObjects = {0}}, 7, {"E Cannot get halsensor"});
    fail({.sensorList = true}, 4, {"E Cannot get halsensor"});
    fail({}, 6, {"E Cannot get halsensor"});  // no sensor ids
    fail({}, 3, {});                          // several sensors, role 21
}

TEST(ZoomTags, RefusedUpdates) {
    const Refusals refusals = {
        {"[MetadataUpdateInSensorZoomModes] ZV IMetadata::update(), tag", ZELVAN_CAMERA_INSENSOR_ZOOM_MODES},
        {"", ZELVAN_CAMERA_FAKESAT_FAKESATSIZE},
        {"", ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO}};
    Updating device(ZoomPhone().faults(FaultsOf(refusals)));
    EXPECT_EQ(device.plugin.MetadataUpdateFakeSatSizes(device.meta, 4), 0);
    EXPECT_EQ(device.plugin.MetadataUpdateSmartFOVZoomRatio(device.meta, 1), 0);
    EXPECT_EQ(device.phone.errors(), (Lines{RefusalLines(refusals)[0],
                                            "[MetadataUpdateFakeSatSizes] cannot get memory for "
                                            "ZELVAN_CAMERA_FAKESAT_FAKESATSIZE"}));
}

}  // namespace
