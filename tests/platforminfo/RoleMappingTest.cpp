#include <stdexcept>

#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;

TEST(RoleMapping, RoleOfASensorIndexIsThatOfItsLowestDeviceBit) {
    // Index 1 has bits 2 and 3, index 40 has bit 31, and index 3 has none: the platform is asked for -1.
    const TestPhone phone(PhoneBuilder()
                              .sensors({{7}, {.deviceBits = 12}, {3}, {.deviceBits = 0}, {99}})
                              .alias(-1, 0, 2)
                              .alias(40, 0x80000000, 40)
                              .alias(31, 0x80000000, 0));
    std::vector<int> roleIds;
    for (const int sensorIdx : {0, 1, 3, 40, 4}) {
        roleIds.push_back(TestPlugin().GetRoleIdBySensorIdx(sensorIdx));
    }
    EXPECT_THAT(roleIds, ElementsAre(0, 21, 20, 64, -1));
    EXPECT_THAT(phone.logOf("GetRoleIdBySensorIdx"),
                ElementsAre("I GetRoleIdBySensorIdx, deviceID: 7 ", "I GetRoleIdBySensorIdx, deviceID: 3 ",
                            "I GetRoleIdBySensorIdx, deviceID: 2 ", "I GetRoleIdBySensorIdx, deviceID: 0 ",
                            "I GetRoleIdBySensorIdx, deviceID: 99 ", "E find DeviceId2RoleId[99] error!"));
}

TEST(RoleMapping, SensorIndexOfARole) {
    const TestPhone phone(PhoneBuilder().sensors({{1}, {7}, {7}}));
    EXPECT_EQ(TestPlugin().GetSensorIdxByRoleId(0), 1);
    EXPECT_EQ(TestPlugin().GetSensorIdxByRoleId(64), -1);
    EXPECT_EQ(TestPlugin().GetSensorIdxByRoleId(40), -1);
    EXPECT_THAT(phone.log(), ElementsAre("I [GetDevIdByRoleId] roleID(0) ==> devID(7)",
                                         "I [GetSensorIdxByRoleId] GetSensorIdxByRoleId devID = 7 ",
                                         "I [GetSensorIdxByRoleId] roleID(0) ==> sensorIdx(1)",
                                         "I [GetDevIdByRoleId] roleID(64) ==> devID(0)",
                                         "I [GetSensorIdxByRoleId] GetSensorIdxByRoleId devID = 0 ",
                                         "I [GetSensorIdxByRoleId] roleID(64) ==> sensorIdx(-1)",
                                         "I [GetDevIdByRoleId] roleID(40) ==> devID(-1)",
                                         "E [GetSensorIdxByRoleId] GetDevIdByRoleId(40) error!"));
}

TEST(RoleMapping, DriverNamesMatchByTheirLastTwoComponents) {
    const TestPhone phone;
    TestPlugin plugin;
    const struct {
        const char* drvName;
        const char* platDrvName;
        bool match;
    } kCases[] = {
        {"a_semco_wide_imx707_eeprom", "x_imx707_eeprom", true},
        {"a_imx707_otp", "a_imx707_eeprom", false},
        {"a_imx707_eeprom", "a_ov50d_eeprom", false},
        {"a_imx707_eeprom", "a_ximx707_eeprom", false},
        {"_x_", "y_x_", true},
        {"__", "a__", true},
    };
    for (const auto& [drvName, platDrvName, match] : kCases) {
        EXPECT_EQ(plugin.matchDrvNameToPlatformDrvName(drvName, platDrvName), match) << drvName;
    }
    EXPECT_EQ(phone.log()[1],
              "D [matchDrvNameToPlatformDrvName] drvNameEndWith: _imx707_otp, "
              "platDrvNameEndWith: _imx707_eeprom");
    for (const char* malformed : {"", "imx707", "imx707_eeprom", "_"}) {
        EXPECT_THROW(plugin.matchDrvNameToPlatformDrvName(malformed, "a_b_c"), std::out_of_range);
        EXPECT_THROW(plugin.matchDrvNameToPlatformDrvName("a_b_c", malformed), std::out_of_range);
    }
    EXPECT_THAT(phone.log(), testing::SizeIs(std::size(kCases)));
}

}  // namespace
