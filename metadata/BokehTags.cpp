#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/Theme.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Log.h"
#include "platforminfo/PlatformAccess.h"
#include "platforminfo/TagWriter.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// Width and height of a 4:3, a 16:9 and a 20:9 picture.
using SizeSet = std::array<std::int32_t, 6>;

constexpr SizeSet kSetA = {4096, 3072, 4096, 2304, 4000, 1800};
constexpr SizeSet kSetB = {2880, 2160, 2816, 1584, 2880, 1296};
constexpr SizeSet kSetC = {3424, 2568, 3328, 1872, 3200, 1440};
constexpr SizeSet kSetD = {3280, 2464, 3200, 1800, 3280, 1476};

/// The numbers of the tags that describe a bokeh pair.
struct BokehInfoTags {
    IMetadata::Tag_t masterCameraId;
    IMetadata::Tag_t slaveCameraId;
    IMetadata::Tag_t masterOptSize;
    IMetadata::Tag_t slaveOptSize;
    IMetadata::Tag_t optPictureSize;
};

constexpr BokehInfoTags kBokehInfoTags = {
    .masterCameraId = ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID,
    .slaveCameraId = ZELVAN_CAMERA_BOKEHINFO_SLAVECAMERAID,
    .masterOptSize = ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE,
    .slaveOptSize = ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE,
    .optPictureSize = ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE,
};

constexpr BokehInfoTags kWideBokehInfoTags = {
    .masterCameraId = tables::wide_bokeh::ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID,
    .slaveCameraId = tables::wide_bokeh::ZELVAN_CAMERA_BOKEHINFO_SLAVECAMERAID,
    .masterOptSize = tables::wide_bokeh::ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE,
    .slaveOptSize = tables::wide_bokeh::ZELVAN_CAMERA_BOKEHINFO_SLAVEOPTSIZE,
    .optPictureSize = tables::wide_bokeh::ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE,
};

/// What a bokeh role publishes. Master and finished picture share their sizes.
struct BokehRole {
    int roleId;
    BokehInfoTags tags;
    SizeSet masterSizes;
    SizeSet slaveSizes;
    bool hasMdMode;
};

constexpr std::array<BokehRole, 3> kBokehRoles = {{
    {.roleId = camera_role::kTeleBokeh,
     .tags = kBokehInfoTags,
     .masterSizes = kSetA,
     .slaveSizes = kSetB,
     .hasMdMode = true},
    {.roleId = camera_role::kBokeh,
     .tags = kWideBokehInfoTags,
     .masterSizes = kSetA,
     .slaveSizes = kSetC,
     .hasMdMode = true},
    {.roleId = camera_role::kFrontBokeh,
     .tags = kBokehInfoTags,
     .masterSizes = kSetD,
     .slaveSizes = kSetD,
     .hasMdMode = false},
}};

// Several tags share a text when their update is refused.
constexpr UpdateFailure kCameraIdRefused = {
    .lead = "ZV IMetadata::update,tag ZELVAN_CAMERA_BOKEHINFO_MASTERCAMERAID"};
constexpr UpdateFailure kSensorSizeRefused = {
    .lead = "ZV IMetadata::update,tag ZELVAN_CAMERA_BOKEHINFO_MASTEROPTSIZE"};
constexpr UpdateFailure kPictureSizeRefused = {
    .lead = "ZV IMetadata::update,tag ZELVAN_CAMERA_BOKEHINFO_OPTPICTURESIZE"};
constexpr UpdateFailure kVendorIdRefused = {.lead =
                                                "ZV IMetadata::update,tag ZELVAN_BOKEHVENDORID_SUPPORTED"};
constexpr UpdateFailure kMdModeRefused = {.lead = "ZV IMetadata::update,tag ZELVAN_BOKEH_MDMODE_SUPPORTED"};
constexpr UpdateFailure kSuperNightRefused = {
    .lead = "ZV IMetadata::update(), tag ZELVAN_SUPERNIGHT_SUPPORT_MASK "};

constexpr unsigned char kMdModes = 3;
constexpr std::int32_t kSuperNightMask = 0x00040407;

/// Sensor pairs that carry a module information text, and what it starts with.
struct ModuleInfoPair {
    std::string_view sensors;
    const char* prefix;
};

constexpr std::array<ModuleInfoPair, 2> kModuleInfoPairs = {{
    {.sensors = "s5khm2_s5k4h7", .prefix = "s1_"},
    {.sensors = "imx582_s5k4h7", .prefix = "s2_"},
}};

