#include <array>
#include <cstddef>
#include <cstdint>

#include "metadata/StreamList.h"
#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platform/ImgSensorDrv.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "platforminfo/Sensors.h"
#include "tables/PublishedTags.h"
#include "tables/SizeCatalogue.h"
#include "tables/StreamFormats.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// The sensor mode whose output feeds super resolution.
constexpr std::size_t kSuperResolutionMode = 8;

/// The tele offers super resolution at its whole pixel array, whatever its own mode for it puts out.
constexpr int kTeleDeviceId = 2;
constexpr int kTeleSuperResolutionWidth = 8192;
constexpr int kTeleSuperResolutionHeight = 6144;

struct Size {
    std::int64_t width;
    std::int64_t height;
};

/// JPEG sizes that front cameras offer beyond their sensor's own.
constexpr std::array<Size, 4> kFrontJpegSizes = {{{5184, 3888}, {5120, 2880}, {5120, 2304}, {3888, 3888}}};

bool IsFrontRole(int roleId) {
    return roleId == camera_role::kFrontMain || roleId == camera_role::kFrontAux;
}

/// Pixels of the unbinned array for one pixel of a capture, by truncating unsigned divisions; 0 where the
/// capture size is unknown.
int BinningFactor(const NSCam::SensorStaticInfo& sensor) {
    if (sensor.captureWidth == 0 || sensor.captureHeight == 0) {
        return 0;
    }
    const std::uint32_t pixels = static_cast<std::uint32_t>(sensor.pixelArrayWidth) * sensor.pixelArrayHeight;
    return static_cast<int>(pixels / sensor.captureWidth / sensor.captureHeight);
}

/// Number of the first 8K mode, or -1.
int Find8KMode(const ImgSensorDrvInfo& driver) {
    for (std::size_t mode = 0; mode < SENSOR_MODE_COUNT; ++mode) {
        if (tables::Is8K(driver.outputWidth[mode], driver.outputHeight[mode])) {
            return static_cast<int>(mode);
        }
    }
    return -1;
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateScaler(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const NSCam::ILogicalDeviceList* const devices = self.logicalDevices();
    if (devices == nullptr) {
        return -1;
    }
    const NSCam::IHalSensorList* const sensors = self.sensorList("Cannot get sensor device list");
    if (sensors == nullptr) {
        return -1;
    }
    const tables::SensorIndex sensorIdx = FirstSensorOf(tables::DeviceBits{devices->sensorBits(instanceId)});
    const int deviceId = sensors->deviceId(Number(sensorIdx));
    LOGI(self, "deviceID = 0x%x, instanceId = 0x%x, ", static_cast<unsigned>(deviceId),
         static_cast<unsigned>(instanceId));
    const NSCam::SensorStaticInfo* const sensor = sensors->sensorStaticInfo(deviceId);
    if (sensor == nullptr) {
        LOGE(self, "get sensor static info error : %d!", deviceId);
        return -1;
    }
    const ImgSensorDrv* const driver = DriverOf(sensorIdx);
    if (driver == nullptr) {
        LOGE(self, "get sensor drv error : %d!", instanceId);
        return -1;
    }
    const ImgSensorDrvInfo& modes = driver->getDrvInfo();
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, deviceId);
    if (device == nullptr) {
        return -1;
    }
    const int roleId = device->roleId;
    LOGI(self, "MetadataUpdateScaler roleId = %d", roleId);
    const int mode8K = Find8KMode(modes);
    if (mode8K >= 0) {
        LOGI(self, "find 8K sensormode : %d", mode8K);
    }
    const int allow8k = mode8K >= 0 ? 1 : 0;
    const int fullWidth = modes.outputWidth[0];
    const int fullHeight = modes.outputHeight[0];

    updateBinningFactorConfiguration(meta, BinningFactor(*sensor));
    updateStreamConfigurationWithDuration(meta, fullWidth, fullHeight, allow8k);
    updateStreamConfiguration(meta);
    updateSuperResolutionStreamConfiguration(meta, roleId, modes.outputWidth[kSuperResolutionMode],
                                             modes.outputHeight[kSuperResolutionMode]);
    if (deviceId == kTeleDeviceId) {
        updateSuperResolutionStreamConfiguration(meta, roleId, kTeleSuperResolutionWidth,
                                                 kTeleSuperResolutionHeight);
    }
    updateMaxJpegSizeConfiguration(meta, sensor->captureWidth, sensor->captureHeight);
    updateStreamConfigurationZelvan(meta, roleId, fullWidth, fullHeight, allow8k);
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_SCALER_CONFIGURED, {1}));
    LOGI(self, "exit");
    return 0;
}

