#include <cstdint>
#include <optional>

#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/TagWriter.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;

int CameraPlatformInfoZelvan::MetadataUpdateRoleId(IMetadata& meta, int instanceId) {
    const std::optional<ResolvedInstance> instance = ResolveRole(__func__, instanceId);
    if (!instance) {
        return -1;
    }
    LOGI(" MetadataUpdateRoleId, instanceId:%d roleId:%d", instanceId, instance->roleId);
    UpdateTag(__func__, meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_ROLEID, {instance->roleId}));
    if (const auto members = RoleId2MemberRoleIds.find(instance->roleId);
        members != RoleId2MemberRoleIds.end()) {
        UpdateTag(__func__, meta, MakeEntry<std::int32_t>(ZELVAN_CAMERA_MEMBER_ROLEIDS, members->second));
    }
    return 0;
}
