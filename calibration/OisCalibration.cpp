#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "calibration/FileAccess.h"
#include "formats/EepromImage.h"
#include "formats/Hex.h"
#include "formats/OisCalibrationFile.h"
#include "platform/Properties.h"
#include "platforminfo/CameraPlatformInfoZelvan.h"
#include "platforminfo/DataBins.h"
#include "platforminfo/Operation.h"
#include "tables/EepromLayouts.h"
#include "tables/PublishedFiles.h"
#include "tables/PublishedProperties.h"
#include "tables/Stabiliser.h"

namespace {

using tables::kOisFilePath;
using tables::kStabilisedRole;

/// States of the persist file, as the state property shows them.
constexpr const char* kPersistUsed = "0";
constexpr const char* kPersistUnusable = "2";
constexpr const char* kPersistOtherVersion = "3";

void SetAndLog(const Operation& self, const char* property, const char* value) {
    LOGI(self, "setprop %s %s", property, value);
    property_set(property, value);
}

/// The fitted sensor's fuse id; an unset or malformed property is a sensor without one.
std::string FittedFuseId(CameraPlatformInfoZelvan& info) {
    try {
        return info.getPropertyFuseid(kStabilisedRole);
    } catch (const std::out_of_range&) {
        return {};
    } catch (const std::invalid_argument&) {
        return {};
    }
}

}  // namespace

int CameraPlatformInfoZelvan::readOTPOisParam(int roleId, int* param) {
    const Operation self(__func__);
    // What can't be read counts as 0.
    std::uint8_t vendorId = 0;
    MemCpyCamCalData(roleId, &vendorId, tables::kVendorIdOffset, 1);
    LOGI(self, "vendorId = 0x%02x", static_cast<unsigned>(vendorId));

    int result = 0;
    for (const tables::StabiliserField& field : tables::kStabiliserFields) {
        std::array<std::uint8_t, 2> bytes{};
        result = MemCpyCamCalData(roleId, bytes.data(), field.offset, field.size);
        *param++ = formats::StabiliserParameter(field, bytes, vendorId);
    }
    return result;
}

const char* CameraPlatformInfoZelvan::GetOisParamFromPersist(int& gainX, int& gainY) {
    const Operation self(__func__);
    std::optional<std::vector<unsigned char>> bytes = ReadCalibrationFile(kOisFilePath);
    if (!bytes) {
        LOGE(self, "failed to open file %s", kOisFilePath);
        return kPersistUnusable;
    }
    if (bytes->empty()) {
        LOGE(self, "%s is empty", kOisFilePath);
        return kPersistUnusable;
    }
    const formats::OisCalibrationReading reading = formats::ReadOisCalibrationFile(*bytes);
    const formats::OisCalibrationFile& file = reading.file;
    if (!reading.crcGood) {
        LOGE(self, "%s's crc is not match : [0x%x:0x%x]", kOisFilePath,
             static_cast<unsigned>(reading.computedCrc), static_cast<unsigned>(reading.storedCrc));
        return kPersistUnusable;
    }
    if (file.version != formats::kOisFileVersion) {
        LOGE(self, "%s is an invalid file", kOisFilePath);
        return kPersistOtherVersion;
    }
    const std::string fileFuseId = formats::UpperHex(file.fuseId);
    LOGI(self, "fuseLen = %d, hexFuseId = %s", static_cast<int>(file.fuseId.size()), fileFuseId.c_str());
    const std::string fittedFuseId = FittedFuseId(*this);
    if (fittedFuseId.empty() || fittedFuseId != fileFuseId) {
        LOGE(self, "OIS cali file fuseid not match : %s:%s", fittedFuseId.c_str(), fileFuseId.c_str());
        return kPersistUnusable;
    }
    LOGI(self, "tmpOisGainX = %d, tmpoisGainY = %d", static_cast<int>(file.gainX),
         static_cast<int>(file.gainY));
    if (!file.gainsInRange()) {
        LOGI(self, "ois gain is not within the reasonable range");
        return kPersistUnusable;
    }
    gainX = static_cast<int>(file.gainX);
    gainY = static_cast<int>(file.gainY);
    return kPersistUsed;
}

void CameraPlatformInfoZelvan::OverriderOisCamCalData() {
    const Operation self(__func__);
    std::array<int, 16> oisAlgoParam{};
    readOTPOisParam(kStabilisedRole, oisAlgoParam.data());
    for (std::size_t i = 0; i < oisAlgoParam.size(); ++i) {
        LOGI(self, "oisAlgoParam[%d] = %d", static_cast<int>(i), oisAlgoParam[i]);
    }
    int gainX = oisAlgoParam[0];
    int gainY = oisAlgoParam[1];
    const std::string state = GetOisParamFromPersist(gainX, gainY);

    char value[64];
    std::snprintf(value, sizeof(value), "%d,%d,%d,%d", gainX, gainY, oisAlgoParam[2], oisAlgoParam[3]);
    SetAndLog(self, tables::kOisAlgoParamProperty, value);
    property_set(tables::kOisCalStateProperty, state.c_str());
    property_set(tables::kOisHvXyMatchProperty, "1");
    std::snprintf(value, sizeof(value), "%d,%d", formats::OisSensitivityMillionths(oisAlgoParam[4]),
                  formats::OisSensitivityMillionths(oisAlgoParam[5]));
    SetAndLog(self, tables::kOisSensitivityProperty, value);

    // A file of another version is a calibration that exists; only an unusable one is none.
    mDataBinExistMask = WithBin(mDataBinExistMask, kOisBin, state != kPersistUnusable);
    LOGI(self, "exit");
}
