#include <set>

#include <gmock/gmock.h>

#include "tables/PublishedTags.h"
#include "tests/support/Describe.h"
#include "tests/support/TestPlugin.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

namespace {

TEST(PublishedTags, AreWhatTheUpdatersStore) {
    // The healthy phone, with two logical devices of further roles beside its own.
    virtualphone::PhoneDescription description = virtualphone::ReadPhoneFile(PHONES "/halcyrion.json");
    TestPlugin plugin;
    for (const int role : {80, 81}) {
        const auto instanceId = static_cast<int>(description.logicalDevices.size());
        plugin.DeviceId2RoleId[instanceId] = {
            .roleId = role, .sensorNames = "imx707;ov13b10", .drvName = "SENSOR_FURTHER_DEVICE"};
        description.logicalDevices.push_back(
            {.name = "SENSOR_FURTHER_DEVICE", .multiSensor = true, .sensorIds = {0, 3}, .sensorBits = 9});
    }
    const virtualphone::TemporaryFolder root;
    record::Recorder recorder;
    const virtualphone::VirtualPhone phone(description, root.path(), recorder);
    plugin.ExposureModuleInfo();

    std::set<std::uint32_t> stored;
    const std::vector<record::Event> events = recorder.events();
    for (const record::ProviderMerge* const device : record::EventsOf<record::ProviderMerge>(events)) {
        for (const record::Tag& tag : device->metadata) {
            stored.insert(tag.tag);
            const tables::PublishedTag* const info = tables::FindPublishedTag(tag.tag);
            ASSERT_NE(info, nullptr) << TagText(tag.tag);
            EXPECT_EQ(tag.values.type(), info->type) << info->name;
        }
    }
    for (const tables::PublishedTag& info : tables::PublishedTags()) {
        EXPECT_TRUE(stored.contains(info.tag)) << info.name << " was stored by no device";
    }
}

}  // namespace
