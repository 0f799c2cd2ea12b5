#include <algorithm>
#include <optional>
#include <string>

#include "platform/IHalSensorList.h"
#include "platform/ILogicalDeviceList.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/Lookup.h"
#include "platforminfo/PlatformAccess.h"

namespace {

/// The last two components of a driver name with their underscores: "_imx707_eeprom".
std::string DriverNameEnd(const std::string& name) {
    const std::string head = name.substr(0, name.rfind('_'));
    return name.substr(head.rfind('_'));
}

}  // namespace

int CameraPlatformInfoZelvan::GetRoleIdBySensorIdx(int sensorIdx) {
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__);
    if (sensors == nullptr) {
        return -1;
    }
    const int deviceID = sensors->deviceId(LowestSetBit(sensors->deviceBits(sensorIdx)));
    LOGI("GetRoleIdBySensorIdx, deviceID: %d ", deviceID);
    const RoleIdDesc* const device = FindDevice(__func__, deviceID);
    return device == nullptr ? -1 : device->roleId;
}

int CameraPlatformInfoZelvan::GetDevIdByRoleId(int roleId) {
    const auto found = std::find_if(DeviceId2RoleId.begin(), DeviceId2RoleId.end(),
                                    [roleId](const auto& row) { return row.second.roleId == roleId; });
    const int devId = found == DeviceId2RoleId.end() ? -1 : found->first;
    LOGI("roleID(%d) ==> devID(%d)", roleId, devId);
    return devId;
}

int CameraPlatformInfoZelvan::GetSensorIdxByRoleId(int roleId) {
    const int devId = GetDevIdByRoleId(roleId);
    if (devId < 0) {
        LOGE("GetDevIdByRoleId(%d) error!", roleId);
        return -1;
    }
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__);
    if (sensors == nullptr) {
        return -1;
    }
    LOGI("GetSensorIdxByRoleId devID = %d ", devId);
    int sensorIdx = -1;
    for (int idx = 0; idx < sensors->sensorCount(); ++idx) {
        if (sensors->deviceId(idx) == devId) {
            sensorIdx = idx;
            break;
        }
    }
    LOGI("roleID(%d) ==> sensorIdx(%d)", roleId, sensorIdx);
    return sensorIdx;
}

bool CameraPlatformInfoZelvan::matchDrvNameToPlatformDrvName(const char* drvName, const char* platDrvName) {
    const std::string end = DriverNameEnd(drvName);
    const std::string platformEnd = DriverNameEnd(platDrvName);
    LOGD("drvNameEndWith: %s, platDrvNameEndWith: %s", end.c_str(), platformEnd.c_str());
    return end == platformEnd;
}

std::optional<CameraPlatformInfoZelvan::ResolvedInstance> CameraPlatformInfoZelvan::ResolveRole(
    const char* function, int instanceId) {
    const NSCam::ILogicalDeviceList* const devices = GetLogicalDeviceList(function);
    if (devices == nullptr) {
        return std::nullopt;
    }
    if ((devices->isMultiSensorDevice(instanceId) & 1U) == 0) {
        return ResolvedInstance{.roleId = GetRoleIdBySensorIdx(instanceId), .devices = *devices};
    }
    const RoleIdDesc* const device = FindDevice(function, instanceId);
    if (device == nullptr || device->roleId < tables::camera_role::kFirstLogicalRole) {
        return std::nullopt;
    }
    return ResolvedInstance{.roleId = device->roleId, .devices = *devices};
}

const RoleIdDesc* CameraPlatformInfoZelvan::FindDevice(const char* function, int instanceId) {
    return FindRow(function, "DeviceId2RoleId", DeviceId2RoleId, instanceId);
}
