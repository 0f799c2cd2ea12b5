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
#include "platforminfo/Log.h"
#include "platforminfo/PlatformAccess.h"
#include "platforminfo/TagWriter.h"
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

/// Sensor index of a logical device's member: the member is a device index where one matches, and stands for
/// itself otherwise.
int SensorIndexOfMember(const NSCam::IHalSensorList& sensors, int member) {
    for (int idx = 0; idx < sensors.sensorCount(); ++idx) {
        if (sensors.deviceId(idx) == member) {
            return idx;
        }
    }
    return member;
}

/// Output width and height of mode 0 of each member's driver; no value where a member has no driver.
std::optional<std::vector<std::int32_t>> MemberDriverValues(const NSCam::IHalSensorList& sensors,
                                                            const std::vector<int>& members) {
    std::vector<std::int32_t> values;
    for (const int member : members) {
        const int sensorIdx = SensorIndexOfMember(sensors, member);
        const ImgSensorDrv* const driver =
            ImgSensorDrv::getInstance(static_cast<IMGSENSOR_SENSOR_IDX>(sensorIdx));
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
    LOGI("enter");
    const RoleIdDesc* const device = FindDevice(__func__, instanceId);
    if (device == nullptr || !UsesCalibrationTool(device->roleId)) {
        return -1;
    }
    const NSCam::ILogicalDeviceList* const devices = GetLogicalDeviceList(__func__);
    if (devices == nullptr) {
        return -1;
    }
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__, "Cannot get sensor device list");
    if (sensors == nullptr) {
        return -1;
    }
    if (meta.entryFor(ZELVAN_CALIBTOOL_TYPE).isEmpty()) {
        UpdateTag(__func__, meta, MakeEntry<unsigned char>(ZELVAN_CALIBTOOL_TYPE, {kCalibToolType}));
    }
    if (meta.entryFor(ZELVAN_CALIBTOOL_FILE_NAME).isEmpty()) {
        DualCameraCalDataInfo pair{};
        RoleIdDesc desc = *device;
        GetDualCameraCalDataInfo(desc, pair);
        if (const char* const fileName = FindFileName(pair.dumpPath); fileName != nullptr) {
            UpdateTag(__func__, meta, FileNameEntry(fileName));
        } else {
            LOGE("Cannot find zelvan calibration data!");
        }
    }
    const std::vector<int> members = devices->sensorIds(instanceId);
    if (members.size() != kMemberCount) {
        LOGE("The logical device don't have 2 sensors");
        return -1;
    }
    if (meta.entryFor(ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES).isEmpty()) {
        const std::optional<std::vector<std::int32_t>> values = MemberDriverValues(*sensors, members);
        if (!values) {
            LOGE("get sensor drv error : %d!", instanceId);
            return -1;
        }
        UpdateTag(__func__, meta, MakeEntry<std::int32_t>(ZELVAN_CALIBTOOL_SENSOR_DRV_VALUES, *values));
    }
    LOGI("exit");
    return 0;
}
