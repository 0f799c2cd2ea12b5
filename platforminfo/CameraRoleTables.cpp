#include "platforminfo/CameraRoleTables.h"

#include <span>

#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "tables/CameraDevices.h"
#include "tables/CameraModules.h"
#include "tables/ModuleMakers.h"

namespace {

/// A map of two columns of a table.
template <typename Map, typename Rows, typename Key, typename Value>
Map MapOf(const Rows& rows, Key key, Value value) {
    Map map;
    for (const auto& row : rows) {
        map[row.*key] = row.*value;
    }
    return map;
}

RoleIdDescMap MakeDevices(std::span<const tables::CameraDevice> devices) {
    return MapOf<RoleIdDescMap>(devices, &tables::CameraDevice::deviceId, &tables::CameraDevice::camera);
}

MemberRolesMap MakeMemberRoles() {
    MemberRolesMap map;
    for (const auto& [roleId, members] : tables::kMemberRoles) {
        map[roleId].assign(members.begin(), members.end());
    }
    return map;
}

NameMap MakeRoleTexts(const char* tables::ModuleRole::*text) {
    return MapOf<NameMap>(tables::kModuleRoles, &tables::ModuleRole::roleId, text);
}

}  // namespace

NamedTable<RoleIdDesc> CameraPlatformInfoZelvan::DeviceId2RoleId{"DeviceId2RoleId",
                                                                 MakeDevices(tables::kCameraDevices)};
const RoleIdDescMap CameraPlatformInfoZelvan::PhysicalDeviceId2RoleId =
    MakeDevices(tables::kPhysicalCameraDevices);
const MemberRolesMap CameraPlatformInfoZelvan::RoleId2MemberRoleIds = MakeMemberRoles();

NameMap MakeRoleNames() {
    return MakeRoleTexts(&tables::ModuleRole::name);
}

FuseIdDescriptorMap MakeFuseIdDescriptors() {
    return MapOf<FuseIdDescriptorMap>(tables::kFuseIds, &tables::FuseIdOfRole::roleId,
                                      &tables::FuseIdOfRole::fuseId);
}

QRCodeMap MakeQRCodeDescriptors() {
    QRCodeMap map;
    for (const auto& [roleId, makerId, qrCode] : tables::kQRCodes) {
        map[roleId][makerId] = qrCode;
    }
    return map;
}

NameMap MakeSensorInfoProperties() {
    return MakeRoleTexts(&tables::ModuleRole::sensorInfoProperty);
}

NameMap MakeAFInfoProperties() {
    return MakeRoleTexts(&tables::ModuleRole::afInfoProperty);
}

NameMap MakeMakerNames() {
    return MapOf<NameMap>(tables::kModuleMakers, &tables::ModuleMaker::makerId, &tables::ModuleMaker::name);
}
