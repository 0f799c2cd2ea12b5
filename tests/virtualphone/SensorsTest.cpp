#include <climits>
#include <map>

#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/ImgSensorDrv.h"
#include "tests/support/TestPhone.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PhoneBuilder Phone() {
    return PhoneBuilder()
        .sensors({{.deviceId = 7,
                   .deviceBits = 0x11,
                   .sensorId = 1799,
                   .pixelArray = {8192, 6144},
                   .captureSize = {4096, 3072},
                   .modes = {{0, {4096, 3072}}, {1, {65535, 1}}},
                   .inSensorZoom = {1, 2}},
                  {},
                  {.deviceId = 7, .sensorId = 2}})
        .alias(4, 128, 9)
        .alias(-1, 0, -1)
        .alias(31, 1U << 31, -3)
        .devices({{.sensorIds = {2, 0}, .multiSensor = true, .sensorBits = 5, .name = "BACK"}, {}})
        .deviceIndex(2, 8);
}

/// "sensorId type order array capture".
std::string InfoText(const NSCam::SensorStaticInfo& info) {
    return std::to_string(info.sensorId) + " " + std::to_string(info.sensorType) + " " +
           std::to_string(info.colorOrder) + " " + std::to_string(info.pixelArrayWidth) + "x" +
           std::to_string(info.pixelArrayHeight) + " " + std::to_string(info.captureWidth) + "x" +
           std::to_string(info.captureHeight);
}

TEST(Sensors, IndicesDeviceBitsAndIds) {
    const TestPhone phone(Phone());
    const NSCam::IHalSensorList& list = *NSCam::IHalSensorList::get();
    EXPECT_EQ(list.sensorCount(), 3);
    using BitsAndId = std::pair<unsigned, int>;
    std::map<int, BitsAndId> known{
        {0, {0x11, 7}}, {1, {2, 1}}, {2, {4, 7}}, {4, {128, 9}}, {31, {1U << 31, -3}}};
    for (const int index : {0, 1, 2, 3, 4, 31, -1, -2, INT_MAX, INT_MIN}) {
        const BitsAndId expected = known.contains(index) ? known[index] : BitsAndId(0, -1);
        EXPECT_EQ(BitsAndId(list.deviceBits(index), list.deviceId(index)), expected) << index;
    }
}

TEST(Sensors, StaticInformationByBitAndById) {
    const TestPhone phone(Phone());
    const NSCam::IHalSensorList& list = *NSCam::IHalSensorList::get();
    const auto infoOf = [&list](unsigned deviceBit) {
        NSCam::SensorStaticInfo info;
        list.querySensorStaticInfo(deviceBit, info);
        return InfoText(info);
    };
    EXPECT_EQ(infoOf(1), "1799 255 255 8192x6144 4096x3072");
    EXPECT_EQ(infoOf(2), "0 255 255 0x0 0x0");
    for (const unsigned unknown : {8U, 0U, 3U}) {
        EXPECT_EQ(infoOf(unknown), "65535 255 255 0x0 0x0") << unknown;
    }
    ASSERT_NE(list.sensorStaticInfo(7), nullptr);
    EXPECT_EQ(list.sensorStaticInfo(7)->sensorId, 1799U);  // of the first sensor with that id
    EXPECT_EQ(list.sensorStaticInfo(9), nullptr);          // an alias is no sensor
}

TEST(Sensors, DriversAndObjects) {
    const TestPhone phone(Phone());
    const auto driver = [](int index) {
        return ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(index));
    };
    ASSERT_NE(driver(0), nullptr);
    const ImgSensorDrvInfo& info = driver(0)->getDrvInfo();
    EXPECT_EQ(info.outputWidth[0], 4096);
    EXPECT_EQ(info.outputHeight[0], 3072);
    EXPECT_EQ(info.outputWidth[1], 65535);
    EXPECT_THAT(std::vector<int>(info.outputHeight.begin() + 2, info.outputHeight.end()), testing::Each(0));

    NSCam::IHalSensorList& list = *NSCam::IHalSensorList::get();
    ASSERT_NE(list.createSensor("me", 0), nullptr);
    std::vector<std::int32_t> reply{9};
    list.createSensor("me", 0)->sendCommand(1, 0x4035, 0, reply);
    EXPECT_THAT(reply, ElementsAre(9));
    list.createSensor("me", 0)->sendCommand(1, NSCam::SENSOR_CMD_GET_IN_SENSOR_ZOOM, 0, reply);
    EXPECT_THAT(reply, ElementsAre(1, 2));
    list.createSensor("me", 1)->sendCommand(1, NSCam::SENSOR_CMD_GET_IN_SENSOR_ZOOM, 0, reply);
    EXPECT_THAT(reply, IsEmpty());
    for (const int index : {3, 4, -1}) {
        EXPECT_EQ(driver(index), nullptr) << index;
        EXPECT_EQ(list.createSensor("me", index), nullptr) << index;
    }
}

TEST(Sensors, LogicalDevices) {
    const TestPhone phone(Phone());
    EXPECT_EQ(getMtkcamModuleFactory(0x30000), nullptr);
    const NSCam::ILogicalDeviceList& list = *getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST)();
    EXPECT_EQ(list.deviceCount(), 2);
    EXPECT_THAT(list.sensorIds(0), ElementsAre(2, 0));
    EXPECT_EQ(list.isMultiSensorDevice(0), 1U);
    EXPECT_EQ(list.sensorBits(0), 5U);
    EXPECT_EQ(list.deviceName(0), "BACK");
    for (const int unknown : {1, 2, -1}) {
        EXPECT_THAT(list.sensorIds(unknown), IsEmpty());
        EXPECT_EQ(list.isMultiSensorDevice(unknown), 0U);
        EXPECT_EQ(list.sensorBits(unknown), 0U);
        EXPECT_EQ(list.deviceName(unknown), "");
    }
    EXPECT_EQ(list.sensorDeviceIndex(2), 8);
    EXPECT_EQ(list.sensorDeviceIndex(0), 7);
    EXPECT_EQ(list.sensorDeviceIndex(3), -1);
}

TEST(Sensors, Faults) {
    PhoneBuilder fitted = PhoneBuilder().sensors({{7}, {}}).devices({{}});
    {
        const TestPhone phone(fitted.faults({.moduleFactory = true, .sensorList = true}));
        EXPECT_EQ(getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST), nullptr);
        EXPECT_EQ(NSCam::IHalSensorList::get(), nullptr);
    }
    const TestPhone phone(fitted.faults(
        {.logicalDeviceList = true, .sensorDrivers = {0}, .sensorObjects = {1}, .staticInfo = {7}}));
    EXPECT_EQ(getMtkcamModuleFactory(MTKCAM_MODULE_LOGICAL_DEVICE_LIST)(), nullptr);
    EXPECT_EQ(ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(0)), nullptr);
    EXPECT_NE(ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(1)), nullptr);
    NSCam::IHalSensorList& list = *NSCam::IHalSensorList::get();
    EXPECT_NE(list.createSensor("me", 0), nullptr);
    EXPECT_EQ(list.createSensor("me", 1), nullptr);
    EXPECT_EQ(list.sensorStaticInfo(7), nullptr);
    EXPECT_NE(list.sensorStaticInfo(1), nullptr);
    NSCam::SensorStaticInfo info;
    list.querySensorStaticInfo(1, info);
    EXPECT_EQ(info.sensorId, 0U) << "the query by device bit has no such fault";
}

}  // namespace
