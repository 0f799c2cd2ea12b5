#include <cstddef>
#include <cstdint>

#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platform/IMetadataProvider.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "tables/Numberings.h"

using NSCam::IMetadata;
using NSCam::IMetadataProvider;
using NSCam::NSMetadataProviderManager::valueForByDeviceId;

namespace {

/// The provider id of a physical sensor inside a logical device. The last field takes the whole id where it
/// is negative.
tables::ProviderId PhysicalUniqueId(tables::LogicalIndex device, tables::MemberSensorId member,
                                    tables::DeviceIndex deviceIndex) {
    return tables::ProviderId{((static_cast<std::uint32_t>(Number(device)) & 0xFFFFU) << 16) |
                              (static_cast<std::uint32_t>(Number(member)) << 8) |
                              static_cast<std::uint32_t>(Number(deviceIndex))};
}

}  // namespace

void CameraPlatformInfoZelvan::MetadataUpdate() {
    const Operation self(__func__);
    LOGI(self, "enter");
    const NSCam::ILogicalDeviceList* const devices = self.logicalDevices();
    if (devices == nullptr) {
        return;
    }
    const int deviceCount = devices->deviceCount();
    for (int i = 0; i < deviceCount; ++i) {
        IMetadataProvider* const provider = valueForByDeviceId(static_cast<std::uint32_t>(i));
        LOGI(self, "instanceId = %zu", static_cast<std::size_t>(i));
        LOGI(self, "pMetadataProvider = %p", static_cast<void*>(provider));
        MetadataUpdate(provider, i);
        if ((devices->isMultiSensorDevice(i) & 1U) == 0) {
            continue;
        }
        for (const int sensorId : devices->sensorIds(i)) {
            const std::uint32_t uniqueId =
                Number(PhysicalUniqueId(tables::LogicalIndex{i}, tables::MemberSensorId{sensorId},
                                        tables::DeviceIndex{devices->sensorDeviceIndex(sensorId)}));
            IMetadataProvider* const physical = valueForByDeviceId(uniqueId);
            LOGI(self, "physicalUniqueId = 0x%x pPhysicalMetadataProvider = %p", uniqueId,
                 static_cast<void*>(physical));
            // Physical sensors are updated under their sensor id, not under the unique id.
            MetadataUpdate(physical, sensorId);
        }
    }
    LOGI(self, "exit");
}

void CameraPlatformInfoZelvan::MetadataUpdate(IMetadataProvider* provider, int instanceId) {
    IMetadata meta;
    MetadataUpdateRoleId(meta, instanceId);
    MetadataUpdateCheckSumResult(meta, instanceId);
    MetadataUpdateScaler(meta, instanceId);
    MetedataUpdateCalibData(meta, instanceId);
    MetedataUpdateVideoStabilizationData(meta, instanceId);
    MetedataUpdateVNQualityData(meta, instanceId);
    MetadataUpdateCalibrationToolTag(meta, instanceId);
    UpdateBokehOptimalSizeInfo(meta, instanceId);
    UpdatePhotoStyleInfo(meta, instanceId);
    MetadataUpdateFakeSatSizes(meta, instanceId);
    MetadataUpdateHDHDR(meta, instanceId);
    MetadataUpdateSmartFOVZoomRatio(meta, instanceId);
    MetadataUpdateBeautyData(meta, instanceId);
    MetedataUpdateVideoTrackAFQualityData(meta, instanceId);
    MetedataUpdateSatInfo(meta, instanceId);
    MetadataUpdateFocalLength35mm(meta, instanceId, provider);
    provider->mergeStaticMetadata(meta);
}
