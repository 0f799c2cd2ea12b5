#include "tests/support/SmallPhones.h"

namespace {

using testing::ElementsAre;

TEST(ModuleInfoProperties, EntriesAlternateInRoleOrder) {
    const struct {
        std::string phone, info, infoExt;
    } kCases[] = {
        {"{}", "back_main=none;back_tele=none;", "front_main=none;back_ultra=none;"},
        {JsonPhoneOf({{7}, {1}, {2}, {3}}), "back_main=imx707;back_tele=ov50d;",
         "front_main=imx596;back_ultra=ov13b10;"},
        // Device 9 has the role of device 3 but no row of its own.
        {R"({"sensors": [{"deviceId": 9}],
             "sensorAliases": {"9": {"deviceBits": 8, "deviceId": 9}, "3": {"deviceId": 3}}})",
         "back_main=none;back_tele=none;", "front_main=none;back_ultra=(null);"},
    };
    for (const auto& [json, info, infoExt] : kCases) {
        const TestPhone phone(json);
        EXPECT_EQ(TestPlugin().SetModuleInfoProp(), 0);
        EXPECT_THAT(phone.logOf("SetModuleInfoProp"), ElementsAre("I enter", "I moduleInfo = " + info,
                                                                  "I moduleInfoExt = " + infoExt, "I exit"));
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.module.info"), info);
        EXPECT_EQ(phone.property("persist.vendor.camera.zv.module.infoext"), infoExt);
    }
}

TEST(ModuleInfoProperties, ARoleWithoutANameEndsIt) {
    const std::pair<std::string, std::string> kCases[] = {
        {R"({"faults": {"sensorList": true}})", "E MAKE_HalSensorList is NULL!"},
        {JsonPhoneOf({{7}, {99}}), "E find mRoleId2ModuleName[-1] error!"},
        {JsonPhoneOf({{7}, {4}}), "E find mRoleId2ModuleName[60] error!"},
    };
    for (const auto& [json, error] : kCases) {
        const TestPhone phone(json);
        EXPECT_EQ(TestPlugin().SetModuleInfoProp(), -1);
        EXPECT_THAT(phone.logOf("SetModuleInfoProp"), ElementsAre("I enter", error));
        EXPECT_THAT(phone.record().properties, testing::IsEmpty());
    }
}

}  // namespace
