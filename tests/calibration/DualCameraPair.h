#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "tables/CameraPairs.h"
#include "tests/calibration/CalibrationBytes.h"

/// The calibration of a camera pair: its files, and the fuse ids of the phone's modules.

inline const std::string kPersist = "/mnt/vendor/persist/camera/";
inline const std::string kDump = "/data/vendor/camera/com.zelvan.dcal.wu.data";
inline const std::string kGolden = "/vendor/etc/camera/com.zelvan.dcal.wu.golden";

/// The wide and ultra-wide pair.
inline DualCameraCalDataInfo Pair(int length, int eepromOffset = -1) {
    DualCameraCalDataInfo pair = tables::kDualCameraPairs[0];
    pair.length = length;
    pair.eepromOffset = eepromOffset;
    return pair;
}

/// Takes the dump file's bytes away, if there is one.
inline std::optional<Bytes> TakeDump(TestPhone& phone) {
    const std::string path = phone.phone().root().string() + kDump;
    const std::optional<Bytes> bytes =
        std::filesystem::exists(path) ? std::optional(phone.file(kDump)) : std::nullopt;
    std::filesystem::remove(path);
    return bytes;
}

/// The last lines of the log, as many as there are in `expected`.
inline Lines LastLines(const TestPhone& phone, const Lines& expected) {
    const Lines log = phone.log();
    return {log.end() - std::ssize(expected), log.end()};
}

inline const Bytes kWide{0xAA, 0xBB};
inline const Bytes kTele{0xCC, 0xDD};
inline const Bytes kUltra{0x01, 0x02};
