#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "tables/CameraRoles.h"
#include "tables/EepromLayouts.h"
#include "tables/ModuleMakers.h"

/// Where a module keeps its sensor's fuse id, and which properties receive it.
struct FuseIdDescriptor {
    int fuseIdOffset;  ///< in the EEPROM image, bytes
    int fuseIdLength;  ///< bytes, at most tables::kLongestModuleFuseId
    const char* propName;
    const char* propNameLong;
};

/// Where a module of one maker keeps its QR code. A row that a map subscript made is all zeros.
struct QRCodeDescriptor {
    int qrCodeOffset;  ///< in the EEPROM image, bytes
    int qrCodeLength;  ///< bytes, at most tables::kLongestModuleQRCode
    int flagOffset;    ///< the byte before the code; 1: the code is valid
};

namespace tables {

/// Bytes of the longest fuse id and of the longest QR code that a fuse id property has room for.
inline constexpr int kLongestModuleFuseId = 16;
inline constexpr int kLongestModuleQRCode = 14;

/// A role that a module can have: its name, and the properties that its identity and its focus points go to.
struct ModuleRole {
    int roleId;
    const char* name;
    const char* sensorInfoProperty;
    const char* afInfoProperty;
};

inline constexpr std::array<ModuleRole, 9> kModuleRoles = {{
    {camera_role::kBackMain, "back_main", "vendor.camera.sensor.w.sensorInfo",
     "persist.vendor.camera.sensor.w.afInfo"},
    {camera_role::kFrontMain, "front_main", "vendor.camera.sensor.f.sensorInfo",
     "persist.vendor.camera.sensor.f.afInfo"},
    {camera_role::kBackTele, "back_tele", "vendor.camera.sensor.t.sensorInfo",
     "persist.vendor.camera.sensor.t.afInfo"},
    {camera_role::kBackUltra, "back_ultra", "vendor.camera.sensor.u.sensorInfo",
     "persist.vendor.camera.sensor.u.afInfo"},
    {camera_role::kBackMacro, "back_macro", "vendor.camera.sensor.m.sensorInfo",
     "persist.vendor.camera.sensor.m.afInfo"},
    {camera_role::kBackTel4x, "back_tel4x", "vendor.camera.sensor.t4x.sensorInfo",
     "persist.vendor.camera.sensor.t4x.afInfo"},
    {camera_role::kBackMacro2x, "back_macro2x", "vendor.camera.sensor.m2x.sensorInfo",
     "persist.vendor.camera.sensor.m2x.afInfo"},
    {camera_role::kBackDepth, "back_depth", "vendor.camera.sensor.d.sensorInfo",
     "persist.vendor.camera.sensor.d.afInfo"},
    {camera_role::kFrontAux, "front_aux", "vendor.camera.sensor.faux.sensorInfo",
     "persist.vendor.camera.sensor.faux.afInfo"},
}};

/// The fuse id of a role's module.
struct FuseIdOfRole {
    int roleId;
    FuseIdDescriptor fuseId;
};

/// Only the roles that this phone has a module for.
inline constexpr std::array<FuseIdOfRole, 4> kFuseIds = {{
    {camera_role::kBackMain,
     {16, 12, "vendor.camera.sensor.w.fuseID", "vendor.camera.sensor.rearMain.fuseID"}},
    {camera_role::kFrontMain,
     {16, 11, "vendor.camera.sensor.f.fuseID", "vendor.camera.sensor.frontMain.fuseID"}},
    {camera_role::kBackTele,
     {16, 16, "vendor.camera.sensor.t.fuseID", "vendor.camera.sensor.rearTele.fuseID"}},
    {camera_role::kBackUltra,
     {16, 16, "vendor.camera.sensor.u.fuseID", "vendor.camera.sensor.rearUltra.fuseID"}},
}};

/// The QR code of a role's module, where its maker burns one.
struct QRCodeOfRole {
    int roleId;
    int makerId;
    QRCodeDescriptor qrCode;
};

inline constexpr std::array<QRCodeOfRole, 4> kQRCodes = {{
    {camera_role::kBackMain, maker::kSemco, {.qrCodeOffset = 16355, .qrCodeLength = 14, .flagOffset = 16354}},
    {camera_role::kFrontMain, maker::kAac, {.qrCodeOffset = 8082, .qrCodeLength = 14, .flagOffset = 8081}},
    {camera_role::kBackTele, maker::kSunny, {.qrCodeOffset = 16355, .qrCodeLength = 14, .flagOffset = 16354}},
    {camera_role::kBackUltra, maker::kOfilm, {.qrCodeOffset = 8082, .qrCodeLength = 14, .flagOffset = 8081}},
}};

// The fuse id property shows both whole.
static_assert(std::all_of(kFuseIds.begin(), kFuseIds.end(), [](const FuseIdOfRole& row) {
    return row.fuseId.fuseIdLength >= 0 && row.fuseId.fuseIdLength <= kLongestModuleFuseId &&
           IsInImage(row.fuseId.fuseIdOffset, row.fuseId.fuseIdLength);
}));
static_assert(std::all_of(kQRCodes.begin(), kQRCodes.end(), [](const QRCodeOfRole& row) {
    return row.qrCode.qrCodeLength >= 0 && row.qrCode.qrCodeLength <= kLongestModuleQRCode &&
           IsInImage(row.qrCode.qrCodeOffset, row.qrCode.qrCodeLength) && IsInImage(row.qrCode.flagOffset, 1);
}));

/// The role with this id; null where no module has it.
constexpr const ModuleRole* FindModuleRole(int roleId) {
    const auto* const found = std::find_if(kModuleRoles.begin(), kModuleRoles.end(),
                                           [=](const ModuleRole& row) { return row.roleId == roleId; });
    return found == kModuleRoles.end() ? nullptr : found;
}

}  // namespace tables
