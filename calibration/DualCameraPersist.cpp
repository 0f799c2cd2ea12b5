#include <algorithm>
#include <cstddef>
#include <dirent.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calibration/calibrationdata.h"
#include "formats/FuseIdText.h"
#include "platform/DevicePath.h"
#include "platform/IHalSensorList.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/Operation.h"
#include "platforminfo/SensorWalk.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedFiles.h"

namespace {

using tables::kPersistFolder;

struct DirCloser {
    void operator()(DIR* dir) const { closedir(dir); }
};

/// The role that a fuse id of a file names; none where the file has no such fuse id.
std::optional<int> NamedRole(const std::string& fuseId, int role) {
    return fuseId.empty() ? std::nullopt : std::optional(role);
}

}  // namespace

bool CameraPlatformInfoZelvan::DualCameraDataFromPersist(DualCameraCalDataInfo& info) {
    const Operation self(__func__);
    LOGI(self, "enter");
    const std::vector<std::string> names = GetDualCameraPersistFiles(kPersistFolder);
    if (names.empty()) {
        LOGI(self, "no dual camera calibration data in persist");
        return false;
    }
    const auto match = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return MatchDualCameraPersistFile(kPersistFolder + name, info);
    });
    if (match != names.end()) {
        LOGI(self, "[master(%d):slave(%d)] match persistFile is %s", info.masterCameraRole,
             info.slaveCameraRole, match->c_str());
    }
    LOGI(self, "exit");
    return match != names.end();
}

std::vector<std::string> CameraPlatformInfoZelvan::GetDualCameraPersistFiles(const char* dir) {
    const Operation self(__func__);
    LOGI(self, "enter");
    std::vector<std::string> names;
    if (const std::unique_ptr<DIR, DirCloser> folder(dir == nullptr ? nullptr
                                                                    : opendir(DevicePath(dir).c_str()));
        folder != nullptr) {
        while (const dirent* const entry = readdir(folder.get())) {
            if (tables::IsDualCalibrationFileName(entry->d_name)) {
                names.emplace_back(entry->d_name);
            }
        }
    }
    LOGI(self, "exit");
    return names;
}

bool CameraPlatformInfoZelvan::MatchDualCameraPersistFile(const std::string& path,
                                                          DualCameraCalDataInfo& info) {
    const Operation self(__func__);
    LOGI(self, "enter");
    CalibrationData file;
    if (!file.parse(path.c_str())) {
        return false;
    }
    bool matched = false;
    const int master = GetRoleIdByFuseId(file.getMasterFuseId());
    const int slave = GetRoleIdByFuseId(file.getSlaveFuseId());
    if (tables::NamePair(NamedRole(file.getMasterFuseId(), master), NamedRole(file.getSlaveFuseId(), slave),
                         info)) {
        matched = true;
        // A file that belongs to the pair counts even when it yields no block; then nothing is dumped.
        if (std::string block; info.length < 0) {
            matched = false;
        } else if (file.getData(block)) {
            block.resize(static_cast<std::size_t>(info.length), '\0');
            matched = DualCameraDataDumpFile(info.dumpPath, reinterpret_cast<unsigned char*>(block.data()),
                                             info.length);
            LOGI(self, "dataCamera(%d)'s persist data dump ==> %s", info.dataCamera, OrNull(info.dumpPath));
        }
    }
    LOGI(self, "exit : ret = %d", matched ? 1 : 0);
    return matched;
}

int CameraPlatformInfoZelvan::GetRoleIdByFuseId(const std::string& fuseIdHex) {
    const Operation self(__func__);
    const auto find = [&] {
        const NSCam::IHalSensorList* const sensors = self.sensorList();
        if (sensors == nullptr) {
            return -1;
        }
        for (SensorWalk sensor(*this, *sensors); sensor.next();) {
            const int roleId = Number(sensor.role());
            const FuseIdDescriptor* const descriptor = self.find(mRoleId2FuseIdDescriptorsMap, roleId);
            if (descriptor == nullptr) {
                return -1;
            }
            char value[PROPERTY_VALUE_MAX];
            property_get(descriptor->propName, value, nullptr);
            const std::optional<formats::FuseIdField> fuseId = formats::TryParseFuseIdText(value);
            if (!fuseId) {
                return -1;
            }
            if (fuseId->hex == fuseIdHex) {
                return roleId;
            }
        }
        return -1;
    };
    LOGI(self, "enter");
    const int roleId = find();
    // The closing line reads "enter" too: this is its fixed text.
    LOGI(self, "enter");
    return roleId;
}
