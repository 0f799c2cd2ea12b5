#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// A capability list of the video features. Its numbers are theirs and are published as they stand.
using CapabilityList = std::span<const std::int32_t>;

constexpr std::array<std::int32_t, 8> kFullStabilization = {8, 30, 6, 60, 6, 30, 5, 30};
constexpr std::array<std::int32_t, 4> kBasicStabilization = {6, 30, 5, 30};
constexpr std::array<std::int32_t, 2> kVNQuality = {6, 24};
constexpr std::array<std::int32_t, 6> kVideoTrackAFQuality = {8, 30, 6, 30, 5, 30};

constexpr std::array kFullStabilizationRoles = {camera_role::kBackMain, camera_role::kFrontMain,
                                                camera_role::kBackTele, camera_role::kBackUltra,
                                                camera_role::kFrontAux};
constexpr std::array kVNQualityRoles = {camera_role::kBackMain};
/// Role 3 is none of this phone's.
constexpr std::array kVideoTrackAFRoles = {camera_role::kBackMain, 3};

template <typename Roles>
bool Contains(const Roles& roles, int roleId) {
    return std::find(roles.begin(), roles.end(), roleId) != roles.end();
}

CapabilityList StabilizationOf(int roleId) {
    return Contains(kFullStabilizationRoles, roleId) ? CapabilityList(kFullStabilization)
                                                     : CapabilityList(kBasicStabilization);
}

/// Stores the list unless the metadata holds one already.
void FillGap(const Operation& self, IMetadata& meta, IMetadata::Tag_t tag, CapabilityList values) {
    if (meta.entryFor(tag).isEmpty()) {
        self.update(meta, MakeEntry<std::int32_t>(tag, values));
    }
}

}  // namespace

int CameraPlatformInfoZelvan::MetadataUpdateHDHDR(IMetadata& meta, int /*instanceId*/) {
    const Operation self(__func__);
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_HDHDR_SUPPORTED, {1}));
    // 1 on every path, a refused update included.
    return 1;
}

int CameraPlatformInfoZelvan::MetedataUpdateVideoStabilizationData(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, instanceId);
    if (device == nullptr) {
        return -1;
    }
    // The lists are made of pairs; one that is not would be worse than none.
    const CapabilityList values = StabilizationOf(device->roleId);
    if (!values.empty() && values.size() % 2 == 0) {
        FillGap(self, meta, ZELVAN_VIDEO_STABILIZATION_DATA, values);
    }
    if (meta.entryFor(ZELVAN_VIDEO_STABILIZATION_SUPPORTED).isEmpty()) {
        self.update(meta, MakeEntry<unsigned char>(ZELVAN_VIDEO_STABILIZATION_SUPPORTED, {1}));
    }
    return 0;
}

int CameraPlatformInfoZelvan::MetedataUpdateVNQualityData(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, instanceId);
    if (device == nullptr) {
        return -1;
    }
    LOGI(self, "MetedataUpdateVNQualityData roleId = %d", device->roleId);
    if (Contains(kVNQualityRoles, device->roleId)) {
        FillGap(self, meta, ZELVAN_VN_QUALITY_DATA, kVNQuality);
    }
    return 0;
}

int CameraPlatformInfoZelvan::MetedataUpdateVideoTrackAFQualityData(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, instanceId);
    if (device == nullptr) {
        return -1;
    }
    LOGI(self, "MetedataUpdateVideoTrackAFQualityData, roleId = %d", device->roleId);
    if (Contains(kVideoTrackAFRoles, device->roleId)) {
        FillGap(self, meta, ZELVAN_VIDEO_TRACK_AF_QUALITY_DATA, kVideoTrackAFQuality);
    }
    return 0;
}
