#pragma once

#include <array>

#include "tables/CameraRoles.h"

/// One camera pair that needs a stereo calibration block: where the block comes from and where it goes.
struct DualCameraCalDataInfo {
    int masterCameraRole;
    int slaveCameraRole;
    int dataCamera;          ///< role of the module whose EEPROM carries the block
    int eepromOffset;        ///< of the block in that EEPROM; negative: the EEPROM has none
    int length;              ///< of the block, bytes
    const char* dumpPath;    ///< raw block, written at start-up and read by the metadata side
    const char* goldenPath;  ///< raw block that the vendor partition ships
};

/// The pairs of this phone. Their modules carry no block, so the EEPROM source always passes.
inline constexpr std::array<DualCameraCalDataInfo, 2> kDualCameraPairs = {{
    {.masterCameraRole = camera_role::kBackMain,
     .slaveCameraRole = camera_role::kBackUltra,
     .dataCamera = camera_role::kBackUltra,
     .eepromOffset = -1,
     .length = 4096,
     .dumpPath = "/data/vendor/camera/com.zelvan.dcal.wu.data",
     .goldenPath = "/vendor/etc/camera/com.zelvan.dcal.wu.golden"},
    {.masterCameraRole = camera_role::kBackMain,
     .slaveCameraRole = camera_role::kBackTele,
     .dataCamera = camera_role::kBackTele,
     .eepromOffset = -1,
     .length = 4096,
     .dumpPath = "/data/vendor/camera/com.zelvan.dcal.wt.data",
     .goldenPath = "/vendor/etc/camera/com.zelvan.dcal.wt.golden"},
}};
