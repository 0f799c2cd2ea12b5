#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "formats/FakeSatSize.h"
#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "platforminfo/RoleResolution.h"
#include "tables/PublishedTags.h"

using formats::FakeSatSize;
using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// First value of a reply from a sensor without in-sensor zoom.
constexpr std::int32_t kNoInSensorZoom = 255;

/// Smart FOV zoom ratios of one role.
struct SmartFOVZoomRatios {
    int roleId;
    std::array<float, 11> ratios;
};

constexpr std::array<SmartFOVZoomRatios, 3> kSmartFOVZoomRatios = {{
    {.roleId = camera_role::kFrontMain, .ratios = {1.0F, 1.0F, 2.0F, 1.0F, 1.0F, 0, 0, 0, 0, 0, 0}},
    {.roleId = camera_role::kFrontAux,
     .ratios = {1.0F, 2.0F, 2.0F, 0.6F, 1.0F, 0.8F, 1.13981F, 1.0F, 1.40525F, 0, 0}},
    {.roleId = camera_role::kSecondSat,
     .ratios = {1.0F, 4.0F, 2.0F, 0.6F, 0.6F, 0.8F, 0.8F, 1.0F, 1.0F, 2.0F, 2.0F}},
}};
static_assert(std::bit_cast<std::uint32_t>(kSmartFOVZoomRatios[1].ratios[3]) == 0x3F19999A);
static_assert(std::bit_cast<std::uint32_t>(kSmartFOVZoomRatios[1].ratios[5]) == 0x3F4CCCCD);
static_assert(std::bit_cast<std::uint32_t>(kSmartFOVZoomRatios[1].ratios[6]) == 0x3F91E54B);
static_assert(std::bit_cast<std::uint32_t>(kSmartFOVZoomRatios[1].ratios[8]) == 0x3FB3DF3B);

constexpr std::array<FakeSatSize, 9> kFakeSatSizes = {{
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 4000, .height = 3000},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 3968, .height = 2232},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 4000, .height = 1800},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 2, .width = 4000, .height = 3000},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 2, .width = 3968, .height = 2232},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 2, .width = 4000, .height = 1800},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 3, .width = 4000, .height = 3000},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 3, .width = 3968, .height = 2232},
    {.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 3, .width = 4000, .height = 1800},
}};

bool HasFakeSatSizes(int roleId) {
    return roleId == camera_role::kBackMain || roleId == camera_role::kSat ||
           roleId == camera_role::kThreePartSat;
}

bool ZoomsInSensor(NSCam::IHalSensor& sensor, tables::DeviceId device) {
    std::vector<std::int32_t> modes;
    sensor.sendCommand(Number(device), NSCam::SENSOR_CMD_GET_IN_SENSOR_ZOOM, 0, modes);
    return !modes.empty() && modes[0] != kNoInSensorZoom;
}

void LogFakeSatSizes(const Operation& self, int instanceId, IMetadata::Memory blob) {
    std::array<FakeSatSize, kFakeSatSizes.size()> sizes{};
    // What the blob lacks reads as zeros.
    blob.resize(sizeof(sizes));
    std::memcpy(sizes.data(), blob.editArray(), sizeof(sizes));
    for (const FakeSatSize& size : sizes) {
        LOGI(self,
             "fakeSatImageYuvSizesV2: instanceId %d, zoomStart = %f, zoomStop = %f, type = %d, width = %d, "
             "height = %d",
             instanceId, static_cast<double>(size.zoomStart), static_cast<double>(size.zoomStop), size.type,
             size.width, size.height);
    }
}

/// The user under whose name the platform opens a sensor.
constexpr const char* kSensorUser = "CameraPlatformInfoZelvan";

/// What the zoom updaters need of an instance.
struct ZoomInstance {
    int roleId;
    NSCam::IHalSensor* sensor;  ///< of the instance's first member
    tables::DeviceId device;    ///< of the same member
};

/// @return no value, after an error line, when the role or the sensor object is missing.
std::optional<ZoomInstance> ResolveZoomInstance(const Operation& self,
                                                const std::optional<ResolvedInstance>& instance,
                                                int instanceId) {
    if (!instance) {
        return std::nullopt;
    }
    const std::vector<int> sensorIds = instance->devices.sensorIds(instanceId);
    NSCam::IHalSensorList* const sensors = NSCam::IHalSensorList::get();
    NSCam::IHalSensor* const sensor =
        sensorIds.empty() || sensors == nullptr ? nullptr : sensors->createSensor(kSensorUser, sensorIds[0]);
    if (sensor == nullptr) {
        LOGE(self, "Cannot get halsensor");
        return std::nullopt;
    }
    return ZoomInstance{.roleId = Number(instance->role),
                        .sensor = sensor,
                        .device = tables::DeviceId{sensors->deviceId(sensorIds[0])}};
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateFakeSatSizes(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const std::optional<ZoomInstance> instance =
        ResolveZoomInstance(self, ResolveRole(self, *this, DeviceId2RoleId, instanceId), instanceId);
    if (!instance) {
        return -1;
    }
    if (ZoomsInSensor(*instance->sensor, instance->device)) {
        MetadataUpdateInSensorZoomModes(meta, instanceId);
        if (HasFakeSatSizes(instance->roleId)) {
            const IMetadata::Memory sizes(kFakeSatSizes.data(), sizeof(kFakeSatSizes));
            meta.update(ZELVAN_CAMERA_FAKESAT_FAKESATSIZE,
                        MakeEntry<IMetadata::Memory>(ZELVAN_CAMERA_FAKESAT_FAKESATSIZE, {sizes}));
            // A refused store shows when the tag is read back.
            const IMetadata::IEntry stored = meta.entryFor(ZELVAN_CAMERA_FAKESAT_FAKESATSIZE);
            if (stored.isEmpty()) {
                LOGE(self, "cannot get memory for ZELVAN_CAMERA_FAKESAT_FAKESATSIZE");
            } else {
                LogFakeSatSizes(self, instanceId, stored.itemAt<IMetadata::Memory>(0));
            }
        }
    }
    LOGI(self, "exit");
    return 0;
}

int CameraPlatformInfoZelvan::MetadataUpdateInSensorZoomModes(IMetadata& meta, int /*instanceId*/) {
    const Operation self(__func__);
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_INSENSOR_ZOOM_MODES, {0}));
    return 0;
}

int CameraPlatformInfoZelvan::MetadataUpdateSmartFOVZoomRatio(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    const std::optional<ZoomInstance> instance =
        ResolveZoomInstance(self, ResolveRole(self, *this, DeviceId2RoleId, instanceId), instanceId);
    if (!instance) {
        return -1;
    }
    for (const SmartFOVZoomRatios& row : kSmartFOVZoomRatios) {
        if (row.roleId == instance->roleId) {
            meta.update(ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO,
                        MakeEntry<float>(ZELVAN_CAMERA_SMARTFOV_ZOOM_RATIO, row.ratios));
        }
    }
    return 0;
}
