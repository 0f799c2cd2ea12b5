#pragma once

#include <map>
#include <vector>

#include "tables/CameraDevices.h"
#include "tables/CameraModules.h"

using RoleIdDescMap = std::map<int, RoleIdDesc>;
using MemberRolesMap = std::map<int, std::vector<int>>;
using FuseIdDescriptorMap = std::map<int, FuseIdDescriptor>;
using QRCodeMap = std::map<int, std::map<int, QRCodeDescriptor>>;
using NameMap = std::map<int, const char*>;

/// The maps that each `CameraPlatformInfoZelvan` starts with, by role id (maker names: by module maker id).
NameMap MakeRoleNames();
FuseIdDescriptorMap MakeFuseIdDescriptors();
QRCodeMap MakeQRCodeDescriptors();  ///< role id, then module maker id
NameMap MakeSensorInfoProperties();
NameMap MakeAFInfoProperties();
NameMap MakeMakerNames();
