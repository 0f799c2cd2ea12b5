#include "tests/metadata/MetadataTest.h"

namespace {

using testing::ElementsAre;

constexpr const char* kUpdater = "UpdateBokehOptimalSizeInfo";

/// Device 5 is made of sensors 2 and 3, device 6 of 0 and 1; device 4 has a single sensor. The tele module's
/// maker is 1, the wide's 16.
PhoneBuilder BokehPhone() {
    return PhoneOf({{7, Eeprom({{1, "10"}})}, {1}, {2, Eeprom({{1, "01"}})}, {3}})
        .devices({{}, {}, {}, {}, {{2}}, {{2, 3}}, {{0, 1}}});
}

constexpr const char* kSetA = "int32 [4096, 3072, 4096, 2304, 4000, 1800]";
constexpr const char* kSetB = "int32 [2880, 2160, 2816, 1584, 2880, 1296]";
constexpr const char* kSetC = "int32 [3424, 2568, 3328, 1872, 3200, 1440]";
constexpr const char* kSetD = "int32 [3280, 2464, 3200, 1800, 3280, 1476]";

TEST(BokehAndSuperNightTags, PerRole) {
    const struct {
        int instanceId, roleId;
        std::string tags;  ///< the first seven digits of the pair tags' numbers
        std::string picture, slave, theme;
        std::string mdModes;  ///< empty: no tag
    } kCases[] = {
        {5, 61, "0x910000A", kSetA, kSetB, "", "byte [3]"},
        {6, 63, "0x910000F", kSetA, kSetC, "NoTesmo", "byte [3]"},
        {6, 63, "0x910000F", kSetA, kSetC, "NoTesmor", "byte [0]"},
        {5, 81, "0x910000A", kSetD, kSetD, "NoTesmor", ""},
        {4, 63, "0x910000F", kSetA, kSetC, "", "byte [3]"},  // fewer than two sensors
        {5, 62, "", "", "", "", ""},
    };
    for (const auto& [instanceId, roleId, tags, picture, slave, theme, mdModes] : kCases) {
        SCOPED_TRACE(roleId);
        Updating device(BokehPhone().property("ro.boot.product.theme_customize", theme));
        device.plugin.DeviceId2RoleId[instanceId].roleId = roleId;
        EXPECT_EQ(device.plugin.UpdateBokehOptimalSizeInfo(device.meta, instanceId), 0);
        Tags expected = {{"0x9101004E", "int32 [263175]"}};
        Lines lines = {"I enter", "I exit"};
        if (!tags.empty()) {
            expected.insert({{tags + "D", picture}, {tags + "E", slave}, {tags + "F", picture}});
            expected["0x9101003D"] = "int32 [0]";
        }
        if (!tags.empty() && instanceId != 4) {
            expected[tags + "B"] = instanceId == 5 ? "byte [2]" : "byte [0]";
            expected[tags + "C"] = instanceId == 5 ? "byte [3]" : "byte [1]";
            lines.insert(lines.begin() + 1,
                         (instanceId == 5 ? "I instanceId = 5 mastCid: 2, slaveCid:3 , role: "
                                          : "I instanceId = 6 mastCid: 0, slaveCid:1 , role: ") +
                             std::to_string(roleId));
        }
        if (!mdModes.empty()) {
            expected["0x910000E1"] = mdModes;
        }
        EXPECT_EQ(device.tags(), expected);
        EXPECT_EQ(device.phone.logOf(kUpdater), lines);
        EXPECT_EQ(device.plugin.mModuleInfo, "");
        EXPECT_TRUE(device.phone.record().eepromReads.empty());
    }
}

TEST(BokehAndSuperNightTags, ModuleInformationGrows) {
    Updating device(BokehPhone());
    // The pair is looked up by sensor index.
    device.plugin.DeviceId2RoleId[2].sensorNames = "s5khm2";
    device.plugin.DeviceId2RoleId[3].sensorNames = "s5k4h7";
    device.plugin.DeviceId2RoleId[0].sensorNames = "other";
    device.plugin.UpdateBokehOptimalSizeInfo(device.meta, 5);
    device.plugin.UpdateBokehOptimalSizeInfo(device.meta, 6);
    device.plugin.DeviceId2RoleId[0].sensorNames = "imx582";
    device.plugin.DeviceId2RoleId[1].sensorNames = "s5k4h7";
    device.plugin.UpdateBokehOptimalSizeInfo(device.meta, 6);
    Lines lines = device.phone.logOf(kUpdater);
    std::erase_if(lines, [](const std::string& line) { return line.find(" is") == std::string::npos; });
    EXPECT_THAT(lines,
                ElementsAre("I roleID is 20, vendorID is: 1", "D module info is [s1_S5KHM2_S5K4H7_SUNNY]",
                            "I roleID is 0, vendorID is: 16",
                            "D module info is [s1_S5KHM2_S5K4H7_SUNNYOTHER_IMX596__AAC]",
                            "I roleID is 0, vendorID is: 16", "D module info is [s2_IMX582_S5K4H7__AAC]"));
    EXPECT_EQ(device.plugin.mModuleInfo, "s2_IMX582_S5K4H7__AAC");
}

TEST(BokehAndSuperNightTags, RefusedUpdatesStopNothing) {
    const std::string lead = "[UpdateBokehOptimalSizeInfo] ZV IMetadata::update,tag ZELVAN_";
    for (const bool wide : {false, true}) {
        const Refusals refusals = {
            {lead + "CAMERA_BOKEHINFO_MASTERCAMERAID", wide ? 0x910000FB : 0x910000AB},
            {lead + "CAMERA_BOKEHINFO_MASTERCAMERAID", wide ? 0x910000FC : 0x910000AC},
            {lead + "BOKEHVENDORID_SUPPORTED", 0x9101003D},
            {lead + "CAMERA_BOKEHINFO_MASTEROPTSIZE", wide ? 0x910000FD : 0x910000AD},
            {lead + "CAMERA_BOKEHINFO_OPTPICTURESIZE", wide ? 0x910000FF : 0x910000AF},
            {lead + "CAMERA_BOKEHINFO_MASTEROPTSIZE", wide ? 0x910000FE : 0x910000AE},
            {lead + "BOKEH_MDMODE_SUPPORTED", 0x910000E1},
            {"[UpdateBokehOptimalSizeInfo] ZV IMetadata::update(), tag ZELVAN_SUPERNIGHT_SUPPORT_MASK ",
             0x9101004E},
        };
        Updating device(BokehPhone().faults(FaultsOf(refusals)));
        EXPECT_EQ(device.plugin.UpdateBokehOptimalSizeInfo(device.meta, wide ? 6 : 5), -8);
        EXPECT_EQ(device.phone.errors(), RefusalLines(refusals));
        EXPECT_EQ(device.tags(), Tags());
    }
}

TEST(BokehAndSuperNightTags, UnknownDeviceOrNoList) {
    for (const bool noList : {false, true}) {
        const std::string error =
            noList ? "E Cannot get logical device list" : "E find DeviceId2RoleId[8] error!";
        Updating device(BokehPhone().faults({.moduleFactory = noList}));
        EXPECT_EQ(device.plugin.UpdateBokehOptimalSizeInfo(device.meta, 8), -1);
        EXPECT_EQ(device.phone.logOf(kUpdater), (Lines{"I enter", error}));
        EXPECT_EQ(device.tags(), Tags());
    }
}

}  // namespace
