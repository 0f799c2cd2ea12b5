#include <algorithm>
#include <iterator>
#include <sstream>

#include "platform/IMetadataProvider.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;
using testing::SizeIs;
using Names = std::vector<std::string>;

Names Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// The order in which the named functions speak.
Names InOrderOfLog(const TestPhone& phone, const Names& names) {
    Names spoken;
    for (const std::string& line : phone.log()) {
        const std::string name = line.substr(3, line.find(']') - 3);
        if (std::count(names.begin(), names.end(), name) != 0 && (spoken.empty() || spoken.back() != name)) {
            spoken.push_back(name);
        }
    }
    return spoken;
}

/// A phone with one good sensor, four single devices of it and a SAT device.
PhoneBuilder SmallPhone(const Faults& faults = {}) {
    return PhoneOf({{7, Eeprom({{1, "03"}})}})
        .property("vendor.debug.camera.eeprom_dump", "1")
        .devices(std::vector<LogicalDevice>(4, {.sensorIds = {0}, .sensorBits = 1}))
        .devices({{.sensorIds = {0}, .multiSensor = true}})
        .faults(faults);
}

TEST(ExposureSequence, OneInstanceThatRepeatsEveryStep) {
    const Names steps = Words(
        "SetModuleInfoProp SetFuseIdProp SetSensorInfoProp SetAFInfoProp "
        "OverriderDualCamCalData OverriderOisCamCalData setDataBinGroupProperty MetadataUpdate "
        "DumpEepromRawData");
    const TestPhone phone(SmallPhone());
    CameraPlatformInfoZelvan::CreateInstance()->ExposureModuleInfo();
    EXPECT_EQ(InOrderOfLog(phone, steps), steps);
    const std::size_t properties = phone.record().properties.size();
    EXPECT_THAT(phone.record().devices, SizeIs(6));

    CameraPlatformInfoZelvan::CreateInstance()->ExposureModuleInfo();
    EXPECT_THAT(phone.record().properties, SizeIs(2 * properties));
    EXPECT_THAT(phone.record().devices, SizeIs(12));
    EXPECT_THAT(phone.record().eepromReads, SizeIs(1));
}

TEST(ExposureSequence, EveryFaultLeavesItRunningToItsEnd) {
    const auto boot = [](const Faults& faults, std::size_t merges) {
        const TestPhone phone(SmallPhone(faults));
        TestPlugin().ExposureModuleInfo();
        EXPECT_THAT(phone.record().devices, SizeIs(merges));
        EXPECT_EQ(phone.log().back(), "I [DumpEepromRawData] DumpEepromRawData -");
        return phone.log();
    };
    const Names healthyLog = boot({}, 6);
    const std::string existMask = "vendor.camera.sensor.zv.databin.existmask";
    const struct {
        Faults faults;
        std::string line;  ///< that the fault adds to the log
        std::size_t merges = 6;
    } kCases[] = {
        {{.moduleFactory = true}, "E [MetadataUpdate] Cannot get logical device list", 0},
        {{.logicalDeviceList = true}, "E [MetadataUpdate] Cannot get logical device list", 0},
        {{.sensorList = true}, "E [SetModuleInfoProp] MAKE_HalSensorList is NULL!"},
        {{.calibrationDriver = true},
         "E [GetCamCalAllData] GetCamCalCalDataV2 get all data error : roleID = 0"},
        {{.sensorDrivers = {0}}, "E [MetadataUpdateScaler] get sensor drv error : 0!"},
        {{.sensorObjects = {0}}, "E [MetadataUpdateFakeSatSizes] Cannot get halsensor"},
        {{.staticInfo = {7}}, "E [MetadataUpdateScaler] get sensor static info error : 7!"},
        {{.metadataUpdate = {{0x91010021, -5}}},
         "E [MetadataUpdateRoleId] ZV IMetadata::update(), tag:-1862205407 err:-5"},
        {{.propertySet = {existMask}},
         "I [setDataBinGroupProperty] set propertyname[" + existMask + "] = 0,1"},
    };
    for (const auto& [faults, line, merges] : kCases) {
        SCOPED_TRACE(line);
        EXPECT_THAT(boot(faults, merges), testing::Contains(line));
        EXPECT_THAT(healthyLog, testing::Not(testing::Contains(line)));
    }
}

