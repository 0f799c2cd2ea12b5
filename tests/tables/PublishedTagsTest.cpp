#include <set>

#include "tables/PublishedTags.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

namespace {

TEST(PublishedTags, AreWhatTheUpdatersStore) {
    // The healthy phone, with two logical devices of further roles beside its own.
    PhoneBuilder fitted(virtualphone::ReadPhoneFile(PHONES "/halcyrion.json"));
    TestPlugin plugin;
    for (const int role : {80, 81}) {
        const auto instanceId = static_cast<int>(fitted.description().logicalDevices.size());
        plugin.DeviceId2RoleId[instanceId] = {
            .roleId = role, .sensorNames = "imx707;ov13b10", .drvName = "SENSOR_FURTHER_DEVICE"};
        fitted.devices(
            {{.sensorIds = {0, 3}, .multiSensor = true, .sensorBits = 9, .name = "SENSOR_FURTHER_DEVICE"}});
    }
    const TestPhone phone(fitted);
    plugin.ExposureModuleInfo();

    std::set<std::uint32_t> stored;
    for (const record::ProviderMerge& device : phone.record().devices) {
        for (const auto& [tag, values] : device.metadata) {
            stored.insert(tag);
            const tables::PublishedTag* const info = tables::FindPublishedTag(tag);
            ASSERT_NE(info, nullptr) << TagText(tag);
            EXPECT_EQ(values.type(), info->type) << info->name;
        }
    }
    for (const tables::PublishedTag& info : tables::PublishedTags()) {
        EXPECT_TRUE(stored.contains(info.tag)) << info.name << " was stored by no device";
    }
}

}  // namespace
