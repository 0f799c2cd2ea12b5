#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

using testing::ElementsAre;

TEST(ModuleInfoProperties, EntriesAlternateInRoleOrder) {
    const struct {
        PhoneBuilder phone;
        std::string info, infoExt;
    } kCases[] = {
        {{}, "back_main=none;back_tele=none;", "front_main=none;back_ultra=none;"},
        {PhoneOf({{7}, {1}, {2}, {3}}), "back_main=imx707;back_tele=ov50d;",
         "front_main=imx596;back_ultra=ov13b10;"},
        // Device 9 has the role of device 3 but no row of its own.
        {PhoneBuilder().sensors({{9}}).alias(9, 8, 9).alias(3, 8, 3), "back_main=none;back_tele=none;",
         "front_main=none;back_ultra=(null);"},
    };
    for (const auto& [fitted, info, infoExt] : kCases) {
        const TestPhone phone(fitted);
        EXPECT_EQ(TestPlugin().SetModuleInfoProp(), 0);
        EXPECT_THAT(phone.logOf("SetModuleInfoProp"), ElementsAre("I enter", "I moduleInfo = " + info,
                                                                  "I moduleInfoExt = " + infoExt, "I exit"));
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.module.info"), info);
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.module.infoext"), infoExt);
    }
}

TEST(ModuleInfoProperties, ARoleWithoutANameEndsIt) {
    const std::pair<PhoneBuilder, std::string> kCases[] = {
        {PhoneBuilder().faults({.sensorList = true}), "E MAKE_HalSensorList is NULL!"},
        {PhoneOf({{7}, {99}}), "E find mRoleId2ModuleName[-1] error!"},
        {PhoneOf({{7}, {4}}), "E find mRoleId2ModuleName[60] error!"},
    };
    for (const auto& [fitted, error] : kCases) {
        const TestPhone phone(fitted);
        EXPECT_EQ(TestPlugin().SetModuleInfoProp(), -1);
        EXPECT_THAT(phone.logOf("SetModuleInfoProp"), ElementsAre("I enter", error));
        EXPECT_THAT(phone.record().properties, testing::IsEmpty());
    }
    // A device of such a role ends it as well, fitted or not.
    const TestPhone phone;
    TestPlugin plugin;
    plugin.DeviceId2RoleId[9].roleId = 2;
    EXPECT_EQ(plugin.SetModuleInfoProp(), -1);
    EXPECT_THAT(phone.errors(), ElementsAre("[SetModuleInfoProp] find mRoleId2ModuleName[2] error!"));
}

}  // namespace
