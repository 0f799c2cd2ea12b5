#include "tests/metadata/MetadataTest.h"

namespace {

/// Devices 0 and 2 are single ones, of which 0 is a sensor, whose EEPROM holds these bytes.
PhoneBuilder CheckSumPhone(const std::map<std::size_t, std::string>& bytes = {}) {
    const LogicalDevice multiSensor{.multiSensor = true};
    return PhoneOf({{7, Eeprom(bytes)}})
        .devices({{}, multiSensor, {}, {}, multiSensor, {}, multiSensor, {}, multiSensor});
}

TEST(CheckSumResult, AndRoleIdOfAnInstance) {
    const std::string noSensor = "[GetCamCalAllData] GetSensorIdxByRoleId";
    const struct {
        int instanceId, result;
        Tags tags;
        std::string lastError;
    } kCases[] = {
        {0, 0, {{"0x91010021", "int32 [0]"}, {"0x910100A1", "int32 [1]"}}, ""},
        {1, -1, {}, ""},  // a multi-sensor device without a logical role
        {2, 0, {{"0x91010021", "int32 [-1]"}}, noSensor + "(-1) error!"},
        {4, 0, {{"0x91010021", "int32 [60]"}, {"0x91010092", "int32 [60, 62]"}}, noSensor + "(60) error!"},
        {6, 0, {{"0x91010021", "int32 [63]"}}, noSensor + "(63) error!"},
        {8, -1, {}, "[MetadataUpdateCheckSumResult] find DeviceId2RoleId[8] error!"},
    };
    for (const auto& [instanceId, result, tags, lastError] : kCases) {
        SCOPED_TRACE(instanceId);
        Updating device(CheckSumPhone());
        EXPECT_EQ(device.plugin.MetadataUpdateRoleId(device.meta, instanceId), result);
        EXPECT_EQ(device.plugin.MetadataUpdateCheckSumResult(device.meta, instanceId), result);
        EXPECT_EQ(device.tags(), tags);
        EXPECT_EQ(device.phone.errors().empty() ? "" : device.phone.errors().back(), lastError);
        if (instanceId == 6) {
            EXPECT_EQ(device.phone.log()[0],
                      "I [MetadataUpdateRoleId]  MetadataUpdateRoleId, instanceId:6 roleId:63");
        }
    }
}

TEST(CheckSumResult, AndRoleIdWithNoDeviceListOrNoStore) {
    const auto errorsOf = [](const Faults& faults, int result) {
        Updating device(CheckSumPhone().faults(faults));
        EXPECT_EQ(device.plugin.MetadataUpdateRoleId(device.meta, 4), result);
        EXPECT_EQ(device.plugin.MetadataUpdateCheckSumResult(device.meta, 0), result);
        EXPECT_EQ(device.tags(), Tags());
        return device.phone.errors();
    };
    const Lines noList{"[MetadataUpdateRoleId] Cannot get logical device list",
                       "[MetadataUpdateCheckSumResult] Cannot get logical device list"};
    EXPECT_EQ(errorsOf({.moduleFactory = true}, -1), noList);
    EXPECT_EQ(errorsOf({.logicalDeviceList = true}, -1), noList);
    const Refusals refusals = {
        {"[MetadataUpdateRoleId] ZV IMetadata::update(), tag", 0x91010021},
        {"[MetadataUpdateRoleId] ZV IMetadata::update(), tag", 0x91010092},
        {"[MetadataUpdateCheckSumResult] ZV IMetadata::update(), tag", 0x910100A1},
    };
    EXPECT_EQ(errorsOf(FaultsOf(refusals), 0), RefusalLines(refusals));
}

Tags CheckSumResult(int result) {
    return {{"0x910100A1", "int32 [" + std::to_string(result) + "]"}};
}

/// What the search for a layout logs until row `last`.
Lines HeaderLog(const std::string& readHeaderId, std::size_t last) {
    Lines log;
    for (const char* expected : {"0x43d8ec2", "0xff11b0c6", "0xffffff73", "0xfffffffd"}) {
        log.push_back("D expectHeaderId(" + std::string(expected) + ") readHeaderId(" + readHeaderId + ")");
    }
    log.resize(last + 1);
    return log;
}

TEST(CheckSumResult, EveryLayoutChecksItsRanges) {
    struct Range {
        std::string name;
        std::size_t start, end;  ///< the stored byte comes right after the end
    };
    const Range af{"AF", 40, 66};
    const Range awb{"AWB", 1873, 1891};
    const Range lsc{"LSC", 1928, 3799};
    const struct {
        std::string header;  ///< bytes 8 to 11, the last of which plays no part
        std::string readHeaderId, name;
        std::vector<Range> ranges;
    } kLayouts[] = {
        {"C28E3D99",
         "0x993d8ec2",
         "semco_wide_imx707",
         {af, awb, lsc, {"PDAF", 6888, 8394}, {"OIS", 8431, 8504}}},
        {"C6B01100", "0x11b0c6", "sunny_tele_ov50d", {af, awb, lsc, {"PDAF", 5820, 7326}}},
        {"73FFFFFF", "0xffffff73", "aac_front_imx596", {awb, lsc}},
        {"FDFFFF01", "0x1fffffd", "ofilm_uw_ov13b", {awb, lsc}},
    };
    for (std::size_t row = 0; row < std::size(kLayouts); ++row) {
        const auto& [header, readHeaderId, name, ranges] = kLayouts[row];
        for (const unsigned broken : {0U, 1U, 0b01010U, 0b10101U}) {
            std::map<std::size_t, std::string> bytes{{8, header}};
            Lines log{"D instanceId(0) match eeprom check is halcyrion_" + name + "_eeprom"};
            for (std::size_t i = 0; i < ranges.size(); ++i) {
                // 200 and 100 at the ends make 300 % 255 + 1 = 46; the byte in front takes no part.
                const bool fails = (broken >> i & 1U) != 0;
                bytes[ranges[i].start - 1] = "11C8";
                bytes[ranges[i].end] = fails ? "642F" : "642E";
                log.push_back((fails ? "E submodule(" : "D submodule(") + ranges[i].name +
                              (fails ? ") checksum fail !" : ") checksum ok !"));
            }
            Updating device(CheckSumPhone(bytes));
            EXPECT_EQ(device.plugin.MetadataUpdateCheckSumResult(device.meta, 0), 0);
            EXPECT_EQ(device.tags(), CheckSumResult(broken == 0 ? 1 : 0)) << name << broken;
            EXPECT_EQ(device.phone.logOf("MatchHeaderId"), HeaderLog(readHeaderId, row));
            EXPECT_EQ(device.phone.logOf("MetadataUpdateCheckSumResult"), log);
        }
    }
}

TEST(CheckSumResult, ASumOfAMultipleOf255HasCheckSumOne) {
    // The last bytes of the white balance, then its checksum.
    const std::map<std::string, int> cases{{"00FF01", 1}, {"00FF00", 0}, {"FFFF01", 1}, {"00FEFF", 1}};
    for (const auto& [lastBytes, result] : cases) {
        Updating device(CheckSumPhone({{8, "73FFFF00"}, {3800, "01"}, {1890, lastBytes}}));
        device.plugin.MetadataUpdateCheckSumResult(device.meta, 0);
        EXPECT_EQ(device.tags(), CheckSumResult(result)) << lastBytes;
    }
}

TEST(CheckSumResult, AnUnknownLayoutPasses) {
    Updating device(CheckSumPhone({{8, "C28E3C04"}}));
    EXPECT_EQ(device.plugin.MetadataUpdateCheckSumResult(device.meta, 0), 0);
    EXPECT_EQ(device.tags(), CheckSumResult(1));
    EXPECT_EQ(device.phone.logOf("MatchHeaderId"), HeaderLog("0x43c8ec2", 3));
    EXPECT_EQ(device.phone.logOf("MetadataUpdateCheckSumResult"),
              Lines{"D instanceId(0) not match eeprom check"});
}

}  // namespace