void CameraPlatformInfoZelvan::updateBinningFactorConfiguration(IMetadata& meta, int factor) {
    const Operation self(__func__);
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_SCALER_BINNING_FACTOR, {factor}));
}

void CameraPlatformInfoZelvan::updateSuperResolutionStreamConfiguration(IMetadata& meta, int roleId,
                                                                        int width, int height) {
    const Operation self(__func__);
    if (width == 0 || height == 0) {
        return;
    }
    IMetadata::IEntry entry(ZELVAN_SCALER_SUPER_RESOLUTION_STREAM_CONFIGURATIONS);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_YCBCR_420_888, width, height, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_BLOB, width, height, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, width, height, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_RAW16, 4000, 3000, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_YCBCR_420_888, 1440, 1080, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_BLOB, 1440, 1080, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, 1440, 1080, STREAM_OUTPUT);
    self.update(meta, entry);

    const unsigned char isMain = roleId == camera_role::kBackMain ? 1 : 0;
    self.update(meta, MakeEntry<unsigned char>(ZELVAN_SCALER_SUPER_RESOLUTION_MAIN, {isMain}));
}

void CameraPlatformInfoZelvan::updateStreamConfigurationZelvan(IMetadata& meta, int roleId, int width,
                                                               int height, int allow8k) {
    const Operation self(__func__);
    const auto& catalogue = tables::size_catalogue::kVendor;
    IMetadata::IEntry entry(ZELVAN_SCALER_STREAM_CONFIGURATIONS);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, width, height, STREAM_INPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_YCBCR_420_888, width, height, STREAM_INPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_RAW16, width, height, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_RAW10, width, height, STREAM_OUTPUT);
    // Sensors too small for 2560x1920 offer it scaled up.
    if (width <= 2559 && height <= 1919) {
        pushAvailableStream(entry, HAL_PIXEL_FORMAT_YV12, 2560, 1920, STREAM_OUTPUT);
    }
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_YV12, 3840, 2160, STREAM_OUTPUT);
    pushAvailableStream(entry, HAL_PIXEL_FORMAT_YV12, 3280, 2464, STREAM_OUTPUT);
    if (IsFrontRole(roleId)) {
        for (const Size& size : kFrontJpegSizes) {
            pushAvailableStream(entry, HAL_PIXEL_FORMAT_BLOB, size.width, size.height, STREAM_OUTPUT);
        }
    }
    for (const tables::SizeCatalogueEntry& row : catalogue) {
        if (!TakesJpeg(row, width, height, allow8k != 0)) {
            continue;
        }
        pushAvailableStream(entry, HAL_PIXEL_FORMAT_BLOB, row.width, row.height, STREAM_OUTPUT);
        LOGD(self, "ZV IMetadata::update(), Y16: format = %d, size = %ldx%ld, direction = %d",
             static_cast<int>(HAL_PIXEL_FORMAT_Y16), row.width, row.height, static_cast<int>(STREAM_OUTPUT));
        pushAvailableStream(entry, HAL_PIXEL_FORMAT_Y16, row.width, row.height, STREAM_OUTPUT);
    }
    if (self.update(meta, entry) != 0) {
        return;
    }
    for (const std::int64_t format :
         {HAL_PIXEL_FORMAT_YCBCR_420_888, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, HAL_PIXEL_FORMAT_YV12}) {
        DuplicateFormat<int>(meta, entry.tag(), HAL_PIXEL_FORMAT_BLOB, format);
    }
}
