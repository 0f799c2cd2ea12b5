#include <climits>

#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;

TEST(SensorProperties, SensorInfoOfAnUnreadableModuleIsFFAnUnknownRoleEndsIt) {
    const Bytes eeprom = Eeprom({{1, "03"}, {8, "1A"}, {12, "07"}});
    const TestPhone phone(PhoneOf({{7, eeprom}, {1}, {99}, {3, eeprom}}));
    EXPECT_EQ(TestPlugin().SetSensorInfoProp(), -1);
    EXPECT_EQ(phone.property("vendor.camera.sensor.w.sensorInfo"), "03, 1A, 07");
    EXPECT_EQ(phone.property("vendor.camera.sensor.f.sensorInfo"), "FF, FF, FF");
    EXPECT_EQ(phone.property("vendor.camera.sensor.u.sensorInfo"), "<unset>");
    EXPECT_THAT(phone.logOf("SetSensorInfoProp"),
                ElementsAre("I [SensorInfo] vendorId = 0x03 lensId = 0x1a, sensorId = 0x07",
                            "I [SensorInfo] vendorId = 0xff lensId = 0xff, sensorId = 0xff",
                            "I [SensorInfo] vendorId = 0xff lensId = 0xff, sensorId = 0xff",
                            "E find mZVSensorInfoProp[-1] error!"));
}

TEST(SensorProperties, AFInfoOfEverySensorOnItsOwn) {
    const auto focus = [](int deviceId, bool capable, const std::array<virtualphone::FocusPoint, 2>& points) {
        return FittedSensor{.deviceId = deviceId, .autofocus = {{.capable = capable, .points = points}}};
    };
    const std::array<virtualphone::FocusPoint, 2> points{{{3009, 123}, {100, 456}}};
    const TestPhone phone(PhoneOf({focus(7, true, points),
                                   focus(1, false, {}),
                                   focus(99, true, points),
                                   focus(3, true, {{{-19, -5}, {INT_MIN, INT_MIN}}}),
                                   {4}}));
    EXPECT_EQ(TestPlugin().SetAFInfoProp(), 0);
    EXPECT_EQ(phone.property("persist.vendor.camera.sensor.w.afInfo"), "300:123,10:456,");
    EXPECT_EQ(phone.property("persist.vendor.camera.sensor.u.afInfo"), "-1:-5,-214748364:-2147483648,");
    EXPECT_THAT(phone.record().properties, testing::SizeIs(2));
    EXPECT_THAT(phone.logOf("SetAFInfoProp"),
                ElementsAre("I [AFINFO] set afinfo property for roleID(0): 300:123,10:456,",
                            "I [AFINFO] do not support AF for roleID(1)",
                            "E [AFINFO] roleID(-1) set property name failed ",
                            "I [AFINFO] set afinfo property for roleID(21): -1:-5,-214748364:-2147483648,",
                            "I [AFINFO] fail to read cam cal for roleID(60)"));
}

TEST(SensorProperties, NamesOfEveryRole) {
    const std::pair<int, std::string> kRoles[] = {{0, "w"},    {1, "f"},    {20, "t"}, {21, "u"},   {22, "m"},
                                                  {23, "t4x"}, {24, "m2x"}, {25, "d"}, {40, "faux"}};
    for (const auto& [roleId, name] : kRoles) {
        const TestPhone phone(PhoneBuilder().sensors({{.autofocus = {{.capable = true, .points = {}}}}}));
        TestPlugin plugin;
        plugin.DeviceId2RoleId[0].roleId = roleId;
        plugin.SetSensorInfoProp();
        plugin.SetAFInfoProp();
        EXPECT_EQ(phone.property("vendor.camera.sensor." + name + ".sensorInfo"), "FF, FF, FF");
        EXPECT_EQ(phone.property("persist.vendor.camera.sensor." + name + ".afInfo"), "0:0,0:0,");
    }
}

TEST(SensorProperties, DataBinsAsDecimalMaskAndWhetherItWasRefused) {
    const std::string name = "vendor.camera.sensor.zv.databin.existmask";
    for (const bool refused : {false, true}) {
        const TestPhone phone(PhoneBuilder().faults({.propertySet = {refused ? name : "other"}}));
        TestPlugin plugin;
        plugin.mDataBinExistMask = 0xFFFFFFFF00000011;
        plugin.setDataBinGroupProperty();
        EXPECT_EQ(phone.property(name), refused ? "<unset>" : "18446744069414584337");
        EXPECT_THAT(phone.log(), ElementsAre("I [setDataBinGroupProperty] set propertyname[" + name +
                                             "] = 18446744069414584337" + (refused ? ",1" : ",0")));
    }
}

TEST(SensorProperties, MissingSensorList) {
    const TestPhone phone(PhoneBuilder().faults({.sensorList = true}));
    TestPlugin plugin;
    EXPECT_EQ(plugin.GetRoleIdBySensorIdx(0), -1);
    EXPECT_EQ(plugin.GetSensorIdxByRoleId(0), -1);
    EXPECT_EQ(plugin.SetFuseIdProp(), -1);
    EXPECT_EQ(plugin.SetSensorInfoProp(), -1);
    EXPECT_EQ(plugin.SetAFInfoProp(), -1);
    EXPECT_THAT(phone.log(),
                ElementsAre("E [GetRoleIdBySensorIdx] MAKE_HalSensorList is NULL!",
                            "I [GetDevIdByRoleId] roleID(0) ==> devID(7)",
                            "E [GetSensorIdxByRoleId] MAKE_HalSensorList is NULL!", "I [SetFuseIdProp] enter",
                            "E [SetFuseIdProp] MAKE_HalSensorList is NULL!",
                            "E [SetSensorInfoProp] MAKE_HalSensorList is NULL!",
                            "E [SetAFInfoProp] MAKE_HalSensorList is NULL!"));
}

TEST(SensorProperties, EmptySensorList) {
    const TestPhone phone;
    TestPlugin plugin;
    EXPECT_EQ(plugin.SetFuseIdProp(), 0);
    EXPECT_EQ(plugin.SetSensorInfoProp(), 0);
    EXPECT_EQ(plugin.SetAFInfoProp(), 0);
    EXPECT_THAT(phone.log(), ElementsAre("I [SetFuseIdProp] enter", "I [SetFuseIdProp] exit"));
}

}  // namespace
