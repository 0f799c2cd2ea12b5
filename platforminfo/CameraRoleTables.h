#pragma once

#include <map>
#include <vector>

/// Camera role ids: what a camera is on this phone, whatever index the platform gives it.
namespace camera_role {

inline constexpr int kBackMain = 0;
inline constexpr int kFrontMain = 1;
inline constexpr int kBackTele = 20;
inline constexpr int kBackUltra = 21;
inline constexpr int kBackMacro = 22;
inline constexpr int kBackTel4x = 23;
inline constexpr int kBackMacro2x = 24;
inline constexpr int kBackDepth = 25;
inline constexpr int kFrontAux = 40;

/// Roles from here on belong to logical devices: no module, no EEPROM, no properties.
inline constexpr int kFirstLogicalRole = 60;
inline constexpr int kSat = 60;        ///< smooth zoom over wide, ultra-wide and tele
inline constexpr int kTeleBokeh = 61;  ///< portrait with the 2x tele as master
inline constexpr int kBokeh = 63;      ///< portrait with the wide as master
inline constexpr int kThreePartSat = 64;
/// Further logical roles that updaters know; no device of this phone carries them.
inline constexpr int kSecondSat = 80;
inline constexpr int kFrontBokeh = 81;

}  // namespace camera_role

/// One camera device. A row that a map subscript made has role 0 and null texts.
struct RoleIdDesc {
    int roleId;
    const char* sensorNames;  ///< sensor chips, joined by ";", master first
    const char* drvName;      ///< the platform's name of the device
};

/// Where a module keeps its sensor's fuse id, and which properties receive it.
struct FuseIdDescriptor {
    int fuseIdOffset;  ///< in the EEPROM image, bytes
    int fuseIdLength;  ///< bytes, at most 16
    const char* propName;
    const char* propNameLong;
};

/// Where a module of one maker keeps its QR code. A row that a map subscript made is all zeros.
struct QRCodeDescriptor {
    int qrCodeOffset;  ///< in the EEPROM image, bytes
    int qrCodeLength;  ///< bytes, at most 14
    int flagOffset;    ///< the byte before the code; 1: the code is valid
};

using RoleIdDescMap = std::map<int, RoleIdDesc>;
using MemberRolesMap = std::map<int, std::vector<int>>;
using FuseIdDescriptorMap = std::map<int, FuseIdDescriptor>;
using QRCodeMap = std::map<int, std::map<int, QRCodeDescriptor>>;
using NameMap = std::map<int, const char*>;

/// The tables that each `CameraPlatformInfoZelvan` starts with, by role id (maker names: by module maker id).
NameMap MakeRoleNames();
FuseIdDescriptorMap MakeFuseIdDescriptors();
QRCodeMap MakeQRCodeDescriptors();  ///< role id, then module maker id
NameMap MakeSensorInfoProperties();
NameMap MakeAFInfoProperties();
NameMap MakeMakerNames();
