#include "platforminfo/RoleResolution.h"

#include "platform/ILogicalDeviceList.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"

std::optional<ResolvedInstance> ResolveRole(const Operation& self, CameraPlatformInfoZelvan& info,
                                            const NamedTable<RoleIdDesc>& table, int instanceId) {
    const NSCam::ILogicalDeviceList* const devices = self.logicalDevices();
    if (devices == nullptr) {
        return std::nullopt;
    }
    if ((devices->isMultiSensorDevice(instanceId) & 1U) == 0) {
        return ResolvedInstance{.role = tables::RoleId{info.GetRoleIdBySensorIdx(instanceId)},
                                .devices = *devices};
    }
    const RoleIdDesc* const device = self.find(table, instanceId);
    if (device == nullptr || device->roleId < tables::camera_role::kFirstLogicalRole) {
        return std::nullopt;
    }
    return ResolvedInstance{.role = tables::RoleId{device->roleId}, .devices = *devices};
}
