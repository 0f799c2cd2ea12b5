#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platform/ImgSensorDrv.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "platforminfo/Sensors.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

constexpr unsigned char kCalibToolType = 2;
constexpr std::size_t kFileNameSize = 128;
constexpr std::size_t kMemberCount = 2;

const char* FindFileName(const char* dumpPath) {
    if (dumpPath != nullptr) {
        for (const tables::RecalibrationFile& row : tables::kRecalibrationFiles) {
            if (std::strcmp(row.dumpPath, dumpPath) == 0) {
                return row.fileName;
            }
        }
    }
    return nullptr;
}

IMetadata::IEntry FileNameEntry(const char* fileName) {
    std::array<unsigned char, kFileNameSize> bytes{};
    std::memcpy(bytes.data(), fileName, std::strlen(fileName));
    return MakeEntry<unsigned char>(ZELVAN_CALIBTOOL_FILE_NAME, bytes);
}

bool UsesCalibrationTool(int roleId) {
    return roleId == camera_role::kTeleBokeh || roleId == camera_role::kBokeh ||
           roleId == camera_role::kFrontBokeh;
}

/// A member is looked for among the device ids, and taken for a sensor index where it is none.
tables::SensorIndex SensorIndexOfMember(const NSCam::IHalSensorList& sensors, tables::MemberSensorId member) {
    return FindSensor(sensors, tables::DeviceId{Number(member)})
        .value_or(tables::SensorIndex{Number(member)});
}

/// Output width and height of mode 0 of each member's driver; no value where a member has no driver.
std::optional<std::vector<std::int32_t>> MemberDriverValues(const NSCam::IHalSensorList& sensors,
                                                            const std::vector<int>& members) {
    std::vector<std::int32_t> values;
    for (const int member : members) {
        const ImgSensorDrv* const driver =
            DriverOf(SensorIndexOfMember(sensors, tables::MemberSensorId{member}));
        if (driver == nullptr) {
            return std::nullopt;
        }
        const ImgSensorDrvInfo& info = driver->getDrvInfo();
        values.push_back(info.outputWidth[0]);
        values.push_back(info.outputHeight[0]);
    }
    return values;
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateCalibrationToolTag(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, instanceId);
    if (device == nullptr || !UsesCalibrationTool(device->roleId)) {
        return -1;
    }
    const NSCam::ILogicalDeviceList* const devices = self.logicalDevices();
    if (devices == nullptr) {
        return -1;
    }
    const NSCam::IHalSensorList* const sensors = self.sensorList("Cannot get sensor device list");
    if (sensors == nullptr) {
        return -1;
    }
    if (meta.entryFor(ZELVAN_CALIBTOOL_TYPE).isEmpty()) {
        self.update(meta, MakeEntry<unsigned char>(ZELVAN_CALIBTOOL_TYPE, {kCalibToolType}));
    }
    if (meta.entryFor(ZELVAN_CALIBTOOL_FILE_NAME).isEmpty()) {
        DualCameraCalDataInfo pair{};
        RoleIdDesc desc = *device;
        GetDualCameraCalDataInfo(desc, pair);
        if (const char* const fileName = FindFileName(pair.dumpPath); fileName != nullptr) {
            self.update(meta, FileNameEntry(fileName));
        } else {
            LOGE(self, "Cannot find zelvan calibration data!");
        }
    }
    const std::vector<int> members = devices->sensorIds(instanceId);
    if (members.size() != kMemberCount) {
        LOGE(self, "The logical device don't have 2 sensors");
        return -1;
    }
    if (meta.entryFor(ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES).isEmpty()) {
        const std::optional<std::vector<std::int32_t>> values = MemberDriverValues(*sensors, members);
        if (!values) {
            LOGE(self, "get sensor drv error : %d!", instanceId);
            return -1;
        }
        self.update(meta, MakeEntry<std::int32_t>(ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES, *values));
    }
    LOGI(self, "exit");
    return 0;
}
