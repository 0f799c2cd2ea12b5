#pragma once

#include <map>
#include <vector>

#include "tables/CameraRoles.h"

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
