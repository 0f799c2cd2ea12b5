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
            {.name = "SENSOR_FURTHER_DEVICE",
             .multiSensor = true,
             .members = {tables::MemberSensorId{0}, tables::MemberSensorId{3}},
             .sensorBits = tables::DeviceBits{9}});
    }
    const virtualphone::TemporaryFolder root;
    const virtualphone::VirtualPhone phone(description, root.path());
    plugin.ExposureModuleInfo();

    std::set<std::uint32_t> stored;
    for (const virtualphone::ProviderMerge& device : phone.record().devices) {
        for (const NSCam::IMetadata::IEntry& entry : device.metadata.entries()) {
            stored.insert(entry.tag());
            const tables::PublishedTag* const info = tables::FindPublishedTag(entry.tag());
            ASSERT_NE(info, nullptr) << TagText(entry.tag());
            EXPECT_EQ(static_cast<int>(entry.type()), static_cast<int>(info->type))
                << info->name << ": " << Describe(entry);
        }
    }
    for (const tables::PublishedTag& info : tables::PublishedTags()) {
        EXPECT_TRUE(stored.contains(info.tag)) << info.name << " was stored by no device";
    }
}

}  // namespace
