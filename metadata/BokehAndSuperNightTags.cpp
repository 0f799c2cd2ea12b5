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
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// Width and height of a 4:3, a 16:9 and a 20:9 picture. Sets are named after the first, the largest.
using SizeSet = std::array<std::int32_t, 6>;

constexpr SizeSet kTwelveMegapixels = {4096, 3072, 4096, 2304, 4000, 1800};
constexpr SizeSet kSixMegapixels = {2880, 2160, 2816, 1584, 2880, 1296};
constexpr SizeSet kNineMegapixels = {3424, 2568, 3328, 1872, 3200, 1440};
constexpr SizeSet kEightMegapixels = {3280, 2464, 3200, 1800, 3280, 1476};

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
     .masterSizes = kTwelveMegapixels,
     .slaveSizes = kSixMegapixels,
     .hasMdMode = true},
    {.roleId = camera_role::kBokeh,
     .tags = kWideBokehInfoTags,
     .masterSizes = kTwelveMegapixels,
     .slaveSizes = kNineMegapixels,
     .hasMdMode = true},
    {.roleId = camera_role::kFrontBokeh,
     .tags = kBokehInfoTags,
     .masterSizes = kEightMegapixels,
     .slaveSizes = kEightMegapixels,
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

/// Chips of a sensor pair, as module information texts name them. The device table is asked with the members'
/// ids, and gains a row for one that it lacks.
std::string ChipPair(NamedTable<RoleIdDesc>& devices, int master, int slave) {
    const std::string chip = TextOf(devices.findOrAdd(master).sensorNames);
    return chip + "_" + TextOf(devices.findOrAdd(slave).sensorNames);
}

/// What the module information of a pair starts with; null for a pair that has none.
const char* ModuleInfoPrefix(const std::string& pair) {
    const auto found = std::find_if(kModuleInfoPairs.begin(), kModuleInfoPairs.end(),
                                    [&pair](const ModuleInfoPair& row) { return row.sensors == pair; });
    return found == kModuleInfoPairs.end() ? nullptr : found->prefix;
}

std::string MakerName(const NameMap& makers, int makerId) {
    const auto found = makers.find(makerId);
    return found == makers.end() ? "none" : found->second;
}

std::string UpperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return text;
}

void UpdateSizes(const Operation& self, IMetadata& meta, const BokehRole& role) {
    self.update(meta, MakeEntry<std::int32_t>(ZELVAN_BOKEHVENDORID_SUPPORTED, {0}), kVendorIdRefused);
    self.update(meta, MakeEntry<std::int32_t>(role.tags.masterOptSize, role.masterSizes), kSensorSizeRefused);
    self.update(meta, MakeEntry<std::int32_t>(role.tags.optPictureSize, role.masterSizes),
                kPictureSizeRefused);
    self.update(meta, MakeEntry<std::int32_t>(role.tags.slaveOptSize, role.slaveSizes), kSensorSizeRefused);
}

}  // namespace

int CameraPlatformInfoZelvan::UpdateBokehOptimalSizeInfo(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const NSCam::ILogicalDeviceList* const devices = self.logicalDevices();
    if (devices == nullptr) {
        return -1;
    }
    const RoleIdDesc* const device = self.find(DeviceId2RoleId, instanceId);
    if (device == nullptr) {
        return -1;
    }
    if (const BokehRole* const role = FindBokehRole(device->roleId); role != nullptr) {
        if (const std::vector<int> sensorIds = devices->sensorIds(instanceId); sensorIds.size() >= 2) {
            const int master = sensorIds[0];
            const int slave = sensorIds[1];
            LOGI(self, "instanceId = %zu mastCid: %d, slaveCid:%d , role: %d",
                 static_cast<std::size_t>(instanceId), master, slave, role->roleId);
            self.update(
                meta,
                MakeEntry<unsigned char>(role->tags.masterCameraId, {static_cast<unsigned char>(master)}),
                kCameraIdRefused);
            self.update(
                meta, MakeEntry<unsigned char>(role->tags.slaveCameraId, {static_cast<unsigned char>(slave)}),
                kCameraIdRefused);

            const std::string pair = ChipPair(DeviceId2RoleId, master, slave);
            if (const char* const prefix = ModuleInfoPrefix(pair); prefix != nullptr) {
                mModuleInfo = prefix;
            }
            // Never cleared: a text of an earlier device stays in force and grows.
            if (!mModuleInfo.empty()) {
                const int masterRole = GetRoleIdBySensorIdx(master);
                const int vendorId = GetVendorId(masterRole);
                LOGI(self, "roleID is %d, vendorID is: %d", masterRole, vendorId);
                mModuleInfo += UpperCase(pair + "_" + MakerName(mMakerNames, vendorId));
                LOGD(self, "module info is [%s]", mModuleInfo.c_str());
            }
        }
        UpdateSizes(self, meta, *role);
        if (role->hasMdMode) {
            const unsigned char modes = IsThemeNoTesmor() ? 0 : kMdModes;
            self.update(meta, MakeEntry<unsigned char>(ZELVAN_BOKEH_MDMODE_SUPPORTED, {modes}),
                        kMdModeRefused);
        }
    }
    const int result = self.update(
        meta, MakeEntry<std::int32_t>(ZELVAN_SUPERNIGHT_SUPPORT_MASK, {kSuperNightMask}), kSuperNightRefused);
    LOGI(self, "exit");
    return result;
}
