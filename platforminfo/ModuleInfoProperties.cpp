#include <cstdio>
#include <map>
#include <string>

#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/Lookup.h"
#include "platforminfo/PlatformAccess.h"
#include "platforminfo/SensorWalk.h"
#include "tables/PublishedProperties.h"

namespace {

/// The module list over two properties, because a property value is short: entries alternate between them.
struct ModuleInfoTexts {
    std::string info;
    std::string extension;
};

ModuleInfoTexts SplitOverProperties(const std::map<int, std::string>& entries) {
    ModuleInfoTexts texts;
    bool toExtension = false;
    for (const auto& [roleId, entry] : entries) {
        (toExtension ? texts.extension : texts.info) += entry;
        toExtension = !toExtension;
    }
    return texts;
}

std::string ModuleEntry(const char* roleName, const char* sensorNames) {
    char entry[256];
    std::snprintf(entry, sizeof(entry), "%s=%s;", roleName, sensorNames == nullptr ? "(null)" : sensorNames);
    return entry;
}

}  // namespace

int CameraPlatformInfoZelvan::SetModuleInfoProp() {
    LOGI("enter");
    const NSCam::IHalSensorList* const sensors = GetSensorList(__func__);
    if (sensors == nullptr) {
        return -1;
    }
    std::map<int, std::string> entries;
    for (const auto& [deviceId, device] : DeviceId2RoleId) {
        if (device.roleId >= tables::camera_role::kFirstLogicalRole) {
            continue;
        }
        const char* const* const roleName =
            FindRow(__func__, "mRoleId2ModuleName", mRoleId2ModuleName, device.roleId);
        if (roleName == nullptr) {
            return -1;
        }
        entries[device.roleId] = ModuleEntry(*roleName, "none");
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const char* const* const roleName =
            FindRow(__func__, "mRoleId2ModuleName", mRoleId2ModuleName, sensor.roleId());
        if (roleName == nullptr) {
            return -1;
        }
        entries[sensor.roleId()] = ModuleEntry(*roleName, DeviceId2RoleId[sensor.deviceId()].sensorNames);
    }
    const ModuleInfoTexts texts = SplitOverProperties(entries);
    LOGI("moduleInfo = %s", texts.info.c_str());
    LOGI("moduleInfoExt = %s", texts.extension.c_str());
    property_set(tables::kModuleInfoProperty, texts.info.c_str());
    property_set(tables::kModuleInfoExtProperty, texts.extension.c_str());
    LOGI("exit");
    return 0;
}
