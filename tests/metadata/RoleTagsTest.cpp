#include <gmock/gmock.h>

#include "tests/support/Describe.h"
#include "tests/support/SmallPhones.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;

// Devices 0 and 2 are single ones, of which 0 is a sensor.
const std::string kDevices = R"("logicalDevices": [{}, {"multiSensor": true}, {}, {}, {"multiSensor": true},
                                                   {}, {"multiSensor": true}, {}, {"multiSensor": true}])";

TEST(RoleTags, OfAnInstance) {
    const struct {
        int instanceId;
        int result;
        Tags tags;
        const char* lastError;
    } kCases[] = {
        {0, 0, {{"0x91010021", "int32 [0]"}, {"0x910100A1", "int32 [1]"}}, ""},
        {1, -1, {}, ""},  // a multi-sensor device without a logical role
        {2, 0, {{"0x91010021", "int32 [-1]"}}, "[GetCamCalAllData] GetSensorIdxByRoleId(-1) error!"},
        {4,
         0,
         {{"0x91010021", "int32 [60]"}, {"0x91010092", "int32 [60, 62]"}},
         "[GetCamCalAllData] GetSensorIdxByRoleId(60) error!"},
        {6, 0, {{"0x91010021", "int32 [63]"}}, "[GetCamCalAllData] GetSensorIdxByRoleId(63) error!"},
        {8, -1, {}, "[MetadataUpdateCheckSumResult] find DeviceId2RoleId[8] error!"},
    };
    for (const auto& [instanceId, result, tags, lastError] : kCases) {
        const TestPhone phone(PhoneOf({{7, R"("eeprom": {})"}}, kDevices));
        TestPlugin plugin;
        NSCam::IMetadata meta;
        EXPECT_EQ(plugin.MetadataUpdateRoleId(meta, instanceId), result) << instanceId;
        EXPECT_EQ(plugin.MetadataUpdateCheckSumResult(meta, instanceId), result) << instanceId;
        EXPECT_EQ(DescribeAll(meta), tags) << instanceId;
        EXPECT_EQ(phone.errors().empty() ? "" : phone.errors().back(), lastError) << instanceId;
        if (instanceId == 6) {
            EXPECT_EQ(phone.log()[0],
                      "I [MetadataUpdateRoleId]  MetadataUpdateRoleId, instanceId:6 roleId:63");
        }
    }
}

TEST(RoleTags, NoDeviceListOrNoStore) {
    const std::string refused = R"("metadataUpdate": {"0x91010021": -5, "0x91010092": 7, "0x910100A1": 6})";
    const std::string roleRefused = "[MetadataUpdateRoleId] ZV IMetadata::update(), tag:";
    const std::vector<std::string> noList{"[MetadataUpdateRoleId] Cannot get logical device list",
                                          "[MetadataUpdateCheckSumResult] Cannot get logical device list"};
    const struct {
        std::string faults;
        int result;
        std::vector<std::string> errors;
    } kCases[] = {
        {R"("moduleFactory": true)", -1, noList},
        {R"("logicalDeviceList": true)", -1, noList},
        {refused,
         0,
         {roleRefused + "-1862205407 err:-5", roleRefused + "-1862205294 err:7",
          "[MetadataUpdateCheckSumResult] ZV IMetadata::update(), tag:-1862205279 err:6"}},
    };
    for (const auto& [faults, result, errors] : kCases) {
        const TestPhone phone(PhoneOf({{7, R"("eeprom": {})"}}, kDevices + ", \"faults\": {" + faults + "}"));
        TestPlugin plugin;
        NSCam::IMetadata meta;
        EXPECT_EQ(plugin.MetadataUpdateRoleId(meta, 4), result);
        EXPECT_EQ(plugin.MetadataUpdateCheckSumResult(meta, 0), result);
        EXPECT_EQ(meta.count(), 0U);
        EXPECT_EQ(phone.errors(), errors);
    }
}

Tags CheckSumResult(int result) {
    return {{"0x910100A1", "int32 [" + std::to_string(result) + "]"}};
}

/// What the search for a layout logs until row `last`.
std::vector<std::string> HeaderLog(const std::string& readHeaderId, std::size_t last) {
    std::vector<std::string> log;
    for (const char* expected : {"0x43d8ec2", "0xff11b0c6", "0xffffff73", "0xfffffffd"}) {
        log.push_back("D expectHeaderId(" + std::string(expected) + ") readHeaderId(" + readHeaderId + ")");
    }
    log.resize(last + 1);
    return log;
}

