#include <algorithm>
#include <cstddef>
#include <map>

#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/DataBins.h"
#include "platforminfo/Operation.h"
#include "tables/CameraPairs.h"
#include "tables/PublishedProperties.h"

namespace {

enum Source : int { kPersist = 0, kGolden = 2 };

/// Pairs that were served, as master role and source. Pairs share their master, so a role may stand twice.
using Sources = std::multimap<int, int>;

/// Which side of the phone lost its persist files: "20" front, "2" back, "22" both.
const char* LostDetail(const Sources& lost) {
    const auto isFront = [](const auto& pair) {
        return pair.first == tables::camera_role::kFrontMain || pair.first == tables::camera_role::kFrontAux;
    };
    if (std::all_of(lost.begin(), lost.end(), isFront)) {
        return "20";
    }
    return std::none_of(lost.begin(), lost.end(), isFront) ? "2" : "22";
}

}  // namespace

void CameraPlatformInfoZelvan::OverriderDualCamCalData() {
    const Operation self(__func__);
    LOGI(self, "enter");
    mDataBinExistMask = WithBin(mDataBinExistMask, kDualCameraBin, false);
    Sources sources;
    bool unresolved = false;
    // Each source gets a copy of the row.
    for (DualCameraCalDataInfo pair : tables::kDualCameraPairs) {
        if (DualCameraDataFromEeprom(pair)) {
            continue;
        }
        if (DualCameraDataFromPersist(pair)) {
            sources.emplace(pair.masterCameraRole, kPersist);
        } else if (DualCameraDataFromGolden(pair)) {
            sources.emplace(pair.masterCameraRole, kGolden);
        } else {
            LOGE(self, "error!");
            unresolved = true;
        }
    }

    const std::size_t total = sources.size();
    std::erase_if(sources, [](const auto& pair) { return pair.second == kPersist; });
    const Sources& lost = sources;
    if (total == 0) {
        property_set(tables::kDualCalStateProperty, "3");
    } else if (lost.empty()) {
        property_set(tables::kDualCalStateProperty, "0");
        property_set(tables::kDualCalDetailProperty, "0");
    } else {
        LOGE(self, "Fatal Error: calibration persist file lost!");
        property_set(tables::kDualCalStateProperty, "2");
        for (const auto& [roleId, source] : lost) {
            LOGE(self, "CameraRoleId %d lost persist file", roleId);
        }
        property_set(tables::kDualCalDetailProperty, LostDetail(lost));
    }

    mDataBinExistMask = WithBin(mDataBinExistMask, kDualCameraBin, !unresolved);
    LOGI(self, "exit");
}
