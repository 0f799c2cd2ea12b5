#include <cstdio>
#include <map>
#include <string>

#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
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
    std::snprintf(entry, sizeof(entry), "%s=%s;", roleName, OrNull(sensorNames));
    return entry;
}

}  // namespace

int CameraPlatformInfoZelvan::SetModuleInfoProp() {
    const Operation self(__func__);
    LOGI(self, "enter");
    const NSCam::IHalSensorList* const sensors = self.sensorList();
    if (sensors == nullptr) {
        return -1;
    }
    std::map<int, std::string> entries;
    for (const auto& [deviceId, device] : DeviceId2RoleId) {
        if (device.roleId >= tables::camera_role::kFirstLogicalRole) {
            continue;
        }
        const char* const* const roleName = self.find(mRoleId2ModuleName, device.roleId);
        if (roleName == nullptr) {
            return -1;
        }
        entries[device.roleId] = ModuleEntry(*roleName, "none");
    }
    for (SensorWalk sensor(*this, *sensors); sensor.next();) {
        const int roleId = Number(sensor.role());
        const char* const* const roleName = self.find(mRoleId2ModuleName, roleId);
        if (roleName == nullptr) {
            return -1;
        }
        const RoleIdDesc& device = DeviceId2RoleId.findOrAdd(Number(sensor.device()));
        entries[roleId] = ModuleEntry(*roleName, device.sensorNames);
    }
    const ModuleInfoTexts texts = SplitOverProperties(entries);
    LOGI(self, "moduleInfo = %s", texts.info.c_str());
    LOGI(self, "moduleInfoExt = %s", texts.extension.c_str());
    property_set(tables::kModuleInfoProperty, texts.info.c_str());
    property_set(tables::kModuleInfoExtProperty, texts.extension.c_str());
    LOGI(self, "exit");
    return 0;
}
