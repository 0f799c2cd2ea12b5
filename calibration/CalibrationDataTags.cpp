#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/SatPayload.h"
#include "platform/ILogicalDeviceList.h"
#include "platform/IMetadata.h"
#include "platform/ThirdCalibration.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Entry.h"
#include "platforminfo/Operation.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedTags.h"

using NSCam::IMetadata;
namespace camera_role = tables::camera_role;

namespace {

/// Whether the pair is made of these two roles, in either order.
bool IsPairOf(const DualCameraCalDataInfo& pair, int first, int second) {
    return (pair.masterCameraRole == first && pair.slaveCameraRole == second) ||
           (pair.masterCameraRole == second && pair.slaveCameraRole == first);
}

std::vector<std::string_view> SplitAtSemicolons(std::string_view text) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(';');
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

/// Role of the single-sensor device with this chip, or -1.
int RoleOfChip(const RoleIdDescMap& devices, std::string_view chip) {
    const auto found = std::find_if(devices.begin(), devices.end(), [chip](const auto& row) {
        return row.second.sensorNames != nullptr && row.second.sensorNames == chip;
    });
    return found == devices.end() ? -1 : found->second.roleId;
}

/// Only names of two components or more can be matched.
bool HasTwoUnderscores(const std::string& name) {
    return std::count(name.begin(), name.end(), '_') >= 2;
}

/// The block of a pair as it stands in its dump file.
using Block = std::vector<unsigned char>;

/// @return the result of the update.
int PublishSatBlock(const Operation& self, IMetadata& meta, const DualCameraCalDataInfo& pair,
                    const Block& block) {
    const formats::SatPayloadHeader header = formats::MakeSatPayloadHeader(pair);
    IMetadata::Memory payload(&header, sizeof(header));
    payload.append(IMetadata::Memory(block.data(), block.size()));
    const int error = self.update(meta, MakeEntry<IMetadata::Memory>(ZELVAN_SAT_CALIBRATION_DATA, {payload}));
    if (error == 0) {
        // The labels are shifted against the values: a low byte of either header word and the block's first.
        LOGD(self,
             "masterCameraRole:%d, slaveCameraRole:%d, dualCamDataLength:%d, pType:%d, pSize:%d, "
             "dualdataArray.size:%d",
             pair.masterCameraRole, pair.slaveCameraRole, pair.length, static_cast<int>(header.roles & 0xFFU),
             static_cast<int>(header.length & 0xFFU), block.empty() ? 0 : static_cast<int>(block[0]));
    }
    return error;
}

/// @param memory the same bytes.
/// @param roleName as log lines name the device's role.
/// @return the result of the update.
int PublishBokehBlock(const Operation& self, IMetadata& meta, const DualCameraCalDataInfo& pair,
                      const Block& block, const IMetadata::Memory& memory, const char* roleName) {
    const int error =
        self.update(meta, MakeEntry<IMetadata::Memory>(ZELVAN_BOKEH_CALIBRATION_DATA, {memory}));
    if (error == 0) {
        LOGD(self, "%s masterCameraRole:%d, slaveCameraRole:%d, length:%d, calibData:%p", roleName,
             pair.masterCameraRole, pair.slaveCameraRole, pair.length,
             static_cast<const void*>(block.data()));
    }
    return error;
}

}  // namespace

int CameraPlatformInfoZelvan::GetDualCameraCalDataInfo(RoleIdDesc& desc, DualCameraCalDataInfo& info) {
    const Operation self(__func__);
    LOGI(self, "enter");
    LOGD(self, "split dual camera sensorName");
    const std::vector<std::string_view> chips =
        SplitAtSemicolons(desc.sensorNames == nullptr ? "" : desc.sensorNames);
    LOGD(self, "map sensorName to roleId");
    const int first = RoleOfChip(DeviceId2RoleId, chips[0]);
    const int second = chips.size() < 2 ? -1 : RoleOfChip(DeviceId2RoleId, chips[1]);
    LOGD(self, "map roldId to dualCameraCalibPath");
    for (const DualCameraCalDataInfo& pair : tables::kDualCameraPairs) {
        if (IsPairOf(pair, first, second)) {
            info = pair;
        }
    }
    return 0;
}

int CameraPlatformInfoZelvan::MetedataUpdateCalibData(IMetadata& meta, int instanceId) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const NSCam::ILogicalDeviceList* const devices = self.logicalDevices("Cannot get sensor device list");
    if (devices == nullptr) {
        return -1;
    }
    if ((devices->isMultiSensorDevice(instanceId) & 1U) == 0) {
        LOGI(self, "exit");
        return 0;
    }
    if (self.find(DeviceId2RoleId, instanceId) == nullptr) {
        return -1;
    }
    const std::string name = devices->deviceName(instanceId);
    const auto match = std::find_if(DeviceId2RoleId.begin(), DeviceId2RoleId.end(), [&](const auto& row) {
        return HasTwoUnderscores(name) && row.second.drvName != nullptr &&
               matchDrvNameToPlatformDrvName(row.second.drvName, name.c_str());
    });
    if (match == DeviceId2RoleId.end() || match->first == -1) {
        LOGE(self, "Cannot find match device!");
        return -1;
    }
    LOGI(self, "match logical id %d for dual cam", match->first);

    DualCameraCalDataInfo pair{};
    GetDualCameraCalDataInfo(match->second, pair);
    Block block(static_cast<std::size_t>(pair.length));
    unsigned char* bytes = block.data();
    if (!GetCalibDataFromDumpFile(pair.dumpPath, bytes, pair.length)) {
        LOGE(self, "read dual camera calib data failded!");
        return -1;
    }

    IMetadata::Memory memory(block.data(), block.size());
    int error = 0;
    switch (match->second.roleId) {
        case camera_role::kSat:
            error = PublishSatBlock(self, meta, pair, block);
            break;
        case camera_role::kTeleBokeh:
            ThirdCalibration::set3rdCalibration(memory.editArray(), pair.length);
            error = PublishBokehBlock(self, meta, pair, block, memory, "RoleIdRearBokeh");
            break;
        case camera_role::kFrontBokeh:
            error = PublishBokehBlock(self, meta, pair, block, memory, "RoleIdFrontBokeh");
            break;
        default:
            break;
    }
    if (error != 0) {
        return -1;
    }
    LOGI(self, "exit");
    return 0;
}
