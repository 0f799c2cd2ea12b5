#pragma once

#include <array>
#include <optional>

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

namespace tables {

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

/// Whether the roles that a calibration file names by its fuse ids are those of a pair, in either order. A
/// file may name only one of its sensors; then that one must belong to the pair.
/// @param master, slave none: the file names nobody; -1: a sensor that the phone does not have.
constexpr bool NamePair(std::optional<int> master, std::optional<int> slave,
                        const DualCameraCalDataInfo& pair) {
    const auto isOfPair = [&pair](int role) {
        return role == pair.masterCameraRole || role == pair.slaveCameraRole;
    };
    if (!master || !slave) {
        return (master || slave) && isOfPair(master ? *master : *slave);
    }
    return (*master == pair.masterCameraRole && *slave == pair.slaveCameraRole) ||
           (*slave == pair.masterCameraRole && *master == pair.slaveCameraRole);
}

/// The persist file that a recalibration of a pair writes, by the pair's dump file.
struct RecalibrationFile {
    const char* dumpPath;
    const char* fileName;
};

inline constexpr std::array<RecalibrationFile, 4> kRecalibrationFiles = {{
    {.dumpPath = kDualCameraPairs[0].dumpPath, .fileName = "com.zelvan.dcal.wu.bin"},
    {.dumpPath = kDualCameraPairs[1].dumpPath, .fileName = "com.zelvan.dcal.wt.bin"},
    // Pairs that this phone does not have.
    {.dumpPath = "/data/vendor/camera/com.zelvan.dcal.wd.data", .fileName = "com.zelvan.dcal.wd.bin"},
    {.dumpPath = "/data/vendor/camera/com.zelvan.dcal.ffd.data", .fileName = "com.zelvan.dcal.ffd.bin"},
}};

}  // namespace tables