std::string Bytes(int offset, const std::string& hex) {
    return ", \"" + std::to_string(offset) + "\": \"" + hex + "\"";
}

TEST(CheckSumTag, EveryLayoutChecksItsRanges) {
    struct Range {
        const char* name;
        int start;
        int end;  ///< the stored byte comes right after it
    };
    const Range af{"AF", 40, 66};
    const Range awb{"AWB", 1873, 1891};
    const Range lsc{"LSC", 1928, 3799};
    const struct {
        const char* header;  ///< bytes 8 to 11, the last of which plays no part
        const char* readHeaderId;
        const char* eepromName;
        std::vector<Range> ranges;
    } kLayouts[] = {
        {"C28E3D99",
         "0x993d8ec2",
         "halcyrion_semco_wide_imx707_eeprom",
         {af, awb, lsc, {"PDAF", 6888, 8394}, {"OIS", 8431, 8504}}},
        {"C6B01100", "0x11b0c6", "halcyrion_sunny_tele_ov50d_eeprom", {af, awb, lsc, {"PDAF", 5820, 7326}}},
        {"73FFFFFF", "0xffffff73", "halcyrion_aac_front_imx596_eeprom", {awb, lsc}},
        {"FDFFFF01", "0x1fffffd", "halcyrion_ofilm_uw_ov13b_eeprom", {awb, lsc}},
    };
    for (std::size_t row = 0; row < std::size(kLayouts); ++row) {
        const auto& [header, readHeaderId, eepromName, ranges] = kLayouts[row];
        for (const unsigned broken : {0U, 1U, 0b01010U, 0b10101U}) {
            std::string bytes = "\"8\": \"" + std::string(header) + "\"";
            std::vector<std::string> log{"D instanceId(0) match eeprom check is " + std::string(eepromName)};
            for (std::size_t i = 0; i < ranges.size(); ++i) {
                // 200 and 100 at the ends make 300 % 255 + 1 = 46; the byte in front takes no part.
                const bool fails = (broken >> i & 1U) != 0;
                bytes += Bytes(ranges[i].start - 1, "11C8") + Bytes(ranges[i].end, fails ? "642F" : "642E");
                log.push_back((fails ? "E submodule(" : "D submodule(") + std::string(ranges[i].name) +
                              (fails ? ") checksum fail !" : ") checksum ok !"));
            }
            const TestPhone phone(PhoneOf({{7, R"("eeprom": {"bytes": {)" + bytes + "}}"}}, kDevices));
            NSCam::IMetadata meta;
            EXPECT_EQ(TestPlugin().MetadataUpdateCheckSumResult(meta, 0), 0);
            EXPECT_EQ(DescribeAll(meta), CheckSumResult(phone.errors().empty() ? 1 : 0)) << bytes;
            EXPECT_EQ(phone.logOf("MatchHeaderId"), HeaderLog(readHeaderId, row));
            EXPECT_EQ(phone.logOf("MetadataUpdateCheckSumResult"), log);
        }
    }
}

TEST(CheckSumTag, ASumOfAMultipleOf255HasCheckSumOne) {
    // The last bytes of the white balance, then its checksum.
    const std::map<std::string, int> cases{{"00FF01", 1}, {"00FF00", 0}, {"FFFF01", 1}, {"00FEFF", 1}};
    for (const auto& [lastBytes, result] : cases) {
        const std::string bytes = R"("8": "73FFFF00", "3800": "01")" + Bytes(1890, lastBytes);
        const TestPhone phone(PhoneOf({{7, R"("eeprom": {"bytes": {)" + bytes + "}}"}}, kDevices));
        NSCam::IMetadata meta;
        TestPlugin().MetadataUpdateCheckSumResult(meta, 0);
        EXPECT_EQ(DescribeAll(meta), CheckSumResult(result)) << lastBytes;
    }
}

TEST(CheckSumTag, AnUnknownLayoutPasses) {
    const TestPhone phone(PhoneOf({{7, R"("eeprom": {"bytes": {"8": "C28E3C04"}})"}}, kDevices));
    NSCam::IMetadata meta;
    EXPECT_EQ(TestPlugin().MetadataUpdateCheckSumResult(meta, 0), 0);
    EXPECT_EQ(DescribeAll(meta), CheckSumResult(1));
    EXPECT_EQ(phone.logOf("MatchHeaderId"), HeaderLog("0x43c8ec2", 3));
    EXPECT_THAT(phone.logOf("MetadataUpdateCheckSumResult"),
                ElementsAre("D instanceId(0) not match eeprom check"));
}

}  // namespace
