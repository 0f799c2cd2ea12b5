#include <algorithm>
#include <string>

#include "platform/IHalSensorList.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/Sensors.h"

namespace {

/// The last two components of a driver name with their underscores: "_imx707_eeprom". No name counts as one
/// without underscores.
std::string DriverNameEnd(const char* driverName) {
    const std::string name = driverName == nullptr ? "" : driverName;
    const std::string head = name.substr(0, name.rfind('_'));
    return name.substr(head.rfind('_'));
}

}  // namespace

int CameraPlatformInfoZelvan::GetRoleIdBySensorIdx(int sensorIdx) {
    const Operation self(__func__);
    const NSCam::IHalSensorList* const sensors = self.sensorList();
    if (sensors == nullptr) {
        return -1;
    }
    const tables::DeviceBits bits{sensors->deviceBits(sensorIdx)};
    const int deviceID = sensors->deviceId(Number(FirstSensorOf(bits)));
    LOGI(self, "GetRoleIdBySensorIdx, deviceID: %d ", deviceID);
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, deviceID);
    return device == nullptr ? -1 : device->roleId;
}

int CameraPlatformInfoZelvan::GetDevIdByRoleId(int roleId) {
    const Operation self(__func__);
    const auto found = std::find_if(DeviceId2RoleId.begin(), DeviceId2RoleId.end(),
                                    [roleId](const auto& row) { return row.second.roleId == roleId; });
    const int devId = found == DeviceId2RoleId.end() ? -1 : found->first;
    LOGI(self, "roleID(%d) ==> devID(%d)", roleId, devId);
    return devId;
}

int CameraPlatformInfoZelvan::GetSensorIdxByRoleId(int roleId) {
    const Operation self(__func__);
    const int devId = GetDevIdByRoleId(roleId);
    if (devId < 0) {
        LOGE(self, "GetDevIdByRoleId(%d) error!", roleId);
        return -1;
    }
    const NSCam::IHalSensorList* const sensors = self.sensorList();
    if (sensors == nullptr) {
        return -1;
    }
    LOGI(self, "GetSensorIdxByRoleId devID = %d ", devId);
    const int sensorIdx =
        Number(FindSensor(*sensors, tables::DeviceId{devId}).value_or(tables::SensorIndex{-1}));
    LOGI(self, "roleID(%d) ==> sensorIdx(%d)", roleId, sensorIdx);
    return sensorIdx;
}

bool CameraPlatformInfoZelvan::matchDrvNameToPlatformDrvName(const char* drvName, const char* platDrvName) {
    const Operation self(__func__);
    const std::string end = DriverNameEnd(drvName);
    const std::string platformEnd = DriverNameEnd(platDrvName);
    LOGD(self, "drvNameEndWith: %s, platDrvNameEndWith: %s", end.c_str(), platformEnd.c_str());
    return end == platformEnd;
}
