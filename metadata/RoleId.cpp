#include <cstdint>
#include <optional>

#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "platforminfo/RoleResolution.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;

int CameraPlatformInfoZelvan::MetadataUpdateRoleId(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    const std::optional<ResolvedInstance> instance = ResolveRole(self, *this, DeviceId2RoleId, instanceId);
    if (!instance) {
        return -1;
    }
    const int roleId = Number(instance->role);
    LOGI(self, " MetadataUpdateRoleId, instanceId:%d roleId:%d", instanceId, roleId);
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_ROLEID, {roleId}));
    if (const auto members = RoleId2MemberRoleIds.find(roleId); members != RoleId2MemberRoleIds.end()) {
        self.update(meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_MEMBER_ROLEIDS, members->second));
    }
    return 0;
}