const BokehRole* FindBokehRole(int roleId) {
    const auto found = std::find_if(kBokehRoles.begin(), kBokehRoles.end(),
                                    [roleId](const BokehRole& row) { return row.roleId == roleId; });
    return found == kBokehRoles.end() ? nullptr : found;
}

std::string TextOf(const char* text) {
    return text == nullptr ? "" : text;
}

std::string UpperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return text;
}

void UpdateSizes(const char* function, IMetadata& meta, const BokehRole& role) {
    UpdateTag(function, meta, MakeEntry<std::int32_t>(ZELVAN_BOKEHVENDORID_SUPPORTED, {0}), kVendorIdRefused);
    UpdateTag(function, meta, MakeEntry<std::int32_t>(role.tags.masterOptSize, role.masterSizes),
              kSensorSizeRefused);
    UpdateTag(function, meta, MakeEntry<std::int32_t>(role.tags.optPictureSize, role.masterSizes),
              kPictureSizeRefused);
    UpdateTag(function, meta, MakeEntry<std::int32_t>(role.tags.slaveOptSize, role.slaveSizes),
              kSensorSizeRefused);
}

}  // namespace

void CameraPlatformInfoZelvan::UpdateModuleInfo(const char* function, int master, int slave) {
    // The device table is asked with sensor indices here, and gains a row for an index that it lacks.
    std::string pair = TextOf(DeviceId2RoleId[master].sensorNames);
    pair += "_" + TextOf(DeviceId2RoleId[slave].sensorNames);
    for (const ModuleInfoPair& row : kModuleInfoPairs) {
        if (row.sensors == pair) {
            mModuleInfo = row.prefix;
        }
    }
    // Never cleared: a text of an earlier device stays in force and grows.
    if (mModuleInfo.empty()) {
        return;
    }
    const int roleId = GetRoleIdBySensorIdx(master);
    const int vendorId = GetVendorId(roleId);
    LOG_AS(ANDROID_LOG_INFO, function, "roleID is %d, vendorID is: %d", roleId, vendorId);
    const auto maker = mMakerNames.find(vendorId);
    pair += "_";
    pair += maker == mMakerNames.end() ? "none" : maker->second;
    mModuleInfo += UpperCase(pair);
    LOG_AS(ANDROID_LOG_DEBUG, function, "module info is [%s]", mModuleInfo.c_str());
}

int CameraPlatformInfoZelvan::UpdateBokehOptimalSizeInfo(IMetadata& meta, int instanceId) {
    LOGI("enter");
    const NSCam::ILogicalDeviceList* const devices = GetLogicalDeviceList(__func__);
    if (devices == nullptr) {
        return -1;
    }
    const RoleIdDesc* const device = FindDevice(__func__, instanceId);
    if (device == nullptr) {
        return -1;
    }
    if (const BokehRole* const role = FindBokehRole(device->roleId); role != nullptr) {
        if (const std::vector<int> sensorIds = devices->sensorIds(instanceId); sensorIds.size() >= 2) {
            const int master = sensorIds[0];
            const int slave = sensorIds[1];
            LOGI("instanceId = %zu mastCid: %d, slaveCid:%d , role: %d", static_cast<std::size_t>(instanceId),
                 master, slave, role->roleId);
            UpdateTag(
                __func__, meta,
                MakeEntry<unsigned char>(role->tags.masterCameraId, {static_cast<unsigned char>(master)}),
                kCameraIdRefused);
            UpdateTag(__func__, meta,
                      MakeEntry<unsigned char>(role->tags.slaveCameraId, {static_cast<unsigned char>(slave)}),
                      kCameraIdRefused);
            UpdateModuleInfo(__func__, master, slave);
        }
        UpdateSizes(__func__, meta, *role);
        if (role->hasMdMode) {
            const unsigned char modes = IsThemeNoTesmor() ? 0 : kMdModes;
            UpdateTag(__func__, meta, MakeEntry<unsigned char>(ZELVAN_BOKEH_MDMODE_SUPPORTED, {modes}),
                      kMdModeRefused);
        }
    }
    const int result =
        UpdateTag(__func__, meta, MakeEntry<std::int32_t>(ZELVAN_SUPERNIGHT_SUPPORT_MASK, {kSuperNightMask}),
                  kSuperNightRefused);
    LOGI("exit");
    return result;
}
