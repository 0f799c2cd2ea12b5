#pragma once

#include <optional>

#include "platforminfo/CameraRoleTables.h"
#include "platforminfo/NamedTable.h"
#include "platforminfo/Operation.h"
#include "tables/Numberings.h"

class CameraPlatformInfoZelvan;

/// An instance and the list that knows it.
struct ResolvedInstance {
    tables::RoleId role;
    const NSCam::ILogicalDeviceList& devices;
};

/// Role of an instance; no value when it cannot be resolved. A multi-sensor device must carry a logical role,
/// and fails without a line of its own where it carries another; the role of a single sensor is taken as it
/// comes, -1 included.
/// @param table the devices of this phone.
std::optional<ResolvedInstance> ResolveRole(const Operation& self, CameraPlatformInfoZelvan& info,
                                            const NamedTable<RoleIdDesc>& table, int instanceId);