TEST(ExposureSequence, WalksLogicalDevicesAndTheSensorsInsideThem) {
    const TestPhone phone(PhoneBuilder()
                              .devices({{{1}}, {}, {.sensorIds = {0, 3, 600, 9}, .multiSensor = true}})
                              .deviceIndex(0, 1)
                              .deviceIndex(3, 8)
                              .deviceIndex(600, 2)
                              .holds(1, 5, {6}));
    TestPlugin().MetadataUpdate();
    const auto provider = [](const std::string& text, std::uint32_t id) {
        std::ostringstream line;
        line << text << NSCam::NSMetadataProviderManager::valueForByDeviceId(id);
        return line.str();
    };
    const std::string logical = "I pMetadataProvider = ";
    const std::string physical = " pPhysicalMetadataProvider = ";
    EXPECT_THAT(phone.logOf("MetadataUpdate"),
                ElementsAre("I enter", "I instanceId = 0", provider(logical, 0), "I instanceId = 1",
                            provider(logical, 1), "I instanceId = 2", provider(logical, 2),
                            provider("I physicalUniqueId = 0x20001" + physical, 0x20001),
                            provider("I physicalUniqueId = 0x20308" + physical, 0x20308),
                            provider("I physicalUniqueId = 0x25802" + physical, 0x25802),
                            provider("I physicalUniqueId = 0xffffffff" + physical, 0xFFFFFFFF), "I exit"));
    std::vector<std::uint32_t> providers;
    for (const virtualphone::ProviderMerge& merge : phone.record().devices) {
        providers.push_back(merge.provider);
    }
    EXPECT_THAT(providers, ElementsAre(0, 1, 2, 0x20001, 0x20308, 0x25802, 0xFFFFFFFF));
    Names instances;
    for (const std::string& line : phone.logOf("MetadataUpdateScaler")) {
        if (const std::size_t at = line.find("instanceId = "); at != std::string::npos) {
            instances.push_back(line.substr(at + 13));
        }
    }
    EXPECT_THAT(instances, ElementsAre("0x0, ", "0x1, ", "0x2, ", "0x0, ", "0x3, ", "0x258, ", "0x9, "));
    // What the provider held is no part of the set that it is given.
    EXPECT_TRUE(phone.record().devices[1].metadata.entryFor(0x5).isEmpty());
}

TEST(ExposureSequence, WalksNoDevices) {
    const TestPhone phone;
    TestPlugin().MetadataUpdate();
    EXPECT_THAT(phone.log(), ElementsAre("I [MetadataUpdate] enter", "I [MetadataUpdate] exit"));
}

TEST(ExposureSequence, UpdatersRunInOrderAndNoneGatesAnother) {
    // Without a device list and a row in any table, and with refused tags, all speak but one: the SAT info.
    const TestPhone phone(PhoneBuilder().faults(
        {.moduleFactory = true, .metadataUpdate = {{0x9101004A, -1}, {0x91010003, -1}, {0x9101000E, -1}}}));
    TestPlugin().MetadataUpdate(NSCam::NSMetadataProviderManager::valueForByDeviceId(99), 99);
    const Names updaters = Words(
        "MetadataUpdateRoleId MetadataUpdateCheckSumResult MetadataUpdateScaler MetedataUpdateCalibData "
        "MetedataUpdateVideoStabilizationData MetedataUpdateVNQualityData MetadataUpdateCalibrationToolTag "
        "UpdateBokehOptimalSizeInfo UpdatePhotoStyleInfo MetadataUpdateFakeSatSizes MetadataUpdateHDHDR "
        "MetadataUpdateSmartFOVZoomRatio MetadataUpdateBeautyData MetedataUpdateVideoTrackAFQualityData "
        "MetadataUpdateFocalLength35mm");
    EXPECT_EQ(InOrderOfLog(phone, updaters), updaters);
    EXPECT_THAT(phone.record().devices, SizeIs(1));
}

}  // namespace
